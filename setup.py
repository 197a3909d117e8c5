"""Builds the Python package by the project's CMake files."""

import re
import sys
from pathlib import Path

from skbuild import setup

project = Path(__file__).with_name("CMakeLists.txt").read_text(encoding="utf-8")
version = re.search(r"project\(vornik1d VERSION ([0-9.]+)", project)
assert version is not None

setup(
    name="vornik1d",
    version=version[1],
    description="Line meshes that follow target sizes",
    packages=["vornik1d"],
    package_dir={"": "python"},
    package_data={"vornik1d": ["py.typed", "*.pyi"]},
    python_requires=">=3.9",
    install_requires=["numpy"],
    extras_require={"plot": ["matplotlib"]},
    cmake_args=[
        "-DVORNIK1D_BUILD_PYTHON=ON",
        "-DVORNIK1D_BUILD_TESTS=OFF",
        f"-DPython_EXECUTABLE={sys.executable}",
    ],
)
