"""Every function gives the numbers that it gives in C++, bit for bit, however its arrays lie in memory."""

import subprocess
from pathlib import Path

import numpy as np
import pytest

import vornik1d as v

PROGRAM = Path(__file__).parents[2] / "build/python/python/python_reference"
COUNT = 12
CHAIN = np.arange(COUNT)
GUIDED = np.array([0, *range(COUNT), 11])
SIZES = (1 + CHAIN % 4) / 4
PARAMS = CHAIN * (CHAIN + 1) / 2
CONNECT = np.stack([CHAIN[:-1], CHAIN[1:]], axis=1)


def coords(d):
    k = CHAIN
    return np.stack([k + k * k % 7 / 8, k * 5 % 11 / 4, k * 3 % 7 / 2], axis=1)[:, :d]


def metrics(d):
    k = CHAIN
    z = np.zeros(COUNT)
    flat = [4 + k % 3, k % 2 / 2, 2 + k % 5]
    deep = [4 + k % 3, k % 2 / 2, z + 3, z + 0.25, z, 2 + k % 5]
    return np.stack(flat if d == 2 else deep, axis=1).astype(float)


def read_only(a):
    a = a.copy()
    a.flags.writeable = False
    return a


def strided(a):
    padded = np.full([2 * n for n in a.shape], 77, a.dtype)
    view = padded[tuple(slice(None, None, 2) for _ in a.shape)]
    view[...] = a
    return view


LAYOUTS = {
    "C order": np.ascontiguousarray,
    "Fortran order": np.asfortranarray,
    "strided": strided,
    "backwards": lambda a: np.ascontiguousarray(a[::-1])[::-1],
    "read-only": read_only,
    "lists": lambda a: a.tolist(),
}


def lines(d, lay):
    """Name and results of each call on lines in d dimensions."""
    x, m = lay(coords(d)), lay(metrics(d))
    chain, sizes, params, connect = lay(CHAIN), lay(SIZES), lay(PARAMS), lay(CONNECT)
    guided = lay(GUIDED)
    guided_sizes, guided_metrics = lay(SIZES[GUIDED]), lay(metrics(d)[GUIDED])
    yield "mesh_line params sizes", v.mesh_line(
        x, sizes, indices=chain, params=params, force_even=True, deviation_tolerance=0.5
    )
    yield "mesh_line sizes", v.mesh_line(x, sizes, max_elements=99, deviation_tolerance=-0.1, min_size=0.2)
    yield "mesh_line params metrics", v.mesh_line(x, metrics=m, params=params, deviation_tolerance=0.5)
    yield "mesh_line metrics", v.mesh_line(x, metrics=m, indices=chain)
    spline = dict(min_size=0.01, max_gradation=0.5)
    yield "mesh_spline sizes", v.mesh_spline(
        x, guided_sizes, indices=guided, deviation_tolerance=0.05, **spline
    )
    yield "mesh_spline metrics", v.mesh_spline(
        x, metrics=guided_metrics, indices=guided, deviation_tolerance=-0.01, **spline
    )
    yield "spline_point", [v.spline_point(x, lay(CHAIN[:4]), 0.375)]
    yield "mesh_straight sizes", v.mesh_straight(x, sizes, force_even=True)
    yield "mesh_straight metrics", v.mesh_straight(x, metrics=m, indices=chain)
    yield "mesh_straight count", v.mesh_straight(x, element_count=40)
    yield "mesh_straight segment sizes", v.mesh_straight(x, [0.25, 0.5], segment=(2, 5))
    yield "mesh_straight segment count", v.mesh_straight(x, segment=(2, 5), element_count=7)
    yield "mesh_straight segments count", v.mesh_straight(x, segment=(2, 5, 9), element_count=7)
    wanted = lay(np.array([0, 0.5, 7, 66]))
    yield "interpolate_metrics sizes", [v.interpolate_metrics(params, sizes, wanted)]
    yield "interpolate_metrics metrics", [v.interpolate_metrics(params, m, wanted)]
    yield "curvatures", [v.curvatures(x)]
    yield "length", [v.length(x)]
    yield "length connect", [v.length(x, connect=connect)]
    yield "parametric_curvatures", [v.parametric_curvatures(params, connect, x)]
    yield "interpolate_coordinates", [
        v.interpolate_coordinates(x, params, lay(np.array([3, 4])), lay(np.array([0.5, 50.0])))
    ]
    yield "remesh_lines", v.remesh_lines(x, connect, 0.75, force_even=True, max_angle=60)
    spline["max_angle"] = 60
    colors = lay(np.array([7, 7, 9]))
    yield "remesh_lines colors", v.remesh_lines(
        x, connect, 0.75, colors=colors, deviation_tolerance=0.1, **spline
    )
    yield "remesh_lines hard", v.remesh_lines(
        x,
        connect,
        0.75,
        sizes=lay(np.array([0.25, 0.5])),
        colors=colors,
        hard_nodes=lay(np.array([5])),
        hard_edges=lay(np.array([8])),
        deviation_tolerance=-0.1,
        **spline,
    )
    point, center = lay(np.full(d, 0.5)), lay(-0.25 * np.arange(d))
    path = lay(3.0 - np.arange(d))
    turn = 2.5 if d == 2 else path
    for start, name in ((point, "point"), (3, "node")):
        for how in (dict(element_count=5), dict(sizes=(0.25, 0.75), force_even=True)):
            kind = "count" if "element_count" in how else "sizes"
            yield f"extrude_translate {kind} {name}", v.extrude_translate(start, path, coords=x, **how)
            yield f"extrude_rotate {kind} {name}", v.extrude_rotate(start, center, turn, coords=x, **how)


def rest(lay):
    x, deep, connect = lay(coords(2)), lay(coords(3)), lay(CONNECT)
    tensors = v.metrics_gen_aniso2d(directions=x, indices=lay(CHAIN), size_along=0.5, size_across=2)
    yield "metrics_gen_aniso2d directions", [tensors]
    yield "metrics_gen_aniso2d", [v.metrics_gen_aniso2d(x, connect, -0.5, metrics=lay(tensors))]
    tensors = v.metrics_gen_aniso3d(deep, connect, 0.5)
    yield "metrics_gen_aniso3d", [tensors]
    yield "metrics_gen_aniso3d binormal", [
        v.metrics_gen_aniso3d(deep, connect, 0.25, 0.5, metrics=lay(tensors))
    ]
    yield "normals", [v.normals(x, connect, 1)]
    yield "indices_to_connectE2", [v.indices_to_connectE2(lay(np.array([0, 11])), connect)]
    quadratic = v.indices_to_connectE3(lay(CHAIN[:5]))
    yield "indices_to_connectE3", [quadratic]
    yield "indices_to_connectE4", [v.indices_to_connectE4(lay(CHAIN[:4]))]
    halves = lay(v.split_into_linear(lay(quadratic)))
    yield "split_into_linear", [halves]
    many, high = v.convert_into_high_order(x, halves, 3)
    yield "convert_into_high_order", [many, high]
    yield "convert_into_high_order none", [v.convert_into_high_order(x, halves, 0).connect]
    yield "convert_into_linear", [v.convert_into_linear(lay(high))]
    more, elements = v.convert_into_quadratic(deep, halves)
    yield "convert_into_quadratic", [more, elements]
    most, cubic = v.convert_into_cubic(lay(more), connect)
    yield "convert_into_cubic", [most, cubic]
    yield "flip", [v.flip(lay(cubic))]
    yield "mesh_reorient", v.mesh_reorient(lay(np.array([[0, 1], [2, 1], [2, 3]])))
    yield "sort", v.sort(lay(np.array([3.0, 1, 2, 1])), lay(np.array([7, 5, 6, 4])))
    yield "subdivide", v.subdivide(lay(PARAMS), lay(SIZES), round_up=True)


@pytest.fixture(scope="module")
def expected():
    """The results of C++ by the name of the call, each a list of arrays."""
    text = subprocess.run([PROGRAM], check=True, capture_output=True, text=True).stdout
    result = {}
    names = sorted({name for name in text_names(text)}, key=len, reverse=True)
    for line in text.splitlines():
        name = next(n for n in names if line == n or line.startswith(n + " ") or line.startswith(n))
        result.setdefault(name, []).append([float.fromhex(x) for x in line[len(name) :].split()])
    return result


def text_names(text):
    """The words before the numbers."""
    for line in text.splitlines():
        words = line.split()
        while words and words[-1].lstrip("-").startswith(("0x", "nan", "inf")):
            words.pop()
        yield " ".join(words)


@pytest.mark.parametrize("layout", LAYOUTS)
def test_results_are_those_of_cpp(expected, layout):
    lay = LAYOUTS[layout]
    calls = [(f"{name} 2D", result) for name, result in lines(2, lay)]
    calls += [(f"{name} 3D", result) for name, result in lines(3, lay)]
    calls += list(rest(lay))
    assert sorted(name for name, _ in calls) == sorted(expected)
    for name, results in calls:
        made = [np.asarray(r, dtype=float).ravel() for r in results if r is not None]
        assert len(made) == len(expected[name]), name
        for got, wanted in zip(made, expected[name]):
            assert got.tobytes() == np.array(wanted).tobytes(), name
