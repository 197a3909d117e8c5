"""Foresees how many elements sizes ask for, and compares this number with the mesh.

The library cannot make every mesh that sizes ask for: node numbers have 32 bits, and memory ends. A line then
becomes coarser. A line also becomes coarser if sizes of neighbours differ too much. The functions of the package
refuse such requests before the call where they can, and otherwise warn after it.
"""

from __future__ import annotations

import os
from typing import Optional, Tuple

import numpy as np

from . import _core
from ._arguments import UNLIMITED, Nodes, Reals, unpack_metrics
from ._chains import Input
from ._warnings import warn

FEW = 50_000  # requests for fewer elements are neither too large nor too slow
# The library places 30 to 60 million nodes per second by sizes, so this is 1 to 2 minutes.
MOST_PLACEMENTS = 4e9
TENSOR_WORK = 5.0  # time to place a node by tensors, divided by the time by sizes
NEAR = 0.25  # share of the memory; if a larger request gives a coarse mesh, memory may have run out


def memory() -> float:
    """The memory in bytes that this process may use: of the machine, or less if a limit is set."""
    limits = [float("inf")]
    try:
        limits.append(float(os.sysconf("SC_PHYS_PAGES")) * os.sysconf("SC_PAGE_SIZE"))
        import resource

        soft = resource.getrlimit(resource.RLIMIT_AS)[0]
        limits.append(float(soft) if soft != resource.RLIM_INFINITY else float("inf"))
    except (ImportError, AttributeError, OSError, ValueError):
        pass  # not a POSIX system
    for path in ("/sys/fs/cgroup/memory.max", "/sys/fs/cgroup/memory/memory.limit_in_bytes"):
        try:
            with open(path, encoding="ascii") as file:
                limits.append(float(file.read()))
        except (OSError, ValueError):
            pass  # no such limit, or "max"
    return min(x for x in limits if x > 0)


def _number(value: float) -> str:
    return f"{value:,.0f}" if value < 1e7 else f"{value:.3g}"


def _place(point: Reals) -> str:
    return "(" + ", ".join(f"{x:.6g}" for x in point) + ")"


class _Request:
    """What a call is asked for: the number of elements, and the memory that they need."""

    def __init__(self, function: str, asked: float, element_bytes: int, most: int, node_count: int) -> None:
        self.function = function
        self.asked = asked
        self.most = most
        self._element_bytes = element_bytes
        self._node_count = node_count

    def is_too_large(self, elements: float) -> bool:
        """Whether numbers or memory do not suffice for a number of elements."""
        if not elements > FEW:
            return False
        return elements > UNLIMITED - self._node_count or self.bytes(elements) > memory()

    def bytes(self, elements: float) -> float:
        return self._element_bytes * elements

    def warn_or_raise(self, asked: float, count: int, place: str, reason: str) -> None:
        """Reports that a mesh has fewer elements than asked for."""
        start = f"{self.function}: sizes ask for {_number(asked)} elements{place}"
        if count >= self.most:
            fault = f"{start}; max_elements limits the mesh to {_number(self.most)}"
        elif self.bytes(asked) > NEAR * memory():
            raise MemoryError(f"{start}; there is not enough memory for them")
        else:
            fault = f"{start}, but the mesh has {_number(count)}{reason}"
        warn(fault)


class LineRequest(_Request):
    """The elements that sizes or tensors ask for on a chain. Raises ValueError if there are too many.

    most: max_elements; None if the function has no such argument.
    params: the parameters of the chain; the normalised chord length if not given.
    default_size: for a spline with gradation, the size between its nodes.
    is_sampled: the sizes are values of a function at positions, which have no numbers of their own.
    """

    def __init__(
        self,
        function: str,
        coords: Reals,
        chain: Nodes,
        targets: Reals,
        *,
        most: Optional[int] = None,
        params: Optional[Reals] = None,
        first_entry: int = 0,
        default_size: float = 0.0,
        has_passes: bool = False,
        is_sampled: bool = False,
    ) -> None:
        self._coords, self._chain, self._targets, self._params = coords, chain, targets, params
        self._name = "sizes" if targets.ndim == 1 else "metrics"
        self._first_entry = first_entry
        self._has_passes = has_passes and len(chain) > 2
        self._is_sampled = is_sampled
        asked = _core.chain_metric_lengths(coords, chain, targets, False)[0]
        dimension = coords.shape[1]
        width = 1 if targets.ndim == 1 else targets.shape[1]
        # Coordinates and a node number; parameter, target and metric length. This is the measured peak.
        element_bytes = 8 * dimension + 4 + (0 if most is None else 8 + 8 * width + 8)
        super().__init__(function, asked, element_bytes, UNLIMITED if most is None else most, len(coords))
        if default_size > 0:
            self._use_default(default_size, most)
        if self.asked > FEW and self._is_valid():
            if self.is_too_large(min(asked, self.most + 1.0)):
                self._refuse(most is not None)
            if self._has_passes:
                self._refuse_slow(min(asked, self.most))

    def _use_default(self, default_size: float, most: Optional[int]) -> None:
        """Away from its nodes a spline with gradation has the default size, or less."""
        length = _core.length(self._coords, self._chain)[1]
        if np.isfinite(length) and self.is_too_large(min(length / default_size, self.most + 1.0)):
            raise ValueError(
                f"{self.function}: default_size asks for {_number(length / default_size)} elements; it is "
                f"{default_size:.6g} on a line of length {length:.6g}; check the units, or set max_elements"
            )
        if self._name == "sizes":
            largest = np.maximum(self._targets, default_size)
            self.asked = _core.chain_metric_lengths(self._coords, self._chain, largest, False)[0]
        else:
            self.asked = 0.0  # how far the tensors of the nodes reach is not known

    def _is_valid(self) -> bool:
        """Whether the targets and the line are valid. If not, the call reports why."""
        targets = self._targets[: len(self._chain)]
        is_valid = np.isfinite(targets).all() and (targets.ndim == 2 or (targets > 0).all())
        return bool(is_valid) and bool(np.isfinite(_core.length(self._coords, self._chain)[1]))

    def _entry(self, i: int) -> str:
        """The name of a target, which a message can use."""
        if self._is_sampled:
            return "the size at " + _place(self._coords[self._chain[i]])
        return f"{self._name}[{i + self._first_entry}]"

    def _refuse(self, has_limit: bool) -> None:
        length = _core.length(self._coords, self._chain)[1]
        if self._name == "sizes":
            k = int(self._targets[: len(self._chain)].argmin())
            cause = f"the smallest size is {self._targets[k]:.6g} ({self._entry(k)}) on"
        else:
            cause = "they are for"
        raise ValueError(
            f"{self.function}: {self._name} ask for {_number(self.asked)} elements; {cause} a line of length "
            f"{length:.6g}; check the units{', or set max_elements' if has_limit else ''}"
        )

    def _refuse_slow(self, asked: float) -> None:
        if self._name == "sizes":  # an upper bound of the passes, in short time
            bound = 1.0 + float(self._targets.max() / self._targets.min())
            if is_fast(self._name, asked, bound):
                return
        count = passes(*segments(self._coords, self._chain, self._targets))
        refuse_slow(self.function, self._name, asked, count)

    def compare(self, coords: Reals, mesh: Nodes, params: Optional[Reals] = None) -> None:
        """Warns if a mesh has fewer than half of the elements asked for."""
        count = len(mesh) - 1
        if not (self.asked >= 2 and count < self.asked / 2):
            return
        asked = self.asked if params is None else self._asked_along(coords[mesh], params)
        if not count < asked / 2:
            return
        reason = ""
        if self._has_passes:
            lengths, near, far, _ = segments(self._coords, self._chain, self._targets)
            k = steepest(lengths, near, far)
            reason = (
                f": {self._name} of neighbours differ too much ({self._entry(k)} is {near[k]:.6g}, "
                f"{self._entry(k + 1)} is {far[k]:.6g}); bound their ratio"
            )
            if self._name == "metrics":
                reason = reason.replace(" is ", " gives the size ")
        self.warn_or_raise(asked, count, "", reason)

    def _asked_along(self, points: Reals, at: Reals) -> float:
        """The elements that the targets ask for along the mesh. A mesh that cuts corners of the chain is shorter."""
        nodes = self._coords[self._chain]
        params = self._params
        if params is None:
            steps = np.linalg.norm(np.diff(nodes, axis=0), axis=1)
            params = np.concatenate([[0], np.cumsum(steps) / steps.sum()])
        both = np.concatenate([params, at]).clip(params[0], params[-1])
        order = both.argsort(kind="stable")
        both = both[order]
        positions = np.column_stack([np.interp(at, params, x) for x in nodes.T])
        positions = np.ascontiguousarray(np.concatenate([nodes, positions])[order])
        status, targets = _core.interpolate_metrics(params, self._targets[: len(params)], both)
        if status != 0:
            return self.asked
        chain = np.arange(len(both), dtype=np.uint32)
        metric = _core.chain_metric_lengths(positions, chain, targets, True)[1]
        lengths = np.linalg.norm(np.diff(positions, axis=0), axis=1)
        element = np.searchsorted(at, (both[:-1] + both[1:]) / 2, "right") - 1
        element = element.clip(0, len(points) - 2)
        asked = np.bincount(element, metric, len(points) - 1)
        covered = np.bincount(element, lengths, len(points) - 1)
        chords = np.linalg.norm(np.diff(points, axis=0), axis=1)
        has_length = covered > 0
        return float(np.sum(chords[has_length] * asked[has_length] / covered[has_length]))


def segments(coords: Reals, chain: Nodes, targets: Reals) -> Tuple[Reals, Reals, Reals, Reals]:
    """The lengths of the segments of a chain, the sizes at their starts and ends, and their metric lengths."""
    steps = np.diff(coords[chain], axis=0)
    lengths = np.linalg.norm(steps, axis=1)
    metric = _core.chain_metric_lengths(coords, chain, targets, True)[1]
    if targets.ndim == 1:
        return lengths, targets[: len(chain) - 1], targets[1 : len(chain)], metric
    tensors = unpack_metrics(targets[: len(chain)])
    with np.errstate(all="ignore"):
        near = lengths / np.sqrt(np.einsum("ki,kij,kj->k", steps, tensors[:-1], steps))
        far = lengths / np.sqrt(np.einsum("ki,kij,kj->k", steps, tensors[1:], steps))
    return lengths, np.nan_to_num(near), np.nan_to_num(far), metric


def steepest(lengths: Reals, near: Reals, far: Reals) -> int:
    """The segment along which the size changes most per length."""
    return int((np.abs(far - near) / np.maximum(lengths, np.finfo(float).tiny)).argmax())


def passes(lengths: Reals, near: Reals, far: Reals, metric: Reals) -> float:
    """The largest number of passes in which the library meshes a chain, as far as the sizes decide on it.

    A segment of metric length below 1 is too short for its larger size. The element that contains it becomes
    longer, by about one element of the smaller size in each pass, until its metric length is 1: until it is as
    long as the mean size. The elements on this distance disappear one by one.
    """
    with np.errstate(all="ignore"):
        reach = np.where((metric > 0) & (metric < 1), lengths / metric - lengths, 0)
    short = np.flatnonzero(reach > np.minimum(near, far))
    if len(short) == 0:
        return 1.0
    at = np.concatenate([[0], np.cumsum(lengths)])
    grows = far[short] > near[short]
    start = np.where(grows, at[short], at[short + 1])
    end = np.clip(np.where(grows, start - reach[short], start + reach[short]), 0, at[-1])
    # The metric length up to any position: on a straight line with nodes there too.
    positions = np.unique(np.concatenate([at, end]))
    sizes = np.interp(positions, at, np.concatenate([near, far[-1:]]))
    line = np.column_stack([positions, np.zeros(len(positions))])
    chain = np.arange(len(positions), dtype=np.uint32)
    sums = np.concatenate([[0], np.cumsum(_core.chain_metric_lengths(line, chain, sizes, True)[1])])
    eaten = np.abs(np.interp(end, positions, sums) - np.interp(start, positions, sums))
    # A single such segment stops the passes earlier: they end when the count does not decrease, and in k passes the
    # segment has kept k times its metric length.
    order = eaten.argsort()
    k = order[-1]
    others = eaten[order[-2]] if len(order) > 1 else 0.0
    return 1.0 + float(min(eaten[k], others + 1 / metric[short[k]]))


def is_fast(name: str, asked: float, pass_count: float) -> bool:
    """Whether passes end in reasonable time. Each pass drops at least one node."""
    pass_count = min(pass_count, asked)
    work = pass_count * (asked - pass_count / 2)
    return work * (1 if name == "sizes" else TENSOR_WORK) <= MOST_PLACEMENTS


def refuse_slow(function: str, name: str, asked: float, pass_count: float) -> None:
    """Raises ValueError if a chain needs so many passes that the call would not end in reasonable time."""
    if not is_fast(name, asked, pass_count):
        raise ValueError(
            f"{function}: {name} ask for {_number(asked)} elements, and {name} of neighbours differ so much that "
            f"about {_number(min(pass_count, asked))} passes would be necessary; bound their ratio"
        )


def refuse_extrusion(function: str, path: Reals, sizes: object) -> None:
    """Raises ValueError if two sizes ask for too many elements on a path as long as a vector."""
    if isinstance(sizes, list):
        ends = np.array([[0.0, 0.0], [float(np.linalg.norm(path)), 0.0]])
        LineRequest(function, ends, np.array([0, 1], np.uint32), np.array(sizes))


class NetworkRequest(_Request):
    """The elements that sizes ask for on a network. Raises ValueError if there are too many."""

    def __init__(self, network: Input) -> None:
        coords, connect, default_size, sizes, colors, hard_nodes, hard_edges, limits = network[:8]
        angle, min_size, tolerance = limits.max_angle, limits.min_size, limits.deviation_tolerance
        gradation, most = limits.max_gradation, limits.max_elements
        self._coords, self._connect, self._size, self._sizes = coords, connect, default_size, sizes
        self._lists = (colors, hard_nodes, hard_edges, angle, min_size)
        self._hard = np.unique(hard_edges)
        asked, is_steep, _ = _core.network_metric_lengths(coords, connect, default_size, sizes, False)
        # Coordinates, element and node number. The measured peak is up to twice as high if there is a single chain.
        super().__init__("remesh_lines", asked, 8 * coords.shape[1] + 8 + 4, most, len(coords))
        self._is_steep = is_steep
        # On splines with gradation the size is the default, or less, except at the nodes.
        self._least = default_size if tolerance != 0 and gradation > 0 else 0.0
        if len(self._hard) > 0 and self._hard[-1] >= len(connect) or not (angle >= 0 and min_size >= 0):
            self.asked = 0.0  # not valid; the call reports why
        if len(self._hard) > 0 and self.asked > 0:
            hard = connect[self._hard]
            self.asked -= _core.network_metric_lengths(coords, hard, default_size, sizes, False)[0]
        if self.asked > FEW and np.isfinite(_core.length(coords, connect)[1]):
            if self.is_too_large(min(self.asked, (most + 1.0) * len(connect))):
                self._refuse()
            if is_steep and not tolerance < 0:
                self._refuse_slow_chains()

    def _refuse(self) -> None:
        k = int(np.where(self._sizes > 0, self._sizes, np.inf).argmin()) if len(self._sizes) > 0 else -1
        if k >= 0 and 0 < self._sizes[k] < self._size:
            name, smallest, verb = f"sizes[{k}]", self._sizes[k], "ask"
        else:
            name, smallest, verb = "default_size", self._size, "asks"
        subject = "sizes" if verb == "ask" else "default_size"
        cause = f"the smallest size is {smallest:.6g} ({name})" if verb == "ask" else f"it is {smallest:.6g}"
        length = _core.length(self._coords, self._connect)[1]
        raise ValueError(
            f"remesh_lines: {subject} {verb} for {_number(self.asked)} elements; {cause} on lines of total length "
            f"{length:.6g}; check the units, or set max_elements"
        )

    def _chains(self) -> Tuple[Nodes, Nodes, Reals, Reals]:
        """Where chains start in the list of their elements, the elements, the node sizes, the metric lengths."""
        chain_starts, order, sizes = _core.network_chains(
            self._coords, self._connect, self._size, self._sizes, *self._lists
        )
        sizes = np.maximum(sizes, self._least)
        lines = np.ascontiguousarray(self._connect[order])
        metric = _core.network_metric_lengths(self._coords, lines, self._size, sizes, True)[2]
        return chain_starts, order, sizes, metric

    def _refuse_slow_chains(self) -> None:
        starts, order, sizes, metric = self._chains()
        asked = np.add.reduceat(metric, starts[:-1])
        for c in np.flatnonzero(asked > FEW):
            elements = self._connect[order[starts[c] : starts[c + 1]], :2]
            chain = np.append(elements[:, 0], elements[-1, 1])
            count = passes(*segments(self._coords, chain, sizes[chain]))
            refuse_slow(self.function, "sizes", min(asked[c], self.most), count)

    def compare(self, coords: Reals, connect: Nodes) -> None:
        """Warns if the mesh, or that of a chain, has fewer than half of the elements asked for."""
        count = len(connect) - len(self._hard)
        is_coarse = self.asked >= 2 and count < self.asked / 2
        if not is_coarse and not (self.asked >= 2 and (self._is_steep or self.most < UNLIMITED)):
            return
        starts, order, sizes, metric = self._chains()
        lines = self._connect[order, :2]
        lengths = np.linalg.norm(self._coords[lines[:, 1]] - self._coords[lines[:, 0]], axis=1)
        new_lengths = np.linalg.norm(coords[connect[:, 1]] - coords[connect[:, 0]], axis=1)

        # The chains follow one another in the mesh. Each ends at a node at which a chain ends.
        is_end = np.zeros(len(coords), bool)
        is_end[lines[starts[1:] - 1, 1]] = is_end[lines[starts[:-1], 0]] = True
        ends = np.flatnonzero(is_end[connect[:, 1]]) + 1
        if len(ends) != len(starts) - 1 or not np.array_equal(
            connect[ends - 1, 1], lines[starts[1:] - 1, 1]
        ):  # a chain ends inside another one
            ends, starts = np.array([len(connect)]), np.array([0, len(order)], np.uint32)
        first = np.concatenate([[0], ends[:-1]])
        counts = ends - first
        with np.errstate(all="ignore"):
            shorter = np.add.reduceat(new_lengths, first) / np.add.reduceat(lengths, starts[:-1])
            asked = np.add.reduceat(metric, starts[:-1]) * np.minimum(1, shorter)  # meshes can cut corners
        is_hard = np.isin(order[starts[:-1]], self._hard)
        short = np.flatnonzero((asked >= 2) & (counts < asked / 2) & ~is_hard)
        if len(short) == 0:
            return
        c = short[(asked[short] / counts[short]).argmax()]
        own = slice(starts[c], starts[c + 1])
        place = ""
        if len(starts) > 2:
            place = f" on the line from node {lines[own][0, 0]} to node {lines[own][-1, 1]}"
        near, far = sizes[lines[own].T]
        k = steepest(lengths[own], near, far)
        a, b = lines[own][k]
        reason = (
            f": sizes of neighbours differ too much (the size at node {a} is {near[k]:.6g}, at node {b} "
            f"{far[k]:.6g}); bound their ratio"
        )
        self.warn_or_raise(float(asked[c]), int(counts[c]), place, reason)
