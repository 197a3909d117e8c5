"""Measures lines, moves nodes onto lines, sorts and subdivides lists of parameters."""

from __future__ import annotations

from typing import Optional, SupportsIndex, Tuple

import numpy as np
import numpy.typing as npt

from . import _core
from ._arguments import LIMITS, UNLIMITED, Arguments, Nodes, Real, Reals
from ._results import Subdivision

_VALID = "must contain valid node numbers, below the number of coords"
_CHAIN = ("indices", _VALID)
_ELEMENTS = ("connect", _VALID)


def curvatures(coords: npt.ArrayLike, indices: Optional[npt.ArrayLike] = None) -> Reals:
    """Discrete curvature of a chain at each of its entries, in 1/length.

    The two ends get the curvature of the entries next to them.

    coords: (n, d) node positions, d = 2 or 3.
    indices: the chain; all nodes if not given.
    """
    a = Arguments("curvatures")
    nodes = a.coords(coords)
    status, result = _core.curvatures(nodes, a.chain(indices, nodes))
    a.check(status, {-2: _CHAIN})
    out: Reals = result
    return out


def interpolate_coordinates(
    coords: npt.ArrayLike,
    params: npt.ArrayLike,
    new_indices: npt.ArrayLike,
    new_params: npt.ArrayLike,
    *,
    indices: Optional[npt.ArrayLike] = None,
) -> Reals:
    """Move nodes onto a parametrised polyline.

    coords: (n, d) node positions.
    params: a parameter per chain entry, non-decreasing.
    new_indices: the nodes to move, in this order; invalid node numbers are ignored.
    new_params: the parameter to which each node is moved, non-decreasing.
    indices: the chain; if not given, the first nodes, one per value of params.

    Returns the coordinates, shape (n, d).
    """
    a = Arguments("interpolate_coordinates")
    nodes = a.matrix("coords", coords)
    at = a.reals("params", params)
    chain = np.arange(len(at), dtype=np.uint32) if indices is None else a.nodes("indices", indices)
    status, result = _core.interpolate_coordinates(
        nodes, chain, at, a.nodes("new_indices", new_indices), a.reals("new_params", new_params)
    )
    a.check(
        status,
        {
            -2: ("params", "must contain one value per chain entry"),
            -3: ("params", "must not decrease or contain NaN"),
            -4: ("new_params", "must contain one value per entry of new_indices"),
            -5: ("new_params", "must not decrease"),
        },
    )
    out: Reals = result
    return out


def length(
    coords: npt.ArrayLike,
    indices: Optional[npt.ArrayLike] = None,
    *,
    connect: Optional[npt.ArrayLike] = None,
) -> float:
    """Length of a chain, or of all elements together, in the unit of the coordinates.

    coords: (n, d) node positions, d = 2 or 3.
    indices: the chain; all nodes if neither indices nor connect is given.
    connect: (m, 2) elements, instead of a chain.
    """
    a = Arguments("length")
    nodes = a.coords(coords)
    if connect is not None:
        if indices is not None:
            a.reject("connect", "excludes indices; give one of them")
        status, result = _core.length(nodes, a.elements("connect", connect))
    else:
        status, result = _core.length(nodes, a.chain(indices, nodes))
    fault = ("indices", "must contain at least 2 valid node numbers, below the number of coords")
    a.check(status, {-2: fault if connect is None else _ELEMENTS})
    return float(result)


def parametric_curvatures(params: npt.ArrayLike, connect: npt.ArrayLike, tangents: npt.ArrayLike) -> Reals:
    """Curvature at the nodes of a curve from its tangents there, in 1/length.

    params: (n,) a parameter per node.
    connect: (m, 2) elements.
    tangents: (n, d) the derivative of the curve with respect to the parameter at each node, d = 2 or 3.
    """
    a = Arguments("parametric_curvatures")
    at = a.reals("params", params)
    elements = a.elements("connect", connect)
    vectors = a.coords(tangents, "tangents")
    if len(elements) == 0:
        return np.zeros(len(at))
    status, result = _core.parametric_curvatures(at, elements, vectors)
    a.check(
        status,
        {
            -2: ("connect", "must contain valid node numbers, below the number of params"),
            -3: ("tangents", "must contain one vector per value of params"),
        },
    )
    out: Reals = result
    return out


def normals(
    coords: npt.ArrayLike, connect: npt.ArrayLike, exponent: Real = 0.0, *, unit_length: bool = True
) -> Reals:
    """Normals at the nodes of a line in the plane, to the left of its elements.

    The normal of a node is the weighted mean of the normals of its elements.

    coords: (n, 2) node positions.
    connect: (m, 2) elements.
    exponent: the weight of an element of length L is L**exponent. inf takes the normal of the longest element at
        the node, -inf that of the shortest.
    unit_length: scale the means to length 1.

    Returns (n, 2), zeros at nodes without elements.
    """
    a = Arguments("normals")
    nodes = a.matrix("coords", coords, (2,))
    elements = a.elements("connect", connect)
    power = a.real("exponent", exponent)
    is_unit = a.flag("unit_length", unit_length)
    if len(elements) == 0:
        return np.zeros(nodes.shape)
    status, result = _core.normals(nodes, elements, power, is_unit)
    a.check(status, {-2: _ELEMENTS})
    out: Reals = result
    return out


def sort(params: npt.ArrayLike, indices: npt.ArrayLike) -> Tuple[Reals, Nodes]:
    """Sort parameters and the nodes that belong to them, in ascending order.

    Nodes with equal parameters are sorted by number. NaNs come last. Returns both lists.
    """
    a = Arguments("sort")
    status, values, nodes = _core.sort(a.reals("params", params), a.nodes("indices", indices))
    a.check(status, {-1: ("indices", "must contain one node per value of params")})
    return values, nodes


def subdivide(
    params: npt.ArrayLike,
    sizes: npt.ArrayLike,
    indices: Optional[npt.ArrayLike] = None,
    *,
    round_up: bool = False,
    force_even: bool = False,
    min_elements: SupportsIndex = 1,
    max_elements: SupportsIndex = UNLIMITED,
) -> Subdivision:
    """Mesh a line on the parameter axis by target sizes.

    params: (n,) the parameter of each point.
    sizes: a target size per point, or one size for all points, in units of the parameter.
    indices: the chain of points; all if not given.
    round_up: round the number of elements up, so that elements are at most as long as their sizes.
    force_even, min_elements, max_elements: as in mesh_line.
    """
    a = Arguments("subdivide")
    at = a.reals("params", params)
    chain = np.arange(len(at), dtype=np.uint32) if indices is None else a.nodes("indices", indices)
    status, values, targets, mesh = _core.subdivide(
        at,
        a.per_entry("sizes", sizes, len(at)),
        chain,
        a.flag("round_up", round_up),
        a.flag("force_even", force_even),
        a.count("min_elements", min_elements),
        a.count("max_elements", max_elements),
    )
    a.check(
        status,
        {
            -2: (
                "indices, sizes",
                "indices must contain at least 2 valid point numbers, and sizes one size per value of params",
            ),
            -6: LIMITS,
        },
    )
    return Subdivision(values, targets, mesh)
