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

/// The kind of a mesh's elements. Lines use the two-node one only.
enum class element_type { edge = 2 };

/// True if every entry of `indices` is below `bound`. An empty list passes.
bool check_IDs(dense1D<unsigned> const& indices, std::size_t bound) noexcept;

/// True if the end nodes of all elements are below `bound`. `connect` has one element per column, with its
/// end nodes in rows 0 and 1. An empty connectivity passes; otherwise fewer than 2 rows fail.
bool check_IDs(dense2D<unsigned> const& connect, element_type type, std::size_t bound) noexcept;

/// True if every size is positive and finite. An empty list passes.
bool are_valid_metrics(dense1D<double> const& sizes) noexcept;

/// True if every column is a finite, positive definite tensor, packed as in `symmetric_fixed`: 3 rows in the
/// plane, 6 in space. An empty list passes, whatever its row count is.
bool are_valid_metrics(dense2D<double> const& metrics) noexcept;

/// Replaces each size by min(max(size, low), high).
void bound_metrics(dense1D<double>& sizes, double low, double high) noexcept;

/// Lowers the sizes along the axes of a tensor to the smaller of two bounds. The axes stay.
template <std::size_t N>
void bound_metric(symmetric_fixed<double, N>& metric, double first, double second) noexcept;

/// Computes the intersection of two metrics. In it every vector is at least as long as in either metric, and
/// each of their common directions is as long as in one of them. `result` may be one of the two.
///
///   - A tensor that is all zero asks for nothing: the result is the other tensor.
///   - Two equal tensors give that tensor, bit for bit.
///   - If neither tensor is definite, the result is their sum.
template <std::size_t N>
void minimum_metric(symmetric_fixed<double, N> const& first, symmetric_fixed<double, N> const& second,
    symmetric_fixed<double, N>& result) noexcept;

/// Replaces `metrics` by one isotropic tensor of 3 or 6 rows per size. False if memory runs out; `metrics` is
/// then as it was.
bool metrics_iso_to_aniso2d(dense1D<double> const& sizes, dense2D<double>& metrics) noexcept;
bool metrics_iso_to_aniso3d(dense1D<double> const& sizes, dense2D<double>& metrics) noexcept;

/// Bounds the tensor at one end of an edge by gradation from the other end: `metric` becomes its intersection
/// with from / (1 + max_gradation * l)^2. Here l is the length of the edge in `from`, the tensor at the other
/// end. If that factor is not finite, `metric` stays as it is.
template <std::size_t N>
void bound_growth(symmetric_fixed<double, N> const& from, vector_fixed<double, N> const& edge,
    double max_gradation, symmetric_fixed<double, N>& metric) noexcept;

/// Lowers targets so that they do not grow by more than `max_gradation` per length along the edges of a mesh.
/// The edges are visited in their order, and then in reverse order.
///
/// Sizes: along an edge of length d, the size at one end is at most the size at the other end plus
/// max_gradation * d. Tensors: `bound_growth` is applied in both directions of an edge (Alauzet, Size
/// gradation control of anisotropic meshes, 2010, homogeneous growth). For isotropic tensors this is the rule
/// for sizes.
///
/// @param coords   2 or 3 rows, one node per column.
/// @param connect  one edge per column, with its end nodes in rows 0 and 1. An edge with a node that `coords`
///                 or `target` does not have is ignored.
/// @param type, nodes, both_ends, mode  serve meshes of other kinds and have no effect here. Lines pass an
///                 empty list, true, and -1 for sizes or 0 for tensors.
/// @param max_gradation  growth of size per length. A value that is not at least 0 bounds nothing.
/// @param[in,out] target  one size per node, or one tensor of 3 or 6 rows per node for 2 or 3 rows of
///                 `coords`.
void bound_metric_gradations(dense2D<double> const& coords, dense2D<unsigned> const& connect,
    element_type type, dense1D<unsigned> const& nodes, bool both_ends, int mode, double max_gradation,
    dense1D<double>& target) noexcept;
void bound_metric_gradations(dense2D<double> const& coords, dense2D<unsigned> const& connect,
    element_type type, dense1D<unsigned> const& nodes, bool both_ends, int mode, double max_gradation,
    dense2D<double>& target) noexcept;

/// Calls `find_neighbors`. Returns 0; -1 if `connect` is not empty and has fewer than 2 rows; `no_storage` if
/// memory runs out. `neighbors` is empty on a failure.
int get_neighbors(
    dense2D<unsigned> const& connect, element_type type, bool flag, dense2D<unsigned>& neighbors) noexcept;

/// Finds the nodes at which neighbouring elements have different colours, neither of them `none`. An element
/// at or beyond the end of `colors` has no colour.
///
/// @param neighbors  the result of `find_neighbors`.
/// @param[out] boundary  is replaced by one row of nodes, each once, in ascending order. Empty on a failure.
/// @return 0; -1: `connect` is not empty and has fewer than 2 rows; -2: `neighbors` does not have 2 rows and
///         one column per element; `no_storage`.
int get_colors_boundaries(dense2D<unsigned> const& connect, dense2D<unsigned> const& neighbors,
    dense1D<unsigned> const& colors, element_type type, bool first_flag, bool second_flag,
    dense2D<unsigned>& boundary) noexcept;

/// The largest entry that is not `none`; 0 if there is no such entry.
unsigned max_ID(dense1D<unsigned> const& colors) noexcept;

} // namespace trelk::vornik
