"""Interpolates and generates sizes and metric tensors."""

from __future__ import annotations

from typing import Optional

import numpy as np
import numpy.typing as npt

from . import _core
from ._arguments import Arguments, Real, Reals
from ._rules import shown_apart


def interpolate_metrics(params: npt.ArrayLike, values: npt.ArrayLike, new_params: npt.ArrayLike) -> Reals:
    """Interpolate sizes or tensors at new parameters.

    params: (n,) at least 2 parameters, non-decreasing.
    values: (n,) sizes, or tensors as (n, 3) or (n, 6) rows or as (n, d, d) matrices. Sizes are interpolated
        linearly; the result is 0 if one of the two sizes is not positive. Tensors are interpolated in
        their common basis.
    new_params: (k,) the new parameters, non-decreasing, within the range of params.

    Returns (k,) sizes or (k, 3) or (k, 6) tensors.

    Examples
    --------
    >>> import vornik1d
    >>> vornik1d.interpolate_metrics([0, 1], [1, 3], [0.5, 1]).tolist()
    [2.0, 3.0]
    """
    a = Arguments("interpolate_metrics")
    at = a.ascending("params", params)
    given = a.sizes_or_tensors("values", values)
    wanted = a.ascending("new_params", new_params)
    a.at_least(2, "interpolation", "params", at, "value")
    a.one_per("value of params", len(at), "values", given)
    for k in (0, -1) if len(wanted) > 0 else ():
        if not at[0] <= wanted[k] <= at[-1]:
            value, first, last = shown_apart(wanted[k], at[0], at[-1])
            fault = f"is {value}; it must be from {first} to {last}, the range of params"
            a.fail(f"new_params[{k % len(wanted)}]", fault)
    status, result = _core.interpolate_metrics(at, given, wanted)
    a.check(status)
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

    Give either elements or directions.

    Elements: the size along the line is the length of the elements.
    coords: (n, 2) node positions.
    connect: (m, 2) elements.
    normal_size: the size across the line, in length units. A negative value is relative to the length of the
        element, for example -2 for twice that length. 0 means the length of the element.

    Directions: the sizes are divided by the length of the direction vector.
    directions: (n, 2) a vector per node.
    indices: the nodes to treat; all nodes if not given.
    size_along, size_across: the sizes along the direction and across it.

    metrics: (k, 3) existing tensors, one row per node. The new tensors are merged into them. A row of zeros means
        no tensor.

    Returns the tensors, one row per node up to the largest treated node number.

    Examples
    --------
    >>> import vornik1d
    >>> vornik1d.metrics_gen_aniso2d([[0, 0], [2, 0]], [[0, 1]], 0.5).tolist()
    [[0.25, 0.0, 4.0], [0.25, 0.0, 4.0]]
    """
    a = Arguments("metrics_gen_aniso2d")
    old = _given_metrics(a, metrics, 2)
    if directions is not None:
        if coords is not None or connect is not None or normal_size is not None:
            a.reject("directions", "excludes coords, connect and normal_size")
        if size_along is None or size_across is None:
            a.reject("size_along and size_across", "must be given together with directions")
        vectors = a.matrix("directions", directions, (2,))
        status, result = _core.metrics_from_directions(
            vectors,
            a.chain(indices, vectors, owner="directions"),
            a.real("size_along", size_along),
            a.real("size_across", size_across),
            old,
        )
    else:
        if coords is None or connect is None or normal_size is None:
            a.reject("coords, connect and normal_size", "must all be given, or directions instead")
        if any(x is not None for x in (indices, size_along, size_across)):
            a.reject("indices, size_along and size_across", "need directions")
        nodes = a.coords(coords)
        elements = a.elements("connect", connect, most=2, of=nodes)
        status, result = _core.metrics_gen_aniso2d(nodes, elements, a.real("normal_size", normal_size), old)
    a.check(status)
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
    normal_size: the size across the line, as in metrics_gen_aniso2d. With binormal_size, only the size across the
        line in the plane in which the line bends.
    binormal_size: the size perpendicular to the plane in which the line bends.
    metrics: (k, 6) existing tensors, as in metrics_gen_aniso2d.

    Returns the tensors, one row per node up to the largest treated node number.

    Examples
    --------
    >>> import vornik1d
    >>> vornik1d.metrics_gen_aniso3d([[0, 0, 0], [2, 0, 0]], [[0, 1]], 0.5).round(4).tolist()
    [[0.25, 0.0, 4.0, 0.0, 0.0, 4.0], [0.25, 0.0, 4.0, 0.0, 0.0, 4.0]]
    """
    a = Arguments("metrics_gen_aniso3d")
    nodes = a.matrix("coords", coords, (3,))
    status, result = _core.metrics_gen_aniso3d(
        nodes,
        a.elements("connect", connect, most=2, of=nodes),
        a.real("normal_size", normal_size),
        None if binormal_size is None else a.real("binormal_size", binormal_size),
        _given_metrics(a, metrics, 3),
    )
    a.check(status)
    out: Reals = result
    return out
