"""Meshes networks of lines."""

from __future__ import annotations

from typing import Optional, Sequence, SupportsIndex

import numpy as np
import numpy.typing as npt

from . import _core
from ._arguments import LIMITS, UNLIMITED, Arguments, Real
from ._foresee import NetworkRequest
from ._results import Network
from ._sizes import Sizes, at_nodes


def remesh_lines(
    coords: npt.ArrayLike,
    connect: npt.ArrayLike,
    default_size: Real,
    *,
    sizes: Optional[Sizes] = None,
    colors: Optional[npt.ArrayLike] = None,
    hard_nodes: Optional[npt.ArrayLike] = None,
    hard_edges: Optional[npt.ArrayLike] = None,
    force_even: bool = False,
    max_angle: Real = 40.0,
    deviation_tolerance: Real = 0.0,
    max_gradation: Real = 0.0,
    min_size: Real = 0.0,
    min_elements: SupportsIndex = 1,
    max_elements: SupportsIndex = UNLIMITED,
) -> Network:
    """Replace a mesh of lines by one whose elements follow target sizes.

    The lines are cut into chains at these nodes: line ends, nodes where lines meet, corners, changes of colour,
    hard nodes and the ends of hard edges. Each chain is meshed again between its two ends. The ends stay.

    coords: (n, d) node positions, d = 2 or 3.
    connect: (m, 2) the elements.
    default_size: target size at nodes that have no size of their own; at a chain end, at most the length of the
        shortest chain that meets there.
    sizes: target sizes by node number; nodes after the last entry have no size of their own. Entries that are not
        positive are ignored.
    colors: a colour per element; elements after the last entry have no colour. 4294967295 also means no colour.
    hard_nodes: nodes at which to cut.
    hard_edges: elements to keep unchanged, by their rows in connect.
    force_even: make the number of elements on each chain even.
    max_angle: the largest change of direction that is not a corner, in degrees, at most 90. A larger angle a acts
        as 180 - a, so 180 makes every bend a corner.
    deviation_tolerance: how far the new mesh may lie from the lines.
        0: the mesh keeps the bends of the lines, so bent lines do not become coarser.
        Positive: a distance in length units. The mesh follows a spline if the spline stays within this distance
        of the lines, otherwise the lines.
        Negative: the mesh follows a spline, and its curvature bounds the sizes as in mesh_spline.
    max_gradation: the largest growth of sizes per length on splines; 0 sets no limit.
    min_size: segments of at most this length make no corners. Curvature and the lengths of chains do not bound
        sizes below this value.
    min_elements, max_elements: limits for each chain.

    sizes can also be a function of positions, shape (n, d), that returns n sizes. It is evaluated at the nodes of the
    elements only, since additional nodes would change splines and corners. MeshWarning says where it is far from linear
    along an element.

    Raises ValueError, which names the argument, and MemoryError. Warns with MeshWarning if the mesh has fewer than half
    of the elements that the sizes ask for.
    """
    a = Arguments("remesh_lines")
    nodes = a.coords(coords)
    elements = a.elements("connect", connect)
    size = a.real("default_size", default_size)
    if len(elements) > 0 and not size >= 0:
        a.fail("default_size", "must not be negative or NaN")
    fewest = a.count("min_elements", min_elements)
    most = a.count("max_elements", max_elements)
    angle, tolerance = a.real("max_angle", max_angle), a.real("deviation_tolerance", deviation_tolerance)
    gradation, least = a.real("max_gradation", max_gradation), a.real("min_size", min_size)
    limits = _core.remesh_limits(
        a.flag("force_even", force_even), angle, tolerance, gradation, least, fewest, most
    )
    none: Sequence[int] = ()
    own_colors = a.nodes("colors", none if colors is None else colors)
    has_hard = any(x is not None for x in (sizes, hard_nodes, hard_edges))
    shift = 0
    if callable(sizes):
        sizes = at_nodes("remesh_lines", sizes, nodes, elements)
    given = a.reals("sizes", none if sizes is None else sizes)
    breaks = a.nodes("hard_nodes", none if hard_nodes is None else hard_nodes)
    edges = a.nodes("hard_edges", none if hard_edges is None else hard_edges)
    request = NetworkRequest(
        nodes,
        elements,
        size,
        sizes=given,
        colors=own_colors,
        hard_nodes=breaks,
        hard_edges=edges,
        angle=angle,
        tolerance=tolerance,
        gradation=gradation,
        min_size=least,
        most=most,
    )
    if has_hard:
        result = _core.remesh_hard_lines(nodes, elements, size, given, own_colors, breaks, edges, limits)
    elif colors is not None:
        shift = 3
        result = _core.remesh_colored_lines(nodes, elements, size, own_colors, limits)
    else:
        shift = 4
        result = _core.remesh_lines(nodes, elements, size, limits)
    status, all_nodes, lines, new_colors, new_breaks = result
    negative = "must not be negative or NaN"
    statuses = {
        -1: ("coords", "must be finite, and so must the length of each line"),
        -2: ("connect", "must contain valid node numbers, below the number of coords"),
        -3: ("default_size, sizes", "must give a positive, finite size at each node of a chain"),
        -7: ("hard_edges", "must contain row numbers of connect"),
        -9 + shift: ("max_angle", negative),
        -11 + shift: ("max_gradation", negative),
        -12 + shift: ("min_size", negative),
        -13 + shift: LIMITS,
    }
    if status in (-5, -5 + shift) and fewest == 0:
        a.fail(*LIMITS)
    if status == -2 and elements[:, :2].max() < len(nodes):  # the status of the mesher of a chain
        if np.isfinite(nodes[elements[:, :2]]).all():
            a.fail("connect", "must not contain a line of length 0 if deviation_tolerance is 0")
        status = -1
    a.check(status, statuses)
    if len(lines) == 0:  # the library does not change the lists of an empty network
        new_colors, new_breaks = new_colors[:0], new_breaks[:0]
    request.compare(all_nodes, lines)
    return Network(
        all_nodes,
        lines,
        new_colors if has_hard or colors is not None else None,
        new_breaks if has_hard else None,
    )
