"""Too many elements are refused, coarse meshes are reported, and sizes can be functions of position."""

import resource

import numpy as np
import pytest
from scipy.integrate import cumulative_trapezoid

import vornik1d as v
from vornik1d import _core, _foresee, _sizes

LINE = [[0.0, 0.0], [1.0, 0.0]]
RAMP = [[0.0, 0.0], [1.0, 0.0], [1.02, 0.0]]
TWO = [[0, 1], [1, 2]]


@pytest.mark.parametrize(
    "call, message",
    [
        (
            lambda: v.mesh_line(LINE, [1e-11, 1e-12]),
            "mesh_line: sizes ask for .*smallest size is 1e-12 .sizes.1.. on",
        ),
        (lambda: v.mesh_line(LINE, 1e-12, max_elements=2**32 - 2), "1e.12 elements.*set max_elements"),
        (lambda: v.mesh_line(LINE, metrics=[[1e24, 0, 1]] * 2), "metrics ask for 1e.12 elements.*length 1;"),
        (lambda: v.mesh_spline(RAMP, 1e-12), "mesh_spline: sizes ask for 1.02e.12 elements"),
        (lambda: v.mesh_spline(RAMP, 1, default_size=1e-12, max_gradation=0.2), "default_size asks for"),
        (lambda: v.mesh_straight(LINE, 1e-12), "mesh_straight: sizes ask for 1e.12 .*units$"),
        (lambda: v.mesh_straight(LINE, 1e-12, segment=(0, 1)), "mesh_straight: sizes ask for 1e.12"),
        (lambda: v.remesh_lines(RAMP, TWO, 1e-12), "remesh_lines: default_size asks for 1.02e.12"),
        (
            lambda: v.remesh_lines(RAMP, TWO, 1, sizes=[1, 1e-13, 1e-12]),
            r"smallest size is 1e-13 \(sizes\[1\]\)",
        ),
        (lambda: v.extrude_translate([0, 0], [3, 4], sizes=1e-12), "translate: sizes ask for 5e.12"),
        (lambda: v.extrude_rotate([1, 0], [0, 0], -2, sizes=1e-12), "rotate: sizes ask for 2e.12"),
        (lambda: v.extrude_rotate(0, [0, 0, 0], [0, 0, 2], sizes=1e-12, coords=[[1, 0, 0]]), "2e.12"),
        (lambda: v.mesh_line(RAMP, [1e-6, 1e-6, 1e6]), "1,000,000 passes"),
        (lambda: v.remesh_lines(RAMP, TWO, 1, sizes=[1e-6, 1e-6, 1e6]), "1,000,000 passes"),
    ],
)
def test_requests_that_cannot_be_met_are_refused(call, message):
    with pytest.raises(ValueError, match=message):
        call()


def test_the_memory_limit_counts():
    soft, hard = resource.getrlimit(resource.RLIMIT_AS)
    call = lambda: v.mesh_line(LINE, 1e-7)  # noqa: E731
    resource.setrlimit(resource.RLIMIT_AS, (400 << 20, hard))
    try:
        with pytest.raises(ValueError, match="sizes ask for 1e.07 elements"):
            call()
    finally:
        resource.setrlimit(resource.RLIMIT_AS, (soft, hard))


def test_a_coarse_mesh_after_a_large_request_means_that_memory_ran_out(monkeypatch):
    request = _foresee.LineRequest(
        "mesh_line", np.array(LINE), np.array([0, 1], np.uint32), np.full(2, 1e-4), most=9999
    )
    monkeypatch.setattr(_foresee, "memory", lambda: 1e6)
    with pytest.raises(MemoryError, match="10,000 elements"):
        request.compare(np.array(LINE), np.array([0, 1], np.uint32), np.array([0.0, 1.0]))


def many_lines(count=500):
    """Lines of two elements, with the sizes of their nodes: 0.01."""
    x = np.arange(count) * 2.0
    nodes = [np.column_stack([x + shift, 0 * x]) for shift in (0, 1, 1.02)]
    a = np.arange(count)
    connect = np.concatenate([np.column_stack([a, a + count]), np.column_stack([a + count, a + 2 * count])])
    return np.concatenate(nodes), connect, np.full(3 * count, 0.01)


def one_of_many(size, **options):
    coords, connect, sizes = many_lines()
    sizes[[7, 507] if options else [1007]] = size
    return v.remesh_lines(coords, connect, 1, sizes=sizes, **options)


@pytest.mark.parametrize(
    "call, message",
    [
        (
            lambda: v.mesh_line(LINE, 1e-4, max_elements=100),
            "mesh_line: .*10,000 elements; max_elements limits .* 100",
        ),
        (lambda: v.mesh_spline(LINE, 1e-4, max_elements=100), "mesh_spline: .* limits the mesh to 100"),
        (
            lambda: v.remesh_lines(RAMP, TWO, 1e-3, max_elements=10),
            "1,020 elements; max_elements limits .* 10$",
        ),
        (
            lambda: v.mesh_line(RAMP, [1e-3, 1e-3, 1e6]),
            r"1,000 .* has 1: .*sizes\[1\] is 0.001, sizes\[2\] is 1e.06",
        ),
        (
            lambda: v.mesh_line(RAMP, metrics=[[1e6, 0, 1]] * 2 + [[1e-12, 0, 1]]),
            r"has 1: .*metrics\[2\] gives .* 1e.06",
        ),
        (lambda: v.remesh_lines(RAMP, TWO, 1, sizes=[1e-3, 1e-3, 1e6]), "1,000 .* has 1: .* node 1 is 0.001"),
        (lambda: one_of_many(1e6), "100 elements on the line from node 7 to node 1007, but the mesh has 1"),
        (
            lambda: one_of_many(1e-3, max_elements=150),
            "1,00. elements on the line from node 7 .* limits the mesh to 150",
        ),
    ],
)
def test_a_coarse_mesh_is_reported(call, message):
    with pytest.warns(v.MeshWarning, match=message) as found:
        call()
    assert len(found) == 1 and found[0].filename == __file__


@pytest.mark.filterwarnings("error")
def test_meshes_as_asked_are_not_reported():
    """Zigzags, walks, circles and graded lines, coarser and finer than their nodes, with all options."""
    random = np.random.default_rng(5)
    one_of_many(0.02)
    for k in range(600):
        n, d = random.integers(2, 60), random.integers(2, 4)
        coords = random.random((n, d)) if k % 2 else np.cumsum(random.normal(size=(n, d)), axis=0)
        if k % 5 == 0:
            coords = (
                coords * 0 + np.cumsum(random.uniform(1.2, 3) ** np.arange(n % 25))[:, None]
                if n < 25
                else coords
            )
        step = np.linalg.norm(np.diff(coords, axis=0), axis=1).mean()
        sizes = step * 10 ** random.uniform(-2, 2) * np.cumprod(random.uniform(1 / 1.3, 1.3, n))
        options = dict(
            deviation_tolerance=float(random.choice([0, 0.1, 1, -0.01])) * (step if k % 3 else 1),
            force_even=bool(k % 2),
            min_elements=int(random.choice([1, 3, 10])),
        )
        gradation = dict(max_gradation=float(random.choice([0, 0.3])))
        connect = np.column_stack([np.arange(n - 1), np.arange(1, n)])
        v.mesh_line(coords, sizes, **options)
        v.mesh_line(coords, metrics=np.eye(d) / sizes[:, None, None] ** 2, **options)
        v.mesh_spline(coords, sizes, default_size=float(random.choice([0, step])), **gradation, **options)
        v.remesh_lines(coords, connect, step, sizes=sizes if k % 4 else None, **gradation, **options)


@pytest.mark.filterwarnings("error")
def test_graded_lines_are_not_refused():
    for growth in (1.2, 1.5, 2, 3):
        sizes = 1e-6 * growth ** np.arange(np.log(1e6) / np.log(growth))
        x = np.concatenate([[0], np.cumsum(sizes[:-1])])
        v.mesh_line(np.column_stack([x, 0 * x]), sizes * 1e-4)
    for n in (2, 3, 10, 100, 1000):
        coords = np.column_stack([np.linspace(0, 1, n), np.zeros(n)])
        sizes = np.geomspace(1e-6, 1, n) / 10
        v.mesh_line(coords, sizes)
        v.remesh_lines(coords, np.column_stack([np.arange(n - 1), np.arange(1, n)]), 1, sizes=sizes)


def test_metric_lengths_are_integrals_of_the_inverse_size():
    coords, sizes = np.array([[0, 0, 0], [3, 4, 0], [3, 4, 2.0]]), np.array([1, 2, 0.5])
    chain = np.array([0, 1, 2], np.uint32)
    expected = [5 * np.log(2), 2 * np.log(4) / 1.5]
    tensors = np.eye(3) / sizes[:, None, None] ** 2
    for targets in (sizes, v.pack_metrics(tensors)):
        total, each = _core.chain_metric_lengths(coords, chain, targets, True)
        assert np.allclose(each, expected) and np.isclose(total, sum(expected))
    total, is_steep, each = _core.network_metric_lengths(coords, np.array(TWO, np.uint32), 2, sizes[:1], True)
    assert np.allclose(each, [5 * np.log(2), 1]) and np.isclose(total, sum(each)) and not is_steep


FUNCTIONS = {
    "linear": lambda p: 0.01 + 0.1 * p[:, 0],
    "waves": lambda p: 0.02 + 0.015 * np.sin(7 * p[:, 0] + 3 * p[:, 1]),
    "dip": lambda p: 0.1 - 0.099 * np.exp(-(((p[:, 0] - 0.37) / 0.05) ** 2)),
    "distance": lambda p: 0.002 + 0.2 * np.hypot(p[:, 0] - 0.6, p[:, 1] - 0.1),
}


@pytest.mark.parametrize("name", FUNCTIONS)
@pytest.mark.parametrize("line", [LINE, [[0, 0], [0.5, 0], [1, 0.3]]], ids=["straight", "bent"])
def test_meshes_follow_functions(line, name):
    size, line = FUNCTIONS[name], np.array(line)
    at = np.concatenate([[0], np.cumsum(np.linalg.norm(np.diff(line, axis=0), axis=1))])
    s = np.linspace(0, at[-1], 200_001)
    points = np.column_stack([np.interp(s, at, x) for x in line.T])
    metric = cumulative_trapezoid(1 / size(points), s, initial=0)
    mesh = v.mesh_line(line, size)
    n = len(mesh.indices) - 1
    assert abs(n - metric[-1]) < (0.6 if len(line) == 2 else 1)
    steps = np.diff(np.interp(mesh.params * at[-1], s, metric))
    assert np.abs(steps - metric[-1] / n).max() < (0.05 if len(line) == 2 else 0.1 if name != "dip" else 0.4)
    assert np.array_equal(mesh.coords[: len(line)], line) and len(mesh.coords) == len(line) + n - 1
    assert mesh.indices[0] == 0 and mesh.indices[-1] == len(line) - 1
    assert np.array_equal(mesh.indices[1:-1], len(line) + np.arange(n - 1))

    given = v.mesh_line(line, size, params=5 + 2 * at)
    assert np.allclose(given.params, 5 + 2 * at[-1] * mesh.params)
    near = v.mesh_line(line, size, deviation_tolerance=1e-3)
    assert len(line) == 2 or 1 in near.indices
    assert np.array_equal(
        np.unique(near.indices),
        [*np.unique(near.indices[near.indices < len(line)]), *range(len(line), len(near.coords))],
    )
    assert np.allclose(
        near.coords[near.indices], [[np.interp(t, at / at[-1], x) for x in line.T] for t in near.params]
    )
    straight = v.mesh_straight(line, size, force_even=True)
    middle = np.flatnonzero(straight.indices < len(line))
    assert np.array_equal(straight.indices[middle], range(len(line))) and (np.diff(middle) % 2 == 0).all()
    assert abs(len(straight.indices) - 1 - metric[-1]) < 2.5


def test_networks_and_splines_evaluate_functions_at_nodes():
    coords, connect = np.vstack([RAMP, [np.nan, 0]]), np.array(TWO)
    size = FUNCTIONS["linear"]
    mesh = v.remesh_lines(coords, connect, 1, sizes=size)
    assert np.array_equal(
        mesh.coords[4:], v.remesh_lines(RAMP, connect, 1, sizes=size(np.array(RAMP))).coords[3:]
    )
    curve = np.array([[0.0, 0], [1, 0], [1, 1], [0, 1]])
    ring = [3, 0, 1, 2, 3, 0, 1]
    expected = v.mesh_spline(curve, size(curve), closed=True)
    for mesh in (v.mesh_spline(curve, size, closed=True), v.mesh_spline(curve, size, indices=ring)):
        assert np.array_equal(mesh.coords, expected.coords)
    dip = lambda p: 0.2 - 0.19 * np.exp(-50 * (p[:, 0] - 0.5) ** 2)  # noqa: E731
    for call in (
        lambda: v.mesh_spline(RAMP, dip),
        lambda: v.remesh_lines(RAMP, connect, 1, sizes=dip),
        lambda: v.mesh_line(RAMP, dip, deviation_tolerance=-0.1),
    ):
        with pytest.warns(
            v.MeshWarning, match="between nodes 0 and 1 it is 0.01, but 0.2 .*add nodes"
        ) as found:
            call()
        assert found[0].filename == __file__


@pytest.mark.parametrize(
    "mesh",
    [v.mesh_line, v.mesh_spline, v.mesh_straight, lambda c, f: v.remesh_lines(c, [[0, 1]], 1, sizes=f)],
)
def test_wrong_functions_are_reported(mesh):
    for function, error, message in (
        (lambda p: 0.5 - p[:, 0], ValueError, r"sizes returned -0.5 at \(1, 0\); sizes must be positive"),
        (lambda p: p, ValueError, r"sizes returned shape \(2, 2\) for 2 positions"),
        (lambda p: ["a"] * len(p), TypeError, "sizes returned <U1"),
    ):
        with pytest.raises(error, match=message):
            mesh(LINE, function)


def test_samples_are_bounded(monkeypatch):
    monkeypatch.setattr(_sizes, "MOST_SAMPLES", 1000)
    with pytest.raises(
        ValueError, match="more than 1,000 samples on a line of length 1; the smallest size found is 1e-05"
    ):
        v.mesh_line(LINE, lambda p: np.full(len(p), 1e-5))


@pytest.mark.filterwarnings("ignore::vornik1d.MeshWarning")
@pytest.mark.parametrize(
    "size, ends", [(1e-4, (1, 1)), (1e-3, (1, 5)), (1e-4, (10, 1)), (1e-4, (10, 1000)), (1e-4, (1e-4, 50))]
)
def test_the_number_of_passes_is_foreseen(size, ends):
    """Each pass drops about one node at each end whose size is too large for its segment."""
    coords, chain = np.array([[0, 0], [0.02, 0], [1.02, 0], [1.04, 0]]), np.arange(4, dtype=np.uint32)
    sizes = np.array([ends[0], size, size, ends[1]])
    segments = _foresee.segments(coords, chain, sizes)
    lost = segments[3].sum() - len(v.mesh_line(coords, sizes).indices) + 1
    assert 0.4 * lost < _foresee.passes(*segments) < 3 * lost
