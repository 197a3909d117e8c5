"""Meshes networks of lines."""

from __future__ import annotations

import sys
from typing import Dict, List, Optional, Sequence, Set, SupportsIndex

import numpy as np
import numpy.typing as npt

from . import _core
from ._arguments import UNLIMITED, Arguments, Nodes, Real, Reals
from ._results import Network
from ._rules import LARGEST_COORDINATE, OWN_SIZE, number_of, shown, valid_number


Rows = npt.NDArray[np.intp]


def _fail_flat(a: Arguments, rows: Rows, ends: Nodes, coords: Reals) -> None:
    """Fail at the first of these elements, all of which are in lines of length 0."""
    place, rest = coords[ends[0, 0]], "each line must have a positive length"
    if ends[0, 0] == ends[0, 1]:
        a.fail(f"connect[{rows[0]}]", f"joins node {ends[0, 0]} to itself; {rest}")
    here = [f"connect[{row}]" for row in rows[(coords[ends[:, 0]] == place).all(axis=1)]]
    more = f" and {len(here) - 3} more" if len(here) > 3 else ""
    verb = "is" if len(here) == 1 else "are"
    a.fail(", ".join(here[:3]) + more, f"{verb} a line of length 0 at {shown(place)}; {rest}")


def _outside(ends: Nodes, rows: Rows, goes_on: npt.NDArray[np.bool_], breaks: Nodes) -> Rows:
    """Those of the rows from which no path that avoids break nodes leads to a node that goes on."""
    rows_at: Dict[int, List[int]] = {}
    is_break = np.isin(ends[rows], breaks)
    for row, nodes, cut in zip(rows.tolist(), ends[rows].tolist(), is_break.tolist()):
        for node in (nodes[k] for k in (0, 1) if not cut[k]):
            rows_at.setdefault(node, []).append(row)
    found: Set[int] = set()
    queue = [node for node in rows_at if goes_on[node]]
    while queue:
        met = rows_at.pop(queue.pop(), [])
        found.update(met)
        queue += ends[met].ravel().tolist()  # break nodes have no rows here
    return np.setdiff1d(rows, list(found))


def _fail_at_chain(
    a: Arguments,
    coords: Reals,
    connect: Nodes,
    default_size: float,
    sizes: Reals,
    colors: Nodes,
    cuts: Nodes,
    kept: Nodes,
    limits: _core.remesh_limits,
) -> None:
    """Fail at a chain of length 0, or at a node of a chain without a size."""
    ends = connect[:, :2]
    is_flat = (coords[ends[:, 0]] == coords[ends[:, 1]]).all(axis=1)
    is_flat[kept] = False
    if is_flat.any():
        # Only the nodes where lines are cut are wanted. With these sizes, a chain of length 0 can be meshed.
        limits.deviation_tolerance = sys.float_info.max
        large = np.full(len(coords), LARGEST_COORDINATE)
        status, *_, breaks = _core.remesh_hard_lines(coords, connect, 1.0, large, colors, cuts, kept, limits)
        a.check(status)
        goes_on = np.zeros(len(coords), bool)  # nodes inside chains that have a length
        goes_on[ends[~is_flat]] = True
        goes_on[breaks] = False
        rows = _outside(ends, np.flatnonzero(is_flat), goes_on, breaks)
        if len(rows) > 0:
            _fail_flat(a, rows, ends[rows], coords)
    if default_size == 0:
        own = np.zeros(len(coords))
        own[: len(sizes)] = sizes
        is_bare = own[np.delete(ends, kept, axis=0)] <= 0
        if is_bare.any():
            node = np.delete(ends, kept, axis=0)[is_bare][0]
            a.fail("default_size", f"is 0; it must be positive, because node {node} has no size of its own")


def remesh_lines(
    coords: npt.ArrayLike,
    connect: npt.ArrayLike,
    default_size: Real,
    *,
    sizes: Optional[npt.ArrayLike] = None,
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

    Raises ValueError, which names the argument, and MemoryError.
    """
    a = Arguments("remesh_lines")
    nodes = a.coords(coords)
    elements = a.elements("connect", connect, of=nodes)
    size = a.real("default_size", default_size)
    limits = _core.remesh_limits(
        a.flag("force_even", force_even),
        a.real("max_angle", max_angle),
        a.real("deviation_tolerance", deviation_tolerance),
        a.real("max_gradation", max_gradation),
        a.real("min_size", min_size),
        *a.limits(min_elements, max_elements),
    )
    none: Sequence[int] = ()
    own_sizes = a.reals("sizes", none if sizes is None else sizes, OWN_SIZE)
    if len(own_sizes) > len(nodes):
        a.fail("sizes", f"has {len(own_sizes)} entries; coords has only {number_of(len(nodes), 'node')}")
    own_colors = a.nodes("colors", none if colors is None else colors)
    node, row = valid_number("node", len(nodes), "coords"), valid_number("row", len(elements), "connect")
    cuts = a.nodes("hard_nodes", none if hard_nodes is None else hard_nodes, node)
    kept = a.nodes("hard_edges", none if hard_edges is None else hard_edges, row)
    status, all_nodes, lines, new_colors, breaks = _core.remesh_hard_lines(
        nodes, elements, size, own_sizes, own_colors, cuts, kept, limits
    )
    if status in (-2, -3):  # of the mesher of a chain; all other faults have been reported
        _fail_at_chain(a, nodes, elements, size, own_sizes, own_colors, cuts, kept, limits)
    a.check(status)
    if len(lines) == 0:  # the library does not change the lists of an empty network
        new_colors, breaks = new_colors[:0], breaks[:0]
    return Network(all_nodes, lines, new_colors, breaks)
