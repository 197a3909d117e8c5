"""What the functions return.

A result cannot be assigned to. dataclasses.replace makes a copy with other values. A result unpacks into its fields,
its len is the number of its elements, and printing it shows one line.
"""

from __future__ import annotations

import importlib
from dataclasses import MISSING, dataclass, field, fields, replace
from types import ModuleType
from typing import TYPE_CHECKING, Any, Dict, Iterator, List, Optional, Tuple, TypeVar

import numpy as np
import numpy.typing as npt

from . import _core
from ._arguments import UNLIMITED, Nodes, Reals, unpack_metrics

_Rows = npt.NDArray[np.intp]
_AnyMesh = TypeVar("_AnyMesh", bound="Mesh")


def _no_nodes() -> Nodes:
    return np.empty(0, np.uint32)


def _number(value: float) -> str:
    return f"{value:,.0f}" if 1000 <= abs(value) < 1e12 else f"{value:.4g}"


def _range(values: Reals) -> str:
    least, largest = _number(values.min()), _number(values.max())
    return least if least == largest else f"{least} to {largest}"


def _sizes_text(values: Reals) -> str:
    text = _range(values)
    return f"sizes {text}" if " to " in text else f"size {text}"


def _count(count: int, noun: str) -> str:
    return f"{count:,} {noun}" if count == 1 else f"{count:,} {noun}s"


def _optional_module(name: str, extra: str) -> ModuleType:
    try:
        return importlib.import_module(name)
    except ImportError as error:
        package = name.split(".", maxsplit=1)[0]
        raise ImportError(f"This method needs {package}: pip install vornik1d[{extra}]") from error


@dataclass(frozen=True, repr=False, eq=False)
class _Result:
    if TYPE_CHECKING:  # a field or a property of each result

        @property
        def connect(self) -> Nodes:
            ...

    def __iter__(self) -> Iterator[Any]:
        """The fields without default values, in order."""
        return (getattr(self, f.name) for f in fields(self) if f.default_factory is MISSING)

    def __len__(self) -> int:
        return len(self.connect)

    def __repr__(self) -> str:
        return f"{type(self).__name__}: {', '.join(self._facts())}"

    def _facts(self) -> List[str]:
        raise NotImplementedError


class _Chain:
    """A result with a list of nodes in the order of travel."""

    indices: Nodes

    @property
    def connect(self) -> Nodes:
        """(m, 2) the elements."""
        # a list of one node has no elements and leaves the empty array as it is
        return _core.indices_to_connectE2(self.indices, np.empty((0, 2), np.uint32))[1]


@dataclass(frozen=True, repr=False, eq=False)
class Mesh(_Result):
    """What all meshes have. coords: (n, d) all nodes, first the given nodes, then the new nodes."""

    coords: Reals

    @property
    def points(self) -> Reals:
        """(k, d) the positions of the nodes that the mesh uses, by ascending number."""
        return self.coords[self._used()]

    @property
    def segments(self) -> Reals:
        """(m, 2, d) the positions of the two ends of each element, as Matplotlib's LineCollection takes them."""
        result: Reals = self.coords[self.connect[:, :2]]
        return result

    @property
    def lengths(self) -> Reals:
        """(m,) the distance between the two ends of each element."""
        steps = self.coords[self.connect[:, 1]] - self.coords[self.connect[:, 0]]
        result: Reals = np.sqrt(np.einsum("ij,ij->i", steps, steps))
        return result

    def compact(self: _AnyMesh) -> Tuple[_AnyMesh, Nodes]:
        """Drop the nodes that the mesh does not use, and number the others in the same order.

        Returns the mesh and the new number of each old node; 4294967295 for a node that was dropped.
        """
        used = self._used()
        numbers = np.full(len(self.coords), UNLIMITED, np.uint32)
        numbers[used] = np.arange(len(used), dtype=np.uint32)
        return replace(self, coords=self.coords[used], **self._renumbered(numbers)), numbers

    def to_meshio(self) -> Any:
        """Convert to a meshio.Mesh, without unused nodes. Positions in the plane get a third coordinate, 0.

        Needs meshio: pip install vornik1d[mesh].
        """
        meshio = _optional_module("meshio", "mesh")
        mesh, _ = self.compact()
        points = np.pad(mesh.coords, ((0, 0), (0, 3 - mesh.coords.shape[1])))
        width = mesh.connect.shape[1]
        cells = [("line" if width == 2 else f"line{width}", mesh.connect.astype(np.int64))]
        return meshio.Mesh(points, cells, point_data=mesh._point_data(), cell_data=mesh._cell_data())

    def _numbers(self) -> Nodes:
        """The field with the numbers of the mesh's nodes."""
        return self.connect

    def _used(self) -> _Rows:
        is_used = np.zeros(len(self.coords), bool)
        is_used[self._numbers()] = True
        return np.flatnonzero(is_used)

    def _renumbered(self, numbers: Nodes) -> Dict[str, Nodes]:
        """The fields with node numbers, renumbered."""
        return {"connect": numbers[self.connect]}

    def _point_data(self) -> Dict[str, Reals]:
        return {}

    def _cell_data(self) -> Dict[str, List[Nodes]]:
        return {}

    def _facts(self) -> List[str]:
        facts = [_count(len(self._used()), "node"), _count(len(self), "element") + self._form()]
        if len(self) == 0:
            return facts
        lengths = self.lengths
        return [*facts, f"length {_number(lengths.sum())}", self._steps(lengths)]

    def _form(self) -> str:
        return ""

    def _steps(self, lengths: Reals) -> str:
        return f"elements {_range(lengths)} long"


@dataclass(frozen=True, repr=False, eq=False)
class NodeList(_Chain, Mesh):
    """Nodes drawn along a line.

    coords: (n, d) all nodes, first the given nodes, then the new nodes.
    indices: (k,) the nodes of the line in the order of travel.
    """

    indices: Nodes

    @property
    def points(self) -> Reals:
        """(k, d) the positions of the nodes of the line, in the order of travel."""
        return self.coords[self.indices]

    def to_shapely(self) -> Any:
        """Convert to a shapely LineString. Needs Shapely: pip install vornik1d[geo]."""
        return _optional_module("shapely.geometry", "geo").LineString(self.points if len(self) > 0 else None)

    def _numbers(self) -> Nodes:
        return self.indices

    def _renumbered(self, numbers: Nodes) -> Dict[str, Nodes]:
        return {"indices": numbers[self.indices]}


@dataclass(frozen=True, repr=False, eq=False)
class LineMesh(NodeList):
    """A mesh of a line.

    coords: (n, d) all nodes, first the given nodes, then the new nodes.
    indices: (k,) the nodes of the mesh in the order of travel.
    params: (k,) the parameter of each node of the mesh.
    sizes: (k,) the target size at each node of the mesh, or None if the line was meshed by tensors.
    metrics: (k, 3) or (k, 6) the tensor at each node of the mesh, or None if the line was meshed by sizes.

    Examples
    --------
    >>> import vornik1d
    >>> mesh = vornik1d.mesh_line([[0, 0], [1, 0], [2, 0]], 1.0)
    >>> mesh
    LineMesh: 3 nodes, 2 elements, length 2, size 1
    >>> mesh.points.tolist(), mesh.lengths.tolist()
    ([[0.0, 0.0], [1.0, 0.0], [2.0, 0.0]], [1.0, 1.0])
    >>> mesh.indices.tolist()  # the middle of the mesh is a new node
    [0, 3, 2]
    >>> small, numbers = mesh.compact()
    >>> small.indices.tolist(), len(small.coords)
    ([0, 2, 1], 3)
    """

    params: Reals
    sizes: Optional[Reals]
    metrics: Optional[Reals]

    def _point_data(self) -> Dict[str, Reals]:
        """Parameters, and sizes or tensors in rows of 9 numbers."""
        data = {"param": self.params}
        if self.sizes is not None:
            data["size"] = self.sizes
        if self.metrics is not None:
            tensors = unpack_metrics(self.metrics)
            rest = (0, 3 - tensors.shape[1])
            data["metric"] = np.pad(tensors, ((0, 0), rest, rest)).reshape(-1, 9)
        _, first = np.unique(self.indices, return_index=True)  # a ring has its first node twice
        return {name: values[first] for name, values in data.items()}

    def _steps(self, lengths: Reals) -> str:
        return "tensors" if self.sizes is None else _sizes_text(self.sizes)


@dataclass(frozen=True, repr=False, eq=False)
class SplineMesh(LineMesh):
    """A mesh of a spline: the fields of LineMesh, and the largest distance between spline and chain."""

    deviation: float

    def _facts(self) -> List[str]:
        return [*super()._facts(), f"deviation {_number(self.deviation)}"]


@dataclass(frozen=True, repr=False, eq=False)
class Network(Mesh):
    """A mesh of a network of lines.

    coords: (n, d) all nodes, first the given nodes, then the new nodes.
    connect: (m, 2) the elements. Those of a chain follow one another in the order of travel.
    colors: (m,) the colour of each element: the first colour along its chain, or a new colour if its chain has
        none. So without given colours each chain has a colour of its own.
    hard_nodes: (k,) the nodes at which the lines were cut, ascending. Empty for an empty network.

    Two further fields are not part of the unpacking:
    turned: the rows of the given elements that were turned before meshing.
    raised: the first node of each chain that was given more elements so that its loop did not collapse.

    Examples
    --------
    >>> import vornik1d
    >>> coords, connect = [[0, 0], [2, 0], [2, 2], [4, 0]], [[0, 1], [1, 2], [1, 3]]
    >>> mesh = vornik1d.remesh_lines(coords, connect, 1.0, colors=[7, 8, 9])
    >>> mesh
    Network: 7 nodes, 6 elements in 3 chains, length 6, elements 1 long
    >>> [chain.tolist() for chain in mesh.chains], mesh.chain_colors.tolist()
    ([[0, 4, 1], [1, 5, 2], [1, 6, 3]], [7, 8, 9])
    >>> coords, elements, colors, hard_nodes = mesh
    """

    connect: Nodes
    colors: Nodes
    hard_nodes: Nodes
    turned: Nodes = field(default_factory=_no_nodes)
    raised: Nodes = field(default_factory=_no_nodes)

    @property
    def chains(self) -> List[Nodes]:
        """The nodes of each chain in the order of travel. A closed chain ends with its first node."""
        starts = self._starts()
        ends = np.append(starts, len(self))[1:]
        nodes = np.insert(self.connect[:, 0], ends, self.connect[ends - 1, 1])
        cuts = [*(starts + np.arange(len(starts))).tolist(), len(nodes)]
        return [nodes[a:b] for a, b in zip(cuts, cuts[1:])]

    @property
    def chain_colors(self) -> Nodes:
        """The colour of each chain."""
        return self.colors[self._starts()]

    def to_shapely(self) -> Any:
        """Convert to a shapely MultiLineString, one line per chain. Needs Shapely: pip install vornik1d[geo]."""
        geometry = _optional_module("shapely.geometry", "geo")
        return geometry.MultiLineString([self.coords[chain] for chain in self.chains])

    def _starts(self) -> _Rows:
        """The first element of each chain."""
        is_hard = np.zeros(len(self.coords), bool)
        is_hard[self.hard_nodes] = True
        ends = self.connect[:-1, 1]
        is_cut = (ends != self.connect[1:, 0]) | is_hard[ends] | (self.colors[:-1] != self.colors[1:])
        return np.flatnonzero(np.append(True, is_cut)[: len(self)])

    def _renumbered(self, numbers: Nodes) -> Dict[str, Nodes]:
        fields_of_nodes = super()._renumbered(numbers)
        for name in ("hard_nodes", "raised"):
            new = numbers[getattr(self, name)]
            fields_of_nodes[name] = new[new != UNLIMITED]
        return fields_of_nodes

    def _cell_data(self) -> Dict[str, List[Nodes]]:
        return {"color": [self.colors]}

    def _form(self) -> str:
        return f" in {_count(len(self._starts()), 'chain')}"


@dataclass(frozen=True, repr=False, eq=False)
class HighOrderMesh(Mesh):
    """coords: (n, d) all nodes, the new nodes last. connect: (m, k) elements, the two end nodes first."""

    connect: Nodes

    def _form(self) -> str:
        return f" of {self.connect.shape[1]} nodes"


@dataclass(frozen=True, repr=False, eq=False)
class Orientation(_Result):
    """connect: (m, 2) elements; neighbors: (m, 2) their neighbours; turns: how often an element was turned."""

    connect: Nodes
    neighbors: Nodes
    turns: int

    def _facts(self) -> List[str]:
        return [_count(len(self), "element"), _count(self.turns, "turn")]


@dataclass(frozen=True, repr=False, eq=False)
class Subdivision(_Chain, _Result):
    """A mesh of a line on the parameter axis.

    params: the parameter of each point, first the given points, then the new points.
    sizes: the target size at each point.
    indices: the points of the mesh in the order of travel.
    """

    params: Reals
    sizes: Reals
    indices: Nodes

    def _facts(self) -> List[str]:
        used = self.indices
        facts = [_count(len(np.unique(used)), "point"), _count(len(self), "element")]
        if len(used) == 0:
            return facts
        return [*facts, f"params {_range(self.params[used])}", _sizes_text(self.sizes[used])]
