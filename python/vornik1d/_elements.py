"""Builds, converts and orients elements."""

from __future__ import annotations

from typing import Any, Callable, Optional, SupportsIndex, Tuple

import numpy as np
import numpy.typing as npt

from . import _core
from ._arguments import Arguments, Nodes
from ._results import HighOrderMesh, Orientation
from ._rules import NODE, number_of, valid_number


def _append_elements(
    order: int, indices: npt.ArrayLike, connect: Optional[npt.ArrayLike], counts: str
) -> Nodes:
    a = Arguments(f"indices_to_connectE{order}")
    old = a.elements("connect", () if connect is None else connect, order, most=order)
    chain = a.nodes("indices", indices)
    append: Callable[..., Tuple[int, Nodes]] = getattr(_core, f"indices_to_connectE{order}")
    status, result = append(chain, old)
    a.check(status, {-1: ("indices", f"has {number_of(len(chain), 'node')}; it must have {counts}")})
    return result


def indices_to_connectE2(indices: npt.ArrayLike, connect: Optional[npt.ArrayLike] = None) -> Nodes:
    """Join a list of nodes by elements of 2 nodes. Returns (m, 2): connect, if given, then the new elements.

    Examples
    --------
    >>> import vornik1d
    >>> vornik1d.indices_to_connectE2([4, 5, 6]).tolist()
    [[4, 5], [5, 6]]
    """
    return _append_elements(2, indices, connect, "0 nodes, or at least 2")


def indices_to_connectE3(indices: npt.ArrayLike, connect: Optional[npt.ArrayLike] = None) -> Nodes:
    """Join a list of nodes by elements of 3 nodes, as indices_to_connectE2. The middle node comes last.

    Examples
    --------
    >>> import vornik1d
    >>> vornik1d.indices_to_connectE3([4, 5, 6]).tolist()
    [[4, 6, 5]]
    """
    return _append_elements(3, indices, connect, "0, 3, 5, 7, ... nodes")


def indices_to_connectE4(indices: npt.ArrayLike, connect: Optional[npt.ArrayLike] = None) -> Nodes:
    """Join a list of nodes by elements of 4 nodes, as indices_to_connectE2. The two inner nodes come last.

    Examples
    --------
    >>> import vornik1d
    >>> vornik1d.indices_to_connectE4([4, 5, 6, 7]).tolist()
    [[4, 7, 5, 6]]
    """
    return _append_elements(4, indices, connect, "0, 4, 7, 10, ... nodes")


def split_into_linear(connect_in: npt.ArrayLike, connect_out: Optional[npt.ArrayLike] = None) -> Nodes:
    """Split each element of 3 nodes into two elements of 2 nodes.

    Returns (m, 2): the elements of connect_out, if given, then the new elements.

    Examples
    --------
    >>> import vornik1d
    >>> vornik1d.split_into_linear([[0, 2, 1]]).tolist()
    [[0, 1], [1, 2]]
    """
    a = Arguments("split_into_linear")
    old = a.elements("connect_out", () if connect_out is None else connect_out, most=2)
    status, result = _core.split_into_linear(a.elements("connect_in", connect_in, 3, most=3), old)
    a.check(status)
    out: Nodes = result
    return out


def convert_into_linear(connect: npt.ArrayLike) -> Nodes:
    """Reduce elements of 3 or more nodes to their two end nodes. Returns (m, 2).

    Examples
    --------
    >>> import vornik1d
    >>> vornik1d.convert_into_linear([[0, 2, 1]]).tolist()
    [[0, 2]]
    """
    a = Arguments("convert_into_linear")
    elements = a.elements("connect", connect)
    if len(elements) == 0:
        return np.empty((0, 2), np.uint32)
    a.elements("connect", elements, 3)
    status, result = _core.convert_into_linear(elements)
    a.check(status)
    out: Nodes = result
    return out


def _convert(
    name: str, order: int, coords: npt.ArrayLike, connect: npt.ArrayLike, *extra: int
) -> HighOrderMesh:
    a = Arguments(name)
    convert: Callable[..., Any] = getattr(_core, name)
    given = a.matrix("coords", coords, (2, 3, 1))
    status, nodes, elements = convert(given, a.elements("connect", connect, of=given), *extra)
    a.check(status)
    return HighOrderMesh(nodes, elements if len(elements) > 0 else np.empty((0, order), np.uint32))


def convert_into_high_order(
    coords: npt.ArrayLike, connect: npt.ArrayLike, extra_nodes: SupportsIndex
) -> HighOrderMesh:
    """Give each element interior nodes at equal distances between its ends.

    coords: (n, d), d = 1, 2 or 3.
    connect: (m, 2) elements; further columns are replaced.
    extra_nodes: the number of interior nodes per element; 0 leaves the elements as they are.

    Examples
    --------
    >>> import vornik1d
    >>> vornik1d.convert_into_high_order([[0, 0], [3, 0]], [[0, 1]], 2).connect.tolist()
    [[0, 1, 2, 3]]
    """
    count = Arguments("convert_into_high_order").count("extra_nodes", extra_nodes)
    return _convert("convert_into_high_order", count + 2, coords, connect, count)


def convert_into_quadratic(coords: npt.ArrayLike, connect: npt.ArrayLike) -> HighOrderMesh:
    """Give each element a node at its midpoint. Returns elements of shape (m, 3).

    Examples
    --------
    >>> import vornik1d
    >>> vornik1d.convert_into_quadratic([[0, 0], [3, 0]], [[0, 1]]).connect.tolist()
    [[0, 1, 2]]
    """
    return _convert("convert_into_quadratic", 3, coords, connect)


def convert_into_cubic(coords: npt.ArrayLike, connect: npt.ArrayLike) -> HighOrderMesh:
    """Give each element two interior nodes. Returns elements of shape (m, 4).

    Examples
    --------
    >>> import vornik1d
    >>> vornik1d.convert_into_cubic([[0, 0], [3, 0]], [[0, 1]]).connect.tolist()
    [[0, 1, 2, 3]]
    """
    return _convert("convert_into_cubic", 4, coords, connect)


def flip(connect: npt.ArrayLike) -> Nodes:
    """Reverse the order of the nodes in each element.

    Examples
    --------
    >>> import vornik1d
    >>> vornik1d.flip([[0, 1, 2]]).tolist()
    [[2, 1, 0]]
    """
    result: Nodes = _core.flip(Arguments("flip").elements("connect", connect))[1]
    return result


def _check_neighbors(a: Arguments, elements: Nodes, neighbors: Nodes) -> None:
    """Each neighbour must have the node at which its element meets it."""
    is_given = neighbors < len(elements)
    if is_given.any():
        others = elements[np.where(is_given, neighbors, 0)]
        is_wrong = is_given & (others != elements[:, ::-1, None]).all(axis=2)
        if is_wrong.any():
            row, side = np.unravel_index(np.argmax(is_wrong), is_wrong.shape)
            fault = f"is {neighbors[row, side]}; that element must have node {elements[row, 1 - side]}"
            a.fail(f"neighbors[{row}, {side}]", fault)


def mesh_reorient(
    connect: npt.ArrayLike,
    neighbors: Optional[npt.ArrayLike] = None,
    start: SupportsIndex = 0,
    *,
    all_components: bool = True,
) -> Orientation:
    """Orient the elements of a line so that each element starts where the previous element ends.

    connect: (m, 2) elements; further columns are ignored.
    neighbors: (m, 2) for each element the neighbour at its second node and the neighbour at its first node;
        4294967295 means no neighbour. If neighbors is not given, the neighbours are found from connect.
    start: the element that keeps its direction.
    all_components: also orient each other component that has an element after start.

    Examples
    --------
    >>> import vornik1d
    >>> vornik1d.mesh_reorient([[0, 1], [2, 1], [2, 3]]).connect.tolist()
    [[0, 1], [1, 2], [2, 3]]
    """
    a = Arguments("mesh_reorient")
    elements = np.ascontiguousarray(a.elements("connect", connect)[:, :2])
    a.hold("connect", elements, NODE, "it")
    sides = a.elements("neighbors", () if neighbors is None else neighbors, most=2)
    if neighbors is not None:
        a.one_per("element", len(elements), "neighbors", sides)
        _check_neighbors(a, elements, sides)
    elif len(elements) == 0:
        sides = elements
    else:
        status, sides = _core.get_neighbors(elements)
        a.check(status, {})
    first = a.count("start", start)
    if len(elements) > 0:
        a.count("start", first, valid_number("row", len(elements), "connect"))
    status, lines, new_sides = _core.mesh_reorient(
        elements, sides, first, a.flag("all_components", all_components)
    )
    a.check(status)
    return Orientation(lines, new_sides, int(status))
