"""Each argument of each function does what is documented, in every layout of arrays in memory."""

import numpy as np
import pytest

import vornik1d as v


LAYOUTS = {
    "C order": np.ascontiguousarray,
    "Fortran order": np.asfortranarray,
    "strided": lambda a: a.repeat(2, axis=-1)[..., ::2],
    "backwards": lambda a: np.ascontiguousarray(a[::-1])[::-1],
    "read-only": lambda a: np.frombuffer(a.tobytes(), a.dtype).reshape(a.shape),
    "lists": lambda a: a.tolist(),
}
NONE = v.UNLIMITED
H = np.sqrt(0.5)


def ring(n):
    t = 2 * np.pi * np.arange(n) / n
    return np.stack([np.cos(t), np.sin(t)], axis=1)


# Each function below yields results and what they must be. Its argument `a` makes an array in one layout.
# The corner is a line of length 6 from (0, 0) over (4, 0) to (4, 2).
# fmt: off


def of_lines(a):
    x, one, space = a([[0, 0], [4, 0], [4, 2.0]]), a([1, 1, 1.0]), a([[0, 0, 0], [4, 0, 0], [4, 0, 2.0]])
    short, five = a([[0, 0], [4, 0.0]]), a([[0, 0], [5, 0.0]])
    flat, deep = [[4, 0, 1.0]] * 3, [[4, 0, 1, 0, 0, 9.0]] * 3  # sizes 1/2, 1 and 1/2, 1, 1/3 along the axes

    m = v.mesh_line(x, one)
    yield from zip(m, (np.array([[0, 0], [4, 0], [4, 2], [1, 0], [2, 0], [3, 0], [4, 0], [4, 1]]),
        [0, 3, 4, 5, 6, 7, 2], np.arange(7) / 6, np.ones(7), None))
    m = v.mesh_line(x, a([1, 1.0]), indices=a([2, 1]), params=a([5, 7.0]))
    yield from ((m.indices, [2, 3, 1]), (m.params, [5, 6, 7]), (m.coords[3], [4, 1]))
    for limits, n in ({"force_even": np.True_}, 6), ({"min_elements": 8}, 8), ({"max_elements": 3}, 3):
        yield len(v.mesh_line(five, 1, **limits).indices), n + 1
        yield len(v.mesh_spline(five, 1, **limits).indices), n + 1
        yield len(v.subdivide(a([0, 5.0]), a([1, 1.0]), **limits).indices), n + 1
        for how in {}, {"colors": [1]}, {"sizes": [1]}:
            yield len(v.remesh_lines(five, [[0, 1]], 1, **how, **limits).connect), n
    yield v.mesh_line(x, 9, deviation_tolerance=1e-3).indices, [0, 1, 2]
    yield v.mesh_line(x, 9, deviation_tolerance=-0.02).sizes[0], 1.2 * H
    yield v.mesh_line(x, 9, deviation_tolerance=-0.02, min_size=2).sizes[0], 2
    m = v.mesh_line(short, metrics=a(flat[:2]))
    yield from ((len(m.indices), 9), (m.metrics, flat[:1] * 9), (m.sizes, None))
    for how in {}, {"params": a([0, 1.0])}:
        yield len(v.mesh_line(space, metrics=a(deep[:2]), indices=a([1, 2]), **how).indices), 7
    yield v.mesh_line(space, metrics=a([np.diag([4, 1, 9.0])] * 3), max_elements=1).metrics, deep[:2]

    m = v.mesh_spline(x, a([1, 1, 1, 1.0]), indices=a([1, 1, 2, 2]))
    yield from zip(m, ([[0, 0], [4, 0], [4, 2], [4, 1]], [1, 3, 2], [0, 0.5, 1], np.ones(3), None, 0))
    m = v.mesh_spline(short, metrics=a(flat[:2]))
    yield from ((len(m.indices), 9), (m.metrics, flat[:1] * 9), (m.sizes, None))
    yield len(v.mesh_spline(space, metrics=a(deep * 2)[:4], indices=a([1, 1, 2, 2])).indices), 7
    m = v.mesh_spline(a(ring(4)), a([0.8] * 4), closed=True)
    yield m.indices[[0, -1]], [0, 0]
    yield np.ptp(np.hypot(*m.coords[m.indices[1::2]].T)), 0  # the same between all corners
    yield m.deviation > 0.2, True
    yield v.mesh_spline(x, 0.5).coords, v.mesh_spline(x, [0.5] * 5, indices=[0, 0, 1, 2, 2]).coords
    for t, floor, size in (-0.02, 0, 0.398), (0.02, 0, 0.398), (-0.02, 0.6, 0.6):
        m = v.mesh_spline(a(ring(64)), 9, closed=True, deviation_tolerance=t, min_size=floor)
        yield abs(m.sizes - size).max() < 0.001, True
    row = a(np.stack([np.arange(4.0), np.zeros(4)], axis=1))
    yield v.mesh_spline(row, 0.25, default_size=0.5).sizes.max(), 0.25
    yield v.mesh_spline(row, 0.25, max_gradation=0.1).sizes.max(), 0.25
    graded = v.mesh_spline(row, 0.25, default_size=0.5, max_gradation=0.1)
    yield abs(graded.sizes.max() - 0.3) < 0.02, True
    yield v.spline_point(x, a([0, 0, 1, 1]), 0.25), [1, 0]
    yield np.arctan2(*v.spline_point(a(ring(12)), a([11, 0, 1, 2]), 0.5)[::-1]), np.pi / 12
    yield v.spline_point(space, a([1, 1, 2, 2]), 0.25), [4, 0, 0.5]

    yield from zip(v.mesh_straight(short, a([1, 1.0])),
        ([[0, 0], [4, 0], [1, 0], [2, 0], [3, 0]], [0, 2, 3, 4, 1]))
    yield len(v.mesh_straight(x, a([1.3] * 3), force_even=True).indices), 7
    yield len(v.mesh_straight(x, metrics=a(flat[:2]), indices=a([0, 1])).indices), 9
    yield len(v.mesh_straight(x, element_count=3, force_even=True).indices), 5
    yield v.mesh_straight(x, indices=a([2, 1]), element_count=2).indices, [2, 3, 1]
    yield v.mesh_straight(x, a([1, 1.0]), segment=a([1, 2])).indices, [1, 3, 2]
    graded = v.mesh_straight(x, a([0.1, 0.4]), segment=(1, 2))  # 2 ln(4) / 0.3 = 9.2 elements
    yield graded.coords[3:12, 1], 2 / 3 * (4 ** (np.arange(1, 9) / 9) - 1)
    yield len(v.mesh_straight(x, a([0.1, 0.4]), segment=(1, 2), force_even=True).indices), 11
    yield v.mesh_straight(x, segment=(2, 1), element_count=2).indices, [2, 3, 1]
    yield v.mesh_straight(x, segment=(0, 1, 2), element_count=3).indices, [0, 3, 1, 2]


def of_networks(a):
    x, connect = a([[0, 0], [4, 0], [4, 2.0]]), a([[0, 1], [1, 2]])
    elements = [[0, 3], [3, 1], [1, 2]]
    yield v.remesh_lines(x, connect, 2).coords, [[0, 0], [4, 0], [4, 2], [2, 0]]
    for how, made in ({}, [0, 0, 1]), ({"colors": a([7, 9])}, [7, 7, 9]), ({"hard_nodes": a([0])}, [0, 0, 1]):
        yield from zip(list(v.remesh_lines(x, connect, 2, **how))[1:], (elements, made, [0, 1, 2]))
    bent = a([[0, 0], [4, 0], [5, np.sqrt(3)]])  # by 60 degrees
    for how, cuts in ({}, 3), ({"max_angle": 61}, 2), ({"min_size": 2}, 2):
        yield len(v.remesh_lines(bent, connect, 9, sizes=a([9.0]), **how).hard_nodes), cuts
    for how in {"hard_nodes": a([1])}, {"hard_edges": a([1])}, {"colors": a([7, 9]), "sizes": [9]}:
        yield v.remesh_lines(bent, connect, 9, max_angle=61, **how).hard_nodes, [0, 1, 2]
    yield len(v.remesh_lines(x, connect, 4, sizes=a([0, 0, 0.5])).connect), 3  # 4 ln(2) / 2, 2 ln(4) / 1.5
    yield v.remesh_lines(x, connect, 0.5, hard_edges=a([0])).connect[0], [0, 1]
    for bend, count in (39.9, 1), (40.1, 2):
        turn = [[0, 0], [1, 0], [1 + np.cos(np.radians(bend)), np.sin(np.radians(bend))]]
        yield v.remesh_lines(a(turn), connect, 9, colors=[]).colors[-1], count - 1
    arc, along = a(ring(64)[:16]), a(np.stack([np.arange(15), np.arange(1, 16)], axis=1))
    for how in {}, {"colors": [5]}, {"hard_nodes": [0]}:
        for (tolerance, floor), count in zip(((-0.02, 0), (-0.02, 0.7), (-2, 0), (0.02, 0)), (4, 2, 1, 4)):
            limits = {"deviation_tolerance": tolerance, "min_size": floor, **how}
            yield len(v.remesh_lines(arc, along, 9, **limits).connect), count
        yield len(v.remesh_lines(arc, along, 0.5, max_angle=0, **how).connect), 15  # every bend is a corner
    empty = v.remesh_lines(x, [], 2, colors=[7, 9], hard_nodes=[1])
    yield from zip(empty, (x, np.empty((0, 2)), [], []))

    yield from zip(v.extrude_translate(a([1, 1.0]), a([3, 0.0]), element_count=3),
        ([[1, 1], [2, 1], [3, 1], [4, 1]], [0, 1, 2, 3]))
    space = a([[0, 0, 0], [4, 0, 0], [4, 0, 2.0]])
    yield v.extrude_translate(1, a([0, 0, 1.0]), element_count=1, coords=space).coords[3], [4, 0, 1]
    for draw in v.extrude_translate, lambda p, d, **how: v.extrude_rotate(p, a([0, -1.0]), 5, **how):
        yield len(draw(a([0, 0.0]), a([5, 0.0]), sizes=a([1, 1.0])).indices), 6
        yield len(draw(a([0, 0.0]), a([5, 0.0]), sizes=1, force_even=True).indices), 7
        made = draw(a([0, 0.0]), a([5, 0.0]), sizes=a([0.1, 0.4]))  # 5 ln(4) / 0.3 = 23.1
        yield from ((len(made.indices), 24), (made.coords[1, 0] < 0.11, True))
    yield v.extrude_rotate(0, a([1, 0.0]), np.pi, element_count=1, coords=x).coords[3], [2, 0]
    made = v.extrude_rotate(a([2, 0, 5.0]), a([1, 0, 0.0]), a([0, 0, np.pi]), element_count=2)
    yield from zip(made, ([[2, 0, 5], [1, 1, 5], [0, 0, 5]], [0, 1, 2]))
    turn = {"coords": space, "rotation": a([0, 0, 5.0])}
    yield len(v.extrude_rotate(2, a([3, 0, 0.0]), sizes=a([0.1, 0.4]), **turn).indices), 24
    yield len(v.extrude_rotate(2, a([3, 0, 0.0]), sizes=1, force_even=True, **turn).indices), 7
    yield from zip(v.extrude_rotate(2, a([3, 0, 0.0]), element_count=0, **turn), (space, []))


def of_values(a):
    x, space = a([[0, 0], [4, 0], [4, 2.0]]), a([[0, 0, 0], [4, 0, 0], [4, 0, 2.0]])
    connect, deep = a([[0, 1], [1, 2]]), [[4, 0, 1, 0, 0, 9.0]]
    yield v.interpolate_metrics(a([0, 2.0]), a([2, 4.0]), a([0.5, 1])), [2.5, 3]
    yield v.interpolate_metrics(a([0, 1.0]), a([[1, 0, 1], [0.25, 0, 1]]), a([0.5])), [[1 / 2.25, 0, 1]]
    yield v.interpolate_metrics(a([0, 1.0]), a(deep * 2), a([0.5])), deep
    for d in (2, 3):
        yield v.interpolate_metrics([0, 1], a([np.eye(d)] * 2), []), np.empty((0, d * (d + 1) // 2))
    for full, packed in ([[1, 2], [2, 3]], [1, 2, 3]), ([[1, 2, 4], [2, 3, 5], [4, 5, 6]], range(1, 7)):
        yield v.pack_metrics(a([full])), [packed]
        yield v.unpack_metrics(a([np.negative(packed)])), [np.negative(full)]
    yield v.curvatures(x), [np.sqrt(2) / 3] * 3
    yield v.curvatures(x, a([0, 1])), [0, 0]
    yield from ((v.length(x), 6), (v.length(space, a([1, 2])), 2), (v.length(x, connect=a([[0, 1]])), 4))
    yield v.parametric_curvatures(a([0, 2.0]), a([[0, 1]]), a([[1, 0], [0, 1.0]])), [np.sqrt(2)] * 2
    yield v.parametric_curvatures(a([0, 2.0]), [], a([[1, 0], [0, 1.0]])), [0, 0]
    yield v.interpolate_coordinates(x, a([0, 1.0]), a([2]), a([0.25])), [[0, 0], [4, 0], [1, 0]]
    yield v.interpolate_coordinates(x, a([0, 1.0]), a([0]), a([0.5]), indices=a([1, 2]))[0], [4, 1]
    yield v.normals(x, connect), [[0, 1], [-H, H], [-1, 0]]
    yield v.normals(x, connect, 1, unit_length=False)[1], [-1 / 3, 2 / 3]
    yield v.normals(x, []), np.zeros((3, 2))

    directed = {"directions": a([[0, 2], [1, 0.0]]), "size_along": 1, "size_across": 4}
    yield v.metrics_gen_aniso2d(indices=a([0]), **directed), [[1 / 4, 0, 4]]  # both sizes are divided by 2
    yield v.metrics_gen_aniso2d(metrics=a([[9, 0, 9.0]]), **directed), [[9, 0, 9], [1, 0, 1 / 16]]
    yield v.metrics_gen_aniso2d(x, a([[1, 2]]), 0.5, metrics=a([[9, 0, 9.0]]))[0], [9, 0, 9]
    yield v.metrics_gen_aniso2d(x, a([[1, 2]]), 0.5)[1], [4, 0, 0.25]
    yield v.metrics_gen_aniso3d(space, a([[1, 2]]), 0.5)[2], [4, 0, 4, 0, 0, 0.25]
    yield v.metrics_gen_aniso3d(space, connect, 0.5, 1)[1], [4, 0, 1, 0, 0, 4]
    nine = [9, 0, 9, 0, 0, 9.0]
    yield v.metrics_gen_aniso3d(space, a([[0, 1]]), 0.5, metrics=a([nine]))[0], nine

    yield v.indices_to_connectE2(a([0, 11]), connect), [[0, 1], [1, 2], [0, 11]]
    yield v.indices_to_connectE3(a([0, 1, 2, 3, 4])), [[0, 2, 1], [2, 4, 3]]
    yield v.indices_to_connectE4(a([0, 1, 2, 3])), [[0, 3, 1, 2]]
    yield v.split_into_linear(a([[0, 1, 5]]), connect), [[0, 1], [1, 2], [0, 5], [5, 1]]
    yield v.split_into_linear(a([[0, 1, 5]])), [[0, 5], [5, 1]]
    yield v.convert_into_linear(a([[0, 1, 5], [1, 2, 6]])), [[0, 1], [1, 2]]
    yield v.convert_into_linear(np.empty((0, 4), int)), np.empty((0, 2))
    yield from zip(v.convert_into_high_order(a([[0.0], [4]]), a([[0, 1]]), 3),
        ([[0], [4], [1], [2], [3]], [[0, 1, 2, 3, 4]]))
    yield v.convert_into_high_order(x, connect, 0).connect, [[0, 1], [1, 2]]
    yield from zip(v.convert_into_quadratic(x, a([[0, 2]])), ([[0, 0], [4, 0], [4, 2], [2, 1]], [[0, 2, 3]]))
    yield v.convert_into_cubic(a([[0, 0], [3, 0.0]]), a([[1, 0]])).coords[2:], [[2, 0], [1, 0]]
    for n, make in (3, v.convert_into_quadratic), (4, v.convert_into_cubic):
        yield make(x, []).connect, np.empty((0, n))
        yield v.convert_into_high_order(x, [], n).connect, np.empty((0, n + 2))
    yield v.flip(a([[0, 1], [1, 2]])), [[1, 0], [2, 1]]
    pieces = a([[0, 1, 7], [2, 1, 7], [4, 5, 7], [6, 5, 7]])
    yield from zip(v.mesh_reorient(pieces),
        ([[0, 1], [1, 2], [4, 5], [5, 6]], [[1, NONE], [NONE, 0], [3, NONE], [NONE, 2]], 2))
    yield v.mesh_reorient(pieces, start=1, all_components=False).connect[[0, 3]], [[1, 0], [6, 5]]
    yield v.mesh_reorient(a([[0, 1], [2, 1]]), a([[NONE, NONE], [NONE, NONE]])).turns, 0
    yield v.mesh_reorient([]).neighbors, np.empty((0, 2))
    yield from zip(v.sort(a([3.0, 1, 2, 1]), a([7, 5, 6, 4])), ([1, 1, 2, 3], [4, 5, 6, 7]))
    yield from zip(v.subdivide(a([0, 9, 2.0]), 1, a([2, 0])), ([0, 9, 2, 1], [1, 1, 1, 1], [2, 3, 0]))
    yield len(v.subdivide(a([0, 1.2]), 1, round_up=True).indices), 3


# fmt: on


@pytest.mark.filterwarnings("ignore::vornik1d.MeshWarning")  # of max_elements
@pytest.mark.parametrize("results", [of_lines, of_networks, of_values])
@pytest.mark.parametrize("layout", LAYOUTS)
def test_results(results, layout):
    for k, (result, expected) in enumerate(results(lambda values: LAYOUTS[layout](np.array(values)))):
        assert np.shape(result) == np.shape(expected), (k, result, expected)
        made, wanted = np.asarray(result, float), np.asarray(expected, float)  # None becomes NaN
        assert np.allclose(made, wanted, 1e-9, 1e-9, equal_nan=True), (k, result, expected)
