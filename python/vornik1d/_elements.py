"""Elements: building, conversion and orientation."""

from __future__ import annotations

from typing import Any, Callable, NamedTuple, Optional, SupportsIndex, Tuple

import numpy as np
import numpy.typing as npt

from . import _core
from ._arguments import Arguments, Nodes, Reals


def _append_elements(
    order: int, indices: npt.ArrayLike, connect: Optional[npt.ArrayLike], counts: str
) -> Nodes:
    a = Arguments(f"indices_to_connectE{order}")
    old = a.elements("connect", np.empty((0, order), np.uint32) if connect is None else connect)
    append: Callable[..., Tuple[int, Nodes]] = getattr(_core, f"indices_to_connectE{order}")
    status, result = append(a.nodes("indices", indices), old)
    a.check(status, {-1: ("indices", counts), -2: ("connect", f"must have shape (m, {order})")})
    return result


def indices_to_connectE2(indices: npt.ArrayLike, connect: Optional[npt.ArrayLike] = None) -> Nodes:
    """Elements of 2 nodes along a list of nodes, behind those of connect if it is given. Returns (m, 2)."""
    return _append_elements(2, indices, connect, "must be none, or at least 2")


def indices_to_connectE3(indices: npt.ArrayLike, connect: Optional[npt.ArrayLike] = None) -> Nodes:
    """Elements of 3 nodes, the middle one last, along a list of nodes. Returns (m, 3)."""
    return _append_elements(3, indices, connect, "must be none, or an odd number of 3 or more")


def indices_to_connectE4(indices: npt.ArrayLike, connect: Optional[npt.ArrayLike] = None) -> Nodes:
    """Elements of 4 nodes, the inner ones last, along a list of nodes. Returns (m, 4)."""
    return _append_elements(4, indices, connect, "must be none, or 4, 7, 10, ...")


def split_into_linear(connect_in: npt.ArrayLike, connect_out: Optional[npt.ArrayLike] = None) -> Nodes:
    """Two elements of two nodes for each element of three, behind those of connect_out. Returns (m, 2)."""
    a = Arguments("split_into_linear")
    old = a.elements("connect_out", () if connect_out is None else connect_out)
    status, result = _core.split_into_linear(a.elements("connect_in", connect_in, 3), old)
    a.check(
        status,
        {-1: ("connect_in", "must have shape (m, 3)"), -2: ("connect_out", "must have shape (m, 2)")},
    )
    out: Nodes = result
    return out


def convert_into_linear(connect: npt.ArrayLike) -> Nodes:
    """The elements cut down to their two end nodes, from shape (m, 3) or more to (m, 2)."""
    a = Arguments("convert_into_linear")
    elements = a.elements("connect", connect)
    if len(elements) == 0:
        return np.empty((0, 2), np.uint32)
    status, result = _core.convert_into_linear(elements)
    a.check(status, {-1: ("connect", "must have interior nodes, shape (m, 3) or more")})
    out: Nodes = result
    return out


class HighOrderMesh(NamedTuple):
    """coords: (n, d) all nodes, the new ones last. connect: (m, k) elements, their end nodes first."""

    coords: Reals
    connect: Nodes


def _convert(
    name: str, order: int, coords: npt.ArrayLike, connect: npt.ArrayLike, *extra: int
) -> HighOrderMesh:
    a = Arguments(name)
    convert: Callable[..., Any] = getattr(_core, name)
    status, nodes, elements = convert(
        a.matrix("coords", coords, (2, 3, 1)), a.elements("connect", connect), *extra
    )
    a.check(status, {-2: ("connect", "must hold numbers of nodes that there are")})
    return HighOrderMesh(nodes, elements if len(elements) > 0 else np.empty((0, order), np.uint32))


def convert_into_high_order(
    coords: npt.ArrayLike, connect: npt.ArrayLike, extra_nodes: SupportsIndex
) -> HighOrderMesh:
    """Give each element interior nodes at equal distances between its ends.

    coords: (n, d), d = 1, 2 or 3. connect: (m, 2) or more. extra_nodes: interior nodes per element; 0 leaves
    the elements as they are.
    """
    count = Arguments("convert_into_high_order").count("extra_nodes", extra_nodes)
    return _convert("convert_into_high_order", count + 2, coords, connect, count)


def convert_into_quadratic(coords: npt.ArrayLike, connect: npt.ArrayLike) -> HighOrderMesh:
    """Give each element a node in its middle. Returns elements of shape (m, 3)."""
    return _convert("convert_into_quadratic", 3, coords, connect)


def convert_into_cubic(coords: npt.ArrayLike, connect: npt.ArrayLike) -> HighOrderMesh:
    """Give each element two interior nodes. Returns elements of shape (m, 4)."""
    return _convert("convert_into_cubic", 4, coords, connect)


def flip(connect: npt.ArrayLike) -> Nodes:
    """The elements with the order of their nodes reversed."""
    result: Nodes = _core.flip(Arguments("flip").elements("connect", connect))[1]
    return result


class Orientation(NamedTuple):
    """connect: (m, 2) elements; neighbors: (m, 2) their neighbours; turns: how many turns were made."""

    connect: Nodes
    neighbors: Nodes
    turns: int


def mesh_reorient(
    connect: npt.ArrayLike,
    neighbors: Optional[npt.ArrayLike] = None,
    start: SupportsIndex = 0,
    *,
    all_components: bool = True,
) -> Orientation:
    """Orient the elements of a line so that each starts where the one before ends.

    connect: (m, 2) elements; further columns are left out.
    neighbors: (m, 2) the element that meets each at its second and at its first node, 4294967295 where there is
        none; found if not given.
    start: the element that is not turned.
    all_components: treat also the parts of the mesh that are not joined to it and have an element behind it.
    """
    a = Arguments("mesh_reorient")
    elements = np.ascontiguousarray(a.elements("connect", connect)[:, :2])
    if neighbors is not None:
        sides = a.elements("neighbors", neighbors)
    elif len(elements) == 0:
        sides = elements
    else:
        status, sides = _core.get_neighbors(elements)
        a.check(status, {})
    first = a.count("start", start)
    status, lines, new_sides = _core.mesh_reorient(
        elements, sides, first, a.flag("all_components", all_components)
    )
    a.check(
        status,
        {
            -1: ("connect", "holds the node 4294967295"),
            -2: ("neighbors", "has another shape, or names one that does not have the node in question"),
            -3: ("start", "is no element"),
        },
    )
    return Orientation(lines, new_sides, int(status))
