"""Metric interpolation and generation."""

from __future__ import annotations

from typing import Optional

import numpy as np
import numpy.typing as npt

from . import _core
from ._arguments import Arguments, Real, Reals


def interpolate_metrics(params: npt.ArrayLike, values: npt.ArrayLike, new_params: npt.ArrayLike) -> Reals:
    """Carry sizes or tensors from one non-decreasing list of parameters to another.

    params: (n,) at least 2 parameters, non-decreasing.
    values: (n,) sizes, between which the interpolation is linear, or 0 unless both are positive; or (n, 3) or
        (n, 6) packed tensors, or (n, d, d) matrices, which are interpolated in their common basis.
    new_params: (k,) the parameters wanted, non-decreasing, within the range of params.

    Returns (k,) sizes or (k, 3) or (k, 6) tensors.
    """
    a = Arguments("interpolate_metrics")
    at = a.reals("params", params)
    given = a.reals_of_any_shape("values", values)
    if given.ndim != 1:
        if given.shape[1:] not in ((3,), (6,), (2, 2), (3, 3)):
            shapes = "(n,), (n, 3), (n, 6), (n, 2, 2) or (n, 3, 3)"
            a.fail("values", f"must have shape {shapes}, not {given.shape}")
        given = a.tensors("values", given, 3 if given.shape[1:] in ((6,), (3, 3)) else 2)
    wanted = a.reals("new_params", new_params)
    status, result = _core.interpolate_metrics(at, given, wanted)
    a.check(
        status,
        {
            -1: ("params", "must hold at least 2 values that do not decrease"),
            -2: ("values", "must hold a size or a tensor per value of params"),
            -3: ("new_params", "must not decrease or leave the range of params"),
        },
    )
    out: Reals = result if len(wanted) > 0 else np.empty((0, *given.shape[1:]))
    return out


def _given_metrics(a: Arguments, metrics: Optional[npt.ArrayLike], dimension: int) -> Reals:
    return a.tensors("metrics", () if metrics is None else metrics, dimension)


def metrics_gen_aniso2d(
    coords: Optional[npt.ArrayLike] = None,
    connect: Optional[npt.ArrayLike] = None,
    normal_size: Optional[Real] = None,
    *,
    directions: Optional[npt.ArrayLike] = None,
    indices: Optional[npt.ArrayLike] = None,
    size_along: Optional[Real] = None,
    size_across: Optional[Real] = None,
    metrics: Optional[npt.ArrayLike] = None,
) -> Reals:
    """Generate tensors in the plane from the elements of a line, or from a direction per node.

    From elements: coords (n, 2), connect (m, 2), and normal_size, the size across the line: in length units, or
    if negative, relative to an element's length; that length if it is 0. Along the line it is the length of the
    elements.

    From directions: directions (n, 2), a vector per node; size_along and size_across it, both divided by its
    length; indices, the nodes to treat, all if not given.

    metrics: (k, 3) tensors by node into which the new ones are merged; rows of zeros ask for nothing.

    Returns the tensors, a row per node up to the largest one treated.
    """
    a = Arguments("metrics_gen_aniso2d")
    old = _given_metrics(a, metrics, 2)
    wrong_metrics = ("metrics", "must have shape (k, 3)")
    if directions is not None:
        if coords is not None or connect is not None or normal_size is not None:
            a.reject("directions", "excludes coords, connect and normal_size")
        if size_along is None or size_across is None:
            a.reject("size_along, size_across", "must be given with directions")
        vectors = a.matrix("directions", directions, (2,))
        status, result = _core.metrics_from_directions(
            vectors,
            a.chain(indices, vectors),
            a.real("size_along", size_along),
            a.real("size_across", size_across),
            old,
        )
        statuses = {
            -1: ("directions", "must have shape (n, 2)"),
            -2: ("indices", "must hold numbers of directions"),
            -3: ("size_along", "must be positive"),
            -4: ("size_across", "must be positive"),
            -5: wrong_metrics,
        }
    else:
        if coords is None or connect is None or normal_size is None:
            a.reject("coords, connect, normal_size", "must be given, or directions instead")
        if any(x is not None for x in (indices, size_along, size_across)):
            a.reject("indices, size_along, size_across", "go with directions")
        status, result = _core.metrics_gen_aniso2d(
            a.coords(coords), a.elements("connect", connect), a.real("normal_size", normal_size), old
        )
        statuses = {
            -1: ("coords", "must have shape (n, 2)"),
            -2: ("connect", "must have shape (m, 2) and hold numbers of nodes that there are"),
            -4: wrong_metrics,
        }
    a.check(status, statuses)
    out: Reals = result
    return out


def metrics_gen_aniso3d(
    coords: npt.ArrayLike,
    connect: npt.ArrayLike,
    normal_size: Real,
    binormal_size: Optional[Real] = None,
    *,
    metrics: Optional[npt.ArrayLike] = None,
) -> Reals:
    """Generate tensors in space from the elements of a line.

    coords: (n, 3), connect: (m, 2).
    normal_size: the size across the line, as in metrics_gen_aniso2d; with a binormal_size, the one in the plane
        in which the line bends.
    binormal_size: the size perpendicular to that plane.
    metrics: (k, 6) tensors by node into which the new ones are merged.

    Returns the tensors, a row per node up to the largest one treated.
    """
    a = Arguments("metrics_gen_aniso3d")
    status, result = _core.metrics_gen_aniso3d(
        a.matrix("coords", coords, (3,)),
        a.elements("connect", connect),
        a.real("normal_size", normal_size),
        None if binormal_size is None else a.real("binormal_size", binormal_size),
        _given_metrics(a, metrics, 3),
    )
    a.check(
        status,
        {
            -1: ("coords", "must have shape (n, 3)"),
            -2: ("connect", "must have shape (m, 2) and hold numbers of nodes that there are"),
            -4: ("metrics", "must have shape (k, 6)"),
        },
    )
    out: Reals = result
    return out
