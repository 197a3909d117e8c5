#pragma once

#include <cstddef>

#include <trelk/dense1D.h>
#include <trelk/dense2D.h>
#include <vornik/toolkit.h>

#include "front_door.h"
#include "placement/size_targets.h"
#include "placement/tensor_targets.h"

// What exported functions need to know of the two kinds of targets: sizes and metric tensors.

namespace trelk::vornik1d {

template <class List, std::size_t N>
struct targets_of_list;

template <std::size_t N>
struct targets_of_list<dense1D<double>, N>
{
    using type = size_targets<N>;
};

template <std::size_t N>
struct targets_of_list<dense2D<double>, N>
{
    using type = tensor_targets<N>;
};

/// How targets in N dimensions are worked on that are kept in a `List`.
template <class List, std::size_t N>
using targets_in = typename targets_of_list<List, N>::type;

/// True when the first n targets are usable.
inline bool are_usable(dense1D<double> const& sizes, std::size_t n)
{
    return sizes.size() >= n && vornik::are_valid_metrics(sizes.sub_vector(0, n));
}

inline bool are_usable(dense2D<double> const& metrics, std::size_t n)
{
    return metrics.cols() >= n && vornik::are_valid_metrics(metrics.sub_matrix(0, 0, metrics.rows(), n));
}

/// True when targets have the row count that goes with `coords`.
inline bool fit_dimension(dense1D<double> const&, dense2D<double> const&) { return true; }

inline bool fit_dimension(dense2D<double> const& metrics, dense2D<double> const& coords)
{
    return metrics.rows() == metric_rows(coords);
}

/// True when targets for `coords` can be appended to a list.
inline bool can_be_appended_to(dense1D<double> const&, dense2D<double> const&) { return true; }

inline bool can_be_appended_to(dense2D<double> const& metrics, dense2D<double> const& coords)
{
    return metrics.empty() || fit_dimension(metrics, coords);
}

/// Gives an input list storage of its own if it has that of `coords`, which moves when `coords` grows. False
/// without storage.
template <class List>
[[nodiscard]] bool detach_from(dense2D<double> const& coords, List& list)
{
    if (list.empty() || !coords.holds(*list.data())) return true;
    List own;
    if (!own.copy(list)) return false;
    list = own;
    return true;
}

} // namespace trelk::vornik1d
