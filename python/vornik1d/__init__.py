"""Line meshes: nodes in the plane or in space, joined by elements that follow target sizes.

The functions cut a line, or each line of a network, into elements whose lengths follow target sizes. The sizes are
given at the nodes of the line, as numbers or as metric tensors.

    >>> import vornik1d
    >>> mesh = vornik1d.mesh_line([[0, 0], [10, 0], [10, 6]], [1, 0.2, 1], deviation_tolerance=0.01)
    >>> mesh
    LineMesh: 33 nodes, 32 elements, length 16, sizes 0.2 to 1
    >>> mesh.points.shape
    (33, 2)

Terms:
- Node positions are an array of shape (n, 2) or (n, 3). The number of a node is its row in that array.
- Elements are an array of node numbers, shape (m, 2), one element per row.
- A chain is a list of node numbers in the order of travel, for example [0, 1, 2].
- A metric tensor gives a target size for each direction. It is a symmetric matrix, or a row of 3 or 6 numbers:
  (m00, m01, m11) or (m00, m01, m11, m02, m12, m22). pack_metrics and unpack_metrics convert between the two.

Functions do not change their arguments. They return new arrays: first the given nodes, then the new nodes.
Arrays of float64 and uint32 in C order are read in place. Other arrays are converted.

Errors begin with the names of the function and the argument:
- ValueError: a value or a shape is wrong.
- TypeError: a type is wrong, or two arguments exclude each other.
- MemoryError: there is not enough memory.

- ValueError also if the sizes ask for more elements than memory can hold.

If a mesh has fewer than half of the elements that the sizes ask for, a warning of class MeshWarning says why. Set
max_elements to limit the number of elements.

The library releases the interpreter's lock while it works, so threads can mesh different lines at the same time.
Do not write to an array while another thread meshes it.

vornik1d.plot draws lines with Matplotlib.
"""

from ._arguments import UNLIMITED, pack_metrics, unpack_metrics
from ._core import version
from ._elements import (
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
    curvatures,
    interpolate_coordinates,
    length,
    normals,
    parametric_curvatures,
    sort,
    subdivide,
)
from ._meshing import mesh_line, mesh_spline, mesh_straight, spline_point
from ._metrics import interpolate_metrics, metrics_gen_aniso2d, metrics_gen_aniso3d
from ._networks import remesh_lines
from ._results import (
    HighOrderMesh,
    LineMesh,
    Network,
    NodeList,
    Orientation,
    SplineMesh,
    Subdivision,
)
from ._warnings import MeshWarning

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
    "MeshWarning",
    "UNLIMITED",
]
