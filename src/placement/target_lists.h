#pragma once

#include <cstddef>

#include <trelk/dense1D.h>
#include <trelk/dense2D.h>
#include <vornik/toolkit.h>

#include "metric/tensor.h"
#include "placement/size_targets.h"
#include "placement/tensor_targets.h"

// How exported functions handle the two kinds of targets: sizes and metric tensors.

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

/// The type that handles the targets of a `List` in N dimensions: `size_targets` or `tensor_targets`.
template <class List, std::size_t N>
using targets_in = typename targets_of_list<List, N>::type;

/// True if there are at least n targets and the first n are valid.
inline bool are_valid_targets(dense1D<double> const& sizes, std::size_t n)
{
    return sizes.size() >= n && vornik::are_valid_metrics(sizes.sub_vector(0, n));
}

inline bool are_valid_targets(dense2D<double> const& metrics, std::size_t n)
{
    return metrics.cols() >= n && vornik::are_valid_metrics(metrics.sub_matrix(0, 0, metrics.rows(), n));
}

/// True if the targets have the row count that `coords` requires.
inline bool fit_dimension(dense1D<double> const&, dense2D<double> const&) { return true; }

inline bool fit_dimension(dense2D<double> const& metrics, dense2D<double> const& coords)
{
    return metrics.rows() == metric_rows(coords);
}

/// Both checks: true if the first n targets can be used for a line of n nodes in `coords`.
template <class List>
bool check_targets(List const& targets, std::size_t n, dense2D<double> const& coords)
{
    return are_valid_targets(targets, n) && fit_dimension(targets, coords);
}

/// True if targets for `coords` can be appended to the list.
inline bool can_be_appended_to(dense1D<double> const&, dense2D<double> const&) { return true; }

inline bool can_be_appended_to(dense2D<double> const& metrics, dense2D<double> const& coords)
{
    return metrics.empty() || fit_dimension(metrics, coords);
}

/// Copies an input list, not empty, if it shares the memory of `coords`: that memory moves when `coords`
/// grows. False if memory runs out.
template <class List>
[[nodiscard]] bool detach_from(dense2D<double> const& coords, List& list)
{
    if (!coords.holds(*list.data())) return true;
    List own;
    if (!own.copy(list)) return false;
    list = own;
    return true;
}

} // namespace trelk::vornik1d
