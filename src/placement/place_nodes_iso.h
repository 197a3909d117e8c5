#pragma once

#include <cstddef>
#include <cstdint>

#include <trelk/dense1D.h>
#include <trelk/dense2D.h>

namespace trelk::vornik1d {

/// `place_nodes` for target sizes, one per chain entry. `new_sizes` is replaced: the size at each new node,
/// and `margin` entries more on either side.
template <int N>
double place_nodes_iso(dense2D<double> const& coords, dense1D<unsigned> const& indices,
    dense1D<double> const& params, dense1D<double> const& sizes, double min_metric_length, bool force_even,
    std::uint64_t min_elements, std::uint64_t max_elements, dense2D<double>& new_coords,
    dense1D<double>& new_sizes, dense1D<double>& new_params, std::size_t margin = 0, bool round_up = false);

} // namespace trelk::vornik1d
