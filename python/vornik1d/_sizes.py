"""Sizes given as a function of position."""

from __future__ import annotations

from dataclasses import replace
from typing import Callable, Optional, Tuple, Union

import numpy as np
import numpy.typing as npt

from . import _core
from ._arguments import UNLIMITED, Nodes, Reals
from ._foresee import LineRequest
from ._results import LineMesh
from ._warnings import warn

SizeFunction = Callable[[Reals], npt.ArrayLike]
Sizes = Union[npt.ArrayLike, SizeFunction]

LONGEST = (
    2.0  # length of a piece between two samples, in sizes; a wider feature of the function is not missed
)
SHORTEST = 0.5  # the same; shorter pieces are not divided
BEND = 0.01  # how far the size at the middle of a piece may be from the mean of the ends, as a share
MOST_SAMPLES = 10_000_000
ROUGH = 0.25  # like BEND, for lines that get no samples


def evaluate(function: str, sizes: SizeFunction, points: Reals) -> Reals:
    """The sizes at some positions, checked."""
    given = sizes(points.copy())
    values = np.asarray(given)
    if values.dtype.kind not in "iuf":
        raise TypeError(f"{function}: sizes returned {values.dtype} values; sizes must be real numbers")
    if values.shape != (len(points),):
        raise ValueError(
            f"{function}: sizes returned shape {values.shape} for {len(points)} positions; it must return one size "
            "per position"
        )
    wrong = np.flatnonzero(~(np.isfinite(values) & (values > 0)))
    if len(wrong) > 0:
        place = ", ".join(f"{x:.6g}" for x in points[wrong[0]])
        raise ValueError(
            f"{function}: sizes returned {values[wrong[0]]:.6g} at ({place}); sizes must be positive and finite"
        )
    return np.require(values, np.float64, ["C", "A"])


class SampledLine:
    """A chain with samples of a size function as additional nodes between its own nodes.

    coords: the given nodes, then the samples. chain, params, sizes: of the chain with the samples.
    """

    def __init__(
        self,
        function: str,
        sizes: SizeFunction,
        coords: Reals,
        chain: Nodes,
        params: Optional[Reals] = None,
        at_nodes_only: bool = False,
    ) -> None:
        self.coords, self.chain, self.params = coords, chain, params
        self._given = coords
        self._is_straight = len(chain) == 2
        if len(chain) == 0 or chain.max() >= len(coords):
            self.sizes = np.ones(len(chain))  # not valid; the call reports why
            return
        nodes = coords[chain]
        self.sizes = evaluate(function, sizes, nodes)
        if not np.isfinite(nodes).all() or (params is not None and len(params) != len(chain)):
            return
        if at_nodes_only:
            warn_if_rough(
                function, sizes, coords, np.column_stack([chain[:-1], chain[1:]]), self.sizes, chain
            )
            return
        at, samples = _sample(function, sizes, nodes, self.sizes)
        segment = at.astype(np.int64).clip(0, len(chain) - 2)
        part = (at - segment)[:, None]
        points = nodes[segment] * (1 - part) + nodes[segment + 1] * part
        numbers = np.arange(len(coords), len(coords) + len(at), dtype=np.uint32)
        order = np.concatenate([np.arange(len(chain)), at]).argsort(kind="stable")
        self.coords = np.concatenate([coords, points])
        self.chain = np.concatenate([chain, numbers])[order]
        self.sizes = np.concatenate([self.sizes, samples])[order]
        if params is not None:
            between = params[segment] * (1 - part[:, 0]) + params[segment + 1] * part[:, 0]
            self.params = np.concatenate([params, between])[order]

    def fewest(self, even: bool, fewest: int, most: int) -> int:
        """The least number of elements to ask the library for."""
        if not self._is_straight:
            return fewest
        return _count(self.coords, self.chain, self.sizes, even, fewest, most)

    def without_samples(self, mesh: LineMesh) -> LineMesh:
        """The mesh of the given nodes and the new nodes. Samples that are in the mesh become new nodes."""
        base = len(self._given)
        is_new = mesh.indices >= base
        new, rank = np.unique(mesh.indices[is_new], return_inverse=True)
        indices = mesh.indices.copy()
        indices[is_new] = rank.astype(np.uint32) + np.uint32(base)
        coords = np.concatenate([self._given, mesh.coords[new]])
        return replace(mesh, coords=coords, indices=indices)


def _count(coords: Reals, chain: Nodes, sizes: Reals, even: bool, fewest: int, most: int) -> int:
    """The number of elements that sizes ask for on a straight line. One pass is exact for it.

    As the least number of elements, it makes the library stop after this pass.
    """
    if not 0 < fewest <= most:
        return fewest
    length = _core.chain_metric_lengths(coords, chain, sizes, False)[0]
    return min(_core.element_count(length, even, fewest, most), most)


def _sample(function: str, sizes: SizeFunction, nodes: Reals, at_nodes: Reals) -> Tuple[Reals, Reals]:
    """Samples a function between nodes: positions (segment number plus fraction) and sizes.

    Pieces of the line are bisected, level by level, while they are too long or the function is not linear on them.
    """
    lengths = np.linalg.norm(np.diff(nodes, axis=0), axis=1)
    segment = np.arange(len(lengths))
    start, end = np.zeros(len(lengths)), np.ones(len(lengths))
    near, far = at_nodes[:-1], at_nodes[1:]
    found, found_sizes = [np.empty(0)], [np.empty(0)]
    count = 0
    while True:
        length = lengths[segment] * (end - start)
        active = length > SHORTEST * np.minimum(near, far)
        if not active.any():
            break
        segment, start, end, length = segment[active], start[active], end[active], length[active]
        near, far = near[active], far[active]
        if count + len(segment) > MOST_SAMPLES:
            smallest = min(near.min(), far.min())
            raise ValueError(
                f"{function}: sizes needs more than {MOST_SAMPLES:,} samples on a line of length "
                f"{lengths.sum():.6g}; the smallest size found is {smallest:.6g}; check the units"
            )
        half = (start + end) / 2
        part = half[:, None]
        middle = evaluate(function, sizes, nodes[segment] * (1 - part) + nodes[segment + 1] * part)
        is_bent = np.abs(middle - (near + far) / 2) > BEND * middle
        divide = (length > LONGEST * np.minimum(np.minimum(near, far), middle)) | (
            is_bent & (length > SHORTEST * middle)
        )
        segment, start, half, end = segment[divide], start[divide], half[divide], end[divide]
        near, middle, far = near[divide], middle[divide], far[divide]
        found.append(segment + half)
        found_sizes.append(middle)
        count += len(segment)
        segment = np.concatenate([segment, segment])
        start, end = np.concatenate([start, half]), np.concatenate([half, end])
        near, far = np.concatenate([near, middle]), np.concatenate([middle, far])
    at, samples = np.concatenate(found), np.concatenate(found_sizes)
    # On chains of many nodes a sample can round to a node.
    is_inside = at != np.floor(at)
    return at[is_inside], samples[is_inside]


def warn_if_rough(
    function: str,
    sizes: SizeFunction,
    coords: Reals,
    connect: Nodes,
    values: Reals,
    by: Optional[Nodes] = None,
) -> None:
    """Warns if a function is far from linear on a segment, where only its values at the nodes count.

    values: the sizes at all nodes, or those of the nodes of a chain `by`.
    """
    ends = connect[:, :2]
    near, far = (values[:-1], values[1:]) if by is not None else values[ends].T
    lengths = np.linalg.norm(coords[ends[:, 1]] - coords[ends[:, 0]], axis=1)
    long = np.flatnonzero(np.isfinite(lengths) & (lengths > 0))
    if len(long) == 0:
        return
    middle = np.full(len(lengths), np.inf)
    middle[long] = evaluate(function, sizes, (coords[ends[long, 0]] + coords[ends[long, 1]]) / 2)
    mean = (near + far) / 2
    with np.errstate(invalid="ignore"):
        excess = np.where(lengths > middle, np.abs(middle - mean) / np.minimum(mean, middle), 0)
    k = int(excess.argmax())
    if excess[k] > ROUGH:
        a, b = ends[k]
        warn(
            f"{function}: sizes is evaluated at the nodes only; between nodes {a} and {b} it is {middle[k]:.3g}, "
            f"but {mean[k]:.3g} by the values at these nodes; add nodes"
        )


def at_nodes(function: str, sizes: SizeFunction, coords: Reals, connect: Nodes) -> Reals:
    """The sizes by node number. Nodes without elements have none."""
    result = np.zeros(len(coords))
    if connect.size == 0 or connect[:, :2].max() >= len(coords):
        return result  # the call reports what is not valid
    used = np.unique(connect[:, :2])
    used = used[np.isfinite(coords[used]).all(axis=1)]
    result[used] = evaluate(function, sizes, coords[used])
    warn_if_rough(function, sizes, coords, connect, result)
    return result


def along_chain(
    function: str, sizes: SizeFunction, coords: Reals, chain: Nodes, has_guides: bool, is_closed: bool
) -> Reals:
    """The sizes at the nodes of a spline's chain, which has a guide node at either end or none."""
    if len(chain) < 2 or chain.max() >= len(coords) or not np.isfinite(coords[chain]).all():
        return np.ones(len(chain))  # not valid; the call reports why
    values = evaluate(function, sizes, coords[chain])
    inner = slice(1, -1) if has_guides else slice(None)
    line, own = chain[inner], values[inner]
    if is_closed:
        line, own = np.append(line, line[:1]), np.append(own, own[:1])
    warn_if_rough(function, sizes, coords, np.column_stack([line[:-1], line[1:]]), own, line)
    return values


def mesh_segments(
    function: str, sizes: SizeFunction, coords: Reals, chain: Nodes, force_even: bool
) -> Tuple[Reals, Nodes]:
    """Meshes each segment of a chain by samples of a function: all nodes, and those of the mesh."""
    line = SampledLine(function, sizes, coords, chain)
    LineRequest(function, line.coords, line.chain, line.sizes, is_sampled=True)
    nodes = np.flatnonzero(line.chain < len(coords))
    points, mesh = [coords], [chain[:1]]
    base = len(coords)
    for first, last in zip(nodes[:-1], nodes[1:]):
        piece = np.ascontiguousarray(line.coords[line.chain[first : last + 1]])
        if (piece[0] != piece[-1]).any():
            own = np.arange(len(piece), dtype=np.uint32)
            own_sizes = line.sizes[first : last + 1]
            count = _count(piece, own, own_sizes, force_even, 1, UNLIMITED)
            limits = _core.mesh_limits(force_even, count, UNLIMITED, 0.0, 0.0)
            status, all_points, _, _, _ = _core.mesh_line(piece, own, None, own_sizes, limits)
            new = len(all_points) - len(piece)
            if status != 0 or base + new > UNLIMITED:
                raise MemoryError(f"{function}: not enough memory")
            points.append(all_points[len(piece) :])
            mesh.append(np.arange(base, base + new, dtype=np.uint32))
            base += new
        mesh.append(line.chain[last : last + 1])
    return np.concatenate(points), np.concatenate(mesh)
