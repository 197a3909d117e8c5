"""Splits a network of lines into batches that share no node, remeshes each batch and joins the results.

Usage: network.py [ELEMENTS]

Remeshes a network of about ELEMENTS elements (100 000 if not given) in one call and batch by batch, and compares
the results. network_threads.py and network_dask.py remesh the batches in parallel.
"""

import sys
import time
from typing import Callable, Iterable, List, NamedTuple, Tuple

import numpy as np
from scipy.sparse import coo_matrix
from scipy.sparse.csgraph import connected_components

import vornik1d

OPTIONS = {"default_size": 0.06, "deviation_tolerance": 0.002, "min_size": 0.01}


class Batch(NamedTuple):
    """Some components of a network, with node numbers of their own in the same order."""

    nodes: np.ndarray  # their node numbers in the network
    coords: np.ndarray
    connect: np.ndarray
    colors: np.ndarray


def split(coords: np.ndarray, connect: np.ndarray, colors: np.ndarray, elements: int) -> List[Batch]:
    """Batches of about `elements` elements each, in the order of their lowest elements.

    A component is never divided, so a large component is a batch of its own.
    """
    graph = coo_matrix((np.ones(len(connect), bool), tuple(connect.T)), shape=(len(coords), len(coords)))
    components, of_node = connected_components(graph, directed=False)
    of_element = of_node[connect[:, 0]]
    counts = np.bincount(of_element, minlength=components)
    lowest = np.full(components, len(connect))  # element of each component; the last assigned value stays
    lowest[of_element[::-1]] = np.arange(len(connect))[::-1]
    order = np.argsort(lowest)
    start = np.empty_like(counts)  # elements before each component, in the order of lowest elements
    start[order] = np.cumsum(counts[order]) - counts[order]
    batch_of = start // elements
    batch_of[counts == 0] = len(connect)  # a node without elements is in no batch

    rows, element_cuts = _group(batch_of[of_element])
    nodes, node_cuts = _group(batch_of[of_node], none=len(connect))
    numbers = np.empty(len(coords), np.uint32)  # of the nodes in their batches
    batches = []
    for own, part in zip(np.split(nodes, node_cuts), np.split(rows, element_cuts)):
        numbers[own] = np.arange(len(own))
        batches.append(Batch(own, coords[own], numbers[connect[part]], colors[part]))
    return batches if len(connect) > 0 else []


def _group(batch: np.ndarray, none: int = -1) -> Tuple[np.ndarray, np.ndarray]:
    """The indices sorted by value, without those of the value `none`, and the positions where a new value begins."""
    order = np.argsort(batch, kind="stable")
    order = order[batch[order] != none]
    return order, np.flatnonzero(np.diff(batch[order])) + 1


def remesh(batch: Batch) -> vornik1d.Network:
    return vornik1d.remesh_lines(batch.coords, batch.connect, colors=batch.colors, **OPTIONS)


def join(
    coords: np.ndarray, batches: Iterable[Batch], meshes: Iterable[vornik1d.Network]
) -> vornik1d.Network:
    """Joins the remeshed batches. Old nodes keep their numbers, new nodes follow batch by batch.

    The numbers do not depend on which batch is done first.
    """
    all_coords, all_connect = [coords], [np.empty((0, 2), np.uint32)]
    all_colors, all_hard_nodes = [np.empty(0, np.uint32)], [np.empty(0, np.uint32)]
    count = len(coords)
    for batch, mesh in zip(batches, meshes):
        new = mesh.coords[len(batch.nodes) :]
        numbers = np.concatenate([batch.nodes, np.arange(count, count + len(new))]).astype(np.uint32)
        all_coords.append(new)
        all_connect.append(numbers[mesh.connect])
        all_colors.append(mesh.colors)
        all_hard_nodes.append(numbers[mesh.hard_nodes])
        count += len(new)
    if count > vornik1d.UNLIMITED:
        raise OverflowError(f"{count} nodes are too many; node numbers have 32 bits")
    return vornik1d.Network(
        np.concatenate(all_coords),
        np.concatenate(all_connect),
        np.concatenate(all_colors),
        np.sort(np.concatenate(all_hard_nodes)),
    )


def is_same(a: vornik1d.Network, b: vornik1d.Network) -> bool:
    """Whether two networks have bitwise the same elements, in any order, and the same number of nodes."""

    def rows(mesh: vornik1d.Network) -> np.ndarray:
        starts, ends = mesh.coords[mesh.connect[:, 0]], mesh.coords[mesh.connect[:, 1]]
        table = np.column_stack([starts, ends, mesh.colors])
        return table[np.lexsort(table.T)]

    nodes = [len(np.unique(mesh.connect)) for mesh in (a, b)]
    return nodes[0] == nodes[1] and np.array_equal(rows(a), rows(b))


def islands(elements: int) -> Tuple[np.ndarray, np.ndarray, np.ndarray]:
    """Rings and stars with five curved arms, alternating on a grid: nodes, elements and a colour per element."""
    turn = 2 * np.pi * np.arange(60) / 60
    arm, along = np.divmod(np.arange(60), 12)
    out = (along + 1) / 12
    ring = np.stack([np.arange(60), np.roll(np.arange(60), -1)], axis=1)
    star = np.stack([np.where(along == 0, 60, np.arange(60) - 1), np.arange(60)], axis=1)
    coords, connect, colors = [], [], []
    count = max(1, elements // 60)
    side = int(np.ceil(np.sqrt(count)))
    for k in range(count):
        if k % 2 == 0:
            radius, angle, lines, color = (
                1.2 + 0.2 * np.sin(5 * turn + k),
                turn,
                ring,
                np.zeros(60, np.uint32),
            )
        else:
            radius, angle = 1.5 * out, 2 * np.pi * arm / 5 + 0.3 * np.sin(5 * out + k)
            lines, color = star, arm + 1
        shape = np.stack([radius * np.cos(angle), radius * np.sin(angle)], axis=1)
        middle = [4.0 * (k % side), 4.0 * (k // side)]
        coords.append(np.concatenate([shape, [[0, 0]]]) + middle)  # the middle of a ring has no elements
        connect.append(lines + 61 * k)
        colors.append(color)
    return np.concatenate(coords), np.concatenate(connect), np.concatenate(colors)


def one_by_one(batches: List[Batch]) -> List[vornik1d.Network]:
    return [remesh(batch) for batch in batches]


def compare(name: str, remesh_all: Callable[[List[Batch]], List[vornik1d.Network]]) -> None:
    """Compares `remesh_all(batches)`, which returns the meshes in order, with one core and with a single call."""
    coords, connect, colors = islands(int(sys.argv[1]) if len(sys.argv) > 1 else 100_000)

    def timed(label: str, run: Callable[[], vornik1d.Network]) -> vornik1d.Network:
        start = time.perf_counter()
        mesh = run()
        print(f"{label}: {time.perf_counter() - start:.2f} s, {len(mesh)} elements")
        return mesh

    def by_batches(remesh_batches: Callable[[List[Batch]], List[vornik1d.Network]]) -> vornik1d.Network:
        batches = split(coords, connect, colors, max(1, min(10_000, len(connect) // 10)))
        return join(coords, batches, remesh_batches(batches))

    print(f"{len(connect)} elements")
    whole = timed("one call", lambda: vornik1d.remesh_lines(coords, connect, colors=colors, **OPTIONS))
    serial = timed("batches one by one", lambda: by_batches(one_by_one))
    joined = timed(f"batches {name}", lambda: by_batches(remesh_all))
    if not is_same(whole, serial):
        raise SystemExit("The elements differ from the elements of one call.")
    if not all(map(np.array_equal, joined, serial)):
        raise SystemExit("The network differs from the network that was made one by one.")


if __name__ == "__main__":
    compare("again", one_by_one)
