"""Networks in parallel are those of a single call. Loops stay loops, and runs get one direction."""

import concurrent.futures
import subprocess
import sys
from pathlib import Path

import numpy as np
import pytest

import vornik1d as v
from vornik1d import _chains, _core, parallel

NONE = v.UNLIMITED


def ring(n, radius=1.0):
    t = 2 * np.pi * np.arange(n) / n
    nodes = np.arange(n)
    return radius * np.stack([np.cos(t), np.sin(t)], axis=1), np.stack([nodes, (nodes + 1) % n], axis=1)


def random_network(random):
    """Lines of random nodes, rings, repeated elements and elements of length 0, with every kind of list."""
    n, kind = int(random.integers(2, 40)), random.choice([0, 0, 1, 2])
    coords = random.random((n, int(random.integers(2, 4))))
    if kind == 0:
        coords[:, :2] = ring(n)[0]
    a = np.arange(n) if kind == 0 else random.integers(0, n, int(random.integers(1, 60)))
    connect = np.stack([a, (a + (1 if kind == 0 else random.integers(kind == 1, n, len(a)))) % n], axis=1)
    connect = random.permutation(connect)
    turned = random.random(len(connect)) < random.choice([0, 0, 0.3])
    connect[turned] = connect[turned][:, ::-1]
    lists = {
        "sizes": random.random(random.integers(0, n)) * random.choice([0, 1, 3]),
        "colors": random.choice([0, 1, NONE], random.integers(0, len(connect))),
        "hard_nodes": random.integers(0, n, random.integers(0, 3)),
        "hard_edges": random.integers(0, len(connect), random.integers(0, 3)),
    }
    options = {
        "deviation_tolerance": random.choice([0, 0, 0.1, -0.1]),
        "max_gradation": random.choice([0, 0.3]),
        "min_size": random.choice([0, 0.1]),
        "max_elements": int(random.choice([NONE, 5])),
        "force_even": bool(random.random() < 0.2),
        "min_loop_elements": int(random.choice([1, 3, 5])),
        "reorient": bool(random.random() < 0.5),
        **{name: values for name, values in lists.items() if random.random() < 0.25},
    }
    return (coords, connect, float(random.choice([0.05, 0.5, 9, 9]))), options


def outcome(run, arguments, options):
    try:
        return run(*arguments, **options)
    except ValueError as error:
        return str(error)


@pytest.mark.filterwarnings("ignore::vornik1d.MeshWarning")
def test_random_networks_are_those_of_a_single_call():
    random, raised, failed = np.random.default_rng(7), 0, 0
    with concurrent.futures.ThreadPoolExecutor(2) as threads:
        for k in range(600):
            arguments, options = random_network(random)
            size = (1, 5, 1000)[k % 3]
            single = outcome(v.remesh_lines, arguments, options)
            joined = outcome(
                lambda *a, **o: parallel.remesh_lines(*a, executor=threads, batch_elements=size, **o),
                arguments,
                options,
            )
            if isinstance(single, str):
                failed += 1
                assert joined == single
                continue
            for name in ("coords", "connect", "colors", "hard_nodes", "turned", "raised"):
                assert np.array_equal(getattr(joined, name), getattr(single, name)), (k, name)
            raised += len(single.raised)
    assert raised > 5 and 5 < failed < 200


def test_loops_stay_loops_and_other_lines_stay_as_they_are():
    coords, connect = ring(12)
    collapsed = v.remesh_lines(coords, connect, 5, min_loop_elements=1)
    assert len(collapsed) == 1 and len(collapsed.raised) == 0
    assert len(v.remesh_lines(coords, connect, 5)) == 12  # with tolerance 0 all bends stay
    mesh = v.remesh_lines(coords, connect, 5, deviation_tolerance=5)
    assert len(mesh) >= 3 and list(mesh.raised) == [0]
    assert np.ptp(mesh.lengths) < 0.1 * mesh.lengths.mean()

    around = np.append(np.arange(12), 0)
    for limits, count in (
        ({}, 3),
        ({"min_loop_elements": 1}, 1),
        ({"max_elements": 2}, 2),
        ({"force_even": True}, 4),
    ):
        assert len(v.mesh_line(coords, 9, indices=around, **limits)) == count
        assert len(v.mesh_spline(coords, 9, closed=True, **limits)) == count
    assert len(v.mesh_line([*coords, coords[0]], 9)) == 3 and len(v.mesh_line(coords, 9)) == 1
    for call in v.mesh_line, v.mesh_spline:
        pair = [call([*coords, coords[0]], 0.4, min_loop_elements=n) for n in (1, 3)]
        assert all(map(np.array_equal, list(pair[0])[:3], list(pair[1])[:3])) and len(pair[0]) > 3

    # a ring of 12 nodes that hangs on a line, another one apart from it, and a long ring that needs no help
    apart, large = coords + [5, 5], ring(40, 50.0)[0] + [100, 0]
    line = np.stack([np.arange(1.0, 12), np.zeros(11)], axis=1)
    nodes = np.concatenate([coords, apart, large, line[1:]])
    stem = np.concatenate([[0], np.arange(64, 74)])
    elements = np.concatenate(
        [connect, connect + 12, ring(40)[1] + 24, np.stack([stem[:-1], stem[1:]], axis=1)]
    )
    plain = v.remesh_lines(nodes, elements, 4.0, min_loop_elements=1, min_size=7)
    mesh = v.remesh_lines(nodes, elements, 4.0, min_size=7)
    assert sorted(mesh.raised) == [0, 12]

    def lines(network):
        return {chain[0] * 1000 + chain[1]: network.coords[chain].tolist() for chain in network.chains}

    def others(network):
        return [network.coords[c] for c in network.chains if c[0] != c[-1] or c[0] >= 24]

    assert len(others(mesh)) == len(others(plain)) == 2
    assert all(map(np.array_equal, others(mesh), others(plain)))
    assert len(lines(mesh)) == 4 and all(len(chain) > 3 for chain in mesh.chains)


def test_rings_of_two_chains_keep_three_elements():
    """A lens has two corners, so it consists of two chains. Each would become the element between the corners."""
    t = np.linspace(-1, 1, 9)
    arcs = np.concatenate(
        [np.stack([t, 1 - t * t], axis=1), np.stack([t[1:-1], t[1:-1] ** 2 / 2 - 0.5], axis=1)]
    )
    upper, lower = np.arange(9), np.array([0, *range(9, 16), 8])
    connect = np.concatenate([np.stack([c[:-1], c[1:]], axis=1) for c in (upper, lower[::-1])])
    options = {"default_size": 50, "deviation_tolerance": 9}
    assert len(v.remesh_lines(arcs, connect, min_loop_elements=1, **options)) == 2
    mesh = v.remesh_lines(arcs, connect, **options)
    assert [len(chain) for chain in mesh.chains] == [3, 2] and list(mesh.raised) == [0]
    assert mesh.coords[mesh.chains[0][1], 1] > 0.9  # on the longer chain
    for size in 1, 100:
        assert all(
            map(np.array_equal, parallel.remesh_lines(arcs, connect, batch_elements=size, **options), mesh)
        )
    assert len(v.remesh_lines(arcs, connect, min_loop_elements=6, **options)) == 6
    twice = v.remesh_lines([[0, 0], [1, 0]], [[0, 1], [1, 0], [0, 1]], 5)  # no ring: equal elements
    assert len(twice) == 3


def test_runs_get_the_direction_of_their_first_element():
    nodes = np.arange(101)
    coords, connect = np.stack([nodes, 0 * nodes], axis=1), np.stack([nodes[:-1], nodes[1:]], axis=1)
    turned = np.flatnonzero(np.random.default_rng(1).random(100) < 0.5)
    turned = turned[turned > 0]
    mixed = connect.copy()
    mixed[turned] = mixed[turned][:, ::-1]
    straight, mesh = v.remesh_lines(coords, connect, 10), v.remesh_lines(coords, mixed, 10)
    assert all(map(np.array_equal, straight, mesh)) and len(mesh) == 10
    assert np.array_equal(mesh.turned, turned) and len(straight.turned) == 0
    assert len(v.remesh_lines(coords, mixed, 10, reorient=False)) > 50
    # no turning across hard nodes, hard edges, changes of colour and junctions
    pairs = np.array([[0, 1], [2, 1]])
    for lists in {"hard_nodes": [1]}, {"hard_edges": [1]}, {"colors": [1, 2]}:
        assert len(v.remesh_lines(coords, pairs, 10, **lists).turned) == 0
    assert len(v.remesh_lines(coords, [*pairs, [1, 3]], 10).turned) == 0
    for lists in {"colors": [1, NONE]}, {"hard_nodes": [0]}:
        assert list(v.remesh_lines(coords, pairs, 10, **lists).turned) == [1]


def test_parts_that_do_not_fit_are_refused():
    coords, connect = ring(12)
    network = _chains.Input(
        coords,
        connect.astype(np.uint32),
        0.1,
        *(np.empty(0, t) for t in (float, np.uint32, np.uint32, np.uint32)),
        _core.remesh_limits(False, 40, 0, 0, 0, 1, NONE),
        3,
    )
    cut = _chains.Cut(network, 1)
    part = cut.part((0, 1))
    mesher = _chains.Mesher(0.1, network.limits, 3)
    empty = np.empty(0, np.uint32)
    for change in (
        {"counts": empty},
        {"counts": part.counts + 1},
        {"sizes": part.sizes[1:]},
        {"hard": part.counts},
    ):
        with pytest.raises(ValueError, match="do not fit together"):
            mesher(part._replace(**change))
    with pytest.raises(IndexError):
        cut.part((0, 2))
    mesh = mesher(part)
    for change in {"connect": mesh.connect + 999}, {"counts": mesh.counts + 1}, {"connect": mesh.connect[1:]}:
        with pytest.raises(ValueError, match="does not fit"):
            cut.join([part], [mesh._replace(**change)])


@pytest.fixture(scope="module")
def client(tmp_path_factory):
    distributed = pytest.importorskip("distributed")
    scratch = str(tmp_path_factory.mktemp("dask"))
    with distributed.LocalCluster(
        n_workers=2, threads_per_worker=1, processes=True, dashboard_address=None, local_directory=scratch
    ) as cluster, distributed.Client(cluster) as connected:
        yield connected


def test_processes_and_machines_give_the_same_network(client, capsys):
    (coords, connect), options = ring(4000, 9.0), {
        "hard_nodes": np.arange(0, 4000, 50),
        "deviation_tolerance": 0.01,
    }
    single = v.remesh_lines(coords, connect, 0.005, **options)
    with concurrent.futures.ProcessPoolExecutor(2) as processes:
        for executor in (None, processes, client):
            calls = []
            joined = parallel.remesh_lines(
                coords, connect, 0.005, executor=executor, batch_elements=500,
                progress=lambda *call: calls.append(call), **options,
            )  # fmt: skip
            assert all(map(np.array_equal, joined, single))
            assert len(calls) == 8 and calls[-1] == (4000, 4000)
    parallel.remesh_lines(coords, connect, 0.005, progress=True)
    assert "4.00k/4.00k" in capsys.readouterr().err


def test_files_are_remeshed_where_they_are(client, tmp_path):
    meshio = pytest.importorskip("meshio")
    tcp = pytest.importorskip("distributed.comm.tcp")
    sources, target = [], tmp_path / "new"
    target.mkdir()
    for k in range(20):
        coords, connect = ring(3000, 1 + k)
        sources.append(tmp_path / (f"{k}.vtu" if k == 0 else f"{k}.npz"))
        if k == 0:
            meshio.Mesh(np.pad(coords, ((0, 0), (0, 1))), [("line", connect)]).write(sources[0])
        else:
            np.savez(sources[k], coords=coords, connect=connect)
    sent = []
    write = tcp.TCP.write

    async def counting(*arguments, **options):
        count = await write(*arguments, **options)
        sent.append(count)
        return count

    with pytest.MonkeyPatch.context() as patch:  # the client and the scheduler run in this process
        patch.setattr(tcp.TCP, "write", counting)
        reports = parallel.remesh_files(sources, target, 0.05, executor=client, deviation_tolerance=0.001)
    size = sum(Path(source).stat().st_size for source in sources)
    assert 0 < sum(sent) < size / 10
    for source, report in zip(sources[1:], reports[1:]):
        with np.load(source) as old, np.load(report.target) as new:
            mesh, _ = v.remesh_lines(old["coords"], old["connect"], 0.05, deviation_tolerance=0.001).compact()
            assert np.array_equal(new["connect"], mesh.connect) and np.array_equal(new["coords"], mesh.coords)
            assert report[2:5] == (3000, len(mesh), len(mesh.coords))
    assert len(meshio.read(reports[0].target).cells[0].data) == reports[0].elements
    assert len(list(target.iterdir())) == 20
    np.savez(tmp_path / "bad.npz", coords=[[0, 0], [1, 0]], connect=[[0, 7]])
    with pytest.raises(ValueError, match=r"bad\.npz: remesh_lines: connect"):
        parallel.remesh_files([tmp_path / "bad.npz"], target, 1, executor=client)
    assert len(list(target.iterdir())) == 20


def test_example_runs(tmp_path):
    script = Path(__file__).parents[1] / "examples/roads.py"
    done = subprocess.run(
        [sys.executable, str(script), "3000"], cwd=tmp_path, capture_output=True, text=True, timeout=120
    )
    assert done.returncode == 0, done.stderr
    assert done.stdout.count("times as fast") == 3
