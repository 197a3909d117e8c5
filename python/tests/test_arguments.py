"""Errors name argument, position and value. Arguments do not change. Results have their own memory. Other threads can run."""

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
SAME = [[1, 2]] * 3
NAN, INF = float("nan"), float("inf")
DIRECTED = {"coords": None, "connect": None, "normal_size": None, "directions": LINE}

# A function, a valid call, and changes that make it invalid with the messages that they get.
# fmt: off
CALLS = [
    (v.mesh_line, dict(coords=LINE, sizes=1), [
        (dict(coords=[[0, 0], [1, 0], [1, 1], [NAN, 0]]),
         "coords[3] is (nan, 0); coordinates must be finite"),
        (dict(coords=[[0, 0], [1e200, 0]]),
         "coords[1] is (1e+200, 0); coordinates must be between -1e+150 and 1e+150"),
        (dict(coords=[[0, 0]]), "coords has 1 node; a line needs at least 2"),
        (dict(coords=SAME),
         "coords puts all 3 nodes of the line at (1, 2); a line must have a positive length"),
        (dict(coords=SAME, indices=[0, 2]),
         "indices puts both nodes of the line at (1, 2); a line must have a positive length"),
        (dict(coords=[[0, 0], [1e-200, 0]]),
         "coords puts both nodes of the line too close together; a line must have a positive length"),
        (dict(coords=[1, 2, 3]), "coords has shape (3,); it must be (n, 2) or (n, 3)"),
        (dict(coords=np.zeros((2, 9))), "coords has shape (2, 9); it must be (n, 2) or (n, 3); use coords.T"),
        (dict(coords=5), "coords is 5; it must have shape (n, 2) or (n, 3)"),
        (dict(coords=np.ma.masked_greater(LINE, 3)), "coords has masked entries; fill or remove them"),
        (dict(coords=None), "TypeError: coords must contain real numbers, not None"),
        (dict(coords="abc"), "TypeError: coords must contain real numbers, not text"),
        (dict(coords=[[0, 0], [1]]),
         "TypeError: coords must be an array of numbers, with rows of one length"),
        (dict(coords=np.eye(2, dtype=bool)), "TypeError: coords must contain real numbers, not booleans"),
        (dict(coords=[[0, 0], [None, 1]]), "TypeError: coords[1, 0] is None; it must be a number"),
        (dict(indices=[0, 1, 9]), "indices[2] is 9; it must be a valid node number, below 4"),
        (dict(indices=[0, -1]), "indices[1] is -1; it must be a valid node number, below 4"),
        (dict(indices=[0, 2**64]),
         "indices[1] is 18446744073709551616; it must be a valid node number, below 4"),
        (dict(indices=[2]), "indices has 1 node; a line needs at least 2"),
        (dict(indices=9), "indices is 9; it must have shape (n,)"),
        (dict(indices=[[0, 1]]), "indices has shape (1, 2); it must be (n,)"),
        (dict(indices=[0.0, 1.5]), "TypeError: indices must contain integers, not real numbers"),
        (dict(sizes=-1), "sizes is -1; sizes must be positive and finite"),
        (dict(sizes=[1, 1, 0, 1]), "sizes[2] is 0; sizes must be positive and finite"),
        (dict(sizes=[1, 1]), "sizes has 2 entries; it needs 4, one per node of the line"),
        (dict(sizes=[[1, 1, 1, 1]]), "sizes has shape (1, 4); it must be a number or (n,)"),
        (dict(sizes=[1, None, 1, 1]), "TypeError: sizes[1] is None; it must be a number"),
        (dict(sizes=None), "TypeError: sizes and metrics are missing; give one of them"),
        (dict(metrics=np.ones((4, 3))), "TypeError: sizes and metrics exclude each other; give one of them"),
        (dict(sizes=None, metrics=[[1, 0, 1], [1, 2, 1], [1, 0, 1], [1, 0, 1]]),
         "metrics[1] is (1, 2, 1), which is not positive definite; each direction needs a positive size"),
        (dict(sizes=None, metrics=[[1, 0, 1], [1, NAN, 1]]),
         "metrics[1] is (1, nan, 1); tensors must be finite"),
        (dict(sizes=None, metrics=[[[1, 2], [3, 9]]] * 4),
         "metrics[0] is ((1, 2), (3, 9)); tensors must be symmetric"),
        (dict(sizes=None, metrics=np.ones((4, 6))),
         "metrics has shape (4, 6); it must be (n, 3) or (n, 2, 2)"),
        (dict(params=[0, 2, 1, 3]), "params[2] is 1 after 2; params must not decrease"),
        (dict(params=[0, 0.3, 0.1 + 0.2 - 1e-16, 1]),
         "params[2] is 0.29999999999999993 after 0.3; params must not decrease"),
        (dict(params=[0, 1, 2, INF]), "params[3] is inf; params must be finite"),
        (dict(min_elements=0), "min_elements is 0; it must be from 1 to 4294967295"),
        (dict(min_elements=5, max_elements=3),
         "min_elements is 5 and max_elements is 3; min_elements must not be larger"),
        (dict(max_elements=7.5), "TypeError: max_elements must be an integer, not float"),
        (dict(deviation_tolerance=NAN), "deviation_tolerance is nan; it must be finite"),
        (dict(min_size=-1), "min_size is -1; it must be at least 0 and finite"),
        (dict(min_size=10**400), "min_size is too large for a float"),
        (dict(min_size="1"), "TypeError: min_size must be a number, not str"),
        (dict(min_size=np.complex128(1)), "TypeError: min_size must be a number, not complex128"),
        (dict(min_size=np.ones(1)), "TypeError: min_size must be a number, not ndarray"),
        (dict(force_even="no"), "TypeError: force_even must be True or False, not str"),
    ]),
    (v.mesh_spline, dict(coords=LINE, sizes=1), [
        (dict(coords=[[0, 0], [1, INF]]), "coords[1] is (1, inf); coordinates must be finite"),
        (dict(coords=[[0, 0]]), "coords has 1 node; a line needs at least 2"),
        (dict(indices=[0, 1]), "indices has 2 nodes; a spline with its 2 guide nodes needs at least 4"),
        (dict(indices=RING, closed=True),
         "TypeError: closed excludes indices; to close the curve, give the guide nodes in indices"),
        (dict(sizes=[1, 1]), "sizes has 2 entries; it needs 4, one per node of the line"),
        (dict(sizes=0, indices=RING), "sizes is 0; sizes must be positive and finite"),
        (dict(default_size=-1), "default_size is -1; it must be at least 0 and finite"),
        (dict(max_gradation=INF), "max_gradation is inf; it must be at least 0 and finite"),
    ]),
    (v.spline_point, dict(coords=LINE, span=[0, 1, 2, 3], t=0.5), [
        (dict(coords=[[NAN, 0]] * 4), "coords[0] is (nan, 0); coordinates must be finite"),
        (dict(span=[0, 1, 9, 3]), "span[2] is 9; it must be a valid node number, below 4"),
        (dict(span=[0, 1, 2]), "span has 3 nodes; it must have 4"),
        (dict(span=1), "TypeError: span is 1; it must be a list of node numbers"),
        (dict(span=np.array(3.0)), "TypeError: span is 3.0; it must be a list of node numbers"),
        (dict(span=[0, 1, 2, "3"]), "TypeError: span[3] must be an integer, not str"),
        (dict(t=NAN), "t is nan; it must be finite"),
    ]),
    (v.mesh_straight, dict(coords=LINE, sizes=1), [
        (dict(sizes=None), "TypeError: sizes, metrics and element_count are missing; give one of them"),
        (dict(element_count=2), "TypeError: sizes and element_count exclude each other; give one of them"),
        (dict(sizes=[1, 0], segment=(0, 1)), "sizes[1] is 0; sizes must be positive and finite"),
        (dict(sizes=[1, 1, 1], segment=(0, 1)),
         "sizes has 3 entries; it needs 2, one per end of the segment"),
        (dict(segment=(0, 9)), "segment[1] is 9; it must be a valid node number, below 4"),
        (dict(segment=(0, 1, 2)), "segment has 3 nodes; it must have 2 nodes, or 3 with element_count"),
        (dict(segment=np.array(3.0)), "TypeError: segment is 3.0; it must be a list of node numbers"),
        (dict(segment=(0, 1), indices=[0, 1]),
         "TypeError: indices and segment exclude each other; give one of them"),
        (dict(segment=(0, 1), sizes=None, metrics=np.ones((2, 3))),
         "TypeError: segment excludes metrics; give the two nodes as indices"),
        (dict(segment=(1, 1), sizes=None, element_count=3),
         "segment puts both nodes of the line at (1, 0); a line must have a positive length"),
        (dict(segment=(0, 1), sizes=None, element_count=2, force_even=True),
         "TypeError: force_even excludes segment with element_count; give an even element_count"),
    ]),
    (v.remesh_lines, dict(coords=LINE, connect=CONNECT, default_size=1), [
        (dict(coords=[[0, 0], [NAN, 0], [2, 0], [3, 0]]),
         "coords[1] is (nan, 0); coordinates must be finite"),
        (dict(coords=[]), "connect[0, 0] is 0; it must be a valid node number, but coords has none"),
        (dict(connect=[[0, 1], [1, 4]]), "connect[1, 1] is 4; it must be a valid node number, below 4"),
        (dict(connect=[0, 1]), "connect has shape (2,); it must be (m, 2)"),
        (dict(connect=[[0, 1], [1, 1]]),
         "connect[1] joins node 1 to itself; each line must have a positive length"),
        (dict(coords=SAME, connect=[[0, 1], [1, 2]]),
         "connect[0], connect[1] are a line of length 0 at (1, 2); each line must have a positive length"),
        (dict(coords=[[0, 0], [1, 0], [1, 0]], connect=[[0, 1], [1, 2]], hard_edges=[1]),
         "connect[1] is a line of length 0 at (1, 0); each line must have a positive length"),
        (dict(coords=[[0, 0], [1e-200, 0]], connect=[[0, 1]]),
         "connect[0] is a line of length 0 at (0, 0); each line must have a positive length"),
        (dict(default_size=-1), "default_size is -1; it must be at least 0 and finite"),
        (dict(default_size=0, sizes=[1, 0]),
         "default_size is 0; it must be positive, because node 1 has no size of its own"),
        (dict(sizes=[1, NAN]), "sizes[1] is nan; sizes must be finite; 0 or less means no size of its own"),
        (dict(sizes=[1] * 5), "sizes has 5 entries; coords has only 4 nodes"),
        (dict(sizes=1), "sizes is 1; it must have shape (n,)"),
        (dict(colors=[-1, 1, 1]), "colors[0] is -1; it must be from 0 to 4294967295"),
        (dict(colors=["red"]), "TypeError: colors must contain integers, not text"),
        (dict(hard_nodes=[1, 4]), "hard_nodes[1] is 4; it must be a valid node number, below 4"),
        (dict(hard_edges=[3]), "hard_edges[0] is 3; it must be a valid row number, below 3"),
        (dict(max_angle=NAN), "max_angle is nan; it must be at least 0"),
    ]),
    (v.interpolate_metrics, dict(params=[0, 1], values=[1, 1], new_params=[0]), [
        (dict(params=[1, 0]), "params[1] is 0 after 1; params must not decrease"),
        (dict(params=[0], values=[1]), "params has 1 value; interpolation needs at least 2"),
        (dict(values=[1]), "values has 1 entry; it needs 2, one per value of params"),
        (dict(values=[1, INF]), "values[1] is inf; values must be finite"),
        (dict(values=[[1], [2]]),
         "values has shape (2, 1); it must be (n,), (n, 3), (n, 6), (n, 2, 2) or (n, 3, 3)"),
        (dict(new_params=[0, 1.5]), "new_params[1] is 1.5; it must be from 0 to 1, the range of params"),
        (dict(new_params=[1 + 1e-15]),
         "new_params[0] is 1.000000000000001; it must be from 0.0 to 1.0, the range of params"),
    ]),
    (v.metrics_gen_aniso2d, dict(coords=LINE, connect=CONNECT, normal_size=1), [
        (dict(size_along=0, size_across=1, **DIRECTED), "size_along is 0; it must be positive and finite"),
        (dict(indices=[4], size_along=1, size_across=1, **DIRECTED),
         "indices[0] is 4; it must be a valid node number, below 4"),
        (dict(size_along=None, size_across=1, **DIRECTED),
         "TypeError: size_along and size_across must be given together with directions"),
        (dict(metrics=[np.eye(3)]), "metrics has shape (1, 3, 3); it must be (n, 3) or (n, 2, 2)"),
        (dict(connect=[[0, 1, 2]]), "connect has shape (1, 3); it must be (m, 2)"),
        (dict(normal_size=INF), "normal_size is inf; it must be finite"),
        (dict(directions=LINE), "TypeError: directions excludes coords, connect and normal_size"),
        (dict(indices=[0]), "TypeError: indices, size_along and size_across need directions"),
        (dict(coords=None),
         "TypeError: coords, connect and normal_size must all be given, or directions instead"),
    ]),
    (v.metrics_gen_aniso3d, dict(coords=SPACE, connect=CONNECT, normal_size=1), [
        (dict(coords=LINE), "coords has shape (4, 2); it must be (n, 3)"),
    ]),
    (v.pack_metrics, dict(tensors=[np.eye(2)]), [
        (dict(tensors=LINE), "tensors has shape (4, 2); it must be (n, 2, 2) or (n, 3, 3)"),
    ]),
    (v.unpack_metrics, dict(packed=[[1, 0, 1]]), [
        (dict(packed=[[1, 0, 1], [1, NAN, 1]]), "packed[1] is (1, nan, 1); tensors must be finite"),
        (dict(packed=np.eye(4)), "packed has shape (4, 4); it must be (n, 3) or (n, 6)"),
    ]),
    (v.extrude_translate, dict(start=[0, 0], vector=[1, 0], sizes=1), [
        (dict(start=0), "start is 0; it must be a valid node number, but coords has none"),
        (dict(start=4, coords=LINE), "start is 4; it must be a valid node number, below 4"),
        (dict(start=[0, 0, 0]), "start has shape (3,); it must be (2,)"),
        (dict(start=[0, NAN]), "start is (0, nan); it must be finite"),
        (dict(start=[0, [1]]), "TypeError: start must be an array of numbers, with rows of one length"),
        (dict(vector=[0, 0]), "vector is (0, 0); its length must be positive"),
        (dict(vector=[0, -1e200]), "vector is (0, -1e+200); it must be between -1e+150 and 1e+150"),
        (dict(vector=[1, 2, 3, 4]), "vector has shape (4,); it must be (2,) or (3,)"),
        (dict(sizes=(1, -1)), "sizes[1] is -1; sizes must be positive and finite"),
        (dict(sizes=None), "TypeError: element_count and sizes are missing; give one of them"),
    ]),
    (v.extrude_rotate, dict(start=[1, 0], center=[0, 0], rotation=1, sizes=1), [
        (dict(rotation=[1, 2]),
         "rotation must be a number, the angle in radians, because center is in the plane"),
        (dict(rotation=0), "rotation is 0; the path must have a positive length"),
        (dict(rotation=INF), "rotation is inf; it must be finite"),
        (dict(start=[0, 0]),
         "start is at (0, 0), on the axis of rotation; the path must have a positive length"),
        (dict(start=[1, 0, 0], center=[0, 0, 0]), "rotation is 1; it must have shape (3,)"),
        (dict(sizes=None, element_count=-3), "element_count is -3; it must be from 0 to 4294967295"),
    ]),
    (v.curvatures, dict(coords=LINE), [
        (dict(indices=[9]), "indices[0] is 9; it must be a valid node number, below 4"),
    ]),
    (v.length, dict(coords=LINE), [
        (dict(indices=[0]), "indices has 1 node; a line needs at least 2"),
        (dict(connect=[], indices=RING),
         "TypeError: indices and connect exclude each other; give one of them"),
    ]),
    (v.parametric_curvatures, dict(params=[0, 1, 2, 3], connect=CONNECT, tangents=LINE), [
        (dict(tangents=LINE[:2]), "tangents has 2 entries; it needs 4, one per value of params"),
        (dict(tangents=[[NAN, 0]] * 4), "tangents[0] is (nan, 0); tangents must be finite"),
        (dict(connect=[[0, 4]]), "connect[0, 1] is 4; it must be a valid node number, below 4"),
    ]),
    (v.interpolate_coordinates, dict(coords=LINE, params=[0, 1], new_indices=[2], new_params=[0]), [
        (dict(params=[0, 1, 2, 3, 4]), "params has 5 values; coords has only 4 nodes"),
        (dict(indices=[0]), "params has 2 entries; it needs 1, one per node of the line"),
        (dict(new_indices=[4]), "new_indices[0] is 4; it must be a valid node number, below 4"),
        (dict(new_params=[0, 1]), "new_params has 2 entries; it needs 1, one per entry of new_indices"),
    ]),
    (v.normals, dict(coords=LINE, connect=CONNECT), [
        (dict(exponent=NAN), "exponent is nan; it must be a number, inf or -inf"),
    ]),
    (v.indices_to_connectE2, dict(indices=[0, 1]), [
        (dict(indices=[1]), "indices has 1 node; it must have 0 nodes, or at least 2"),
    ]),
    (v.indices_to_connectE3, dict(indices=[0, 1, 2]), [
        (dict(indices=[0, 1]), "indices has 2 nodes; it must have 0, 3, 5, 7, ... nodes"),
        (dict(connect=[[1, 2, 3, 4]]), "connect has shape (1, 4); it must be (m, 3)"),
    ]),
    (v.indices_to_connectE4, dict(indices=[0, 1, 2, 3]), [
        (dict(indices=[0, 1, 2]), "indices has 3 nodes; it must have 0, 4, 7, 10, ... nodes"),
    ]),
    (v.split_into_linear, dict(connect_in=[[0, 1, 2]]), [
        (dict(connect_in=[[1, 2]]), "connect_in has shape (1, 2); it must be (m, 3)"),
        (dict(connect_out=[[1, 2, 3]]), "connect_out has shape (1, 3); it must be (m, 2)"),
    ]),
    (v.convert_into_linear, dict(connect=[[0, 1, 2]]), [
        (dict(connect=[[1, 2]]), "connect has shape (1, 2); it must be (m, k) with k at least 3"),
    ]),
    (v.convert_into_quadratic, dict(coords=LINE, connect=CONNECT), [
        (dict(connect=[[0, 9]]), "connect[0, 1] is 9; it must be a valid node number, below 4"),
    ]),
    (v.mesh_reorient, dict(connect=CONNECT), [
        (dict(connect=[[0, v.UNLIMITED]]), "connect[0, 1] is 4294967295; it must be from 0 to 4294967294"),
        (dict(neighbors=[[1, 2]]), "neighbors has 1 entry; it needs 3, one per element"),
        (dict(neighbors=[[1, v.UNLIMITED], [2, 0], [0, v.UNLIMITED]]),
         "neighbors[2, 0] is 0; that element must have node 3"),
        (dict(start=3), "start is 3; it must be a valid row number, below 3"),
    ]),
    (v.flip, dict(connect=[[0, 1]]), [
        (dict(connect=[[0]]), "connect has shape (1, 1); it must be (m, k) with k at least 2"),
    ]),
    (v.sort, dict(params=[1, 2], indices=[1, 2]), [
        (dict(indices=[1]), "indices has 1 entry; it needs 2, one per value of params"),
    ]),
    (v.subdivide, dict(params=[0, 1], sizes=1), [
        (dict(indices=[0, 2]), "indices[1] is 2; it must be a valid point number, below 2"),
        (dict(indices=[0]), "indices has 1 point; a line needs at least 2"),
        (dict(sizes=[1, 1, 1]), "sizes has 3 entries; it needs 2, one per value of params"),
    ]),
]
# fmt: on


@pytest.mark.parametrize("function, valid, changes", CALLS, ids=lambda x: getattr(x, "__name__", ""))
def test_errors_say_what_is_wrong_where_and_what_is_allowed(function, valid, changes):
    function(**valid)
    for change, message in changes:
        error, text = (TypeError, message[11:]) if message.startswith("TypeError") else (ValueError, message)
        with pytest.raises(error) as raised:
            function(**{**valid, **change})
        assert str(raised.value) == f"{function.__name__}: {text}"


def test_values_that_have_no_effect_or_a_meaning_are_allowed():
    unused = [*LINE, [NAN, INF]]
    v.mesh_line(unused, 1, indices=[0, 1])
    assert len(v.remesh_lines(unused, CONNECT, 1, max_angle=INF).connect) > 0
    assert len(v.remesh_lines(unused, CONNECT, 0, sizes=[1, 1, 1, 1, -1]).connect) > 0
    assert len(v.remesh_lines(LINE, CONNECT, 1, sizes=[-1, 0]).connect) > 0
    assert len(v.remesh_lines(LINE, CONNECT, 0, sizes=[1, 1, 1], hard_edges=[2]).connect) > 0
    for exponent in (INF, -INF):
        v.normals(LINE, CONNECT, exponent)
    assert np.isnan(v.sort([NAN, 1], [0, 1])[0][1])
    flat = [[0, 0], [1, 0], [1, 0], [1, 0], [2, 0]]  # elements of length 0 inside a longer line
    along = [[0, 1], [1, 2], [2, 3], [3, 4]]
    assert len(v.remesh_lines(flat, along, 1).connect) == 2
    with pytest.raises(ValueError, match=r"connect\[4\] is a line of length 0 at \(9, 9\)"):
        v.remesh_lines(flat + [[9, 9], [9, 9]], along + [[5, 6]], 1)


def test_lack_of_memory():
    with pytest.raises(MemoryError, match="extrude_translate: not enough memory, or more nodes than"):
        v.extrude_translate([0, 0], [1, 0], element_count=v.UNLIMITED)


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
