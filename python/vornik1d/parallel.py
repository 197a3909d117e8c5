"""Remeshes networks on many cores or machines.

    >>> from vornik1d import parallel
    >>> coords, connect = [[0, 0], [9, 0], [9, 9], [0, 9]], [[0, 1], [1, 2], [1, 3]]
    >>> parallel.remesh_lines(coords, connect, 1.0)
    Network: 32 nodes, 31 elements in 3 chains, length 30.73, elements 0.9791 to 1 long

The network is cut into chains: lines from one end, corner or junction to the next. Batches of chains are meshed apart
from one another and put together again. The result is that of vornik1d.remesh_lines, bit for bit and in the same order.
So connected networks, such as roads and rivers, are spread over the cores too.

remesh_files remeshes many files. Each is read and written where it is remeshed.
"""

from __future__ import annotations

import concurrent.futures
import os
import time
import warnings
from pathlib import Path
from typing import Any, Callable, Dict, Iterable, List, NamedTuple, Optional, SupportsIndex, Tuple, Union

import numpy as np
import numpy.typing as npt

from ._arguments import Arguments, Real
from ._chains import BATCH_ELEMENTS, Cut, Mesh, Mesher, Output, Part, keep_rings_of_two
from ._networks import finish, prepare, remesh_lines as remesh_in_one_call
from ._results import Network

__all__ = ["remesh_lines", "remesh_files", "FileReport"]

Progress = Union[bool, Callable[[int, int], Any]]
FilePath = Union[str, "os.PathLike[str]"]


def remesh_lines(
    coords: npt.ArrayLike,
    connect: npt.ArrayLike,
    default_size: Real,
    *,
    executor: Any = None,
    batch_elements: SupportsIndex = BATCH_ELEMENTS,
    progress: Progress = False,
    **options: Any,
) -> Network:
    """Remesh a network in batches, on threads or by any executor. The result is that of vornik1d.remesh_lines.

    Parameters
    ----------
    coords, connect, default_size, options
        As for vornik1d.remesh_lines.
    executor : concurrent.futures.Executor or distributed.Client, optional
        What runs the batches. If it is not given, a thread is started for each core. Threads share the arrays; to
        processes and machines the batches are sent.
    batch_elements : int
        The least number of elements of a batch. A chain is never divided.
    progress : bool or callable
        True shows a bar (needs tqdm). A callable gets the number of elements done and their total.

    Returns
    -------
    Network

    Raises
    ------
    ValueError, TypeError, MemoryError
        As vornik1d.remesh_lines.
    """
    least = Arguments("remesh_lines").count("batch_elements", batch_elements)
    network, turned, request = prepare(coords, connect, default_size, **{**_defaults(), **options})
    if len(network.connect) == 0:
        return remesh_in_one_call(coords, connect, default_size, **options)
    cut = Cut(network, max(least, 1))
    mesher = Mesher(network.default_size, network.limits, network.min_loop_elements)
    if executor is None:
        with concurrent.futures.ThreadPoolExecutor(_cores()) as threads:
            made = _run(cut, mesher, threads, progress)
    else:
        made = _run(cut, mesher, executor, progress)
    return finish(network, turned, request, made)


def _defaults() -> Dict[str, Any]:
    return dict(remesh_in_one_call.__kwdefaults__)


def _cores() -> int:
    return len(os.sched_getaffinity(0)) if hasattr(os, "sched_getaffinity") else os.cpu_count() or 1


def _run(cut: Cut, mesher: Mesher, executor: Any, progress: Progress) -> Output:
    if hasattr(executor, "get_executor"):  # a distributed.Client
        executor = executor.get_executor(pure=False)
    is_shared = isinstance(executor, concurrent.futures.ThreadPoolExecutor)

    def gather_and_mesh(batch: Tuple[int, int]) -> Tuple[Part, Mesh]:
        part = cut.part(batch)
        return part, mesher(part)

    parts: List[Part] = []
    futures = []
    for batch in cut.batches:
        if is_shared:
            futures.append(executor.submit(gather_and_mesh, batch))
        else:
            parts.append(cut.part(batch))
            futures.append(executor.submit(mesher, parts[-1]))
    results = _wait(futures, [cut.elements(batch) for batch in cut.batches], progress)
    if is_shared:
        parts, meshes = [part for part, _ in results], [mesh for _, mesh in results]
    else:
        meshes = results
    keep_rings_of_two(parts, meshes, mesher)
    return cut.join(parts, meshes, executor.map if is_shared else map)


def _wait(futures: List[Any], works: List[int], progress: Progress) -> List[Any]:
    """The results of the futures in their order. If one fails, the others are cancelled."""
    with _Bar(sum(works), progress) as bar:
        numbers = {id(future): k for k, future in enumerate(futures)}
        try:
            for future in concurrent.futures.as_completed(futures):
                future.result()
                bar.add(works[numbers[id(future)]])
        except BaseException:
            for future in futures:
                future.cancel()
            raise
    return [future.result() for future in futures]


class _Bar:
    """Tells a callable or a bar of tqdm how much is done."""

    def __init__(self, total: int, progress: Progress) -> None:
        self._done, self._total = 0, total
        self._call = progress if callable(progress) else None
        self._bar: Any = None
        if progress is True:
            try:
                from tqdm import tqdm
            except ImportError as error:
                raise ImportError("progress=True needs tqdm: pip install vornik1d[parallel]") from error
            self._bar = tqdm(total=total, unit=" elements", unit_scale=True)

    def __enter__(self) -> _Bar:
        return self

    def __exit__(self, *_: object) -> None:
        if self._bar is not None:
            self._bar.close()

    def add(self, work: int) -> None:
        self._done += work
        if self._call is not None:
            self._call(self._done, self._total)
        if self._bar is not None:
            self._bar.update(work)


class FileReport(NamedTuple):
    """What was done with a file. warnings holds the texts of the warnings that the mesh gave rise to."""

    source: str
    target: str
    elements_before: int
    elements: int
    nodes: int
    seconds: float
    warnings: List[str]


def remesh_files(
    paths: Iterable[FilePath],
    targets: Union[FilePath, Callable[[str], FilePath]],
    default_size: Real,
    *,
    executor: Any = None,
    workers: Optional[Dict[str, Any]] = None,
    progress: Progress = False,
    **options: Any,
) -> List[FileReport]:
    """Remesh many files. Each file is read, remeshed and written by the worker that gets it.

    Only file names, options and reports travel, no network.

    Parameters
    ----------
    paths
        The files. An .npz file has the arrays coords and connect, and may have sizes, colors, hard_nodes and
        hard_edges. Other files are read by meshio (extra mesh): their line cells; the colour of an element is its
        physical group (gmsh:physical), otherwise its block of cells.
    targets
        A directory in which the new files get the names of the old ones, or a function from the old path to the new
        one. A file is complete when it appears.
    default_size, options
        As for vornik1d.remesh_lines. Arrays of the file go before options.
    executor : concurrent.futures.Executor or distributed.Client, optional
        What runs the files. If it is not given, a process is started for each core.
    workers : dict, optional
        For a distributed.Client: the address of the worker that has a file, by path.
    progress : bool or callable
        As for remesh_lines, in files.

    Returns
    -------
    list of FileReport
        One per file, in the order of paths.

    Raises
    ------
    ValueError, OSError
        With the path of the file, if a file cannot be read or remeshed. Files that were done stay.
    """
    jobs = []
    for path in paths:
        source = os.fspath(path)
        target = targets(source) if callable(targets) else Path(targets) / Path(source).name
        jobs.append((source, os.fspath(target), default_size, options))
    if executor is None:
        with concurrent.futures.ProcessPoolExecutor(_cores()) as processes:
            return _wait([processes.submit(_remesh_file, *job) for job in jobs], [1] * len(jobs), progress)
    if not hasattr(executor, "get_executor"):
        return _wait([executor.submit(_remesh_file, *job) for job in jobs], [1] * len(jobs), progress)
    futures = []
    for job in jobs:
        where = (workers or {}).get(job[0])
        chosen = executor.get_executor(pure=False, **({} if where is None else {"workers": where}))
        futures.append(chosen.submit(_remesh_file, *job))
    return _wait(futures, [1] * len(jobs), progress)


def _remesh_file(source: str, target: str, default_size: Real, options: Dict[str, Any]) -> FileReport:
    start = time.perf_counter()
    network = _read(source)
    with warnings.catch_warnings(record=True) as caught:
        warnings.simplefilter("always")
        try:
            mesh = remesh_in_one_call(default_size=default_size, **{**options, **network})
        except (ValueError, TypeError, MemoryError) as error:
            raise type(error)(f"{source}: {error}") from error
    unfinished = f"{target}.part{Path(target).suffix}"
    try:
        _write(unfinished, mesh)
        os.replace(unfinished, target)
    finally:
        if os.path.exists(unfinished):
            os.remove(unfinished)
    seconds = time.perf_counter() - start
    texts = [str(warning.message) for warning in caught]
    used = len(np.unique(mesh.connect))
    return FileReport(source, target, len(network["connect"]), len(mesh), used, seconds, texts)


def _read(path: str) -> Dict[str, Any]:
    if Path(path).suffix == ".npz":
        with np.load(path) as arrays:
            known = ("coords", "connect", "sizes", "colors", "hard_nodes", "hard_edges")
            missing = [name for name in known[:2] if name not in arrays]
            if missing:
                raise ValueError(f"{path}: has no array {missing[0]}; it needs coords and connect")
            return {name: arrays[name] for name in known if name in arrays}
    meshio = _meshio()
    mesh = meshio.read(path)
    groups = mesh.cell_data.get("gmsh:physical")
    blocks = [k for k, block in enumerate(mesh.cells) if block.type == "line"]
    if not blocks:
        raise ValueError(f"{path}: has no line cells")
    colors = [
        np.full(len(mesh.cells[k].data), k) if groups is None else np.asarray(groups[k]).ravel()
        for k in blocks
    ]
    return {
        "coords": mesh.points,
        "connect": np.concatenate([mesh.cells[k].data for k in blocks]),
        "colors": np.concatenate(colors),
    }


def _write(path: str, mesh: Network) -> None:
    if Path(path).suffix == ".npz":
        used, _ = mesh.compact()
        np.savez(
            path, coords=used.coords, connect=used.connect, colors=used.colors, hard_nodes=used.hard_nodes
        )
    else:
        mesh.to_meshio().write(path)


def _meshio() -> Any:
    try:
        import meshio
    except ImportError as error:
        raise ImportError("Files other than .npz need meshio: pip install vornik1d[mesh]") from error
    return meshio
