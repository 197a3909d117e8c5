"""Line meshes: nodes in the plane or in space, joined by elements that follow target sizes.

Give it a line or a network of lines, with target sizes or metric tensors at its nodes, and get back a mesh whose
elements are equally long in units of those sizes.

    >>> import vornik1d
    >>> mesh = vornik1d.mesh_line([[0, 0], [10, 0], [10, 6]], [1, 0.2, 1], deviation_tolerance=0.01)
    >>> mesh.coords[mesh.indices].shape
    (33, 2)

Node positions are arrays of shape (n, 2) or (n, 3); a node's number is its row. Elements are arrays of shape
(m, 2) of node numbers, a chain is a list of them in the order of travel. Metric tensors are rows of 3 or 6
numbers, (m00, m01, m11) or (m00, m01, m11, m02, m12, m22), or symmetric matrices; pack_metrics and
unpack_metrics convert them.

Nothing that you hand over is changed: results are returned, with the nodes that there were first and the new ones
behind them. Arrays of float64 and uint32 in C order are read in place, others are converted.

A wrong argument raises a ValueError that begins with the names of the function and the argument, one of a wrong type
or arguments that exclude each other a TypeError that does; a lack of storage raises a MemoryError. Only where sizes
are so small that storage for the nodes of one line is not available, the mesh may be coarser instead, down to a
single element; max_elements sets a limit before that.

The interpreter's lock is released while the library works, so that threads can mesh different lines at the same time.
No thread may write to an array while a call of another one reads it.

vornik1d.plot draws lines with Matplotlib.
"""

from ._arguments import UNLIMITED, pack_metrics, unpack_metrics
from ._core import version
from ._elements import (
    HighOrderMesh,
    Orientation,
    convert_into_cubic,
    convert_into_high_order,
    convert_into_linear,
    convert_into_quadratic,
    flip,
    indices_to_connectE2,
    indices_to_connectE3,
    indices_to_connectE4,
    mesh_reorient,
    split_into_linear,
)
from ._extrusion import extrude_rotate, extrude_translate
from ._measures import (
    Subdivision,
    curvatures,
    interpolate_coordinates,
    length,
    normals,
    parametric_curvatures,
    sort,
    subdivide,
)
from ._meshing import (
    LineMesh,
    Network,
    NodeList,
    SplineMesh,
    mesh_line,
    mesh_spline,
    mesh_straight,
    remesh_lines,
    spline_point,
)
from ._metrics import interpolate_metrics, metrics_gen_aniso2d, metrics_gen_aniso3d

__version__ = version()

__all__ = [
    "mesh_line",
    "mesh_straight",
    "mesh_spline",
    "spline_point",
    "remesh_lines",
    "interpolate_metrics",
    "metrics_gen_aniso2d",
    "metrics_gen_aniso3d",
    "pack_metrics",
    "unpack_metrics",
    "extrude_translate",
    "extrude_rotate",
    "length",
    "curvatures",
    "parametric_curvatures",
    "normals",
    "interpolate_coordinates",
    "indices_to_connectE2",
    "indices_to_connectE3",
    "indices_to_connectE4",
    "split_into_linear",
    "convert_into_linear",
    "convert_into_high_order",
    "convert_into_quadratic",
    "convert_into_cubic",
    "flip",
    "mesh_reorient",
    "sort",
    "subdivide",
    "version",
    "LineMesh",
    "SplineMesh",
    "NodeList",
    "Network",
    "HighOrderMesh",
    "Orientation",
    "Subdivision",
    "UNLIMITED",
]
