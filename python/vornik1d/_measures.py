"""Measures lines, moves nodes onto lines, sorts and subdivides lists of parameters."""

from __future__ import annotations

from typing import Optional, SupportsIndex, Tuple

import numpy as np
import numpy.typing as npt

from . import _core
from ._arguments import UNLIMITED, Arguments, Nodes, Real, Reals
from ._results import Subdivision
from ._rules import ANY, number_of, valid_number


def curvatures(coords: npt.ArrayLike, indices: Optional[npt.ArrayLike] = None) -> Reals:
    """Discrete curvature of a chain at each of its entries, in 1/length.

    The two ends get the curvature of the entries next to them.

    Parameters
    ----------
    coords
        (n, d) node positions, d = 2 or 3.
    indices
        the chain; all nodes if not given.

    Returns
    -------
    ndarray

    Raises
    ------
    ValueError, TypeError
        The message names the argument.
    MemoryError
        There is not enough memory.

    Examples
    --------
    >>> import vornik1d
    >>> vornik1d.curvatures([[0, 0], [1, 0], [1, 1]]).round(4).tolist()
    [1.4142, 1.4142, 1.4142]
    """
    a = Arguments("curvatures")
    nodes = a.coords(coords)
    status, result = _core.curvatures(nodes, a.chain(indices, nodes))
    a.check(status)
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

    Parameters
    ----------
    coords
        (n, d) node positions.
    params
        a parameter per chain entry, non-decreasing.
    new_indices
        the nodes to move, in this order.
    new_params
        the parameter to which each node is moved, non-decreasing.
    indices
        the chain; if not given, the first nodes, one per value of params.

    Returns
    -------
    ndarray
        The coordinates, shape (n, d).

    Raises
    ------
    ValueError, TypeError
        The message names the argument.
    MemoryError
        There is not enough memory.

    Examples
    --------
    >>> import vornik1d
    >>> vornik1d.interpolate_coordinates([[0, 0], [2, 0], [5, 5]], [0, 1], [2], [0.25]).tolist()
    [[0.0, 0.0], [2.0, 0.0], [0.5, 0.0]]
    """
    a = Arguments("interpolate_coordinates")
    nodes = a.matrix("coords", coords)
    at, to = a.ascending("params", params), a.ascending("new_params", new_params)
    if indices is None and len(at) > len(nodes):
        a.fail("params", f"has {len(at)} values; coords has only {number_of(len(nodes), 'node')}")
    chain = a.chain(np.arange(len(at)) if indices is None else indices, nodes)
    a.one_per("node of the line", len(chain), "params", at)
    moved = a.nodes("new_indices", new_indices, valid_number("node", len(nodes), "coords"))
    a.one_per("entry of new_indices", len(moved), "new_params", to)
    status, result = _core.interpolate_coordinates(nodes, chain, at, moved, to)
    a.check(status)
    out: Reals = result
    return out


def length(
    coords: npt.ArrayLike,
    indices: Optional[npt.ArrayLike] = None,
    *,
    connect: Optional[npt.ArrayLike] = None,
) -> float:
    """Length of a chain, or of all elements together, in the unit of the coordinates.

    Parameters
    ----------
    coords
        (n, d) node positions, d = 2 or 3.
    indices
        the chain; all nodes if neither indices nor connect is given.
    connect
        (m, 2) elements, instead of a chain.

    Returns
    -------
    float

    Raises
    ------
    ValueError, TypeError
        The message names the argument.
    MemoryError
        There is not enough memory.

    Examples
    --------
    >>> import vornik1d
    >>> vornik1d.length([[0, 0], [3, 0], [3, 4]])
    7.0
    """
    a = Arguments("length")
    nodes = a.coords(coords)
    if connect is not None:
        if indices is not None:
            a.one_of(indices=indices, connect=connect)
        status, result = _core.length(nodes, a.elements("connect", connect, of=nodes))
    else:
        chain = a.chain(indices, nodes)
        a.at_least(2, "a line", "coords" if indices is None else "indices", chain)
        status, result = _core.length(nodes, chain)
    a.check(status)
    return float(result)


def parametric_curvatures(params: npt.ArrayLike, connect: npt.ArrayLike, tangents: npt.ArrayLike) -> Reals:
    """Curvature at the nodes of a curve from its tangents there, in 1/length.

    Parameters
    ----------
    params
        (n,) a parameter per node.
    connect
        (m, 2) elements.
    tangents
        (n, d) the derivative of the curve with respect to the parameter at each node, d = 2 or 3.

    Returns
    -------
    ndarray

    Raises
    ------
    ValueError, TypeError
        The message names the argument.
    MemoryError
        There is not enough memory.

    Examples
    --------
    >>> import vornik1d
    >>> vornik1d.parametric_curvatures([0, 1], [[0, 1]], [[1, 0], [0.8, 0.6]]).round(4).tolist()
    [0.7027, 0.7027]
    """
    a = Arguments("parametric_curvatures")
    at = a.reals("params", params)
    vectors = a.coords(tangents, "tangents")
    a.one_per("value of params", len(at), "tangents", vectors)
    elements = a.elements("connect", connect, of=vectors, owner="tangents")
    if len(elements) == 0:
        return np.zeros(len(at))
    status, result = _core.parametric_curvatures(at, elements, vectors)
    a.check(status)
    out: Reals = result
    return out


def normals(
    coords: npt.ArrayLike, connect: npt.ArrayLike, exponent: Real = 0.0, *, unit_length: bool = True
) -> Reals:
    """Normals at the nodes of a line in the plane, to the left of its elements.

    The normal of a node is the weighted mean of the normals of its elements.

    Parameters
    ----------
    coords
        (n, 2) node positions.
    connect
        (m, 2) elements.
    exponent
        the weight of an element of length L is L**exponent. inf takes the normal of the longest element at
        the node, -inf that of the shortest.
    unit_length
        scale the means to length 1.

    Returns
    -------
    ndarray
        (n, 2), zeros at nodes without elements.

    Raises
    ------
    ValueError, TypeError
        The message names the argument.
    MemoryError
        There is not enough memory.

    Examples
    --------
    >>> import vornik1d
    >>> vornik1d.normals([[0, 0], [1, 0], [1, 1]], [[0, 1], [1, 2]]).round(4).tolist()
    [[0.0, 1.0], [-0.7071, 0.7071], [-1.0, 0.0]]
    """
    a = Arguments("normals")
    nodes = a.matrix("coords", coords, (2,))
    elements = a.elements("connect", connect, of=nodes)
    power = a.real("exponent", exponent)
    is_unit = a.flag("unit_length", unit_length)
    if len(elements) == 0:
        return np.zeros(nodes.shape)
    status, result = _core.normals(nodes, elements, power, is_unit)
    a.check(status)
    out: Reals = result
    return out


def sort(params: npt.ArrayLike, indices: npt.ArrayLike) -> Tuple[Reals, Nodes]:
    """Sort parameters and the nodes that belong to them, in ascending order.

    Nodes with equal parameters are sorted by number. NaNs come last. Returns both lists.

    Examples
    --------
    >>> import vornik1d
    >>> vornik1d.sort([0.5, 0.1, 0.3], [0, 1, 2])[1].tolist()
    [1, 2, 0]
    """
    a = Arguments("sort")
    given, list_given = a.reals("params", params, ANY), a.nodes("indices", indices)
    a.one_per("value of params", len(given), "indices", list_given)
    status, values, nodes = _core.sort(given, list_given)
    a.check(status)
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

    Parameters
    ----------
    params
        (n,) the parameter of each point.
    sizes
        a target size per point, or one size for all points, in units of the parameter.
    indices
        the chain of points; all if not given.
    round_up
        round the number of elements up, so that elements are at most as long as their sizes.
    force_even, min_elements, max_elements
        as in mesh_line.

    Returns
    -------
    Subdivision

    Raises
    ------
    ValueError, TypeError
        The message names the argument.
    MemoryError
        There is not enough memory.

    Examples
    --------
    >>> import vornik1d
    >>> vornik1d.subdivide([0, 1], [0.5, 0.1])
    Subdivision: 5 points, 4 elements, params 0 to 1, sizes 0.1 to 0.5
    """
    a = Arguments("subdivide")
    at = a.reals("params", params)
    given = a.per_entry("sizes", sizes, len(at), "value of params")
    if indices is None:
        chain = np.arange(len(at), dtype=np.uint32)
    else:
        chain = a.nodes("indices", indices, valid_number("point", len(at), "params"))
    a.at_least(2, "a line", "params" if indices is None else "indices", chain, "point")
    limits = a.limits(min_elements, max_elements)
    is_up, is_even = a.flag("round_up", round_up), a.flag("force_even", force_even)
    status, values, targets, mesh = _core.subdivide(at, given, chain, is_up, is_even, *limits)
    a.check(status)
    return Subdivision(values, targets, mesh)
