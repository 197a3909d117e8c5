"""Measures of lines, nodes on lines, and lists of parameters."""

from __future__ import annotations

from typing import NamedTuple, Optional, SupportsIndex, Tuple

import numpy as np
import numpy.typing as npt

from . import _core
from ._arguments import UNLIMITED, Arguments, Nodes, Real, Reals

_CHAIN = ("indices", "must hold numbers of nodes that there are")
_ELEMENTS = ("connect", "must hold numbers of nodes that there are")


def curvatures(coords: npt.ArrayLike, indices: Optional[npt.ArrayLike] = None) -> Reals:
    """Discrete curvature of a chain at each of its entries, in 1/length. The ends take that of their neighbours.

    coords: (n, d) node positions, d = 2 or 3. indices: the chain; all nodes if not given.
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

    coords: (n, d) node positions. params: a parameter per chain entry, non-decreasing.
    new_indices: the nodes to move, one after the other; a number that is no node is passed over.
    new_params: the parameter to which each is moved, non-decreasing.
    indices: the chain; as many first nodes as there are params if not given.

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
            -2: ("params", "must hold a value per chain entry"),
            -3: ("params", "must not decrease or hold a NaN"),
            -4: ("new_params", "must hold a value per node to move"),
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
    """Length of a chain, or of a mesh of lines, in the unit of the coordinates.

    coords: (n, d) node positions, d = 2 or 3. indices: the chain; all nodes if neither is given.
    connect: (m, 2) elements, instead of a chain.
    """
    a = Arguments("length")
    nodes = a.coords(coords)
    if connect is not None:
        if indices is not None:
            a.reject("connect", "excludes indices")
        status, result = _core.length(nodes, a.elements("connect", connect))
    else:
        status, result = _core.length(nodes, a.chain(indices, nodes))
    fault = ("indices", "must hold at least 2 numbers of nodes that there are")
    a.check(status, {-2: fault if connect is None else _ELEMENTS})
    return float(result)


def parametric_curvatures(params: npt.ArrayLike, connect: npt.ArrayLike, tangents: npt.ArrayLike) -> Reals:
    """Curvature at the nodes of a curve from its tangents there, in 1/length.

    params: (n,) a parameter per node. connect: (m, 2) elements.
    tangents: (n, d) the derivative of the curve by the parameter at each node, d = 2 or 3.
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
            -2: ("connect", "must hold numbers of nodes for which there are params"),
            -3: ("tangents", "must hold a vector per value of params"),
        },
    )
    out: Reals = result
    return out


def normals(
    coords: npt.ArrayLike, connect: npt.ArrayLike, exponent: Real = 0.0, *, unit_length: bool = True
) -> Reals:
    """Normals at the nodes of a line in the plane, to the left of the direction of its elements.

    coords: (n, 2) node positions. connect: (m, 2) elements.
    exponent: an element of length L has the weight L**exponent at its nodes; inf takes the normal of the
        longest element, -inf that of the shortest.
    unit_length: bring the means to length 1.

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
    """Sort parameters, and nodes along with them: by parameter, nodes of equal parameter by number, NaNs last.

    Returns both lists, sorted.
    """
    a = Arguments("sort")
    status, values, nodes = _core.sort(a.reals("params", params), a.nodes("indices", indices))
    a.check(status, {-1: ("indices", "must be as many as params")})
    return values, nodes


class Subdivision(NamedTuple):
    """A mesh of a line on the parameter axis.

    params: the parameters, those given first, then those of the new points.
    sizes: the target size at each of them.
    indices: the points of the mesh in the order of travel.
    """

    params: Reals
    sizes: Reals
    indices: Nodes


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
    """Mesh a line that lives on the parameter axis, by target sizes.

    params: (n,) the parameter of each point.
    sizes: a target size per point, or one for all, in units of the parameter.
    indices: the chain of points; all if not given.
    round_up: ask for elements that are not longer than their sizes.
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
            -2: ("indices, sizes", "must hold at least 2 numbers of params, each of which has a size"),
            -6: ("min_elements, max_elements", "min_elements is 0 or above max_elements"),
        },
    )
    return Subdivision(values, targets, mesh)
