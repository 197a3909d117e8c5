"""Draws lines with Matplotlib: nodes as dots, colours, sizes as circles, tensors as ellipses.

    >>> import matplotlib; matplotlib.use("agg")
    >>> import vornik1d
    >>> from vornik1d import plot
    >>> mesh = vornik1d.mesh_line([[0, 0], [10, 0], [10, 6]], [1, 0.2, 1])
    >>> axes = plot.lines(mesh)
    >>> _ = plot.targets(mesh, ax=axes)
"""

from __future__ import annotations

from typing import Any, Optional, Union

import numpy as np
import numpy.typing as npt

from ._arguments import Arguments, unpack_metrics
from ._results import LineMesh, Mesh, NodeList

try:
    import matplotlib.pyplot as plt
    from matplotlib.collections import EllipseCollection, LineCollection
    from mpl_toolkits.mplot3d.art3d import Line3DCollection
except ImportError as error:
    raise ImportError("vornik1d.plot needs Matplotlib: pip install vornik1d[plot]") from error

__all__ = ["lines", "targets"]


def lines(
    coords: Union[Mesh, npt.ArrayLike],
    connect: Optional[npt.ArrayLike] = None,
    *,
    colors: Optional[npt.ArrayLike] = None,
    nodes: bool = True,
    ax: Any = None,
    **style: Any,
) -> Any:
    """Draw lines in the plane or in space, and return the axes.

    coords: a mesh that a function of this package returned, or (n, d) node positions, d = 2 or 3.
    connect: with node positions only: (m, 2) elements, or a list of nodes in the order of travel; all nodes in
        order if not given.
    colors: a number per element. Elements with the same number get the same colour.
    nodes: whether to draw dots at the nodes.
    ax: the axes to draw on; new axes if not given. Units are equal on new axes and in space.
    style: further arguments of Matplotlib's LineCollection.
    """
    a = Arguments("lines")
    if isinstance(coords, Mesh):
        if connect is not None:
            a.reject("connect", "give it only with node positions, not with a mesh")
        connect = coords.connect
        coords = coords.coords
    points = a.coords(coords)
    if connect is None or np.ndim(connect) == 1:
        elements = NodeList(points, a.chain(connect, points, "connect")).connect
    else:
        elements = a.elements("connect", connect, of=points)[:, :2]
    in_space = points.shape[1] == 3
    if colors is not None:
        numbers = a.nodes("colors", colors)
        a.one_per("element", len(elements), "colors", numbers)
        _, rank = np.unique(numbers, return_inverse=True)
        style["colors"] = plt.get_cmap("tab10")(rank % 10)
    if ax is None:
        ax = plt.figure().add_subplot(projection="3d" if in_space else None)
        if not in_space:
            ax.set_aspect("equal")
    has_data = ax.has_data()
    style.setdefault("linewidths", 1.2)
    collection = Line3DCollection if in_space else LineCollection
    ax.add_collection(collection(points[elements], **style))
    used = points[np.unique(elements)]
    if nodes:
        ax.scatter(*used.T, s=8, color="black", zorder=3)
    if in_space and len(used) > 0:
        ax.auto_scale_xyz(*used.T, had_data=has_data)
        ax.set_box_aspect([abs(b - a) for a, b in (ax.get_xlim(), ax.get_ylim(), ax.get_zlim())])
    elif not in_space:
        ax.autoscale_view()
    return ax


def targets(
    positions: Union[Mesh, npt.ArrayLike],
    *,
    sizes: Optional[npt.ArrayLike] = None,
    metrics: Optional[npt.ArrayLike] = None,
    ax: Any = None,
    **style: Any,
) -> Any:
    """Draw target sizes as circles, or tensors as ellipses, and return the axes.

    An element of the target size reaches from the centre to the rim.

    positions: (k, 2) the centres, or a mesh: the centres are its points.
    sizes: (k,) sizes, or metrics: (k, 3) packed tensors or (k, 2, 2) matrices. If not given, those of the mesh.
    """
    a = Arguments("targets")
    if isinstance(positions, LineMesh) and sizes is None and metrics is None:
        sizes, metrics = positions.sizes, positions.metrics
    if isinstance(positions, Mesh):
        positions = positions.points
    points = a.matrix("positions", positions, (2,))
    given = a.targets(sizes, metrics, len(points), 2, "position")
    if metrics is None:
        widths = heights = 2 * given
        angles = np.zeros(len(points))
    else:
        values, vectors = np.linalg.eigh(unpack_metrics(given))
        if not (values > 0).all():
            a.find_indefinite("metrics", given)
        widths, heights = 2 / np.sqrt(values.T)
        angles = np.degrees(np.arctan2(vectors[:, 1, 0], vectors[:, 0, 0]))
    if ax is None:
        ax = plt.figure().add_subplot()
        ax.set_aspect("equal")
    style = {"facecolors": "none", "edgecolors": "tab:blue", "linewidths": 0.8, **style}
    ax.add_collection(
        EllipseCollection(
            widths, heights, angles, units="xy", offsets=points, offset_transform=ax.transData, **style
        )
    )
    ax.update_datalim(np.concatenate([points - widths[:, None] / 2, points + widths[:, None] / 2]))
    ax.autoscale_view()
    return ax
