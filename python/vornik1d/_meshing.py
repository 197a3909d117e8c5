"""Meshes single lines, straight lines and splines."""

from __future__ import annotations

from typing import Dict, Optional, Sequence, SupportsIndex, Tuple

import numpy as np
import numpy.typing as npt

from . import _core
from ._arguments import LIMITS, UNLIMITED, Arguments, Real, Reals, Statuses
from ._foresee import LineRequest
from ._results import LineMesh, NodeList, SplineMesh
from ._sizes import SampledLine, Sizes, along_chain, mesh_segments

_CHAIN = ("indices", "must contain at least 2 valid node numbers, below the number of coords")
_LINE = (_CHAIN[0], _CHAIN[1] + "; the line must have a positive, finite length")


def _targets_fault(metrics: Optional[npt.ArrayLike]) -> Tuple[str, str]:
    if metrics is None:
        return "sizes", "must be positive and finite, one size per chain entry"
    return "metrics", "must be finite and positive definite, one tensor per chain entry"


def mesh_line(
    coords: npt.ArrayLike,
    sizes: Optional[Sizes] = None,
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

    The mesh starts at the first node of the chain and ends at the last. It leaves out the nodes between them,
    unless a positive tolerance keeps them.

    coords: (n, d) node positions, d = 2 or 3, in length units of the model.
    sizes: a target size per chain entry, or one size for all entries, in length units of the model; or a function
        of positions, see below.
    metrics: instead of sizes, a tensor per chain entry: rows of 3 or 6 numbers, or matrices (n, d, d).
    indices: the chain, node numbers in the order of travel; all nodes if not given.
    params: a parameter per chain entry, non-decreasing; the normalised chord length if not given.
    force_even: make the number of elements even.
    min_elements, max_elements: limits of the number of elements. Set min_elements to 3 for a ring.
    deviation_tolerance: how far the mesh may lie from the chain.
        0: only the sizes count.
        Positive: a distance in length units; the mesh keeps nodes of the chain that it would otherwise miss by
        this distance or more.
        Negative: minus the sagitta of an element (its largest distance from the curve) divided by the radius of
        curvature; for example -0.01 for 1 %. It bounds the sizes.
    min_size: curvature does not bound sizes below this value.

    sizes can also be a function of positions, shape (n, d), that returns n sizes. Each segment of the chain is bisected
    until its pieces are at most 2 sizes long and the size at the middle of a piece differs by at most 1 % from the mean
    of its ends, or the piece is half a size long. So a feature of the function can be missed if it is narrower than 2
    of the sizes beside it. The samples count like chain entries, but they are not part of the result. If a positive
    tolerance splits the chain at a sample, the mesh has a new node there. On a bent chain the mesh can blur a feature
    that is narrower than an element, as it does with chain entries. With a negative tolerance the function is
    evaluated at the nodes only.

    Raises ValueError, which names the argument, and MemoryError. Warns with MeshWarning if the mesh has fewer than half
    of the elements that the sizes ask for.

    >>> mesh = mesh_line([[0, 0], [10, 0]], [1, 0.1])
    >>> len(mesh.indices) - 1
    26
    """
    a = Arguments("mesh_line")
    nodes = a.coords(coords)
    chain = a.chain(indices, nodes)
    given = None if params is None else a.reals("params", params)
    even = a.flag("force_even", force_even)
    fewest, most = a.count("min_elements", min_elements), a.count("max_elements", max_elements)
    tolerance = a.real("deviation_tolerance", deviation_tolerance)
    sampled = None
    if callable(sizes) and metrics is None:
        sampled = SampledLine("mesh_line", sizes, nodes, chain, given, at_nodes_only=tolerance < 0)
        nodes, chain, given, targets = sampled.coords, sampled.chain, sampled.params, sampled.sizes
        fewest = sampled.fewest(even, fewest, most)
    else:
        targets = a.targets(sizes, metrics, len(chain), nodes.shape[1])  # type: ignore[arg-type]
    limits = _core.mesh_limits(even, fewest, most, tolerance, a.real("min_size", min_size))
    request = LineRequest(
        "mesh_line",
        nodes,
        chain,
        targets,
        most=most,
        params=given,
        has_passes=True,
        is_sampled=sampled is not None,
    )
    status, all_nodes, mesh, at, out = _core.mesh_line(nodes, chain, given, targets, limits)
    statuses: Dict[int, Tuple[str, str]]
    if given is None:
        statuses = {-2: _LINE, -3: _targets_fault(metrics), -5: LIMITS}
    else:
        fault = "must contain one value per chain entry, and must not decrease or contain NaN"
        statuses = {-2: _CHAIN, -3: ("params", fault), -4: _targets_fault(metrics), -6: LIMITS}
    a.check(status, statuses)
    request.compare(all_nodes, mesh, at)
    by_sizes = metrics is None
    result = LineMesh(all_nodes, mesh, at, out if by_sizes else None, None if by_sizes else out)
    return sampled.without_samples(result) if sampled is not None else result


def mesh_spline(
    coords: npt.ArrayLike,
    sizes: Optional[Sizes] = None,
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
    """Mesh a smooth curve through nodes. Its curvature and a limit on the growth of sizes can bound the sizes.

    coords: (n, d) node positions, d = 2 or 3.
    sizes, metrics: targets as in mesh_line, one per node of coords, or per entry of indices if that is given.
    indices: the chain, with a guide node before its first node and one after its last node. A guide node sets
        the direction at an end of the curve: a, a, b, ..., z, z for an open curve from a to z, and
        z, a, b, ..., z, a, b for a closed curve. If not given, the curve runs through all nodes.
    closed: the curve returns from the last node to the first; not with indices.
    deviation_tolerance: how far an element may lie from the curve.
        0: only the sizes count.
        Positive: the distance in length units.
        Negative: minus the distance divided by the radius of curvature.
    min_size: curvature does not bound sizes below this value. Set it if the curve can have a kink.
    default_size: with max_gradation, the size at all places except at the nodes of the curve.
    max_gradation: the largest growth of sizes per length along the curve; 0 sets no limit. It does not apply across
        the joint of a closed curve.
    force_even, min_elements, max_elements: as in mesh_line.

    sizes can also be a function as in mesh_line. It is evaluated at the nodes only, since additional nodes would change
    the curve. MeshWarning says where it is far from linear between two nodes.

    Raises ValueError, which names the argument, and MemoryError.
    """
    a = Arguments("mesh_spline")
    nodes = a.coords(coords)
    is_closed = a.flag("closed", closed)
    if callable(sizes) and metrics is None:
        chain = a.chain(indices, nodes)
        sizes = along_chain("mesh_spline", sizes, nodes, chain, indices is not None, is_closed)
    if indices is None:
        n = len(nodes)
        targets = a.targets(sizes, metrics, n, nodes.shape[1])  # type: ignore[arg-type]
        if n < 2 or len(targets) < n:
            a.fail(*(("coords", "must contain at least 2 nodes") if n < 2 else _targets_fault(metrics)))
        ring = [n - 1, *range(n), 0, 1] if is_closed else [0, *range(n), n - 1]
        chain = np.array(ring, dtype=np.uint32)
        targets = np.ascontiguousarray(targets[chain])
    else:
        if is_closed:
            a.reject("closed", "excludes indices; to close the curve, give the guide nodes in indices")
        chain = a.nodes("indices", indices)
        targets = a.targets(sizes, metrics, len(chain), nodes.shape[1])  # type: ignore[arg-type]
    most = a.count("max_elements", max_elements)
    limits = _core.mesh_limits(
        a.flag("force_even", force_even),
        a.count("min_elements", min_elements),
        most,
        a.real("deviation_tolerance", deviation_tolerance),
        a.real("min_size", min_size),
    )
    size, gradation = a.real("default_size", default_size), a.real("max_gradation", max_gradation)
    request = LineRequest(
        "mesh_spline",
        nodes,
        chain[1:-1],
        targets[1:-1],
        most=most,
        first_entry=0 if indices is None else 1,
        default_size=size if gradation > 0 else 0.0,
    )
    status, all_nodes, mesh, at, out, deviation = _core.mesh_spline(
        nodes, chain, targets, limits, size, gradation
    )
    a.check(
        status,
        {
            -1: ("coords", "must be finite, and so must the length of the curve"),
            -2: ("indices", "must contain at least 4 valid node numbers, including the 2 guide nodes"),
            -3: _targets_fault(metrics),
            -5: LIMITS,
            -8: ("min_size", "must not be negative or NaN"),
        },
    )
    request.compare(all_nodes, mesh)
    by_sizes = metrics is None
    return SplineMesh(all_nodes, mesh, at, out if by_sizes else None, None if by_sizes else out, deviation)


def spline_point(coords: npt.ArrayLike, span: Sequence[SupportsIndex], t: Real) -> Reals:
    """Point of a spline at a parameter.

    coords: (n, d) node positions, d = 2 or 3.
    span: four nodes: the guide node before the span, the start and the end of the span, the guide node after it.
        If a guide node equals the node next to it, the curve has a free end there.
    t: 0 gives the start of the span, 1 its end. Other values extrapolate.

    Returns the position, shape (d,).
    """
    a = Arguments("spline_point")
    nodes = a.coords(coords)
    four = a.counts("span", span)
    if len(four) != 4:
        a.fail("span", f"must contain 4 nodes, not {len(four)}")
    status, point = _core.spline_point(nodes, four, a.real("t", t))
    a.check(
        status,
        {
            -k: ("span", f"entry {k - 2} must be a valid node number, below the number of coords")
            for k in range(2, 6)
        },
    )
    return point


def mesh_straight(
    coords: npt.ArrayLike,
    sizes: Optional[Sizes] = None,
    *,
    metrics: Optional[npt.ArrayLike] = None,
    element_count: Optional[SupportsIndex] = None,
    indices: Optional[npt.ArrayLike] = None,
    segment: Optional[Sequence[SupportsIndex]] = None,
    force_even: bool = False,
) -> NodeList:
    """Mesh each segment of a polyline separately. The mesh contains all nodes of the chain.

    coords: (n, d) node positions, d = 2 or 3.
    sizes, metrics: targets as in mesh_line.
    element_count: instead of sizes and metrics, the approximate number of elements, all of about one size; 0
        makes no mesh.
    indices: the chain; all nodes if not given.
    segment: instead of a chain, two nodes with sizes (a number or 2 numbers) or with an exact element_count; or
        three nodes with an element_count.
    force_even: make the number of elements on each segment even; not with segment and element_count.

    sizes can also be a function, which is sampled as in mesh_line.
    """
    a = Arguments("mesh_straight")
    nodes = a.coords(coords)
    if sizes is None and metrics is None and element_count is None:
        a.reject("sizes, metrics, element_count", "give exactly one of them")
    if element_count is not None and (sizes is not None or metrics is not None):
        a.reject("element_count", "excludes sizes and metrics")
    statuses: Statuses
    if callable(sizes) and metrics is None:
        if segment is not None and indices is not None:
            a.reject("segment", "excludes indices; give one of them")
        chain = a.chain(
            indices if segment is None else np.array(a.counts("segment", segment), np.uint32), nodes
        )
        if len(chain) < 2 or chain.max() >= len(nodes):
            a.fail(*_CHAIN)
        return NodeList(
            *mesh_segments("mesh_straight", sizes, nodes, chain, a.flag("force_even", force_even))
        )
    if segment is not None:
        if indices is not None:
            a.reject("segment", "excludes indices; give one of them")
        ends = a.counts("segment", segment)
        if len(ends) not in (2, 3) or (len(ends) == 3 and element_count is None):
            a.fail("segment", "must contain 2 nodes, or 3 nodes with element_count")
        if element_count is not None:
            if a.flag("force_even", force_even):
                a.reject("force_even", "excludes segment with element_count; give an even element_count")
            result = _core.mesh_segment_count(nodes, ends, a.count("element_count", element_count))
        else:
            if metrics is not None:
                a.reject("segment", "excludes metrics; give the two nodes as indices")
            assert sizes is not None
            pair = a.per_entry("sizes", sizes, 2)  # type: ignore[arg-type]
            if len(pair) != 2:
                a.fail("sizes", "must be a number or 2 numbers")
            LineRequest("mesh_straight", nodes, np.array(ends, np.uint32), pair)
            result = _core.mesh_segment_sizes(
                nodes, ends, [float(h) for h in pair], a.flag("force_even", force_even)
            )
        at_one_place = ("segment", "must contain valid node numbers, of nodes at different places")
        positive = ("sizes", "must be positive and finite")
        statuses = {
            -2: at_one_place,
            -3: at_one_place,
            -4: at_one_place if element_count is not None else positive,
            -5: positive,
        }
    else:
        chain = a.chain(indices, nodes)
        fault = _targets_fault(metrics)
        if element_count is not None:
            fault = ("indices", "must describe a line of positive length")
            count = a.count("element_count", element_count)
            result = _core.mesh_straight_count(nodes, chain, count, a.flag("force_even", force_even))
        else:
            targets = a.targets(sizes, metrics, len(chain), nodes.shape[1])  # type: ignore[arg-type]
            LineRequest("mesh_straight", nodes, chain, targets)
            result = _core.mesh_straight_chain(nodes, chain, targets, a.flag("force_even", force_even))
        statuses = {-2: _CHAIN, -3: fault}
    status, all_nodes, mesh = result
    a.check(status, statuses)
    return NodeList(all_nodes, mesh)
