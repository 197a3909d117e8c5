from typing import List, Optional, Sequence, Tuple, Union

from ._arguments import Nodes, Reals

# The compiled functions. Each returns a tuple: the status, then what it has made.

_Steps = Union[int, Sequence[float]]
_Start = Union[int, Reals]

class mesh_limits:
    def __init__(
        self, force_even: bool, fewest: int, most: int, tolerance: float, least: float, /
    ) -> None: ...

class remesh_limits:
    max_angle: float
    deviation_tolerance: float
    max_gradation: float
    min_size: float
    max_elements: int
    def __init__(
        self,
        force_even: bool,
        angle: float,
        tolerance: float,
        gradation: float,
        least: float,
        fewest: int,
        most: int,
        /,
    ) -> None: ...

def version() -> str: ...
def mesh_line(
    coords: Reals, indices: Nodes, params: Optional[Reals], targets: Reals, limits: mesh_limits, /
) -> Tuple[int, Reals, Nodes, Reals, Reals]: ...
def mesh_spline(
    coords: Reals, indices: Nodes, targets: Reals, limits: mesh_limits, default: float, gradation: float, /
) -> Tuple[int, Reals, Nodes, Reals, Reals, float]: ...
def spline_point(coords: Reals, span: Sequence[int], t: float, /) -> Tuple[int, Reals]: ...
def mesh_straight_chain(
    coords: Reals, chain: Nodes, targets: Reals, even: bool, /
) -> Tuple[int, Reals, Nodes]: ...
def mesh_straight_count(
    coords: Reals, chain: Nodes, count: int, even: bool, /
) -> Tuple[int, Reals, Nodes]: ...
def mesh_segment_sizes(
    coords: Reals, ends: Sequence[int], sizes: Sequence[float], even: bool, /
) -> Tuple[int, Reals, Nodes]: ...
def mesh_segment_count(coords: Reals, ends: Sequence[int], count: int, /) -> Tuple[int, Reals, Nodes]: ...
def remesh_hard_lines(
    coords: Reals,
    connect: Nodes,
    size: float,
    sizes: Reals,
    colors: Nodes,
    hard_nodes: Nodes,
    hard_edges: Nodes,
    limits: remesh_limits,
    /,
) -> Tuple[int, Reals, Nodes, Nodes, Nodes]: ...

class cut_network:
    def __init__(
        self,
        coords: Reals,
        connect: Nodes,
        size: float,
        sizes: Reals,
        colors: Nodes,
        hard_nodes: Nodes,
        hard_edges: Nodes,
        limits: remesh_limits,
        /,
    ) -> None: ...
    @property
    def status(self) -> int: ...
    def break_nodes(self) -> Nodes: ...
    def batch_starts(self, elements: int, /) -> List[int]: ...
    def elements(self, first: int, last: int, /) -> int: ...
    def rows(self, first: int, last: int, /) -> Nodes: ...
    def part(self, first: int, last: int, /) -> Tuple[Nodes, Reals, Reals, Nodes, Nodes, Nodes]: ...

def mesh_part(
    nodes: Nodes,
    coords: Reals,
    sizes: Reals,
    counts: Nodes,
    hard: Nodes,
    fewest: Nodes,
    size: float,
    limits: remesh_limits,
    min_loop_elements: int,
    /,
) -> Tuple[int, Reals, Nodes, Nodes, Nodes, Nodes]: ...
def put_part(
    all_coords: Reals,
    all_connect: Nodes,
    all_colors: Nodes,
    first_node: int,
    first_element: int,
    nodes: Nodes,
    chain_colors: Nodes,
    new_coords: Reals,
    connect: Nodes,
    counts: Nodes,
    /,
) -> None: ...
def has_opposed_elements(connect: Nodes, node_count: int, /) -> bool: ...
def extrude_translate(
    coords: Reals, start: _Start, path: Reals, steps: _Steps, even: bool, /
) -> Tuple[int, Reals, Nodes]: ...
def extrude_rotate_2d(
    coords: Reals, start: _Start, center: Reals, angle: float, steps: _Steps, even: bool, /
) -> Tuple[int, Reals, Nodes]: ...
def extrude_rotate_3d(
    coords: Reals, start: _Start, center: Reals, rotation: Reals, steps: _Steps, even: bool, /
) -> Tuple[int, Reals, Nodes]: ...
def interpolate_metrics(params: Reals, values: Reals, wanted: Reals, /) -> Tuple[int, Reals]: ...
def metrics_from_directions(
    directions: Reals, indices: Nodes, along: float, across: float, metrics: Reals, /
) -> Tuple[int, Reals]: ...
def metrics_gen_aniso2d(
    coords: Reals, connect: Nodes, normal_size: float, metrics: Reals, /
) -> Tuple[int, Reals]: ...
def metrics_gen_aniso3d(
    coords: Reals, connect: Nodes, normal_size: float, binormal_size: Optional[float], metrics: Reals, /
) -> Tuple[int, Reals]: ...
def curvatures(coords: Reals, indices: Nodes, /) -> Tuple[int, Reals]: ...
def interpolate_coordinates(
    coords: Reals, indices: Nodes, params: Reals, new_indices: Nodes, new_params: Reals, /
) -> Tuple[int, Reals]: ...
def length(coords: Reals, elements: Nodes, /) -> Tuple[int, float]: ...
def parametric_curvatures(params: Reals, connect: Nodes, tangents: Reals, /) -> Tuple[int, Reals]: ...
def normals(coords: Reals, connect: Nodes, exponent: float, unit_length: bool, /) -> Tuple[int, Reals]: ...
def indices_to_connectE2(indices: Nodes, connect: Nodes, /) -> Tuple[int, Nodes]: ...
def indices_to_connectE3(indices: Nodes, connect: Nodes, /) -> Tuple[int, Nodes]: ...
def indices_to_connectE4(indices: Nodes, connect: Nodes, /) -> Tuple[int, Nodes]: ...
def split_into_linear(connect_in: Nodes, connect_out: Nodes, /) -> Tuple[int, Nodes]: ...
def convert_into_linear(connect: Nodes, /) -> Tuple[int, Nodes]: ...
def convert_into_high_order(
    coords: Reals, connect: Nodes, extra_nodes: int, /
) -> Tuple[int, Reals, Nodes]: ...
def convert_into_quadratic(coords: Reals, connect: Nodes, /) -> Tuple[int, Reals, Nodes]: ...
def convert_into_cubic(coords: Reals, connect: Nodes, /) -> Tuple[int, Reals, Nodes]: ...
def flip(connect: Nodes, /) -> Tuple[int, Nodes]: ...
def get_neighbors(connect: Nodes, /) -> Tuple[int, Nodes]: ...
def mesh_reorient(
    connect: Nodes, neighbors: Nodes, start: int, all_components: bool, /
) -> Tuple[int, Nodes, Nodes]: ...
def sort(params: Reals, indices: Nodes, /) -> Tuple[int, Reals, Nodes]: ...
def subdivide(
    params: Reals, sizes: Reals, indices: Nodes, round_up: bool, even: bool, fewest: int, most: int, /
) -> Tuple[int, Reals, Reals, Nodes]: ...
def chain_metric_lengths(
    coords: Reals, indices: Nodes, targets: Reals, each: bool, /
) -> Tuple[float, Reals]: ...
def network_metric_lengths(
    coords: Reals, connect: Nodes, size: float, sizes: Reals, each: bool, /
) -> Tuple[float, bool, Reals]: ...
def network_chains(
    coords: Reals,
    connect: Nodes,
    size: float,
    sizes: Reals,
    colors: Nodes,
    hard_nodes: Nodes,
    hard_edges: Nodes,
    max_angle: float,
    min_size: float,
    /,
) -> Tuple[Nodes, Nodes, Reals]: ...
def element_count(metric_length: float, even: bool, fewest: int, most: int, /) -> int: ...
