"""Drawings show their arguments, and the example programs run."""

import json
import runpy
import sys
from pathlib import Path

import matplotlib
import numpy as np
import pytest

matplotlib.use("agg")
import matplotlib.pyplot as plt

import vornik1d
from vornik1d import plot

ROOT = Path(__file__).parents[2]


def test_lines_show_each_element_in_its_color():
    coords = [[0, 0], [1, 0], [1, 2], [5, 5]]
    ax = plot.lines(coords, [[0, 1], [1, 2]], colors=[7, 4])
    segments, dots = ax.collections
    assert np.array_equal(segments.get_segments(), [[[0, 0], [1, 0]], [[1, 0], [1, 2]]])
    assert len(np.unique(segments.get_colors(), axis=0)) == 2
    assert len(dots.get_offsets()) == 3
    assert ax.get_ylim()[1] > 2
    net = vornik1d.remesh_lines(coords, [[0, 1], [1, 2]], 0.5, colors=[7, 4])
    made = plot.lines(net, colors=net.colors).collections[0]
    assert np.array_equal(made.get_segments(), net.segments)
    with pytest.raises(TypeError, match="lines: connect"):
        plot.lines(net, net.connect)
    space = plot.lines(np.eye(3), [0, 2])
    assert space.name == "3d"
    far = plot.lines([[100, 0, 0], [300, 0, 0], [300, 50, 0], [900, 900, 900]], [[0, 1], [1, 2]])
    plot.lines([[100, 0, 0], [100, 0, 20]], ax=far)
    limits = [far.get_xlim(), far.get_ylim(), far.get_zlim()]
    for (low, high), (first, last) in zip(limits, [(100, 300), (0, 50), (0, 20)]):
        assert first - 11 < low <= first and last <= high < last + 11
    extents = np.ptp(limits, axis=1)
    assert np.allclose(far._box_aspect / far._box_aspect[0], extents / extents[0])
    with pytest.raises(ValueError, match="lines: colors"):
        plot.lines(coords, [[0, 1], [1, 2]], colors=[7])
    with pytest.raises(ValueError, match="lines: connect"):
        plot.lines(coords, [[0, 4]])
    plt.close("all")


def test_targets_have_the_sizes_asked():
    turn = np.array([[0.8, -0.6], [0.6, 0.8]])
    tensor = turn @ np.diag([1 / 9, 1 / 4]) @ turn.T  # size 3 along (0.8, 0.6), 2 across
    ellipses = plot.targets([[1, 1]], metrics=tensor[None]).collections[0]
    width, height = 2 * ellipses._widths[0], 2 * ellipses._heights[0]
    assert np.allclose([width, height], [6, 4])
    assert np.isclose(np.tan(ellipses._angles[0]), 0.75)
    plot.targets([[1, 1]], sizes=3)
    assert np.allclose([c._widths[0] for c in plt.gca().collections], 3)  # half the axes
    for how in {"sizes": [1, 3]}, {"metrics": [tensor, tensor]}:
        mesh = vornik1d.mesh_line([[0, 0], [9, 0]], **how)
        drawn = [plot.targets(mesh), plot.targets(mesh.points, sizes=mesh.sizes, metrics=mesh.metrics)]
        circles, same = (ax.collections[0] for ax in drawn)
        assert np.array_equal(circles._widths, same._widths) and len(circles._widths) == len(mesh) + 1
        assert np.array_equal(circles.get_offsets(), mesh.points)
    with pytest.raises(TypeError, match="targets: sizes and metrics"):  # these nodes have no targets
        plot.targets(vornik1d.NodeList(mesh.coords, mesh.indices))
    for wrong in ({"sizes": -1}, {"sizes": [1, 1]}, {"metrics": [-tensor]}, {"metrics": [tensor * np.nan]}):
        with pytest.raises(ValueError, match=f"targets: {next(iter(wrong))}"):
            plot.targets([[1, 1]], **wrong)
    plt.close("all")


def run(name, *arguments):
    sys.argv = [name, *map(str, arguments)]
    runpy.run_path(str(ROOT / "python/examples" / name), run_name="__main__")
    plt.close("all")


def test_examples(tmp_path, monkeypatch, capsys):
    meshio = pytest.importorskip("meshio")
    monkeypatch.chdir(tmp_path)
    run("line.py")
    assert (tmp_path / "line.png").stat().st_size > 1000

    frame = [("line", [[0, 1], [1, 2]]), ("triangle", [[0, 1, 2]]), ("line", [[2, 3]])]
    meshio.Mesh([[0, 0, 0], [1, 0, 0], [1, 1, 0], [1, 1, 2.0]], frame).write("frame.vtk")
    run("mesh_file.py", "frame.vtk", 0.1, 0, "frame.vtu")
    made = meshio.read("frame.vtu")
    elements = made.cells[0].data
    assert list(np.bincount(made.cell_data["color"][0])) == [20, 20]
    assert np.isclose(vornik1d.length(made.points, connect=elements), 4)

    source = ROOT / "data/europe-borders.geojson"
    run("geojson.py", source, 50, "borders.geojson")
    old, new = (json.loads(Path(p).read_text()) for p in (source, "borders.geojson"))
    assert len(new["features"]) == len(old["features"])
    for a, b in zip(old["features"], new["features"]):
        assert a["properties"] == b["properties"]
        line, pieces = np.array(a["geometry"]["coordinates"])[:, :2], b["geometry"]["coordinates"]
        ends = np.array([p for piece in pieces for p in piece])
        assert len(pieces) < 4 and min(len(piece) for piece in pieces) > 1
        if (line[0] != line[-1]).any():  # an open line still begins where it began
            assert np.hypot(*(ends - line[0]).T).min() < 1e-9
        assert (ends.min(axis=0) > line.min(axis=0) - 0.1).all() and (
            ends.max(axis=0) < line.max(axis=0) + 0.1
        ).all()
