"""Networks cut into chains: batches of chains are meshed apart from one another and put together again."""

from __future__ import annotations

from typing import Any, Callable, Iterable, List, NamedTuple, Sequence, Tuple, TypeVar

import numpy as np

from . import _core
from ._arguments import UNLIMITED, Nodes, Reals

BATCH_ELEMENTS = 10_000  # large enough that batches cost little, small enough for many cores

Item = TypeVar("Item")
Result = TypeVar("Result")
Map = Callable[[Callable[[Item], Result], Iterable[Item]], Iterable[Result]]


class Input(NamedTuple):
    """The checked arguments of remesh_lines."""

    coords: Reals
    connect: Nodes
    default_size: float
    sizes: Reals
    colors: Nodes
    hard_nodes: Nodes
    hard_edges: Nodes
    limits: _core.remesh_limits
    min_loop_elements: int


class Output(NamedTuple):
    """The mesh that one call of the library makes. After a failure only the status counts."""

    status: int
    coords: Reals
    connect: Nodes
    colors: Nodes
    hard_nodes: Nodes
    raised: Nodes  # the first node of each chain that got more elements to keep a loop
    short: Nodes  # the first node of each chain that still has too few


class Part(NamedTuple):
    """Some chains of a network, as arrays that can travel. Nodes are listed chain by chain."""

    nodes: Nodes
    coords: Reals
    sizes: Reals
    counts: Nodes  # elements of each chain
    hard: Nodes  # chains that are hard edges
    colors: Nodes  # of each chain
    fewest: Nodes = np.empty(0, np.uint32)  # the least number of elements of each open chain


class Mesh(NamedTuple):
    """The mesh of a part. Its node k is node k of the part; new nodes follow."""

    status: int
    new_coords: Reals
    connect: Nodes
    counts: Nodes
    raised: Nodes
    short: Nodes


class Mesher(NamedTuple):
    """Meshes parts of a network. It can travel to other processes."""

    default_size: float
    limits: _core.remesh_limits
    min_loop_elements: int

    def __call__(self, part: Part) -> Mesh:
        arrays = (part.nodes, part.coords, part.sizes, part.counts, part.hard, part.fewest)
        return Mesh(*_core.mesh_part(*arrays, self.default_size, self.limits, self.min_loop_elements))


def turn_runs(network: Input) -> Tuple[Nodes, Nodes]:
    """Turn elements so that runs have one direction: that of their lowest element.

    A run ends where three or more elements meet, at hard nodes, at hard edges and where the colour changes. Returns the
    elements, and the rows that were turned.
    """
    connect = np.ascontiguousarray(network.connect[:, :2])
    none = np.empty(0, np.uint32)
    if not _core.has_opposed_elements(connect, len(network.coords)):
        return connect, none
    status, neighbors = _core.get_neighbors(connect)
    if status != 0:
        raise MemoryError("remesh_lines: not enough memory")
    hard_edges = network.hard_edges[network.hard_edges < len(connect)]
    hard_nodes = network.hard_nodes[network.hard_nodes < len(network.coords)]
    if len(hard_edges) + len(hard_nodes) > 0:
        is_cut = np.zeros(len(network.coords), bool)
        is_cut[hard_nodes] = True
        is_cut[connect[hard_edges]] = True
        neighbors[is_cut[connect[:, ::-1]]] = UNLIMITED  # column 0 is the neighbour at the second node
    if len(network.colors) > 0:
        colors = np.full(len(connect), UNLIMITED, np.uint32)
        given = network.colors[: len(connect)]
        colors[: len(given)] = given
        others = np.append(colors, np.uint32(UNLIMITED))[np.minimum(neighbors, len(connect))]
        own = colors[:, None]
        neighbors[(own != others) & (own != UNLIMITED) & (others != UNLIMITED)] = UNLIMITED
    status, turned, _ = _core.mesh_reorient(connect, neighbors, 0, True)
    if status < 0:
        raise MemoryError("remesh_lines: not enough memory")
    return turned, np.flatnonzero(turned[:, 0] != connect[:, 0]).astype(np.uint32)


def has_short_loop(connect: Nodes, hard_nodes: Nodes, node_count: int, least: int) -> bool:
    """Whether fewer than `least` elements seem to form a loop: one chain, or two chains between the same two nodes.

    Other lines can look like a loop too.
    """
    starts, ends = connect[:, 0], connect[:, 1]
    is_linked = np.ones(len(connect), bool)
    for k in range(1, min(least, len(connect) + 1)):
        closing = ends[k - 1 :]
        if k > 1:
            is_linked = is_linked[:-1] & (ends[k - 2 : -1] == starts[k - 1 :])
        if (is_linked & (starts[: len(closing)] == closing)).any():
            return True
    is_hard = np.zeros(node_count, bool)
    is_hard[hard_nodes] = True
    first = np.flatnonzero(is_hard[starts])  # of the chains, except loops apart from other lines
    counts = np.diff(np.append(first, len(connect)))
    first, counts = first[counts < least - 1], counts[counts < least - 1]
    pairs = np.sort(np.stack([starts[first], ends[first + counts - 1]], axis=1), axis=1).astype(np.uint64)
    keys = np.sort(pairs[:, 0] << np.uint64(32) | pairs[:, 1])
    return bool((keys[1:] == keys[:-1]).any())


class Cut:
    """A network cut into batches of chains."""

    def __init__(self, network: Input, batch_elements: int) -> None:
        self._network = network
        self._cut = _core.cut_network(*network[:-1])
        self.status = self._cut.status
        starts = self._cut.batch_starts(batch_elements) if self.status == 0 else [0]
        self.batches = list(zip(starts[:-1], starts[1:]))

    def part(self, batch: Tuple[int, int]) -> Part:
        return Part(*self._cut.part(*batch))

    def rows(self, batch: Tuple[int, int]) -> Nodes:
        """The elements of the chains, in the order of travel."""
        return self._cut.rows(*batch)

    def elements(self, batch: Tuple[int, int]) -> int:
        return self._cut.elements(*batch)

    def join(self, parts: Sequence[Part], meshes: Sequence[Mesh], each: Map[Any, Any] = map) -> Output:
        """Put the meshes together. `each(function, items)` calls a function for all items, in any order."""
        coords = self._network.coords
        status = next((mesh.status for mesh in meshes if mesh.status != 0), self.status)
        nodes = np.cumsum([len(coords), *(len(mesh.new_coords) for mesh in meshes)])
        rows = np.cumsum([0, *(len(mesh.connect) for mesh in meshes)])
        if status == 0 and nodes[-1] > UNLIMITED:
            status = -199
        none = np.empty(0, np.uint32)
        if status != 0:
            return Output(status, coords, self._network.connect, none, none, none, none)
        all_coords = np.empty((nodes[-1], coords.shape[1]))
        all_coords[: len(coords)] = coords
        connect = np.empty((rows[-1], 2), np.uint32)
        colors = np.empty(rows[-1], np.uint32)

        def put(k: int) -> None:
            part, mesh = parts[k], meshes[k]
            own = (part.nodes, part.colors, mesh.new_coords, mesh.connect, mesh.counts)
            _core.put_part(all_coords, connect, colors, nodes[k], rows[k], *own)

        for _ in each(put, range(len(parts))):
            pass
        raised = [_first_nodes(part, mesh.raised) for part, mesh in zip(parts, meshes)]
        short = [_first_nodes(part, mesh.short) for part, mesh in zip(parts, meshes)]
        breaks = self._cut.break_nodes()
        return Output(
            0,
            all_coords,
            connect,
            colors,
            breaks,
            np.concatenate([none, *raised]),
            np.concatenate([none, *short]),
        )


def _first_nodes(part: Part, chains: Nodes) -> Nodes:
    if len(chains) == 0:
        return chains
    steps = part.counts.astype(np.int64) + 1
    starts = np.cumsum(steps) - steps
    result: Nodes = part.nodes[starts[chains]]
    return result


def keep_rings_of_two(parts: List[Part], meshes: List[Mesh], mesher: Mesher) -> None:
    """Mesh chains again that form a loop of too few elements with another chain between the same two nodes.

    The shortest of these chains stays as it is. A chain of a single given element stays too.
    """
    least = mesher.min_loop_elements
    if least < 2 or any(mesh.status != 0 for mesh in meshes):
        return
    cuts = [np.cumsum(part.counts + 1, dtype=np.int64) for part in parts]
    first = np.concatenate(
        [part.nodes[cut - part.counts.astype(np.int64) - 1] for part, cut in zip(parts, cuts)]
    )
    last = np.concatenate([part.nodes[cut - 1] for part, cut in zip(parts, cuts)])
    made = np.concatenate([mesh.counts for mesh in meshes]).astype(np.int64)
    batch = np.repeat(np.arange(len(parts)), [len(part.counts) for part in parts])
    start = np.cumsum([0, *(len(part.counts) for part in parts)])
    few = np.flatnonzero((first != last) & (made < least - 1))
    keys = np.minimum(first, last)[few].astype(np.uint64) << np.uint64(32) | np.maximum(first, last)[few]
    _, group, sizes = np.unique(keys, return_inverse=True, return_counts=True)
    twins = few[sizes[group] > 1]
    if len(twins) == 0:
        return
    lengths = np.empty(len(twins))
    for k, chain in enumerate(twins):
        part, own = parts[batch[chain]], chain - start[batch[chain]]
        end = int(cuts[batch[chain]][own])
        steps = np.diff(part.coords[end - int(part.counts[own]) - 1 : end], axis=0)
        lengths[k] = np.sqrt((steps * steps).sum(axis=1)).sum()
    group = group[sizes[group] > 1]
    order = np.lexsort((twins, lengths, group))
    shortest = order[np.append(True, np.diff(group[order]) != 0)]
    partner = np.empty(group.max() + 1, np.int64)
    partner[group[shortest]] = twins[shortest]
    wanted = least - made[partner[group]]
    is_short = (twins != partner[group]) & (made[twins] < wanted)
    for b in np.unique(batch[twins[is_short]]):
        own = is_short & (batch[twins] == b)
        fewest = np.zeros(len(parts[b].counts), np.uint32)
        fewest[twins[own] - start[b]] = wanted[own]
        fewest[parts[b].counts < 2] = 0
        if fewest.any():
            parts[b] = parts[b]._replace(fewest=fewest)
            meshes[b] = mesher(parts[b])


def remesh_in_parts(network: Input) -> Output:
    """Remesh a network chain by chain, with more elements for short loops."""
    cut = Cut(network, BATCH_ELEMENTS)
    mesher = Mesher(network.default_size, network.limits, network.min_loop_elements)
    parts = [cut.part(batch) for batch in cut.batches]
    meshes = [mesher(part) for part in parts]
    keep_rings_of_two(parts, meshes, mesher)
    return cut.join(parts, meshes)


def remesh(network: Input) -> Output:
    """Remesh a network by one call of the library, and again in parts if a loop became too short."""
    none = np.empty(0, np.uint32)
    status, coords, connect, colors, hard_nodes = _core.remesh_hard_lines(*network[:8])
    if status != 0:
        return Output(status, network.coords, network.connect, none, none, none, none)
    least = network.min_loop_elements
    if least > 1 and len(network.connect) > 0 and has_short_loop(connect, hard_nodes, len(coords), least):
        return remesh_in_parts(network)
    return Output(0, coords, connect, colors, hard_nodes, none, none)
