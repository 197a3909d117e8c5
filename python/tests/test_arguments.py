"""What is wrong with an argument is said with its name; what is right is left as it was."""

import doctest
import resource
import threading

import numpy as np
import pytest

import vornik1d as v
from vornik1d import _meshing
from vornik1d._arguments import Arguments

LINE = [[0.0, 0.0], [1.0, 0.0], [2.0, 1.0], [4.0, 1.0]]
RING = [0, 0, 1, 2, 3, 3]
CONNECT = [[0, 1], [1, 2], [2, 3]]
NAN = float("nan")

FAULTS = [
    ("mesh_line: coords", lambda: v.mesh_line([1, 2, 3], 1)),
    ("mesh_line: coords", lambda: v.mesh_line(np.zeros((3, 4)), 1)),
    ("mesh_line: sizes", lambda: v.mesh_line(LINE, -1)),
    ("mesh_line: sizes", lambda: v.mesh_line(LINE, NAN)),
    ("mesh_line: sizes", lambda: v.mesh_line(LINE, [1, 1])),
    ("mesh_line: metrics", lambda: v.mesh_line(LINE, metrics=np.ones((4, 6)))),
    ("mesh_line: metrics", lambda: v.mesh_line(LINE, metrics=np.ones((4, 3)))),
    ("mesh_line: metrics", lambda: v.mesh_line(LINE, metrics=[[[1, 2], [3, 9]]] * 4)),
    ("mesh_line: metrics: must have shape", lambda: v.mesh_line(LINE, metrics=[np.eye(3)] * 4)),
    ("mesh_line: metrics: must have shape (n, 3) or", lambda: v.mesh_line(LINE, metrics=[1, 0, 1])),
    ("interpolate_metrics: values", lambda: v.interpolate_metrics([0, 1], [[1], [2]], [0.5])),
    ("extrude_translate: vector", lambda: v.extrude_translate([0, 0], [1e200, 0], sizes=1)),
    ("remesh_lines: default_size: must not", lambda: v.remesh_lines(LINE, CONNECT, -1)),
    ("mesh_line: coords", lambda: v.mesh_line(np.ma.masked_greater(LINE, 3), 1)),
    ("mesh_line: min_size", lambda: v.mesh_line(LINE, 1, min_size=10**400)),
    ("mesh_line: params", lambda: v.mesh_line(LINE, 1, params=[0, 2, 1, 3])),
    ("mesh_line: params", lambda: v.mesh_line(LINE, 1, params=[0, 1])),
    ("mesh_line: indices", lambda: v.mesh_line(LINE, 1, indices=[0, 4])),
    ("mesh_line: indices", lambda: v.mesh_line(LINE, 1, indices=[0, -1])),
    ("mesh_line: indices", lambda: v.mesh_line(LINE, 1, indices=[0, 2**32])),
    ("mesh_line: indices", lambda: v.mesh_line(LINE, 1, indices=[0, 2**64])),
    ("mesh_line: indices", lambda: v.mesh_line(LINE, 1, indices=[2])),
    ("mesh_line: indices", lambda: v.mesh_line(LINE, 1, indices=[[0, 1]])),
    ("mesh_line: min_elements", lambda: v.mesh_line(LINE, 1, min_elements=0)),
    ("mesh_line: min_elements", lambda: v.mesh_line(LINE, 1, min_elements=-1)),
    ("mesh_line: max_elements", lambda: v.mesh_line(LINE, 1, max_elements=2**32)),
    ("mesh_spline: coords", lambda: v.mesh_spline([[0, 0]], 1)),
    ("mesh_spline: coords", lambda: v.mesh_spline([[0, 0], [1, NAN]], 1)),
    ("mesh_spline: indices", lambda: v.mesh_spline(LINE, 1, indices=[0, 1])),
    ("mesh_spline: sizes", lambda: v.mesh_spline(LINE, 0, indices=RING)),
    ("mesh_spline: sizes", lambda: v.mesh_spline(LINE, [1, 1])),
    ("mesh_spline: min_size", lambda: v.mesh_spline(LINE, 1, min_size=NAN)),
    ("mesh_spline: min_elements", lambda: v.mesh_spline(LINE, 1, min_elements=3, max_elements=2)),
    ("spline_point: span", lambda: v.spline_point(LINE, [0, 1, 2, 9], 0.5)),
    ("spline_point: span", lambda: v.spline_point(LINE, [0, 1, 2], 0.5)),
    ("mesh_straight: sizes", lambda: v.mesh_straight(LINE, [1, 1, 1])),
    ("mesh_straight: segment", lambda: v.mesh_straight(LINE, element_count=3, segment=(0, 9))),
    ("mesh_straight: segment", lambda: v.mesh_straight(LINE, element_count=3, segment=(0,))),
    ("mesh_straight: segment", lambda: v.mesh_straight(LINE, element_count=3, segment=(1, 1))),
    ("mesh_straight: sizes", lambda: v.mesh_straight(LINE, [1, 0], segment=(0, 1))),
    ("remesh_lines: connect", lambda: v.remesh_lines(LINE, [[0, 9]], 1)),
    ("remesh_lines: connect", lambda: v.remesh_lines(LINE, [0, 1], 1)),
    ("remesh_lines: connect: holds a line of length 0", lambda: v.remesh_lines(LINE, [[1, 1]], 1)),
    *(
        (
            "remesh_lines: coords",
            lambda more=more: v.remesh_lines([[0, 0], [NAN, 0], [1, 0], [2, 0]], CONNECT, 1, **more),
        )
        for more in ({}, {"colors": [1]}, {"hard_nodes": [1]}, {"deviation_tolerance": -0.1})
    ),
    ("remesh_lines: default_size", lambda: v.remesh_lines(LINE, CONNECT, -1)),
    ("remesh_lines: default_size", lambda: v.remesh_lines(LINE, CONNECT, 0)),
    ("remesh_lines: hard_edges", lambda: v.remesh_lines(LINE, CONNECT, 1, hard_edges=[3])),
    *(
        (
            f"remesh_lines: {name}",
            lambda name=name, more=more: v.remesh_lines(LINE, CONNECT, 1, **{name: NAN}, **more),
        )
        for name in ("max_angle", "max_gradation", "min_size")
        for more in ({}, {"colors": [1]}, {"hard_nodes": [1]})
    ),
    *(
        ("remesh_lines: min_elements", lambda more=more: v.remesh_lines(LINE, CONNECT, 1, **more))
        for few in ({"min_elements": 0}, {"min_elements": 3, "max_elements": 2})
        for more in (few, {"colors": [1], **few}, {"hard_nodes": [1], **few})
    ),
    ("interpolate_metrics: params", lambda: v.interpolate_metrics([1, 0], [1, 1], [0])),
    ("interpolate_metrics: values", lambda: v.interpolate_metrics([0, 1], [1], [0])),
    ("interpolate_metrics: new_params", lambda: v.interpolate_metrics([0, 1], [1, 1], [NAN])),
    (
        "metrics_gen_aniso2d: size_along",
        lambda: v.metrics_gen_aniso2d(directions=LINE, size_along=0, size_across=1),
    ),
    (
        "metrics_gen_aniso2d: size_across",
        lambda: v.metrics_gen_aniso2d(directions=LINE, size_along=1, size_across=-1),
    ),
    ("metrics_gen_aniso2d: connect", lambda: v.metrics_gen_aniso2d(LINE, [[0, 4]], 1)),
    (
        "metrics_gen_aniso2d: metrics",
        lambda: v.metrics_gen_aniso2d(LINE, CONNECT, 1, metrics=np.ones((2, 6))),
    ),
    ("pack_metrics: tensors", lambda: v.pack_metrics([[[1, 2], [3, 9]]])),
    ("unpack_metrics: packed", lambda: v.unpack_metrics(np.eye(4))),
    ("metrics_gen_aniso3d: coords", lambda: v.metrics_gen_aniso3d(LINE, CONNECT, 1)),
    ("extrude_translate: start", lambda: v.extrude_translate(0, [1, 0], element_count=3)),
    ("extrude_translate: start", lambda: v.extrude_translate([0, 0, 0], [1, 0], element_count=3)),
    ("extrude_translate: vector", lambda: v.extrude_translate([0, 0], [0, 0], sizes=1)),
    ("extrude_translate: sizes", lambda: v.extrude_translate([0, 0], [1, 0], sizes=(1, -1))),
    ("extrude_rotate: rotation", lambda: v.extrude_rotate([1, 0], [0, 0], [1, 2], element_count=3)),
    ("extrude_rotate: rotation", lambda: v.extrude_rotate([1, 0, 0], [0, 0, 0], 1, element_count=3)),
    ("extrude_rotate: element_count", lambda: v.extrude_rotate([1, 0], [0, 0], 1, element_count=-3)),
    ("curvatures: indices", lambda: v.curvatures(LINE, [9])),
    ("length: indices", lambda: v.length(LINE, [0])),
    ("length: connect", lambda: v.length(LINE, connect=[[0, 9]])),
    ("parametric_curvatures: tangents", lambda: v.parametric_curvatures([0, 1], [[0, 1]], LINE)),
    ("parametric_curvatures: connect", lambda: v.parametric_curvatures([0, 1, 2, 3], [[0, 9]], LINE)),
    ("interpolate_coordinates: params", lambda: v.interpolate_coordinates(LINE, [1, 0], [2], [0])),
    ("interpolate_coordinates: new_params", lambda: v.interpolate_coordinates(LINE, [0, 1], [2], [0, 1])),
    ("normals: coords", lambda: v.normals(np.zeros((2, 3)), [[0, 1]])),
    ("normals: connect", lambda: v.normals(LINE, [[0, 9]])),
    ("indices_to_connectE2: indices", lambda: v.indices_to_connectE2([1])),
    ("indices_to_connectE3: connect", lambda: v.indices_to_connectE3([1, 2, 3], [[1, 2, 3, 4]])),
    ("split_into_linear: connect_in", lambda: v.split_into_linear([[1, 2, 3, 4]])),
    ("convert_into_linear: connect", lambda: v.convert_into_linear([[1, 2]])),
    ("convert_into_quadratic: connect", lambda: v.convert_into_quadratic(LINE, [[0, 9]])),
    ("mesh_reorient: start", lambda: v.mesh_reorient(CONNECT, start=3)),
    ("mesh_reorient: neighbors", lambda: v.mesh_reorient(CONNECT, [[1, 2]])),
    ("sort: indices", lambda: v.sort([1, 2], [1])),
    ("subdivide: indices", lambda: v.subdivide([0, 1], 1, [0, 2])),
    ("subdivide: min_elements", lambda: v.subdivide([0, 1], 1, min_elements=0)),
]

TYPES = [
    ("mesh_line: coords", lambda: v.mesh_line("abc", 1)),
    ("mesh_line: coords", lambda: v.mesh_line([[0, 0], [1]], 1)),
    ("mesh_line: coords", lambda: v.mesh_line(np.zeros((2, 2), complex), 1)),
    ("mesh_line: indices", lambda: v.mesh_line(LINE, 1, indices=[0.0, 1.5])),
    ("mesh_line: sizes, metrics", lambda: v.mesh_line(LINE)),
    ("mesh_line: sizes, metrics", lambda: v.mesh_line(LINE, 1, metrics=np.ones((4, 3)))),
    ("mesh_line: max_elements", lambda: v.mesh_line(LINE, 1, max_elements=7.5)),
    ("mesh_line: min_size", lambda: v.mesh_line(LINE, 1, min_size="0.1")),
    ("mesh_line: force_even", lambda: v.mesh_line(LINE, 1, force_even="no")),
    ("mesh_spline: closed", lambda: v.mesh_spline(LINE, 1, indices=RING, closed=True)),
    ("mesh_straight: sizes, metrics, element_count", lambda: v.mesh_straight(LINE)),
    ("mesh_straight: element_count", lambda: v.mesh_straight(LINE, 1, element_count=2)),
    ("mesh_straight: segment", lambda: v.mesh_straight(LINE, 1, segment=1)),
    ("mesh_straight: segment", lambda: v.mesh_straight(LINE, 1, segment=(0, 1), indices=[0, 1])),
    ("mesh_straight: segment", lambda: v.mesh_straight(LINE, metrics=np.ones((2, 3)), segment=(0, 1))),
    (
        "mesh_straight: force_even",
        lambda: v.mesh_straight(LINE, segment=(0, 1), element_count=2, force_even=True),
    ),
    ("remesh_lines: colors", lambda: v.remesh_lines(LINE, CONNECT, 1, colors=["red"])),
    ("length: connect", lambda: v.length(LINE, RING, connect=CONNECT)),
    ("spline_point: span", lambda: v.spline_point(LINE, 1, 0.5)),
    ("extrude_translate: element_count, sizes", lambda: v.extrude_translate([0, 0], [1, 0])),
    ("extrude_translate: start", lambda: v.extrude_translate([0, [1]], [1, 0], sizes=1)),
    ("extrude_rotate: rotation", lambda: v.extrude_rotate([0, 0], [1, 0], [0, [1]], sizes=1)),
    ("metrics_gen_aniso2d: directions", lambda: v.metrics_gen_aniso2d(LINE, CONNECT, 1, directions=LINE)),
    ("metrics_gen_aniso2d: size_along", lambda: v.metrics_gen_aniso2d(directions=LINE)),
    ("metrics_gen_aniso2d: indices", lambda: v.metrics_gen_aniso2d(LINE, CONNECT, 1, indices=[0])),
    ("pack_metrics: tensors", lambda: v.pack_metrics("abc")),
]


@pytest.mark.parametrize(
    "error, name, call", [(ValueError, *f) for f in FAULTS] + [(TypeError, *f) for f in TYPES]
)
def test_errors_name_the_argument(error, name, call):
    with pytest.raises(error) as caught:
        call()
    assert str(caught.value).startswith(name)
    assert len(str(caught.value)) > len(name) + 8


def test_no_storage_is_a_memory_error():
    with pytest.raises(MemoryError):
        v.extrude_translate([0, 0], [1, 0], element_count=v.UNLIMITED)
    for status in (-199, -196, -195):  # of the overloads of remesh_lines
        with pytest.raises(MemoryError, match="remesh_lines"):
            Arguments("remesh_lines").check(status, {})


def test_nothing_handed_over_is_changed_and_results_are_own():
    coords, sizes = np.array(LINE), np.full(4, 0.5)
    connect = np.array(CONNECT, np.uint32)
    hard, colors = np.array([3, 1, 0, 0], np.uint32), np.array([5, 5, 6], np.uint32)
    arrays = [coords, sizes, connect, hard, colors]
    before = [a.copy() for a in arrays]
    made = [
        v.mesh_line(coords, 9.0).coords,  # no new nodes
        v.mesh_line(coords, sizes).coords,
        v.remesh_lines(coords, connect, 0.5, hard_nodes=hard, colors=colors).hard_nodes,
        v.remesh_lines(coords, connect, 0.5, hard_nodes=hard, colors=colors).colors,
        v.remesh_lines(coords, connect[:0], 0.5, hard_nodes=hard, colors=colors).connect,
        v.sort(sizes, hard)[0],
        v.flip(connect),
        v.mesh_reorient(connect).connect,
        v.interpolate_coordinates(coords, [0, 1], [3], [0.5]),
        v.convert_into_high_order(coords, connect, 0).connect,
        v.subdivide(sizes, sizes, hard).params,
        v.normals(coords, connect),
    ]
    for result in made:
        assert not any(np.shares_memory(result, a) for a in arrays)
        result[...] = 9
    for array, old in zip(arrays, before):
        assert (array == old).all()


def test_arrays_that_fit_are_read_in_place_and_others_are_converted():
    fit = np.array(LINE)
    assert Arguments("f").coords(fit) is fit
    off = np.zeros(fit.nbytes + 1, np.uint8)[1:].view(np.float64).reshape(fit.shape)
    off[...] = fit
    swapped = fit.astype(fit.dtype.newbyteorder())
    for other in (off, swapped, np.ma.masked_array(fit), fit.astype(np.float16)):
        made = Arguments("f").coords(other)
        assert type(made) is np.ndarray and made.dtype == np.float64 and made.flags.aligned
        assert (made == fit).all()


def test_results_keep_their_shapes_without_elements():
    assert (v.normals(LINE, []) == np.zeros((4, 2))).all()
    assert (v.parametric_curvatures([0, 1, 2, 3], [], LINE) == np.zeros(4)).all()
    assert v.interpolate_metrics([0, 1], [np.eye(3)] * 2, []).shape == (0, 6)
    assert v.convert_into_high_order(LINE, [], 3).connect.shape == (0, 5)
    assert v.convert_into_quadratic(LINE, []).connect.shape == (0, 3)
    assert v.convert_into_cubic(LINE, []).connect.shape == (0, 4)
    assert v.convert_into_linear([]).shape == (0, 2)
    assert v.mesh_reorient([]).neighbors.shape == (0, 2)
    assert v.remesh_lines(LINE, [], 1).connect.shape == (0, 2)


def test_pack_metrics_is_undone_by_unpack_metrics():
    for d in (2, 3):
        full = np.arange(d * d * 2.0).reshape(2, d, d)
        full += full.transpose(0, 2, 1)
        packed = v.pack_metrics(full)
        assert (v.unpack_metrics(packed) == full).all()
        assert packed[0, 1] == full[0, 0, 1] and packed[1, -1] == full[1, -1, -1]
        line = np.array(LINE) if d == 2 else np.pad(LINE, ((0, 0), (0, 1)))
        tensors = np.eye(d)[None].repeat(4, axis=0) * 4
        assert len(v.mesh_line(line, metrics=tensors).indices) == len(v.mesh_line(line, 0.5).indices)


def test_splines_through_all_nodes():
    t = np.linspace(0, 2 * np.pi, 24, endpoint=False)
    circle = np.stack([np.cos(t), np.sin(t)], axis=1)
    ring = v.mesh_spline(circle, 0.1, closed=True)
    assert ring.indices[0] == ring.indices[-1] == 0
    assert abs(np.hypot(*ring.coords[ring.indices].T) - 1).max() < 0.01
    assert v.mesh_spline(circle, 0.1).indices[-1] == 23


def test_no_leak():
    coords, connect = np.array(LINE), np.array(CONNECT, np.uint32)

    def use(times):
        for _ in range(times):
            v.mesh_line(coords, 0.01)
            v.remesh_lines(coords, connect, 0.05, colors=[1, 2, 3])
            try:
                v.mesh_line(coords, -1)
            except ValueError:
                pass
        return resource.getrusage(resource.RUSAGE_SELF).ru_maxrss

    warm = use(3000)
    assert use(35000) - warm < 4000  # KiB; one lost array per call would be ten times that


def test_threads_mesh_at_the_same_time():
    # While one call is at work without the lock, another thread gets to run.
    t = np.linspace(0, 60, 200000)
    wave = np.stack([t, np.sin(t)], axis=1)
    is_done = threading.Event()
    turns = []

    def count():
        while not is_done.is_set():
            turns.append(1)

    beside = threading.Thread(target=count)
    alone = v.mesh_line(wave, 1e-4)
    beside.start()
    before = len(turns)
    again = v.mesh_line(wave, 1e-4)
    during = len(turns) - before
    is_done.set()
    beside.join()
    assert during > 0
    assert (alone.coords == again.coords).all()


def test_what_the_documentation_shows():
    for module in (v, _meshing):
        result = doctest.testmod(module)
        assert result.attempted > 0 and result.failed == 0


def test_every_function_is_documented():
    for name in v.__all__:
        assert name in ("UNLIMITED", "version") or len(getattr(v, name).__doc__) > 20, name
