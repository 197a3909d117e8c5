"""Lines drawn by a node that is moved."""

from __future__ import annotations

from typing import Any, Optional, SupportsIndex, Tuple, Union

import numpy as np
import numpy.typing as npt

from . import _core
from ._arguments import Arguments, Reals
from ._meshing import NodeList

Start = Union[SupportsIndex, npt.ArrayLike]


def _steps(a: Arguments, element_count: Optional[SupportsIndex], sizes: Optional[npt.ArrayLike]) -> Any:
    if (element_count is None) == (sizes is None):
        a.reject("element_count, sizes", "give one of them")
    if element_count is not None:
        return a.count("element_count", element_count)
    assert sizes is not None
    pair = a.per_entry("sizes", sizes, 2)
    if len(pair) != 2:
        a.fail("sizes", "must be a number or a pair")
    return [float(pair[0]), float(pair[1])]


def _start(
    a: Arguments, start: Start, coords: Optional[npt.ArrayLike], dimension: int
) -> Tuple[Reals, Union[int, Reals]]:
    if coords is None:
        nodes: Reals = np.empty((0, dimension))
    else:
        nodes = a.matrix("coords", coords, (dimension,))
    if a.is_number("start", start):  # type: ignore[arg-type]
        return nodes, a.count("start", start)  # type: ignore[arg-type]
    return nodes, a.vector("start", start, dimension)  # type: ignore[arg-type]


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

    start: a node of coords, or a point, which becomes a new node in front of the others.
    vector: the path, 2 or 3 numbers.
    element_count: the number of steps; or
    sizes: the target sizes at the start and the end, or one for both.
    coords: (n, d) the nodes that there are; none if not given.
    force_even: with sizes, ask for an even number of steps.
    """
    a = Arguments("extrude_translate")
    path = a.vector("vector", vector)
    steps = _steps(a, element_count, sizes)
    with np.errstate(over="ignore"):
        if sizes is not None and np.isinf(path @ path):
            a.fail("vector", "is too long")
    nodes, origin = _start(a, start, coords, len(path))
    status, all_nodes, line = _core.extrude_translate(
        nodes, origin, path, steps, a.flag("force_even", force_even)
    )
    positive = ("sizes", "must be positive")
    a.check(
        status,
        {-2: ("start", "is no node"), -3: ("vector", "has length 0"), -4: positive, -5: positive},
    )
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
    """Draw a line of nodes about a centre in the plane, or about an axis in space.

    start: a node of coords, or a point, which becomes a new node in front of the others.
    center: the centre of the rotation, or a point of its axis.
    rotation: in the plane the angle in radians, counter-clockwise; in space a vector along the axis whose
        length is the angle, by the right-hand rule.
    element_count, sizes, coords, force_even: as in extrude_translate.
    """
    a = Arguments("extrude_rotate")
    middle = a.vector("center", center)
    steps = _steps(a, element_count, sizes)
    nodes, origin = _start(a, start, coords, len(middle))
    if len(middle) == 2:
        if not a.is_number("rotation", rotation):
            a.fail("rotation", "must be an angle in the plane")
        angle = a.real("rotation", rotation)  # type: ignore[arg-type]
        status, all_nodes, line = _core.extrude_rotate_2d(
            nodes, origin, middle, angle, steps, a.flag("force_even", force_even)
        )
    else:
        axis = a.vector("rotation", rotation, 3)
        if steps == 0:
            return NodeList(nodes.copy(), np.empty(0, np.uint32))
        status, all_nodes, line = _core.extrude_rotate_3d(
            nodes, origin, middle, axis, steps, a.flag("force_even", force_even)
        )
    positive = ("sizes", "must be positive")
    a.check(
        status,
        {-2: ("start", "is no node"), -3: ("rotation", "draws no path"), -5: positive, -6: positive},
    )
    return NodeList(all_nodes, line)
