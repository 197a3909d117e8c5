"""Warnings about meshes that are not quite what was asked for."""

from __future__ import annotations

import os
import sys
import warnings

_PACKAGE = os.path.dirname(__file__) + os.sep


class MeshWarning(UserWarning):
    """A mesh differs from what the arguments ask for, or may not be what was meant."""


def warn(text: str) -> None:
    """Warn at the line of the caller's code that called the package."""
    level, frame = 2, sys._getframe(1)
    while frame.f_back is not None and frame.f_code.co_filename.startswith(_PACKAGE):
        level, frame = level + 1, frame.f_back
    warnings.warn(text, MeshWarning, stacklevel=level)
