"""Meshing of single lines, straight lines, splines and networks."""

from __future__ import annotations

from typing import Dict, NamedTuple, Optional, Sequence, SupportsIndex, Tuple

import numpy as np
import numpy.typing as npt

from . import _core
from ._arguments import UNLIMITED, Arguments, Nodes, Real, Reals, Statuses

_ROWS = ("coords", "must have shape (n, 2) or (n, 3)")
_CHAIN = ("indices", "must hold at least 2 numbers of nodes that there are")
_LINE = (
    "indices",
    "must hold at least 2 numbers of nodes that there are, along a line of finite length above 0",
)
_LIMITS = ("min_elements, max_elements", "min_elements is 0 or above max_elements")


def _targets_fault(metrics: Optional[npt.ArrayLike]) -> Tuple[str, str]:
    if metrics is None:
        return "sizes", "must be positive and finite, one per chain entry"
    return "metrics", "must be finite and positive definite tensors, one per chain entry"


class LineMesh(NamedTuple):
    """A mesh of a line.

    coords: (n, d) all nodes, those given first, then the new ones.
    indices: (k,) the nodes of the mesh in the order of travel.
    params: (k,) the parameter of each.
    sizes: (k,) the target size at each, or None if the line was meshed by tensors.
    metrics: (k, 3) or (k, 6) the tensor at each, or None if it was meshed by sizes.
    """

    coords: Reals
    indices: Nodes
    params: Reals
    sizes: Optional[Reals]
    metrics: Optional[Reals]


class SplineMesh(NamedTuple):
    """A mesh of a spline: as LineMesh, and the distance by which the spline strays from the chain's segments."""

    coords: Reals
    indices: Nodes
    params: Reals
    sizes: Optional[Reals]
    metrics: Optional[Reals]
    deviation: float


class NodeList(NamedTuple):
    """Nodes drawn along a line.

    coords: (n, d) all nodes, those given first, then the new ones.
    indices: (k,) the nodes of the line in the order of travel.
    """

    coords: Reals
    indices: Nodes


class Network(NamedTuple):
    """A mesh of a network of lines.

    coords: (n, d) all nodes, those given first, then the new ones.
    connect: (m, 2) the elements by their end nodes.
    colors: (m,) the colour of each element, the first along its chain or a new one; None unless colors, sizes,
        hard_nodes or hard_edges were given.
    hard_nodes: (k,) the nodes at which the lines were cut, ascending; None unless sizes, hard_nodes or hard_edges
        were given.
    """

    coords: Reals
    connect: Nodes
    colors: Optional[Nodes]
    hard_nodes: Optional[Nodes]


def mesh_line(
    coords: npt.ArrayLike,
    sizes: Optional[npt.ArrayLike] = None,
    *,
    metrics: Optional[npt.ArrayLike] = None,
    indices: Optional[npt.ArrayLike] = None,
    params: Optional[npt.ArrayLike] = None,
    force_even: bool = False,
    min_elements: SupportsIndex = 1,
    max_elements: SupportsIndex = UNLIMITED,
    deviation_tolerance: Real = 0.0,
    min_size: Real = 0.0,
) -> LineMesh:
    """Mesh a polyline by target sizes or metric tensors at its nodes.

    The mesh runs from the first to the last node of the chain; the nodes between do not belong to it, unless a
    positive tolerance pins them.

    coords: (n, d) node positions, d = 2 or 3, in length units of the model.
    sizes: a target size per chain entry, or one for all, in the same unit.
    metrics: instead of sizes, a tensor per chain entry: rows of 3 or 6 numbers, or matrices (n, d, d).
    indices: the chain, node numbers in the order of travel; all nodes if not given.
    params: a parameter per chain entry, non-decreasing; the normalised chord length if not given.
    force_even: ask for an even number of elements.
    min_elements, max_elements: limits of the number of elements. For a ring take 3.
    deviation_tolerance: 0: the sizes alone count. Positive: where a node of the chain lies this far from the
        mesh, in length units, the line is meshed anew. Negative: sizes are bounded by curvature, a chord's
        sagitta being minus this tolerance relative to the radius.
    min_size: floor of the bound by curvature.

    Raises ValueError, which names the argument, and MemoryError.

    >>> mesh = mesh_line([[0, 0], [10, 0]], [1, 0.1])
    >>> len(mesh.indices) - 1
    26
    """
    a = Arguments("mesh_line")
    nodes = a.coords(coords)
    chain = a.chain(indices, nodes)
    targets = a.targets(sizes, metrics, len(chain), nodes.shape[1])
    given = None if params is None else a.reals("params", params)
    limits = _core.mesh_limits(
        a.flag("force_even", force_even),
        a.count("min_elements", min_elements),
        a.count("max_elements", max_elements),
        a.real("deviation_tolerance", deviation_tolerance),
        a.real("min_size", min_size),
    )
    status, all_nodes, mesh, at, out = _core.mesh_line(nodes, chain, given, targets, limits)
    statuses: Dict[int, Tuple[str, str]] = {-1: _ROWS, -2: _CHAIN}
    if given is None:
        statuses.update({-2: _LINE, -3: _targets_fault(metrics), -5: _LIMITS})
    else:
        fault = "must not decrease, with a value per chain entry and no NaN"
        statuses.update({-3: ("params", fault), -4: _targets_fault(metrics), -6: _LIMITS})
    a.check(status, statuses)
    by_sizes = metrics is None
    return LineMesh(all_nodes, mesh, at, out if by_sizes else None, None if by_sizes else out)


def mesh_spline(
    coords: npt.ArrayLike,
    sizes: Optional[npt.ArrayLike] = None,
    *,
    metrics: Optional[npt.ArrayLike] = None,
    indices: Optional[npt.ArrayLike] = None,
    closed: bool = False,
    force_even: bool = False,
    min_elements: SupportsIndex = 1,
    max_elements: SupportsIndex = UNLIMITED,
    deviation_tolerance: Real = 0.0,
    min_size: Real = 0.0,
    default_size: Real = 0.0,
    max_gradation: Real = 0.0,
) -> SplineMesh:
    """Mesh the smooth curve through nodes, bounded by its curvature and by a limit on the growth of sizes.

    coords: (n, d) node positions, d = 2 or 3.
    sizes, metrics: targets as in mesh_line, one per node of coords, or per entry of indices if that is given.
    indices: the chain with a guide node before its first and one behind its last node: a, a, b, ..., z, z for
        an open curve, z, a, b, ..., z, a, b for a closed one. If not given, the curve runs through all nodes.
    closed: the curve returns from the last node to the first; not with indices.
    deviation_tolerance: 0: the sizes alone count. Positive: the distance that a chord may keep from the curve,
        in length units. Negative: minus that distance, relative to the radius of curvature.
    min_size: floor of the bound by curvature. It keeps the mesh within reason where the curve has a kink.
    default_size: with a max_gradation, the size everywhere but at the nodes of the curve.
    max_gradation: growth of sizes per length along the curve, but not across the joint of a closed one; 0 sets no
        limit.
    force_even, min_elements, max_elements: as in mesh_line.

    Raises ValueError, which names the argument, and MemoryError.
    """
    a = Arguments("mesh_spline")
    nodes = a.coords(coords)
    is_closed = a.flag("closed", closed)
    if indices is None:
        n = len(nodes)
        targets = a.targets(sizes, metrics, n, nodes.shape[1])
        if n < 2 or len(targets) < n:
            a.fail(*(("coords", "must hold at least 2 nodes") if n < 2 else _targets_fault(metrics)))
        ring = [n - 1, *range(n), 0, 1] if is_closed else [0, *range(n), n - 1]
        chain = np.array(ring, dtype=np.uint32)
        targets = np.ascontiguousarray(targets[chain])
    else:
        if is_closed:
            a.reject("closed", "excludes indices, whose guide nodes close the curve")
        chain = a.nodes("indices", indices)
        targets = a.targets(sizes, metrics, len(chain), nodes.shape[1])
    limits = _core.mesh_limits(
        a.flag("force_even", force_even),
        a.count("min_elements", min_elements),
        a.count("max_elements", max_elements),
        a.real("deviation_tolerance", deviation_tolerance),
        a.real("min_size", min_size),
    )
    status, all_nodes, mesh, at, out, deviation = _core.mesh_spline(
        nodes,
        chain,
        targets,
        limits,
        a.real("default_size", default_size),
        a.real("max_gradation", max_gradation),
    )
    a.check(
        status,
        {
            -1: ("coords", "a position is not finite, or the curve is infinitely long"),
            -2: ("indices", "must hold at least 4 numbers of nodes that there are, guides included"),
            -3: _targets_fault(metrics),
            -5: _LIMITS,
            -8: ("min_size", "must not be negative or NaN"),
        },
    )
    by_sizes = metrics is None
    return SplineMesh(all_nodes, mesh, at, out if by_sizes else None, None if by_sizes else out, deviation)


def spline_point(coords: npt.ArrayLike, span: Sequence[SupportsIndex], t: Real) -> Reals:
    """Point of a spline at a parameter.

    coords: (n, d) node positions, d = 2 or 3.
    span: four nodes: the guide before the span, the nodes from which and to which it runs, the guide behind.
        Where a guide is the node beside it, the curve has a free end there.
    t: 0 gives the second of them, 1 the third; what is outside extrapolates.

    Returns the position, shape (d,).
    """
    a = Arguments("spline_point")
    nodes = a.coords(coords)
    four = a.counts("span", span)
    if len(four) != 4:
        a.fail("span", "must hold 4 nodes")
    status, point = _core.spline_point(nodes, four, a.real("t", t))
    a.check(status, {-k: ("span", f"entry {k - 2} is no node") for k in range(2, 6)})
    return point


def mesh_straight(
    coords: npt.ArrayLike,
    sizes: Optional[npt.ArrayLike] = None,
    *,
    metrics: Optional[npt.ArrayLike] = None,
    element_count: Optional[SupportsIndex] = None,
    indices: Optional[npt.ArrayLike] = None,
    segment: Optional[Sequence[SupportsIndex]] = None,
    force_even: bool = False,
) -> NodeList:
    """Mesh each segment of a polyline on its own, so that all its nodes stay.

    coords: (n, d) node positions, d = 2 or 3.
    sizes, metrics: targets as in mesh_line; or instead of both
    element_count: about that many elements of one size; 0 makes none.
    indices: the chain; all nodes if not given.
    segment: instead of a chain, two nodes, with a pair of sizes or an element_count that is met exactly; or
        three nodes with an element_count.
    force_even: ask for an even number of elements on each segment; not for a segment by element_count.
    """
    a = Arguments("mesh_straight")
    nodes = a.coords(coords)
    if sizes is None and metrics is None and element_count is None:
        a.reject("sizes, metrics, element_count", "give one of them")
    if element_count is not None and (sizes is not None or metrics is not None):
        a.reject("element_count", "excludes sizes and metrics")
    statuses: Statuses
    if segment is not None:
        if indices is not None:
            a.reject("segment", "excludes indices")
        ends = a.counts("segment", segment)
        if len(ends) not in (2, 3) or (len(ends) == 3 and element_count is None):
            a.fail("segment", "must hold 2 nodes, or 3 with an element_count")
        if element_count is not None:
            if a.flag("force_even", force_even):
                a.reject("force_even", "excludes a segment by element_count")
            result = _core.mesh_segment_count(nodes, ends, a.count("element_count", element_count))
        else:
            if metrics is not None:
                a.reject("segment", "excludes metrics; give the two nodes as indices")
            assert sizes is not None
            pair = a.per_entry("sizes", sizes, 2)
            if len(pair) != 2:
                a.fail("sizes", "must be a number or a pair")
            result = _core.mesh_segment_sizes(
                nodes, ends, [float(h) for h in pair], a.flag("force_even", force_even)
            )
        at_one_place = ("segment", "holds a node that there is not, or nodes at one place")
        positive = ("sizes", "must be positive and finite")
        statuses = {
            -1: _ROWS,
            -2: at_one_place,
            -3: at_one_place,
            -4: at_one_place if element_count is not None else positive,
            -5: positive,
        }
    else:
        chain = a.chain(indices, nodes)
        fault = _targets_fault(metrics)
        if element_count is not None:
            fault = ("indices", "the line has no length")
            count = a.count("element_count", element_count)
            result = _core.mesh_straight_count(nodes, chain, count, a.flag("force_even", force_even))
        else:
            targets = a.targets(sizes, metrics, len(chain), nodes.shape[1])
            result = _core.mesh_straight_chain(nodes, chain, targets, a.flag("force_even", force_even))
        statuses = {-1: _ROWS, -2: _CHAIN, -3: fault}
    status, all_nodes, mesh = result
    a.check(status, statuses)
    return NodeList(all_nodes, mesh)


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

    The lines are cut into chains where they end or meet, at corners, where colours change, at hard nodes and at
    the ends of hard edges; each chain is meshed anew between its ends, which stay.

    coords: (n, d) node positions, d = 2 or 3.
    connect: (m, 2) the elements by their end nodes.
    default_size: target size at nodes without one of their own; at the ends of chains no more than the shortest of
        them is long.
    sizes: target sizes by node number; may be short. Entries that are not positive do not count.
    colors: a colour per element; may be short. 4294967295 stands for none.
    hard_nodes: nodes to cut at.
    hard_edges: elements that pass into the new mesh as they are, by their rows in connect.
    force_even: ask for an even number of elements on each chain.
    max_angle: the largest change of direction that is no corner, in degrees, at most 90; a greater one acts as its
        supplement, so 180 makes a corner of every bend.
    deviation_tolerance: 0: held to all nodes of the lines, so that bent ones get no coarser. Positive: by a spline
        that strays no farther from the lines than this distance, or else by the lines with this tolerance.
        Negative: by a spline, elements being as short as its curvature asks.
    max_gradation: growth of sizes per length on splines; 0 sets no limit.
    min_size: segments not longer than this make no corners; floor of the bounds on sizes by curvature and by the
        lengths of chains.
    min_elements, max_elements: limits for each chain.

    Raises ValueError, which names the argument, and MemoryError.
    """
    a = Arguments("remesh_lines")
    nodes = a.coords(coords)
    elements = a.elements("connect", connect)
    size = a.real("default_size", default_size)
    if len(elements) > 0 and not size >= 0:
        a.fail("default_size", "must not be negative or NaN")
    fewest = a.count("min_elements", min_elements)
    limits = _core.remesh_limits(
        a.flag("force_even", force_even),
        a.real("max_angle", max_angle),
        a.real("deviation_tolerance", deviation_tolerance),
        a.real("max_gradation", max_gradation),
        a.real("min_size", min_size),
        fewest,
        a.count("max_elements", max_elements),
    )
    none: Sequence[int] = ()
    own_colors = a.nodes("colors", none if colors is None else colors)
    has_hard = any(x is not None for x in (sizes, hard_nodes, hard_edges))
    shift = 0
    if has_hard:
        given = a.reals("sizes", none if sizes is None else sizes)
        breaks = a.nodes("hard_nodes", none if hard_nodes is None else hard_nodes)
        edges = a.nodes("hard_edges", none if hard_edges is None else hard_edges)
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
        -1: ("coords", "a position is not finite, or a line is infinitely long"),
        -2: ("connect", "holds a node that there is not"),
        -3: ("default_size, sizes", "must be positive and finite where a chain needs them"),
        -5: _LIMITS,
        -7: ("hard_edges", "must be rows of connect"),
        -9 + shift: ("max_angle", negative),
        -11 + shift: ("max_gradation", negative),
        -12 + shift: ("min_size", negative),
        -13 + shift: _LIMITS,
    }
    if status in (-5, -5 + shift) and fewest == 0:
        a.fail(*_LIMITS)
    if status == -2 and elements[:, :2].max() < len(nodes):  # from the mesher of a chain
        if np.isfinite(nodes[elements[:, :2]]).all():
            a.fail("connect", "holds a line of length 0, which needs another deviation_tolerance than 0")
        status = -1
    a.check(status, statuses)
    return Network(
        all_nodes,
        lines,
        new_colors if has_hard or colors is not None else None,
        new_breaks if has_hard else None,
    )
