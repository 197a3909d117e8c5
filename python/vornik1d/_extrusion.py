"""Draws lines by moving a node."""

from __future__ import annotations

from typing import Any, Optional, SupportsIndex, Tuple, Union

import numpy as np
import numpy.typing as npt

from . import _core
from ._arguments import Arguments, Reals
from ._foresee import refuse_extrusion
from ._results import NodeList
from ._rules import shown, valid_number

Start = Union[SupportsIndex, npt.ArrayLike]


def _steps(a: Arguments, element_count: Optional[SupportsIndex], sizes: Optional[npt.ArrayLike]) -> Any:
    a.one_of(element_count=element_count, sizes=sizes)
    if element_count is not None:
        return a.count("element_count", element_count)
    assert sizes is not None
    pair = a.per_entry("sizes", sizes, 2, "end of the line")
    return [float(pair[0]), float(pair[1])]


def _start(
    a: Arguments, start: Start, coords: Optional[npt.ArrayLike], dimension: int
) -> Tuple[Reals, Union[int, Reals]]:
    if coords is None:
        nodes: Reals = np.empty((0, dimension))
    else:
        nodes = a.matrix("coords", coords, (dimension,))
    if a.is_number("start", start):  # type: ignore[arg-type]
        node = a.count("start", start, valid_number("node", len(nodes), "coords"))  # type: ignore[arg-type]
        a.chain([node], nodes)
        return nodes, node
    return nodes, a.vector("start", start, dimension)  # type: ignore[arg-type]


def _arm(nodes: Reals, origin: Union[int, Reals], center: Reals) -> Reals:
    """From the centre of a rotation to its start; 0 if the start is not a valid node."""
    if isinstance(origin, int):
        origin = nodes[origin] if origin < len(nodes) else center
    arm: Reals = origin - center
    return arm


def extrude_translate(
    start: Start,
    vector: npt.ArrayLike,
    *,
    element_count: Optional[SupportsIndex] = None,
    sizes: Optional[npt.ArrayLike] = None,
    coords: Optional[npt.ArrayLike] = None,
    force_even: bool = False,
) -> NodeList:
    """Draw a line of nodes along a vector.

    Parameters
    ----------
    start
        a node of coords, or the position of a first new node.
    vector
        the path from the start to the end, 2 or 3 numbers.
    element_count
        the number of elements.
    sizes
        instead of element_count, the target sizes at the start and the end, or one size for both.
    coords
        (n, d) existing nodes; none if not given.
    force_even
        with sizes, make the number of elements even.

    Returns
    -------
    NodeList

    Raises
    ------
    ValueError, TypeError
        The message names the argument.
    MemoryError
        There is not enough memory.

    Examples
    --------
    >>> import vornik1d
    >>> vornik1d.extrude_translate([0, 0], [2, 0], element_count=4)
    NodeList: 5 nodes, 4 elements, length 2, elements 0.5 long
    """
    a = Arguments("extrude_translate")
    path = a.vector("vector", vector)
    steps = _steps(a, element_count, sizes)
    nodes, origin = _start(a, start, coords, len(path))
    refuse_extrusion("extrude_translate", path, steps)
    status, all_nodes, line = _core.extrude_translate(
        nodes, origin, path, steps, a.flag("force_even", force_even)
    )
    a.check(status, {-3: ("vector", f"is {shown(path)}; its length must be positive")})
    return NodeList(all_nodes, line)


def extrude_rotate(
    start: Start,
    center: npt.ArrayLike,
    rotation: npt.ArrayLike,
    *,
    element_count: Optional[SupportsIndex] = None,
    sizes: Optional[npt.ArrayLike] = None,
    coords: Optional[npt.ArrayLike] = None,
    force_even: bool = False,
) -> NodeList:
    """Draw an arc of nodes around a centre in the plane, or around an axis in space.

    Parameters
    ----------
    start
        a node of coords, or the position of a first new node.
    center
        the centre of the rotation in the plane, or a point on its axis in space.
    rotation
        in the plane, the angle in radians, counter-clockwise. In space, a vector along the axis; its length
        is the angle in radians, by the right-hand rule.
    element_count, sizes, coords, force_even
        as in extrude_translate.

    Returns
    -------
    NodeList

    Raises
    ------
    ValueError, TypeError
        The message names the argument.
    MemoryError
        There is not enough memory.

    Examples
    --------
    >>> import vornik1d
    >>> vornik1d.extrude_rotate([1, 0], [0, 0], 1.5, element_count=2)
    NodeList: 3 nodes, 2 elements, length 1.465, elements 0.7325 long
    """
    a = Arguments("extrude_rotate")
    middle = a.vector("center", center)
    steps = _steps(a, element_count, sizes)
    nodes, origin = _start(a, start, coords, len(middle))
    if len(middle) == 2:
        if not a.is_number("rotation", rotation):
            a.fail("rotation", "must be a number, the angle in radians, because center is in the plane")
        angle = a.real("rotation", rotation)  # type: ignore[arg-type]
        refuse_extrusion("extrude_rotate", angle * _arm(nodes, origin, middle), steps)
        status, all_nodes, line = _core.extrude_rotate_2d(
            nodes, origin, middle, angle, steps, a.flag("force_even", force_even)
        )
    else:
        axis = a.vector("rotation", rotation, 3)
        refuse_extrusion("extrude_rotate", np.cross(_arm(nodes, origin, middle), axis), steps)
        if steps == 0:
            return NodeList(nodes.copy(), np.empty(0, np.uint32))
        status, all_nodes, line = _core.extrude_rotate_3d(
            nodes, origin, middle, axis, steps, a.flag("force_even", force_even)
        )
    if status == -3:
        rest = "the path must have a positive length"
        if np.any(rotation):
            place = nodes[origin] if isinstance(origin, int) else origin
            a.fail("start", f"is at {shown(place)}, on the axis of rotation; {rest}")
        a.fail("rotation", f"is {shown(np.asarray(rotation)[()])}; {rest}")
    a.check(status)
    return NodeList(all_nodes, line)
