"""What the functions return."""

from __future__ import annotations

from typing import NamedTuple, Optional

from ._arguments import Nodes, Reals


class LineMesh(NamedTuple):
    """A mesh of a line.

    coords: (n, d) all nodes, first the given nodes, then the new nodes.
    indices: (k,) the nodes of the mesh in the order of travel.
    params: (k,) the parameter of each node of the mesh.
    sizes: (k,) the target size at each node of the mesh, or None if the line was meshed by tensors.
    metrics: (k, 3) or (k, 6) the tensor at each node of the mesh, or None if the line was meshed by sizes.
    """

    coords: Reals
    indices: Nodes
    params: Reals
    sizes: Optional[Reals]
    metrics: Optional[Reals]


class SplineMesh(NamedTuple):
    """A mesh of a spline: the fields of LineMesh, and the largest distance between spline and chain."""

    coords: Reals
    indices: Nodes
    params: Reals
    sizes: Optional[Reals]
    metrics: Optional[Reals]
    deviation: float


class NodeList(NamedTuple):
    """Nodes drawn along a line.

    coords: (n, d) all nodes, first the given nodes, then the new nodes.
    indices: (k,) the nodes of the line in the order of travel.
    """

    coords: Reals
    indices: Nodes


class Network(NamedTuple):
    """A mesh of a network of lines.

    coords: (n, d) all nodes, first the given nodes, then the new nodes.
    connect: (m, 2) the elements.
    colors: (m,) the colour of each element: the first colour along its chain, or a new colour if its chain has
        none. So without given colours each chain has a colour of its own.
    hard_nodes: (k,) the nodes at which the lines were cut, ascending. Empty for an empty network.
    """

    coords: Reals
    connect: Nodes
    colors: Optional[Nodes]
    hard_nodes: Optional[Nodes]


class HighOrderMesh(NamedTuple):
    """coords: (n, d) all nodes, the new nodes last. connect: (m, k) elements, the two end nodes first."""

    coords: Reals
    connect: Nodes


class Orientation(NamedTuple):
    """connect: (m, 2) elements; neighbors: (m, 2) their neighbours; turns: how often an element was turned."""

    connect: Nodes
    neighbors: Nodes
    turns: int


class Subdivision(NamedTuple):
    """A mesh of a line on the parameter axis.

    params: the parameter of each point, first the given points, then the new points.
    sizes: the target size at each point.
    indices: the points of the mesh in the order of travel.
    """

    params: Reals
    sizes: Reals
    indices: Nodes
