"""Remeshes the LineStrings of a GeoJSON file, keeps shared ends shared, writes the result and a picture.

Usage: geojson.py INPUT SIZE_KM OUTPUT, for example geojson.py data/europe-borders.geojson 50 borders.geojson
"""

import json
import sys
from dataclasses import replace

import numpy as np

import vornik1d
from vornik1d import plot

EARTH_RADIUS = 6371.0


class Plane:
    """Lambert's azimuthal equal-area projection in km, centred on the middle of the given positions."""

    def __init__(self, degrees: np.ndarray) -> None:
        self.center = np.radians((degrees.min(axis=0) + degrees.max(axis=0)) / 2)

    def project(self, degrees: np.ndarray) -> np.ndarray:
        east, north = np.radians(degrees).T
        east = east - self.center[0]
        s, c = np.sin(self.center[1]), np.cos(self.center[1])
        k = np.sqrt(2 / (1 + s * np.sin(north) + c * np.cos(north) * np.cos(east)))
        x = k * np.cos(north) * np.sin(east)
        y = k * (c * np.sin(north) - s * np.cos(north) * np.cos(east))
        return EARTH_RADIUS * np.stack([x, y], axis=1)

    def unproject(self, km: np.ndarray) -> np.ndarray:
        x, y = km.T / EARTH_RADIUS
        rho = np.maximum(np.hypot(x, y), 1e-300)
        angle = 2 * np.arcsin(rho / 2)
        s, c = np.sin(self.center[1]), np.cos(self.center[1])
        north = np.arcsin(np.cos(angle) * s + y * np.sin(angle) * c / rho)
        east = np.arctan2(x * np.sin(angle), rho * c * np.cos(angle) - y * s * np.sin(angle))
        return np.degrees(np.stack([self.center[0] + east, north], axis=1))


def read(path: str) -> tuple:
    """Positions in degrees, elements, the number of each element's line, and the features.

    The features must be LineStrings. Equal positions become one node.
    """
    with open(path, encoding="utf-8") as file:
        features = json.load(file)["features"]
    if any(f["geometry"]["type"] != "LineString" for f in features):
        raise SystemExit(f"{path}: all features must be LineStrings.")
    lines = [np.array(f["geometry"]["coordinates"])[:, :2] for f in features]
    positions, nodes = np.unique(np.concatenate(lines), axis=0, return_inverse=True)
    ends = np.cumsum([len(line) for line in lines])
    starts = ends - [len(line) for line in lines]
    chains = [nodes[a:b].ravel() for a, b in zip(starts, ends)]
    connect = np.concatenate([np.stack([c[:-1], c[1:]], axis=1) for c in chains])
    owner = np.concatenate([np.full(len(c) - 1, k) for k, c in enumerate(chains)])
    return positions, connect, owner, features


def main(source: str, size: float, target: str) -> None:
    degrees, connect, owner, features = read(source)
    plane = Plane(degrees)
    mesh = vornik1d.remesh_lines(
        plane.project(degrees),
        connect,
        size,
        colors=owner,
        max_angle=60,
        deviation_tolerance=0.04 * size,
        min_size=0.02 * size,
    )
    positions = plane.unproject(mesh.coords)
    for feature in features:
        feature["geometry"] = {"type": "MultiLineString", "coordinates": []}
    lines = replace(mesh, hard_nodes=mesh.hard_nodes[:0])  # corners shall not cut the line of a feature
    for chain, k in zip(lines.chains, lines.chain_colors):
        features[k]["geometry"]["coordinates"].append(positions[chain].tolist())
    with open(target, "w", encoding="utf-8") as file:
        json.dump({"type": "FeatureCollection", "features": features}, file)

    axes = plot.lines(mesh, colors=mesh.colors, nodes=False)
    axes.figure.set_size_inches(8, 8)
    axes.figure.savefig(target + ".png", dpi=120)
    print(f"{len(connect)} elements before. {mesh}")


if __name__ == "__main__":
    if len(sys.argv) != 4:
        raise SystemExit(__doc__)
    main(sys.argv[1], float(sys.argv[2]), sys.argv[3])
