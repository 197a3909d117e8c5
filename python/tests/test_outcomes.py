"""Results unpack, travel between processes, print one line, and convert."""

import pickle
import sys
from dataclasses import FrozenInstanceError, replace

import meshio
import numpy as np
import pytest
from shapely.geometry import mapping

import vornik1d as v

CORNERS = [[0, 0], [10, 0], [10, 6]]
LINE = v.mesh_line(CORNERS, [1, 0.2, 1], deviation_tolerance=0.01)
BY_TENSORS = v.mesh_line(CORNERS, metrics=[[1, 0, 4]] * 2, indices=[0, 2])
ROUND = v.mesh_line([[9, 9], [0, 0], [1, 0], [0, 1]], 9, indices=[1, 2, 3, 1], min_elements=3)
SPLINE = v.mesh_spline(CORNERS, 1)
# A square ring of two elements a side, a stem of two colours that ends at its corner 2, and an unused node.
NODES = [[0, 0], [4, 0], [9, 9], [4, 4], [0, 4], [7, 7], [8, 8]]
NET = v.remesh_lines(NODES, [[0, 1], [1, 3], [3, 4], [4, 0], [3, 5], [5, 6]], 2, colors=[7, 7, 7, 7, 8, 9])
NO_NODES, NO_ELEMENTS = np.empty(0, np.uint32), np.empty((0, 2), np.uint32)
# fmt: off
TEXTS = [
    (LINE, "LineMesh: 33 nodes, 32 elements, length 16, sizes 0.2 to 1"),
    (BY_TENSORS, "LineMesh: 17 nodes, 16 elements, length 11.66, tensors"),
    (ROUND, "LineMesh: 3 nodes, 3 elements, length 2.953, size 9"),
    (replace(SPLINE, deviation=0.0123456), "SplineMesh: 18 nodes, 17 elements, length 16.97, size 1, deviation 0.01235"),
    (replace(LINE, coords=1e5 * LINE.coords), "LineMesh: 33 nodes, 32 elements, length 1,600,000, sizes 0.2 to 1"),
    (v.extrude_translate([0, 0], [3, 0], element_count=1), "NodeList: 2 nodes, 1 element, length 3, elements 3 long"),
    (v.NodeList(np.eye(2), NO_NODES), "NodeList: 0 nodes, 0 elements"),
    (NET, "Network: 12 nodes, 12 elements in 6 chains, length 21.66, elements 1.254 to 2 long"),
    (v.Network(np.eye(2), NO_ELEMENTS, NO_NODES, NO_NODES), "Network: 0 nodes, 0 elements in 0 chains"),
    (v.convert_into_cubic(CORNERS, [[0, 1], [1, 2]]),
     "HighOrderMesh: 7 nodes, 2 elements of 4 nodes, length 16, elements 6 to 10 long"),
    (v.mesh_reorient([[0, 1], [2, 1]]), "Orientation: 2 elements, 1 turn"),
    (v.subdivide([0, 9, 2], 1, [0, 2]), "Subdivision: 3 points, 2 elements, params 0 to 2, size 1"),
]
# fmt: on


@pytest.mark.parametrize("result, text", TEXTS, ids=lambda x: x[:30] if isinstance(x, str) else "")
def test_results_print_one_line_unpack_and_travel(result, text):
    assert repr(result) == str(result) == text
    copy = pickle.loads(pickle.dumps(result))
    assert type(copy) is type(result) and vars(copy).keys() == vars(result).keys()
    assert all(np.array_equal(value, getattr(result, name)) for name, value in vars(copy).items())
    extra = 2 if isinstance(result, v.Network) else 0  # turned and raised
    assert [id(a) for a in result] == [id(a) for a in vars(result).values()][: len(vars(result)) - extra]
    with pytest.raises(FrozenInstanceError):
        result.indices = None


def test_compact_renumbers_as_unique_does():
    for mesh in LINE, BY_TENSORS, ROUND, NET, replace(NET, hard_nodes=np.arange(13), raised=np.arange(2, 4)):
        used, connect = np.unique(mesh.connect, return_inverse=True)
        small, numbers = mesh.compact()
        assert np.array_equal(small.connect, connect.reshape(-1, 2))
        assert np.array_equal(np.flatnonzero(numbers != v.UNLIMITED), used)
        assert np.array_equal(numbers[used], np.arange(len(used)))
        assert np.array_equal(small.segments, mesh.segments) and np.array_equal(small.points, mesh.points)
        assert np.isclose(mesh.lengths.sum(), v.length(mesh.coords, connect=mesh.connect))
        for name in {"hard_nodes", "raised"} & vars(mesh).keys():
            assert np.array_equal(used[getattr(small, name)], np.intersect1d(getattr(mesh, name), used))


def test_chains_follow_the_lines():
    assert [(c[0], c[-1]) for c in NET.chains] == [(0, 1), (1, 3), (3, 4), (4, 0), (3, 5), (5, 6)]
    assert list(NET.chain_colors) == [7, 7, 7, 7, 8, 9]
    assert np.array_equal(np.concatenate([np.stack([c[:-1], c[1:]], 1) for c in NET.chains]), NET.connect)
    t = np.arange(40) * np.pi / 20
    ring = np.stack([np.arange(40), np.roll(np.arange(40), -1)], axis=1)
    closed = v.remesh_lines(np.stack([np.cos(t), np.sin(t)], axis=1), ring, 0.3)
    assert [c[0] == c[-1] for c in closed.chains] == [True]
    empty = v.remesh_lines(NODES, NO_ELEMENTS, 1)
    assert empty.chains == [] and empty.to_shapely().is_empty and len(empty.to_meshio().points) == 0


def test_conversions(tmp_path):
    path = tmp_path / "mesh"
    for form in ("vtu", "vtk", "gmsh"):
        for mesh in LINE, SPLINE, BY_TENSORS, ROUND, NET:
            mesh.to_meshio().write(path, file_format=form)
            made, small = meshio.read(path, file_format=form), mesh.compact()[0]
            assert np.array_equal(made.points, np.pad(small.coords, ((0, 0), (0, 1))))
            assert np.array_equal(made.cells_dict["line"], small.connect)
            if mesh is NET:
                assert np.array_equal(np.ravel(made.cell_data["color"]), NET.colors)
            elif mesh is BY_TENSORS:
                assert np.array_equal(made.point_data["metric"].reshape(-1, 9)[0], np.diag([1, 4, 0]).ravel())
            else:
                assert np.array_equal(np.ravel(made.point_data["size"])[small.indices], mesh.sizes)
    curved = v.convert_into_cubic([[0, 0, 0], [3, 0, 0.0]], [[1, 0]]).to_meshio()
    assert np.array_equal(curved.points[curved.cells_dict["line4"][0]][:, 0], [3, 0, 2, 1])

    assert np.array_equal(mapping(LINE.to_shapely())["coordinates"], LINE.points)
    lines = [np.array(line.coords) for line in NET.to_shapely().geoms]
    assert len(lines) == 6 and all(map(np.array_equal, lines, (NET.coords[c] for c in NET.chains)))
    assert v.NodeList(np.eye(2), NO_NODES).to_shapely().is_empty


@pytest.mark.parametrize(
    "module, extra, name", [("meshio", "mesh", "meshio"), ("shapely.geometry", "geo", "shapely")]
)
def test_a_missing_package_is_named(monkeypatch, module, extra, name):
    monkeypatch.setitem(sys.modules, module, None)
    with pytest.raises(ImportError, match=rf"{name}: pip install vornik1d\[{extra}\]"):
        getattr(NET, f"to_{name}")()
