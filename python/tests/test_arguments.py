"""Errors name the argument. Arguments do not change. Results have their own memory. Other threads can run."""

import contextlib
import resource
import threading
import time

import numpy as np
import pytest

import vornik1d as v
from vornik1d._arguments import Arguments

LINE = [[0.0, 0.0], [1.0, 0.0], [2.0, 1.0], [4.0, 1.0]]
SPACE = np.pad(LINE, ((0, 0), (0, 1)))
RING = [0, 0, 1, 2, 3, 3]
CONNECT = [[0, 1], [1, 2], [2, 3]]
NAN = float("nan")
KINDS = {}, {"colors": [1]}, {"hard_nodes": [1]}  # the three overloads of remesh_lines
DIRECTED = {"coords": None, "connect": None, "normal_size": None, "directions": LINE}

# A function, a valid call, changes that make a value wrong, and changes that make a type or the set of arguments
# wrong. The error must name the first argument of the change.
# fmt: off
CALLS = [
    (v.mesh_line, dict(coords=LINE, sizes=1), [dict(coords=[1, 2, 3]), dict(coords=np.zeros((3, 4))),
     dict(coords=np.ma.masked_greater(LINE, 3)), dict(sizes=-1), dict(sizes=NAN), dict(sizes=[1, 1]),
     dict(sizes=[1, -1], params=[0, 1], indices=[0, 1]), dict(metrics=np.ones((4, 6)), sizes=None),
     dict(metrics=-np.ones((4, 3)), sizes=None), dict(metrics=[[[1, 2], [3, 9]]] * 4, sizes=None),
     dict(metrics=[np.eye(3)] * 4, sizes=None), dict(metrics=[1, 0, 1], sizes=None), dict(min_size=10**400),
     dict(params=[0, 2, 1, 3]), dict(params=[0, 1]), dict(indices=[0, 4]),
     dict(indices=[0, 4], params=[0, 1], sizes=1), dict(indices=[0, -1]), dict(indices=[0, 2**32]),
     dict(indices=[0, 2**64]), dict(indices=[[0, 1]]), dict(indices=[2]), dict(min_elements=0),
     dict(min_elements=0, params=[0, 1, 2, 3]), dict(min_elements=-1), dict(max_elements=2**32)],
     [dict(coords="abc"), dict(coords=[[0, 0], [1]]), dict(coords=np.zeros((2, 2), complex)),
     dict(coords=np.eye(2, dtype=bool)), dict(indices=[0.0, 1.5]), dict(indices=[False, True]),
     dict(sizes=None), dict(sizes=1, metrics=np.ones((4, 3))), dict(max_elements=7.5), dict(min_size="1"),
     dict(min_size=[1, 2]), dict(force_even="no"), dict(force_even=1.0)]),
    (v.mesh_spline, dict(coords=LINE, sizes=1), [dict(coords=[[0, 0]]), dict(coords=[[0, 0], [1, NAN]]),
     dict(indices=[0, 1]), dict(sizes=[1, 1]), dict(sizes=0, indices=RING), dict(min_size=NAN),
     dict(min_elements=3, max_elements=2), dict(metrics=np.ones((3, 3)), sizes=None)],
     [dict(closed=True, indices=RING)]),
    (v.spline_point, dict(coords=LINE, span=[0, 1, 2, 3], t=0.5),
     [*(dict(span=np.where(np.arange(4) == k, 9, 0)) for k in range(4)), dict(span=[0, 1, 2])],
     [dict(span=1), dict(t=None)]),
    (v.mesh_straight, dict(coords=LINE, sizes=1), [dict(sizes=[1, 1, 1]), dict(sizes=[1, 0], segment=(0, 1)),
     dict(sizes=[0, 1], segment=(0, 1)), dict(sizes=[1, 1, 1], segment=(0, 1)), dict(indices=[0, 9]),
     dict(segment=(0, 1, 2)),
     *(dict(segment=s, sizes=None, element_count=3) for s in ((0,), (0, 9), (9, 0), (1, 1), (0, 1, 9))),
     dict(indices=[1, 1], sizes=None, element_count=3)],
     [dict(sizes=None, segment=(0, 1)), dict(element_count=2), dict(segment=1),
     dict(segment=(0, 1), indices=[0, 1]), dict(segment=(0, 1), sizes=None, metrics=np.ones((2, 3))),
     dict(force_even=True, segment=(0, 1), sizes=None, element_count=2)]),
    (v.remesh_lines, dict(coords=LINE, connect=CONNECT, default_size=1), [dict(connect=[[0, 9]]),
     dict(connect=[0, 1]), dict(connect=[[1, 1]]), dict(default_size=-1), dict(default_size=0),
     dict(hard_edges=[3]), dict(colors=[-1, 1, 1]), dict(sizes=1),
     *(dict(coords=np.multiply(LINE, NAN), deviation_tolerance=t, **k) for t in (0, -1) for k in KINDS),
     *({name: NAN, **k} for name in ("max_angle", "max_gradation", "min_size") for k in KINDS),
     *(dict(min_elements=n, max_elements=2, **k) for n in (0, 3) for k in KINDS)],
     [dict(colors=["red"]), dict(hard_nodes=[1.5])]),
    (v.interpolate_metrics, dict(params=[0, 1], values=[1, 1], new_params=[0]), [dict(params=[1, 0]),
     dict(values=[1]), dict(values=[[1], [2]]), dict(new_params=[NAN])], []),
    (v.metrics_gen_aniso2d, dict(coords=LINE, connect=CONNECT, normal_size=1),
     [dict(size_along=0, size_across=1, **DIRECTED), dict(size_across=-1, size_along=1, **DIRECTED),
     dict(indices=[4], size_along=1, size_across=1, **DIRECTED), dict(metrics=[np.eye(3)]),
     dict(connect=[[0, 4]])],
     [dict(size_along=None, size_across=1, **DIRECTED), dict(directions=LINE, coords=None), dict(indices=[0]),
     dict(coords=None)]),
    (v.metrics_gen_aniso3d, dict(coords=SPACE, connect=CONNECT, normal_size=1), [dict(coords=LINE),
     dict(connect=[[0, 4]]), dict(metrics=np.ones((2, 3)))],
     [dict(binormal_size="1")]),
    (v.pack_metrics, dict(tensors=[np.eye(2)]), [dict(tensors=[[[1, 2], [3, 9]]]), dict(tensors=LINE)], []),
    (v.unpack_metrics, dict(packed=[[1, 0, 1]]), [dict(packed=np.eye(4))], []),
    (v.extrude_translate, dict(start=[0, 0], vector=[1, 0], sizes=1), [dict(start=0), dict(start=[0, 0, 0]),
     dict(vector=[1, 2, 3, 4]), dict(vector=[0, 0]), dict(vector=[1e200, 0]), dict(sizes=(1, -1)),
     dict(sizes=(-1, 1)), dict(sizes=[1, 2, 3]), dict(coords=SPACE)],
     [dict(element_count=None, sizes=None), dict(element_count=1), dict(start=[0, [1]])]),
    (v.extrude_rotate, dict(start=[1, 0], center=[0, 0], rotation=1, sizes=1), [dict(rotation=[1, 2]),
     dict(rotation=0), dict(rotation=1, center=[0, 0, 0], start=[1, 0, 0]), dict(start=0),
     dict(sizes=(1, -1)), dict(sizes=(-1, 1)), dict(element_count=-3, sizes=None)],
     [dict(rotation=[0, [1]])]),
    (v.curvatures, dict(coords=LINE), [dict(indices=[9])], []),
    (v.length, dict(coords=LINE), [dict(indices=[0]), dict(connect=[[0, 9]])],
     [dict(connect=[], indices=RING)]),
    (v.parametric_curvatures, dict(params=[0, 1, 2, 3], connect=CONNECT, tangents=LINE),
     [dict(tangents=LINE[:2]), dict(connect=[[0, 9]])], []),
    (v.interpolate_coordinates, dict(coords=LINE, params=[0, 1], new_indices=[2], new_params=[0]),
     [dict(params=[1, 0]), dict(params=[0, 1], indices=[0]), dict(new_params=[0, 1]),
     dict(new_params=[1, 0], new_indices=[0, 1])], []),
    (v.normals, dict(coords=LINE, connect=CONNECT), [dict(coords=SPACE), dict(connect=[[0, 9]])], []),
    (v.indices_to_connectE2, dict(indices=[0, 1]), [dict(indices=[1])], []),
    (v.indices_to_connectE3, dict(indices=[0, 1, 2]), [dict(connect=[[1, 2, 3, 4]])], []),
    (v.split_into_linear, dict(connect_in=[[0, 1, 2]]), [dict(connect_in=[[1, 2, 3, 4]]),
     dict(connect_in=[[1, 2]]), dict(connect_out=[[1, 2, 3]])], []),
    (v.convert_into_linear, dict(connect=[[0, 1, 2]]), [dict(connect=[[1, 2]])], []),
    (v.convert_into_quadratic, dict(coords=LINE, connect=CONNECT), [dict(connect=[[0, 9]])], []),
    (v.mesh_reorient, dict(connect=CONNECT), [dict(start=3), dict(neighbors=[[1, 2]]),
     dict(connect=[[0, v.UNLIMITED]])], []),
    (v.flip, dict(connect=[[0, 1]]), [dict(connect=[[0]])], []),
    (v.sort, dict(params=[1, 2], indices=[1, 2]), [dict(indices=[1])], []),
    (v.subdivide, dict(params=[0, 1], sizes=1), [dict(indices=[0, 2]), dict(sizes=[[1, 1]]),
     dict(min_elements=0)], []),
]
# fmt: on


@pytest.mark.parametrize("function, valid, values, types", CALLS, ids=lambda x: getattr(x, "__name__", ""))
def test_errors_name_function_and_argument(function, valid, values, types):
    function(**valid)
    for error, changes in (ValueError, values), (TypeError, types):
        for change in changes:
            with pytest.raises(error, match=f"{function.__name__}: {next(iter(change))}.{{12}}"):
                function(**{**valid, **change})


def test_lack_of_memory():
    with pytest.raises(MemoryError):
        v.extrude_translate([0, 0], [1, 0], element_count=v.UNLIMITED)
    for status in (-199, -196, -195):  # of the overloads of remesh_lines
        with pytest.raises(MemoryError, match="remesh_lines"):
            Arguments("remesh_lines").check(status, {})


def test_arguments_stay_and_results_have_their_own_memory():
    coords, sizes = np.array(LINE), np.full(4, 0.5)
    connect = np.array(CONNECT, np.uint32)
    hard, colors = np.array([3, 1, 0, 0], np.uint32), np.array([5, 5, 6], np.uint32)
    arrays = [coords, sizes, connect, hard, colors, np.array(SPACE)]
    before = [a.copy() for a in arrays]
    made = [
        v.mesh_line(coords, 9.0).coords,  # no new nodes
        v.mesh_line(coords, sizes).coords,
        v.extrude_rotate(0, [0, 0, 0], [0, 0, 1], element_count=0, coords=arrays[-1]).coords,
        *v.remesh_lines(coords, connect, 0.5, hard_nodes=hard, colors=colors),
        *v.remesh_lines(coords, connect[:0], 0.5, hard_nodes=hard, colors=colors),
        *v.remesh_lines(coords, connect, 9, hard_nodes=hard, hard_edges=[0, 1, 2], colors=colors),
        *v.sort(sizes, hard),
        v.flip(connect),
        *list(v.mesh_reorient(connect, connect[::-1] * 0 + v.UNLIMITED))[:2],
        v.convert_into_high_order(coords, connect, 0).connect,
        v.convert_into_cubic(coords, connect).connect,
        *list(v.subdivide(sizes, sizes, hard))[:2],
    ]
    for result in made:
        assert not any(np.shares_memory(result, a) for a in arrays)
        result[...] = 9
    for array, old in zip(arrays, before):
        assert (array == old).all()


def test_fitting_arrays_are_read_in_place_and_others_are_converted():
    fit = np.array(LINE)
    assert Arguments("f").coords(fit) is fit
    off = np.zeros(fit.nbytes + 1, np.uint8)[1:].view(np.float64).reshape(fit.shape)
    off[...] = fit
    swapped = fit.astype(fit.dtype.newbyteorder())
    for other in (off, swapped, np.ma.masked_array(fit), fit.astype(np.float16)):
        made = Arguments("f").coords(other)
        assert type(made) is np.ndarray and made.dtype == np.float64 and made.flags.aligned
        assert (made == fit).all()


def test_no_leak():
    coords, connect, peaks = np.array(LINE), np.array(CONNECT, np.uint32), []
    for times in 3000, 35000:
        for _ in range(times):
            v.mesh_line(coords, 0.01)
            v.remesh_lines(coords, connect, 0.05, colors=[1, 2, 3])
            with contextlib.suppress(ValueError):
                v.mesh_line(coords, -1)
        peaks.append(resource.getrusage(resource.RUSAGE_SELF).ru_maxrss)
    assert peaks[1] - peaks[0] < 4000  # KiB; one lost array per call would be ten times that


def test_other_threads_run_during_a_call():
    t = np.linspace(0, 60, 200000)
    is_done, beats = threading.Event(), []

    def beat():
        while not is_done.wait(1e-3):
            beats.append(time.perf_counter())

    other = threading.Thread(target=beat)
    other.start()
    start = time.perf_counter()
    v.mesh_line(np.stack([t, np.sin(t)], axis=1), 1e-4)
    end = time.perf_counter()
    is_done.set()
    other.join()
    pauses = np.diff([start, *(b for b in beats if start < b < end), end])
    assert pauses.max() < (end - start) / 2
