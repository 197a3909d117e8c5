"""Builds the Python package with the project's CMake files. pyproject.toml has the rest of the metadata."""

import re
import sys
from pathlib import Path

from setuptools import find_packages
from skbuild import setup

here = Path(__file__).parent
version = re.search(r"project\(vornik1d VERSION ([0-9.]+)", (here / "CMakeLists.txt").read_text(encoding="utf-8"))
assert version is not None

# A package index shows the README without the files that it links to.
readme = (here / "README.md").read_text(encoding="utf-8")
readme = re.sub(r"!\[[^]]*\]\((?!https?:)[^)]*\)\n\n", "", readme)
readme = re.sub(r"\[([^]]*)\]\((?!https?:|#)[^)]*\)", r"\1", readme)

cmake_args = [
    "-DVORNIK1D_BUILD_PYTHON=ON",
    "-DVORNIK1D_BUILD_TESTS=OFF",
    f"-DPython_EXECUTABLE={sys.executable}",
]
try:
    import pybind11
except ImportError:  # then CMake finds pybind11 in the system's directories
    pass
else:
    cmake_args.append(f"-Dpybind11_DIR={pybind11.get_cmake_dir()}")

setup(
    version=version[1],
    long_description=readme,
    long_description_content_type="text/markdown",
    packages=find_packages("python", include=["vornik1d", "vornik1d.*"]),
    package_dir={"": "python"},
    package_data={"vornik1d": ["py.typed", "*.pyi"]},
    cmake_args=cmake_args,
)
