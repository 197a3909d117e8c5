#pragma once

#include <cstddef>
#include <cstdint>

#include <trelk/dense1D.h>
#include <trelk/dense2D.h>

namespace trelk::vornik1d {

/// `place_nodes` for metric tensors, one per chain entry and column of `metrics`: 3 rows for N = 2, 6 for N =
/// 3. `new_metrics` is replaced: the tensor at each new node, and `margin` columns more on either side.
///
/// A segment's metric length follows from its lengths in the two end tensors alone: the size along it runs
/// linearly between them. Where a tensor does not measure the segment positively, it counts nothing. When the
/// pair of tensors of a segment on which a node falls cannot be reduced, there are no new nodes at all, and
/// the result is 0.0.
template <int N>
double place_nodes_aniso(dense2D<double> const& coords, dense1D<unsigned> const& indices,
    dense1D<double> const& params, dense2D<double> const& metrics, double min_metric_length, bool force_even,
    std::uint64_t min_elements, std::uint64_t max_elements, dense2D<double>& new_coords,
    dense2D<double>& new_metrics, dense1D<double>& new_params, std::size_t margin = 0);

} // namespace trelk::vornik1d
