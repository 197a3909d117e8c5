"""Meshes single lines, straight lines and splines."""

from __future__ import annotations

from typing import Optional, Sequence, SupportsIndex

import numpy as np
import numpy.typing as npt

from . import _core
from ._arguments import UNLIMITED, Arguments, Nodes, Real, Reals
from ._foresee import LineRequest
from ._results import LineMesh, NodeList, SplineMesh
from ._rules import number_of
from ._sizes import SampledLine, Sizes, along_chain, mesh_segments


def _limits(
    a: Arguments, even: bool, fewest: SupportsIndex, most: SupportsIndex, tolerance: Real, least: Real
) -> _core.mesh_limits:
    return _core.mesh_limits(
        a.flag("force_even", even),
        *a.limits(fewest, most),
        a.real("deviation_tolerance", tolerance),
        a.real("min_size", least),
    )


def _chain(a: Arguments, nodes: Reals, indices: Optional[npt.ArrayLike], needs_length: bool) -> Nodes:
    """The nodes of a line, which are all nodes if no others are given."""
    chain = a.chain(indices, nodes)
    name = "coords" if indices is None else "indices"
    a.at_least(2, "a line", name, chain)
    if needs_length:
        a.may_have_no_length(name, nodes, chain)
    return chain


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

    Parameters
    ----------
    coords
        (n, d) node positions, d = 2 or 3, in length units of the model.
    sizes
        A target size per chain entry, or one size for all entries, in length units of the model; or a
        function
        of positions, see Notes.
    metrics
        Instead of sizes, a tensor per chain entry: rows of 3 or 6 numbers, or matrices (n, d, d).
    indices
        The chain, node numbers in the order of travel; all nodes if not given.
    params
        A parameter per chain entry, non-decreasing; the normalised chord length if not given.
    force_even
        Make the number of elements even.
    min_elements, max_elements
        Limits of the number of elements. Set min_elements to 3 for a ring.
    deviation_tolerance
        How far the mesh may lie from the chain.
        0: only the sizes count.
        Positive: a distance in length units; the mesh keeps nodes of the chain that it would otherwise miss
        by
        this distance or more.
        Negative: minus the sagitta of an element (its largest distance from the curve) divided by the radius
        of
        curvature; for example -0.01 for 1 %. It bounds the sizes.
    min_size
        Curvature does not bound sizes below this value.

    Returns
    -------
    LineMesh

    Raises
    ------
    ValueError, TypeError
        The message names the argument.
    MemoryError
        There is not enough memory.

    Warns
    -----
    MeshWarning
        If the mesh has fewer than half of the elements that the sizes ask for.

    Notes
    -----
    sizes can also be a function of positions, shape (n, d), that returns n sizes. Each segment of the chain
    is
    bisected until its pieces are at most 2 sizes long and the size at the middle of a piece differs by at
    most 1 %
    from the mean of its ends, or the piece is half a size long. So a feature of the function can be missed if
    it is
    narrower than 2 of the sizes beside it. The samples count like chain entries, but they are not part of the
    result. If a positive tolerance splits the chain at a sample, the mesh has a new node there. On a bent
    chain the
    mesh can blur a feature that is narrower than an element, as it does with chain entries. With a negative
    tolerance the function is evaluated at the nodes only.

    Examples
    --------
    >>> import vornik1d
    >>> vornik1d.mesh_line([[0, 0], [10, 0]], [1, 0.1])
    LineMesh: 27 nodes, 26 elements, length 10, sizes 0.1 to 1
    """
    a = Arguments("mesh_line")
    nodes = a.coords(coords)
    chain = _chain(a, nodes, indices, params is None)
    given = None if params is None else a.ascending("params", params)
    if given is not None:
        a.one_per("node of the line", len(chain), "params", given)
    even, tolerance = a.flag("force_even", force_even), a.real("deviation_tolerance", deviation_tolerance)
    fewest, most = a.limits(min_elements, max_elements)
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
    a.check(status)
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

    Parameters
    ----------
    coords
        (n, d) node positions, d = 2 or 3.
    sizes, metrics
        Targets as in mesh_line, one per node of coords, or per entry of indices if that is given.
    indices
        The chain, with a guide node before its first node and one after its last node. A guide node sets
        the direction at an end of the curve: a, a, b, ..., z, z for an open curve from a to z, and
        z, a, b, ..., z, a, b for a closed curve. If not given, the curve runs through all nodes.
    closed
        The curve returns from the last node to the first; not with indices.
    force_even, min_elements, max_elements
        As in mesh_line.
    deviation_tolerance
        How far an element may lie from the curve.
        0: only the sizes count.
        Positive: the distance in length units.
        Negative: minus the distance divided by the radius of curvature.
    min_size
        Curvature does not bound sizes below this value. Set it if the curve can have a kink.
    default_size
        With max_gradation, the size at all places except at the nodes of the curve.
    max_gradation
        The largest growth of sizes per length along the curve; 0 sets no limit. It does not apply across the
        joint
        of a closed curve.

    Returns
    -------
    SplineMesh

    Raises
    ------
    ValueError, TypeError
        The message names the argument.
    MemoryError
        There is not enough memory.

    Notes
    -----
    sizes can also be a function as in mesh_line. It is evaluated at the nodes only, since additional nodes
    would
    change the curve. MeshWarning says where it is far from linear between two nodes.

    Examples
    --------
    >>> import vornik1d
    >>> vornik1d.mesh_spline([[0, 0], [1, 0], [1, 1], [0, 1]], 0.1, closed=True)
    SplineMesh: 42 nodes, 42 elements, length 4.206, size 0.1, deviation 0.1768
    """
    a = Arguments("mesh_spline")
    nodes = a.coords(coords)
    is_closed = a.flag("closed", closed)
    if callable(sizes) and metrics is None:
        chain = a.chain(indices, nodes)
        sizes = along_chain("mesh_spline", sizes, nodes, chain, indices is not None, is_closed)
    if indices is None:
        n = len(_chain(a, nodes, None, False))
        targets = a.targets(sizes, metrics, n, nodes.shape[1])  # type: ignore[arg-type]
        ring = [n - 1, *range(n), 0, 1] if is_closed else [0, *range(n), n - 1]
        chain = np.array(ring, dtype=np.uint32)
        targets = np.ascontiguousarray(targets[chain])
    else:
        if is_closed:
            a.reject("closed", "excludes indices; to close the curve, give the guide nodes in indices")
        chain = a.chain(indices, nodes)
        a.at_least(4, "a spline with its 2 guide nodes", "indices", chain)
        targets = a.targets(sizes, metrics, len(chain), nodes.shape[1])  # type: ignore[arg-type]
    fewest, most = a.limits(min_elements, max_elements)
    limits = _limits(a, force_even, fewest, most, deviation_tolerance, min_size)
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
    a.check(status)
    request.compare(all_nodes, mesh)
    by_sizes = metrics is None
    return SplineMesh(all_nodes, mesh, at, out if by_sizes else None, None if by_sizes else out, deviation)


def spline_point(coords: npt.ArrayLike, span: Sequence[SupportsIndex], t: Real) -> Reals:
    """Point of a spline at a parameter.

    Parameters
    ----------
    coords
        (n, d) node positions, d = 2 or 3.
    span
        Four nodes: the guide node before the span, the start and the end of the span, the guide node after
        it.
        If a guide node equals the node next to it, the curve has a free end there.
    t
        0 gives the start of the span, 1 its end. Other values extrapolate.

    Returns
    -------
    ndarray
        The position, shape (d,).

    Examples
    --------
    >>> import vornik1d
    >>> vornik1d.spline_point([[0, 0], [1, 0], [1, 1], [0, 1]], [0, 1, 2, 3], 0.5).round(4).tolist()
    [1.1768, 0.5]
    """
    a = Arguments("spline_point")
    nodes = a.coords(coords)
    four = a.few_nodes("span", span, nodes)
    if len(four) != 4:
        a.fail("span", f"has {number_of(len(four), 'node')}; it must have 4")
    status, point = _core.spline_point(nodes, four, a.real("t", t))
    a.check(status)
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

    Parameters
    ----------
    coords
        (n, d) node positions, d = 2 or 3.
    sizes, metrics
        Targets as in mesh_line. sizes can also be a function, which is sampled as in mesh_line.
    element_count
        Instead of sizes and metrics, the approximate number of elements, all of about one size; 0 makes no
        mesh.
    indices
        The chain; all nodes if not given.
    segment
        Instead of a chain, two nodes with sizes (a number or 2 numbers) or with an exact element_count; or
        three nodes with an element_count.
    force_even
        Make the number of elements on each segment even; not with segment and element_count.

    Returns
    -------
    NodeList

    Examples
    --------
    >>> import vornik1d
    >>> mesh = vornik1d.mesh_straight([[0, 0], [2, 0], [2, 1]], 0.5)
    >>> mesh.indices.tolist()
    [0, 3, 4, 5, 1, 6, 2]
    """
    a = Arguments("mesh_straight")
    nodes = a.coords(coords)
    a.one_of(sizes=sizes, metrics=metrics, element_count=element_count)
    is_even = a.flag("force_even", force_even)
    count = None if element_count is None else a.count("element_count", element_count)
    if callable(sizes):
        if segment is not None and indices is not None:
            a.one_of(indices=indices, segment=segment)
        line = indices if segment is None else np.array(a.few_nodes("segment", segment, nodes), np.uint32)
        chain = _chain(a, nodes, line, False)
        return NodeList(*mesh_segments("mesh_straight", sizes, nodes, chain, is_even))
    if segment is not None:
        if indices is not None:
            a.one_of(indices=indices, segment=segment)
        if metrics is not None:
            a.reject("segment", "excludes metrics; give the two nodes as indices")
        ends = a.few_nodes("segment", segment, nodes)
        if len(ends) not in (2, 3) or (len(ends) == 3 and count is None):
            allowed = "2 nodes, or 3 with element_count"
            a.fail("segment", f"has {number_of(len(ends), 'node')}; it must have {allowed}")
        if count is not None:
            if is_even:
                a.reject("force_even", "excludes segment with element_count; give an even element_count")
            a.may_have_no_length("segment", nodes, np.array(ends, np.uint32))
            result = _core.mesh_segment_count(nodes, ends, count)
        else:
            assert sizes is not None
            pair = a.per_entry("sizes", sizes, 2, "end of the segment")
            LineRequest("mesh_straight", nodes, np.array(ends, np.uint32), pair)
            result = _core.mesh_segment_sizes(nodes, ends, [float(h) for h in pair], is_even)
    elif count is not None:
        result = _core.mesh_straight_count(nodes, _chain(a, nodes, indices, True), count, is_even)
    else:
        chain = _chain(a, nodes, indices, False)
        targets = a.targets(sizes, metrics, len(chain), nodes.shape[1])
        LineRequest("mesh_straight", nodes, chain, targets)
        result = _core.mesh_straight_chain(nodes, chain, targets, is_even)
    status, all_nodes, mesh = result
    a.check(status)
    return NodeList(all_nodes, mesh)
