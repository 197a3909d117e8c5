#pragma once

#include <cstddef>

#include <trelk/dense1D.h>
#include <trelk/dense2D.h>
#include <trelk/symmetric_fixed.h>
#include <trelk/vector_fixed.h>
#include <vornik/neighbors.h>

namespace trelk::vornik {

/// Status of a call if memory runs out.
constexpr int no_storage = -199;

/// Kind of a mesh's elements; lines know the two-node one alone.
enum class element_type { edge = 2 };

/// True when every entry of `indices` is below `bound`; an empty list passes.
bool check_IDs(dense1D<unsigned> const& indices, std::size_t bound) noexcept;

/// True when the end nodes of all elements are below `bound`. `connect` has one element per column, its end
/// nodes in rows 0 and 1; fewer than 2 rows fail, an empty connectivity passes.
bool check_IDs(dense2D<unsigned> const& connect, element_type type, std::size_t bound) noexcept;

/// True when every size is positive and finite; an empty list passes.
bool are_valid_metrics(dense1D<double> const& sizes) noexcept;

/// True when every column is a finite, positive definite tensor, packed as in `symmetric_fixed`: 3 rows in
/// the plane, 6 in space. An empty list passes, whatever its row count.
bool are_valid_metrics(dense2D<double> const& metrics) noexcept;

/// Each size becomes min(max(size, low), high).
void bound_metrics(dense1D<double>& sizes, double low, double high) noexcept;

/// Lowers the sizes of a tensor along its own axes to the smaller of two bounds; the axes stay.
template <std::size_t N>
void bound_metric(symmetric_fixed<double, N>& metric, double first, double second) noexcept;

/// The intersection of two metrics: a metric in which every vector is at least as long as in either, and that
/// is one of them along each of their common directions. A tensor that is all zero asks for nothing and gives
/// the other one; equal tensors give that tensor, bit for bit. Where neither tensor is definite, it is their
/// sum. `result` may be one of the two.
template <std::size_t N>
void minimum_metric(symmetric_fixed<double, N> const& first, symmetric_fixed<double, N> const& second,
    symmetric_fixed<double, N>& result) noexcept;

/// `metrics` becomes one isotropic tensor of 3 or 6 rows per size. False if memory runs out; it is then as it was.
bool metrics_iso_to_aniso2d(dense1D<double> const& sizes, dense2D<double>& metrics) noexcept;
bool metrics_iso_to_aniso3d(dense1D<double> const& sizes, dense2D<double>& metrics) noexcept;

/// Intersects `metric`, at one end of an edge, with the tensor `from` of the other end as far as it may have grown
/// on the way; the rule for tensors below. Not where that is infinite.
template <std::size_t N>
void bound_growth(symmetric_fixed<double, N> const& from, vector_fixed<double, N> const& edge,
    double max_gradation, symmetric_fixed<double, N>& metric) noexcept;

/// Lowers targets so that they do not grow by more than `max_gradation` per length along the edges of a mesh,
/// in one sweep over the edges in their order and one back.
///
/// Sizes: along an edge of length d the size at one end is at most that at the other plus max_gradation * d.
/// Tensors: at one end stands the intersection of its tensor with that of the other end divided by
/// (1 + max_gradation * l)^2, l being the edge's length in the latter (Alauzet, Size gradation control of
/// anisotropic meshes, 2010, homogeneous growth); for isotropic tensors this is the rule for sizes.
///
/// @param coords   2 or 3 rows, a node per column.
/// @param connect  an edge per column, its end nodes in rows 0 and 1; an edge with a node that `coords` or
///                 `target` does not have is passed over.
/// @param nodes, both_ends, mode  of a toolkit for meshes of all kinds. Lines pass an empty list, true, and -1 for
///                 sizes or 0 for tensors, which stands for what is said above.
/// @param max_gradation  growth of size per length; what is not at least 0 bounds nothing.
/// @param[in,out] target  a size per node, or a tensor of 3 or 6 rows per node for 2 or 3 rows of `coords`.
void bound_metric_gradations(dense2D<double> const& coords, dense2D<unsigned> const& connect,
    element_type type, dense1D<unsigned> const& nodes, bool both_ends, int mode, double max_gradation,
    dense1D<double>& target) noexcept;
void bound_metric_gradations(dense2D<double> const& coords, dense2D<unsigned> const& connect,
    element_type type, dense1D<unsigned> const& nodes, bool both_ends, int mode, double max_gradation,
    dense2D<double>& target) noexcept;

/// Calls `find_neighbors`. Returns 0; -1 if `connect` is not empty and has fewer than 2 rows; -199 if memory
/// runs out. `neighbors` is empty on a failure.
int get_neighbors(
    dense2D<unsigned> const& connect, element_type type, bool flag, dense2D<unsigned>& neighbors) noexcept;

/// Finds the nodes at which neighbouring elements have different colours, neither of them `none`. An element
/// at or beyond the end of `colors` has no colour.
///
/// @param neighbors  as `get_neighbors` gives them.
/// @param[out] boundary  is replaced: a row of nodes, each once, ascending. Empty on a failure.
/// @return 0; -1: as `get_neighbors`; -2: `neighbors` is not 2 rows by a column per element; -199: no
///         storage.
int get_colors_boundaries(dense2D<unsigned> const& connect, dense2D<unsigned> const& neighbors,
    dense1D<unsigned> const& colors, element_type type, bool first_flag, bool second_flag,
    dense2D<unsigned>& boundary) noexcept;

/// The largest entry, those that are `none` left aside; 0 if there is no other.
unsigned max_ID(dense1D<unsigned> const& colors) noexcept;

} // namespace trelk::vornik
