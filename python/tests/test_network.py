"""Remeshing a network in batches, on threads or worker processes, gives the same mesh as a single call."""

import subprocess
import sys
from dataclasses import replace
from pathlib import Path

import numpy as np
import pytest

import vornik1d

EXAMPLES = Path(__file__).parents[2] / "python/examples"


@pytest.fixture
def network(monkeypatch):
    """The example as a module, as the other examples import it."""
    monkeypatch.syspath_prepend(str(EXAMPLES))
    import network

    monkeypatch.setattr(network, "OPTIONS", dict(network.OPTIONS))
    yield network
    sys.modules.pop("network", None)


def test_batches_hold_all_elements_and_share_no_node(network):
    coords, connect, colors = network.islands(1200)
    shuffled = np.random.default_rng(1).permutation(len(connect))
    connect, colors = connect[shuffled], colors[shuffled]
    for elements, count in ((1, 20), (120, 10), (130, 9), (10000, 1)):
        batches = network.split(coords, connect, colors, elements)
        assert len(batches) == count
        nodes = np.concatenate([b.nodes for b in batches])
        assert np.array_equal(np.sort(nodes), np.unique(connect))
        rows = [np.column_stack([b.nodes[b.connect], b.colors]) for b in batches]
        assert sorted(map(tuple, np.concatenate(rows))) == sorted(zip(*connect.T, colors))
        assert all(np.array_equal(b.coords, coords[b.nodes]) for b in batches)


def test_random_networks_are_those_of_a_single_call(network):
    random = np.random.default_rng(7)
    network.OPTIONS.update(max_elements=500)
    counts = set()
    for k in range(60):
        n, m = random.integers(2, 60), random.integers(0, 50)
        coords = random.random((n, random.integers(2, 4)))
        a = random.integers(0, n, m)
        connect = np.stack([a, (a + random.integers(1, n, m)) % n], axis=1)
        colors = random.integers(0, 3, m)
        network.OPTIONS["deviation_tolerance"] = (0, 0.1, -0.1)[k % 3]
        batches = network.split(coords, connect, colors, 5)
        joined = network.join(coords, batches, map(network.remesh, batches))
        expected = vornik1d.remesh_lines(coords, connect, colors=colors, **network.OPTIONS)
        assert network.is_same(joined, expected)
        moved = replace(joined, coords=np.nextafter(joined.coords, np.inf))
        assert m == 0 or not network.is_same(moved, expected)
        assert np.array_equal(joined.coords[:n], coords)
        counts.add(len(batches))
    assert len(counts) > 3


@pytest.mark.parametrize("name", ["network", "network_threads", "network_dask"])
def test_examples_run(name, tmp_path):
    command = [sys.executable, str(EXAMPLES / f"{name}.py"), "9000"]
    done = subprocess.run(command, cwd=tmp_path, capture_output=True, text=True, timeout=120)
    assert done.returncode == 0, done.stderr
    assert done.stdout.startswith("9000 elements\n") and done.stdout.count("batches") == 2
    assert not list(tmp_path.iterdir())
