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


def _fewest_of(nodes: Reals, line: Nodes, fewest: int, most: int, loop: int) -> int:
    """The least number of elements: more if the line is a loop."""
    is_loop = len(line) > 2 and bool((nodes[line[0]] == nodes[line[-1]]).all())
    return max(fewest, min(loop, most)) if is_loop else fewest


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
    min_loop_elements: SupportsIndex = 3,
    deviation_tolerance: Real = 0.0,
    min_size: Real = 0.0,
) -> LineMesh:
    """Mesh a polyline by target sizes or metric tensors at its nodes.

    The mesh starts at the first node of the chain and ends at the last. It leaves out the nodes between them, unless a
    positive tolerance keeps them.

    Parameters
    ----------
    coords : array_like, shape (n, d)
        Node positions, d = 2 or 3, in length units of the model.
    sizes : float, array_like of shape (k,), or callable
        A target size per chain entry, or one size for all entries, in length units; or a function of positions, shape
        (n, d), that returns n sizes (see Notes).
    metrics : array_like, shape (k, 3), (k, 6) or (k, d, d)
        Instead of sizes, a metric tensor per chain entry.
    indices : array_like of int, shape (k,), optional
        The chain: node numbers in the order of travel. All nodes if not given.
    params : array_like, shape (k,), optional
        A parameter per chain entry, non-decreasing; the normalised chord length if not given.
    force_even : bool
        Make the number of elements even.
    min_elements, max_elements : int
        Limits of the number of elements.
    min_loop_elements : int
        The least number of elements if the line ends where it starts.
    deviation_tolerance : float
        How far the mesh may lie from the chain.

        - 0: only the sizes count.
        - Positive: a distance in length units. The mesh keeps nodes of the chain that it would otherwise miss by this
          distance or more.
        - Negative: minus the sagitta of an element (its largest distance from the curve) divided by the radius of
          curvature, for example -0.01 for 1 %. It bounds the sizes.
    min_size : float
        Curvature does not bound sizes below this value, in length units.

    Returns
    -------
    LineMesh

    Raises
    ------
    ValueError
        A value is wrong, or the sizes ask for more elements than memory holds. The text names the argument, the
        position and the value.
    TypeError
        A type is wrong, or two arguments exclude each other.
    MemoryError
        There is not enough memory.

    Warns
    -----
    MeshWarning
        The mesh has fewer than half of the elements that the sizes ask for.

    Notes
    -----
    A function for the sizes is sampled along the line. Each segment of the chain is bisected until its pieces are at
    most 2 sizes long and the size at the middle of a piece differs by at most 1 % from the mean of its ends, or the
    piece is half a size long. So a feature of the function can be missed if it is narrower than 2 of the sizes beside it. The
    samples count like chain entries, but they are not part of the result. If a positive tolerance splits the chain at a
    sample, the mesh has a new node there. On a bent chain the mesh can blur a feature that is narrower than an element,
    as it does with chain entries. With a negative tolerance the function is evaluated at the nodes only.

    Examples
    --------
    >>> mesh_line([[0, 0], [10, 0]], [1, 0.1])
    LineMesh: 27 nodes, 26 elements, length 10, sizes 0.1 to 1
    >>> mesh = mesh_line([[0, 0], [10, 0]], lambda points: 0.1 + 0.2 * abs(points[:, 0] - 5))
    >>> float(mesh.lengths.min().round(2)), float(mesh.lengths.max().round(2))
    (0.11, 1.0)
    """
    a = Arguments("mesh_line")
    nodes = a.coords(coords)
    chain = _chain(a, nodes, indices, params is None)
    given = None if params is None else a.ascending("params", params)
    if given is not None:
        a.one_per("node of the line", len(chain), "params", given)
    even, tolerance = a.flag("force_even", force_even), a.real("deviation_tolerance", deviation_tolerance)
    fewest, most = a.limits(min_elements, max_elements)
    fewest = _fewest_of(nodes, chain, fewest, most, a.count("min_loop_elements", min_loop_elements))
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
    min_loop_elements: SupportsIndex = 3,
    deviation_tolerance: Real = 0.0,
    min_size: Real = 0.0,
    default_size: Real = 0.0,
    max_gradation: Real = 0.0,
) -> SplineMesh:
    """Mesh a smooth curve through nodes. Its curvature and a limit on the growth of sizes can bound the sizes.

    Parameters
    ----------
    coords : array_like, shape (n, d)
        Node positions, d = 2 or 3.
    sizes, metrics
        Targets as in mesh_line, one per node of coords, or per entry of indices if it is given. A function is evaluated
        at the nodes only, since additional nodes would change the curve.
    indices : array_like of int, optional
        The chain, with a guide node before its first node and one after its last node. A guide node sets the direction
        at an end of the curve: a, a, b, ..., z, z for an open curve from a to z, and z, a, b, ..., z, a, b for a closed
        curve. If not given, the curve runs through all nodes.
    closed : bool
        The curve returns from the last node to the first; not with indices.
    deviation_tolerance : float
        How far an element may lie from the curve. 0: only the sizes count. Positive: the distance in length units.
        Negative: minus the distance divided by the radius of curvature.
    min_size : float
        Curvature does not bound sizes below this value. Set it if the curve can have a kink.
    default_size : float
        With max_gradation, the size at all places except at the nodes of the curve.
    max_gradation : float
        The largest growth of sizes per length along the curve; 0 sets no limit. It does not apply across the joint of a
        closed curve.
    force_even, min_elements, max_elements, min_loop_elements
        As in mesh_line.

    Returns
    -------
    SplineMesh

    Raises
    ------
    ValueError
        A value is wrong, or the sizes ask for more elements than memory holds. The text names the argument, the
        position and the value.
    TypeError
        A type is wrong, or two arguments exclude each other.
    MemoryError
        There is not enough memory.

    Warns
    -----
    MeshWarning
        The mesh has fewer than half of the elements that the sizes ask for, or a function for the sizes is far from
        linear between two nodes.

    Examples
    --------
    >>> mesh_spline([[1, 0], [0, 1], [-1, 0], [0, -1]], 9, closed=True, deviation_tolerance=0.01)
    SplineMesh: 22 nodes, 22 elements, length 6.125, size 0.2771, deviation 0.25
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
    fewest = _fewest_of(nodes, chain[1:-1], fewest, most, a.count("min_loop_elements", min_loop_elements))
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
    coords : array_like, shape (n, d)
        Node positions, d = 2 or 3.
    span : array_like of int, shape (4,)
        The guide node before the span, the start and the end of the span, the guide node after it. If a guide node
        equals the node next to it, the curve has a free end there.
    t : float
        0 gives the start of the span, 1 its end. Other values extrapolate.

    Returns
    -------
    ndarray, shape (d,)
        The position.

    Raises
    ------
    ValueError, TypeError
        The text names the argument.

    Examples
    --------
    >>> spline_point([[0, 0], [1, 1], [2, 1], [3, 0]], [0, 1, 2, 3], 0.5).round(3).tolist()
    [1.5, 1.079]
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
    coords : array_like, shape (n, d)
        Node positions, d = 2 or 3.
    sizes, metrics
        Targets as in mesh_line. A function is sampled as there.
    element_count : int
        Instead of sizes and metrics, the approximate number of elements, all of about one size; 0 makes no mesh.
    indices : array_like of int, optional
        The chain; all nodes if not given.
    segment : sequence of int, optional
        Instead of a chain, two nodes with sizes (a number or 2 numbers) or with an exact element_count; or three nodes
        with an element_count.
    force_even : bool
        Make the number of elements on each segment even; not with segment and element_count.

    Returns
    -------
    NodeList

    Raises
    ------
    ValueError, TypeError, MemoryError
        As mesh_line.

    Examples
    --------
    >>> mesh_straight([[0, 0], [4, 0], [4, 2]], 1)
    NodeList: 7 nodes, 6 elements, length 6, elements 1 long
    >>> mesh_straight([[0, 0], [4, 0]], segment=(0, 1), element_count=3).indices.tolist()
    [0, 2, 3, 1]
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
