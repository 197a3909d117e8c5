"""Meshes networks of lines."""

from __future__ import annotations

from typing import Optional, Sequence, SupportsIndex, Tuple

import numpy as np
import numpy.typing as npt

from . import _core
from ._arguments import UNLIMITED, Arguments, Nodes, Real
from ._chains import Cut, Input, Output, remesh, turn_runs
from ._foresee import NetworkRequest
from ._results import Network
from ._rules import OWN_SIZE, number_of, shown, valid_number
from ._sizes import Sizes, at_nodes
from ._warnings import warn


_ARGUMENTS = Arguments("remesh_lines")


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
    min_loop_elements: SupportsIndex = 3,
    reorient: bool = True,
) -> Network:
    """Replace a mesh of lines by one whose elements follow target sizes.

    The lines are cut into chains at these nodes: line ends, nodes where lines meet, corners, changes of colour, hard
    nodes and the ends of hard edges. Each chain is meshed again between its two ends. The ends stay.

    Parameters
    ----------
    coords : array_like, shape (n, d)
        Node positions, d = 2 or 3.
    connect : array_like of int, shape (m, 2)
        The elements.
    default_size : float
        Target size at nodes that have no size of their own; at a chain end, at most the length of the shortest chain
        that meets there.
    sizes : array_like or callable, optional
        Target sizes by node number; nodes after the last entry have no size of their own. Entries that are not positive
        are ignored. Or a function of positions, shape (n, d), that returns n sizes. It is evaluated at the nodes of the
        elements only, since additional nodes would change splines and corners.
    colors : array_like of int, optional
        A colour per element; elements after the last entry have no colour. 4294967295 also means no colour.
    hard_nodes : array_like of int, optional
        Nodes at which to cut.
    hard_edges : array_like of int, optional
        Elements to keep unchanged, by their rows in connect.
    force_even : bool
        Make the number of elements on each chain even.
    max_angle : float
        The largest change of direction that is not a corner, in degrees, at most 90. A larger angle a acts as 180 - a,
        so 180 makes every bend a corner.
    deviation_tolerance : float
        How far the new mesh may lie from the lines.

        - 0: the mesh keeps the bends of the lines, so bent lines do not become coarser.
        - Positive: a distance in length units. The mesh follows a spline if the spline stays within this distance of
          the lines, otherwise the lines.
        - Negative: the mesh follows a spline, and its curvature bounds the sizes as in mesh_spline.
    max_gradation : float
        The largest growth of sizes per length on splines; 0 sets no limit.
    min_size : float
        Segments of at most this length make no corners. Curvature and the lengths of chains do not bound sizes below
        this value.
    min_elements, max_elements : int
        Limits for each chain.
    min_loop_elements : int
        The least number of elements of a loop: a closed chain, or two chains between the same two nodes. A loop that
        would get fewer gets smaller sizes, or more elements on its longer chain. The other chains stay as they are. 1
        lets loops collapse.
    reorient : bool
        First turn elements so that runs of elements have one direction, that of their first element. Where two elements
        meet head to head, the library cuts the line otherwise. Runs end at junctions, at hard nodes, at hard edges and
        where the colour changes.

    Returns
    -------
    Network

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
        The mesh has fewer than half of the elements that the sizes ask for, a function for the sizes is far from
        linear along an element, or a loop has too few elements.

    Examples
    --------
    >>> mesh = remesh_lines([[0, 0], [4, 0], [4, 2]], [[0, 1], [1, 2]], 1.0)
    >>> mesh
    Network: 7 nodes, 6 elements in 2 chains, length 6, elements 1 long
    >>> [chain.tolist() for chain in mesh.chains]
    [[0, 3, 4, 5, 1], [1, 6, 2]]
    """
    network, turned, request = prepare(
        coords,
        connect,
        default_size,
        sizes=sizes,
        colors=colors,
        hard_nodes=hard_nodes,
        hard_edges=hard_edges,
        force_even=force_even,
        max_angle=max_angle,
        deviation_tolerance=deviation_tolerance,
        max_gradation=max_gradation,
        min_size=min_size,
        min_elements=min_elements,
        max_elements=max_elements,
        min_loop_elements=min_loop_elements,
        reorient=reorient,
    )
    return finish(network, turned, request, remesh(network))


def prepare(
    coords: npt.ArrayLike,
    connect: npt.ArrayLike,
    default_size: Real,
    *,
    sizes: Optional[Sizes],
    colors: Optional[npt.ArrayLike],
    hard_nodes: Optional[npt.ArrayLike],
    hard_edges: Optional[npt.ArrayLike],
    force_even: bool,
    max_angle: Real,
    deviation_tolerance: Real,
    max_gradation: Real,
    min_size: Real,
    min_elements: SupportsIndex,
    max_elements: SupportsIndex,
    min_loop_elements: SupportsIndex,
    reorient: bool,
) -> Tuple[Input, Nodes, NetworkRequest]:
    """Check and convert the arguments of remesh_lines.

    Also returns the rows of the elements that were turned, and what the sizes ask for.
    """
    a = _ARGUMENTS
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
    if callable(sizes):
        sizes = at_nodes("remesh_lines", sizes, nodes, elements)
    own_sizes = a.reals("sizes", none if sizes is None else sizes, OWN_SIZE)
    if len(own_sizes) > len(nodes):
        a.fail("sizes", f"has {len(own_sizes)} entries; coords has only {number_of(len(nodes), 'node')}")
    own_colors = a.nodes("colors", none if colors is None else colors)
    node, row = valid_number("node", len(nodes), "coords"), valid_number("row", len(elements), "connect")
    network = Input(
        nodes,
        elements,
        size,
        own_sizes,
        own_colors,
        a.nodes("hard_nodes", none if hard_nodes is None else hard_nodes, node),
        a.nodes("hard_edges", none if hard_edges is None else hard_edges, row),
        limits,
        a.count("min_loop_elements", min_loop_elements),
    )
    turned = np.empty(0, np.uint32)
    if a.flag("reorient", reorient) and len(elements) > 0:
        lines, turned = turn_runs(network)
        network = network._replace(connect=lines)
    return network, turned, NetworkRequest(network)


def finish(network: Input, turned: Nodes, request: NetworkRequest, made: Output) -> Network:
    """Report the status of a mesh, and give it to the caller."""
    a = _ARGUMENTS
    if made.status in (-2, -3):  # of the mesher of a chain; all other faults have been reported
        _fail_at_chain(a, network)
    a.check(made.status)
    if len(made.short) > 0:
        warn(
            f"remesh_lines: {len(made.short)} closed lines have fewer than {network.min_loop_elements} elements, the "
            f"first of them at node {made.short[0]}; limits or sizes do not allow more"
        )
    request.compare(made.coords, made.connect)
    none = np.empty(0, np.uint32)
    is_empty = len(made.connect) == 0  # the library does not change the lists of an empty network
    colors, hard_nodes = (none, none) if is_empty else (made.colors, made.hard_nodes)
    return Network(made.coords, made.connect, colors, hard_nodes, turned, made.raised)


def _fail_at_chain(a: Arguments, network: Input) -> None:
    """Fail at the first chain of length 0, or at a node of a chain without a size.

    A hard edge of length 0 is no fault of its own, but leaves the other chains at its ends no size.
    """
    cut = Cut(network, 1)
    a.check(cut.status)
    parts = [cut.part(batch) for batch in cut.batches]
    chains = [np.arange(len(part.nodes), dtype=np.uint32) for part in parts]
    is_flat = [not _core.length(part.coords, chain)[1] > 0 for part, chain in zip(parts, chains)]
    for k, part in enumerate(parts):
        if is_flat[k] and len(part.hard) == 0:
            _fail_flat(a, network, cut.rows(cut.batches[k]))
    for part in parts:
        bare = part.nodes[~(part.sizes > 0)]
        if len(part.hard) == 0 and len(bare) > 0:
            for k, other in enumerate(parts):
                if is_flat[k] and bare[0] in other.nodes:
                    _fail_flat(a, network, cut.rows(cut.batches[k]))
            a.fail(
                "default_size", f"is 0; it must be positive, because node {bare[0]} has no size of its own"
            )


def _fail_flat(a: Arguments, network: Input, rows: Nodes) -> None:
    ends, rest = network.connect[rows[0]], "each line must have a positive length"
    if ends[0] == ends[1]:
        a.fail(f"connect[{rows[0]}]", f"joins node {ends[0]} to itself; {rest}")
    here = [f"connect[{row}]" for row in rows]
    more = f" and {len(here) - 3} more" if len(here) > 3 else ""
    verb = "is" if len(here) == 1 else "are"
    a.fail(
        ", ".join(here[:3]) + more, f"{verb} a line of length 0 at {shown(network.coords[ends[0]])}; {rest}"
    )
