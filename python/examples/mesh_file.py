"""Remeshes the lines of a mesh file in any format that meshio reads. Writes a file that ParaView opens.

Usage: mesh_file.py INPUT SIZE TOLERANCE OUTPUT, for example mesh_file.py frame.msh 0.1 0.005 frame.vtu

TOLERANCE is the largest distance between the new mesh and the lines; 0 keeps all bends of the lines.
"""

import sys

import meshio
import numpy as np

import vornik1d


def remesh(mesh: meshio.Mesh, size: float, tolerance: float) -> vornik1d.Network:
    """Remeshes the line cells of a mesh. The colour of an element is the number of its block of cells."""
    blocks = [block.data for block in mesh.cells if block.type == "line"]
    if not blocks:
        raise SystemExit("The file contains no line cells.")
    colors = np.concatenate([np.full(len(block), k) for k, block in enumerate(blocks)])
    return vornik1d.remesh_lines(
        mesh.points,
        np.concatenate(blocks),
        size,
        colors=colors,
        deviation_tolerance=tolerance,
        min_size=0.1 * tolerance,
    )


if __name__ == "__main__":
    if len(sys.argv) != 5:
        raise SystemExit(__doc__)
    network = remesh(meshio.read(sys.argv[1]), float(sys.argv[2]), float(sys.argv[3]))
    network.to_meshio().write(sys.argv[4])
    print(network)
