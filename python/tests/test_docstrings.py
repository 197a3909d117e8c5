"""The examples in the docstrings of the package run."""

import doctest
import importlib
import pkgutil

import matplotlib
import pytest

matplotlib.use("agg")

import vornik1d

INTERNAL = {"_chains", "_foresee", "_rules", "_sizes", "_warnings"}  # without examples
MODULES = [
    f"vornik1d.{m.name}"
    for m in pkgutil.iter_modules(vornik1d.__path__)
    if m.name not in {"_core", *INTERNAL}
]


@pytest.mark.parametrize("name", ["vornik1d", *MODULES])
def test_examples_in_docstrings(name):
    result = doctest.testmod(importlib.import_module(name))
    assert result.attempted > 0 and result.failed == 0


def test_public_functions_have_examples():
    public = [(name, getattr(vornik1d, name)) for name in vornik1d.__all__]
    functions = [
        (name, f) for name, f in public if callable(f) and not isinstance(f, type) and name != "version"
    ]
    assert functions and not [name for name, f in functions if ">>> " not in f.__doc__]
