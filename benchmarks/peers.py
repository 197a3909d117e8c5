"""Times the library beside what users would take in its place, on the same lines, and prints a table.

A line is three waves of n segments, with sizes at its nodes that vary by 1:5 and ask for 4 new nodes per segment. All
sides make as many, into new arrays; but where each segment is meshed on its own, by 4 elements in the mean, they are
about a quarter fewer. What is timed is the work alone, in time that the thread has had of a core: no start of an
interpreter, no reading of files, and for Gmsh not the building of its model. Sides run by turns, each turn in a process
of its own; a figure is the median of three turns, and in a turn the median of its calls.
"""

import argparse
import json
import subprocess
import sys
import tempfile
import time
from pathlib import Path
from statistics import median
from typing import NamedTuple

import numpy as np

NODES_PER_SEGMENT = 4
TURNS = 3
ENOUGH = 0.25  # seconds that a side is called for in a turn
MOST = 60.0  # seconds that a call may take; longer ones are left out


class Line(NamedTuple):
    coords: np.ndarray  # (n + 1, 2)
    sizes: np.ndarray
    params: np.ndarray


def steps(coords, sizes):
    """The metric length of each segment, by the trapezoidal rule."""
    return np.hypot(*np.diff(coords, axis=0).T) * 0.5 * (1 / sizes[1:] + 1 / sizes[:-1])


def make_line(segments):
    t = np.linspace(0, 1, segments + 1)
    coords = np.column_stack([t, 0.1 * np.sin(6 * np.pi * t)])
    sizes = 5 ** (0.5 * np.sin(4 * np.pi * t))
    sizes *= steps(coords, sizes).sum() / (NODES_PER_SEGMENT * segments + 1)
    return Line(coords, sizes, t)


def write_line(line, path):
    np.concatenate([line.coords.ravel(), line.sizes, line.params]).tofile(path)


def read_line(path):
    values = np.fromfile(path)
    n = len(values) // 4
    return Line(values[:2 * n].reshape(n, 2), values[2 * n:3 * n].copy(), values[3 * n:].copy())


# Each peer takes a line and returns a function that makes a call, and tells its seconds and the number of new nodes.


def timed(call, count):
    def run():
        start = time.thread_time()
        result = call()
        seconds = time.thread_time() - start
        return seconds, count(result)
    return run


def numpy_interp(line):
    """A table of metric lengths; coordinates, sizes and parameters at equal steps of it."""
    def call():
        length = np.concatenate([[0], np.cumsum(steps(line.coords, line.sizes))])
        at = np.linspace(0, length[-1], max(round(length[-1]), 1) + 1)
        return [np.interp(at, length, values) for values in (*line.coords.T, line.sizes, line.params)]
    return timed(call, lambda made: len(made[0]) - 2)


def scipy_spline(line):
    """An interpolating cubic spline, and points of it at parameters that are known before."""
    from scipy.interpolate import splev, splprep

    new_params = np.linspace(0, 1, NODES_PER_SEGMENT * (len(line.params) - 1) + 2)

    def call():
        spline, _ = splprep(line.coords.T, u=line.params, s=0)
        return splev(new_params, spline)
    return timed(call, lambda made: len(made[0]) - 2)


def shapely_interpolate(line):
    """Points at equal steps of length, whatever the sizes: Shapely has no others."""
    from shapely.geometry import LineString

    elements = NODES_PER_SEGMENT * (len(line.params) - 1) + 1

    def call():
        string = LineString(line.coords)
        return [string.interpolate(distance) for distance in np.linspace(0, string.length, elements + 1)]
    return timed(call, lambda made: len(made) - 2)


def gmsh_1d(line):
    """A straight line for each segment with the sizes at its ends, as mesh_straight takes it; meshed in 1D."""
    import gmsh

    def run():
        gmsh.initialize(["", "-nt", "1"], readConfigFiles=False)
        gmsh.option.setNumber("General.Terminal", 0)
        geometry = gmsh.model.geo
        for k, ((x, y), size) in enumerate(zip(line.coords, line.sizes)):
            geometry.addPoint(x, y, 0, size, k + 1)
        for k in range(1, len(line.coords)):
            geometry.addLine(k, k + 1, k)
        geometry.synchronize()
        start = time.thread_time()
        gmsh.model.mesh.generate(1)
        seconds = time.thread_time() - start
        new_nodes = len(gmsh.model.mesh.getNodes()[0]) - len(line.coords)
        gmsh.finalize()
        return seconds, new_nodes
    return run


def python_package(line):
    import vornik1d

    return timed(lambda: vornik1d.mesh_line(line.coords, params=line.params, sizes=line.sizes),
                 lambda mesh: len(mesh.indices) - 2)


PEERS = {
    "mesh_line from Python": python_package,
    "NumPy cumsum, interp": numpy_interp,
    "SciPy splprep, splev": scipy_spline,
    "Shapely interpolate": shapely_interpolate,
    "Gmsh, 1D stage": gmsh_1d,
}
FUNCTIONS = ("mesh_line", "mesh_straight", "mesh_spline", "remesh_lines")  # in C++; the first is the measure


def take_turn(run):
    """Median seconds of as many calls as there is time for, and the number of new nodes."""
    results = [run()]
    if results[0][0] < ENOUGH:
        results = []  # the first call may load what later ones find
    while not results or sum(seconds for seconds, _ in results) < ENOUGH:
        results.append(run())
    return {"ns": 1e9 * median(seconds for seconds, _ in results), "new_nodes": results[0][1]}


def start_turn(name, program, file):
    own = name in FUNCTIONS
    command = [program, file, name] if own else [sys.executable, __file__, program, "--side", name, file]
    done = subprocess.run(command, stdout=subprocess.PIPE, text=True, check=True)
    return json.loads(done.stdout)


def measure(names, segments, program, file):
    """What each side takes: nanoseconds of a call, and per new node."""
    write_line(make_line(segments), file)
    turns = {name: [] for name in names}
    for _ in range(TURNS):
        for name, results in turns.items():
            if results and results[0]["ns"] > 1e8 * MOST:
                continue  # takes so long that once is enough
            results.append(start_turn(name, program, file))
            share = results[0]["new_nodes"] / (NODES_PER_SEGMENT * segments)
            if not 0.7 < share < 1.3:
                sys.exit(f"{name} makes {share:.2f} times as many nodes as it is to make.")
    return {name: {"call": median(r["ns"] for r in results), "node": median(r["ns"] / r["new_nodes"] for r in results)}
            for name, results in turns.items()}


def measure_all(most, program, file):
    """Nanoseconds per new node by segments and side, without those that would take too long."""
    names = [*FUNCTIONS, *PEERS]
    before = {}
    figures = {}
    segments = 1000
    while segments <= most:
        results = measure(names, segments, program, file)
        figures[segments] = {name: result["node"] for name, result in results.items()}
        growth = {name: max(10.0, result["call"] / before.get(name, result)["call"]) for name, result in results.items()}
        names = [name for name in names if results[name]["call"] * growth[name] < 1e9 * MOST]
        before = results
        segments *= 10
    return figures


def print_table(figures):
    print(f"{'ns per new node (ratio to mesh_line); segments':46}", *(f"{segments:>18,}" for segments in figures))
    for name in (*FUNCTIONS, *PEERS):
        cells = [f"{f[name]:,.0f} ({f[name] / f[FUNCTIONS[0]]:,.1f})" if name in f else "" for f in figures.values()]
        print(f"{name:46}", *(f"{cell:>18}" for cell in cells))


def spread(ends, least):
    """Where labels stand beside the ends of their lines: as far apart as their height asks for, in the same order."""
    places = [cost for cost, _, _ in ends]
    for _ in range(100):
        for i, j in ((i, j) for i in range(len(ends)) for j in range(len(ends))):
            (cost_i, segments_i, _), (cost_j, segments_j, _) = ends[i], ends[j]
            lack = least - (places[j] - places[i])
            if segments_i == segments_j and cost_i < cost_j and lack > 0:
                places[i] -= 0.5 * lack
                places[j] += 0.5 * lack
    return places


def draw(figures, prefix):
    import matplotlib
    matplotlib.use("Agg")
    from matplotlib import pyplot

    pyplot.rcParams.update({"font.family": "DejaVu Sans", "font.size": 11, "svg.hashsalt": "peers"})
    own, other = "#c8501e", "#5a6672"
    names = ["mesh_line", "mesh_spline", "remesh_lines", *list(PEERS)[1:]]
    chart, axes = pyplot.subplots(figsize=(8, 5))
    ends = []
    for name in names:
        costs = {segments: f[name] for segments, f in figures.items() if name in f}
        segments, costs = list(costs), list(costs.values())
        style = {"color": own, "linewidth": 2.5, "zorder": 3} if name in FUNCTIONS else {"color": other, "linewidth": 1.5}
        axes.plot(segments, costs, marker="o", markersize=4, **style)
        ends.append((np.log10(costs[-1]), segments[-1], name))
    axes.set(xscale="log", yscale="log")

    places = spread(ends, least=0.055 * np.diff(np.log10(axes.get_ylim()))[0])
    for (_, segments, name), place in zip(ends, places):
        axes.annotate(name, (segments, 10**place), xytext=(9, 0), textcoords="offset points", va="center",
                      color=own if name in FUNCTIONS else other, fontweight="bold" if name in FUNCTIONS else "normal",
                      annotation_clip=False)

    axes.set_title("Cost per new node, in nanoseconds", loc="left", fontsize=13)
    axes.set_xlabel("Segments of the line, 4 new nodes on each")
    axes.set_xticks(list(figures))
    axes.minorticks_off()
    for axis in (axes.xaxis, axes.yaxis):
        axis.set_major_formatter(lambda value, _: f"{value:,.0f}")
    axes.grid(axis="y", color="#e3e6e9", linewidth=0.8)
    axes.spines[["top", "right", "left"]].set_visible(False)
    axes.tick_params(axis="y", length=0)
    chart.savefig(prefix.with_suffix(".svg"), bbox_inches="tight", metadata={"Date": None})
    chart.savefig(prefix.with_suffix(".png"), bbox_inches="tight", dpi=110)


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("program", help="that times the C++ functions")
    parser.add_argument("--most", type=int, default=1_000_000, help="segments of a line")
    parser.add_argument("--chart", type=Path, default=Path("docs/peers"), help="what to draw, without .svg and .png")
    parser.add_argument("--side", nargs=2, help=argparse.SUPPRESS)
    arguments = parser.parse_args()
    if arguments.side:
        name, file = arguments.side
        print(json.dumps(take_turn(PEERS[name](read_line(file)))))
        return

    with tempfile.TemporaryDirectory() as folder:
        figures = measure_all(arguments.most, arguments.program, str(Path(folder) / "line"))
    print_table(figures)
    draw(figures, arguments.chart)
    print(f"Drawn: {arguments.chart}.svg and .png.")


main()
