#pragma once

#include <cstddef>

#include <trelk/dense2D.h>
#include <trelk/symmetric_fixed.h>
#include <trelk/vector_fixed.h>

#include "arrays/vectors.h"

// Symmetric tensors in N = 2 or 3 dimensions, packed as in `symmetric_fixed`.

namespace trelk::vornik1d {

template <std::size_t N>
using tensor = symmetric_fixed<double, N>;

/// The row count of a matrix with one tensor per column.
template <std::size_t N>
constexpr std::size_t packed_rows = N*(N + 1) / 2;

/// The same for the tensors at nodes in `coords`, which has 2 or 3 rows.
inline std::size_t metric_rows(dense2D<double> const& coords) noexcept
{
    return coords.rows() == 2 ? packed_rows<2> : packed_rows<3>;
}

template <std::size_t N>
VORNIK1D_INLINE tensor<N> tensor_at(double const* column)
{
    tensor<N> m;
    for (std::size_t k = 0; k < packed_rows<N>; ++k) m[k] = column[k];
    return m;
}

/// d^T M d, summed in the order of the packed entries: the squared length of d in the metric M.
template <std::size_t N>
VORNIK1D_INLINE double quadratic_form(double const* m, vector<N> const& d)
{
    double sum = 0;
    for (std::size_t j = 0, k = 0; j < N; ++j) {
        for (std::size_t i = 0; i < j; ++i) sum += 2 * m[k++] * d[i] * d[j];
        sum += m[k++] * (d[j] * d[j]);
    }
    return sum;
}

/// The sum of values_i z_i z_i^T.
template <std::size_t N>
VORNIK1D_INLINE tensor<N> recompose_metric(vector<N> const& values, vector<N> const (&z)[N])
{
    tensor<N> m{};
    for (std::size_t e = 0; e < N; ++e)
        for (std::size_t j = 0, k = 0; j < N; ++j) {
            for (std::size_t i = 0; i < j; ++i) m[k++] += values[e] * z[e][i] * z[e][j];
            m[k++] += values[e] * (z[e][j] * z[e][j]);
        }
    return m;
}

} // namespace trelk::vornik1d
