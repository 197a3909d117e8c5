#pragma once

#include <algorithm>
#include <cmath>

#include "metric/tensor.h"
#include "special_values.h"

// Eigenvalues of a metric and the sizes along its axes: h = 1/sqrt(v), v = 1/h^2.

namespace trelk::vornik1d {

/// Turns eigenvalues into sizes, in place. The size is unlimited if the eigenvalue is 0, or negative and
/// rounding of the largest one. Another negative eigenvalue gives NaN.
template <std::size_t N>
VORNIK1D_INLINE void inverse_sqrt_guarded(vector<N>& values)
{
    double const highest = *std::max_element(values.values, values.values + N);
    double const rounding = highest * 1e-12;
    for (double& v : values.values) { // without branches: several at a time
        bool const is_unlimited = v == 0 || (v < 0 && -v < rounding);
        double const size = v == largest ? 0 : 1 / std::sqrt(v);
        v = is_unlimited ? largest : size;
    }
}

/// 1/h^2 without overflow: `largest` if the size is below 2^-511 or NaN, 0 if its square exceeds a double.
VORNIK1D_INLINE double inverse_square_guarded(double h)
{
    constexpr double small_root = 1.4916681462400413e-154;
    constexpr double large_root = 1.3407807929942596e+154;
    double const value = h > large_root ? 0 : 1 / (h * h);
    return h >= small_root ? value : largest;
}

/// Turns sizes into eigenvalues, in place.
template <std::size_t N>
VORNIK1D_INLINE void inverse_square_guarded(vector<N>& values)
{
    for (double& v : values.values) v = inverse_square_guarded(v);
}

/// Brings the sizes along the axes of a tensor into [h_min, h_max]. A bound that is not positive is ignored.
/// True if the tensor has changed and its new smallest eigenvalue is positive. The tensor does not change,
/// and the result is false, in these cases: all sizes are within the bounds; a new eigenvalue is not strictly
/// between 0 and `largest`; the eigenvalues cannot be computed.
bool clamp_metric_sizes(tensor<2>& m, double h_min, double h_max);
bool clamp_metric_sizes(tensor<3>& m, double h_min, double h_max);

} // namespace trelk::vornik1d
