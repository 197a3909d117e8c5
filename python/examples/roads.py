"""Remeshes a made-up network of roads in one call and in parallel, compares the results, and tells the times.

Usage: roads.py [ELEMENTS] [threads|processes|dask]

The roads form one connected network: a grid of streets with junctions of three and four arms. The numbers of elements
per street are spread like those of real streets.
"""

import concurrent.futures
import os
import resource
import sys
import time
from typing import Any, Callable, Tuple

import numpy as np

import vornik1d
from vornik1d import parallel

ROUNDS = 7


def roads(elements: int, seed: int = 7) -> Tuple[np.ndarray, np.ndarray]:
    """Coordinates in metres, and about `elements` elements."""
    random = np.random.default_rng(seed)
    side = int(np.sqrt(elements / 14.5)) + 2
    junctions = 100 * np.stack(np.meshgrid(np.arange(side), np.arange(side)), axis=-1).reshape(-1, 2)
    junctions = junctions + random.uniform(-25, 25, junctions.shape)
    node = np.arange(side * side).reshape(side, side)
    ends = np.concatenate(
        [
            np.stack([node[:, :-1], node[:, 1:]], -1).reshape(-1, 2),
            np.stack([node[:-1], node[1:]], -1).reshape(-1, 2),
        ]
    )
    ends = ends[random.random(len(ends)) < 0.9]
    ends = ends[np.argsort(ends[:, 0], kind="stable")]
    counts = np.maximum(1, np.rint(random.lognormal(np.log(6), 0.8, len(ends)))).astype(int)
    street = np.repeat(np.arange(len(ends)), counts)  # of each element
    step = np.arange(len(street)) - np.repeat(np.cumsum(counts) - counts, counts)
    t = (step + 1) / counts[street]
    a, b = junctions[ends[street, 0]], junctions[ends[street, 1]]
    bend = random.uniform(-0.1, 0.1, len(ends))[street] * np.sin(np.pi * t)
    bend += random.uniform(-0.01, 0.01, len(t))
    along = b - a
    inner = a + t[:, None] * along + bend[:, None] * np.stack([-along[:, 1], along[:, 0]], axis=1)
    is_last = step + 1 == counts[street]
    number = np.cumsum(~is_last) - 1 + len(junctions)
    second = np.where(is_last, ends[street, 1], number)
    first = np.where(step == 0, ends[street, 0], np.roll(second, 1))
    return np.concatenate([junctions, inner[~is_last]]), np.stack([first, second], axis=1).astype(np.uint32)


def best(run: Callable[[], vornik1d.Network]) -> Tuple[float, vornik1d.Network]:
    times = []
    for _ in range(ROUNDS):
        start = time.perf_counter()
        mesh = run()
        times.append(time.perf_counter() - start)
    return min(times), mesh


def main(elements: int, how: str) -> None:
    coords, connect = roads(elements)
    print(f"{len(connect):,} elements of one network, {len(coords):,} nodes")
    with executor_of(how) as executor:
        for tolerance in (0.0, 0.5, -0.02):
            options = {"deviation_tolerance": tolerance}
            single, whole = best(lambda: vornik1d.remesh_lines(coords, connect, 20.0, **options))
            shared, joined = best(
                lambda: parallel.remesh_lines(coords, connect, 20.0, executor=executor, **options)
            )
            if not all(map(np.array_equal, whole, joined)):
                raise SystemExit("The network differs from the network of a single call.")
            print(
                f"tolerance {tolerance:5}: {len(whole):,} elements; a single call {single:.3f} s, "
                f"{how} {shared:.3f} s: {single / shared:.2f} times as fast, best of {ROUNDS}"
            )
    peak = resource.getrusage(resource.RUSAGE_SELF).ru_maxrss / 1024
    print(f"peak memory {peak:,.0f} MB")


def executor_of(how: str) -> Any:
    if how == "threads":
        return concurrent.futures.ThreadPoolExecutor(os.cpu_count())
    if how == "processes":
        return concurrent.futures.ProcessPoolExecutor(os.cpu_count())
    from dask.distributed import Client

    return Client(n_workers=os.cpu_count(), threads_per_worker=1, dashboard_address=None)


if __name__ == "__main__":  # worker processes import this file too
    main(
        int(sys.argv[1]) if len(sys.argv) > 1 else 1_000_000,
        sys.argv[2] if len(sys.argv) > 2 else "threads",
    )
