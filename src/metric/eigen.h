#pragma once

#include <algorithm>
#include <cmath>
#include <cstddef>

#include "metric/tensor.h"

namespace trelk::vornik1d {

/// Eigenvalues, ascending except for rounding, and their eigenvectors.
template <std::size_t N>
struct eigen_system
{
    vector<N> values{};
    vector<N> vectors[N] = {};
};

/// The eigenvalues of the matrix with rows (a, b) and (b, c), in closed form. False if one is not finite.
[[nodiscard]] VORNIK1D_INLINE bool symmetric_eigenvalues_2d(double a, double b, double c, vector<2>& values)
{
    // Relative to the other eigenvalue. A smaller eigenvalue is rounding of the other one.
    constexpr double cancellation_limit = 1e-12;
    double const determinant = a * c - b * b;
    double const w = std::sqrt((a - c) * (a - c) + 4 * (b * b));
    double low = (a + c - w) / 2;
    double high = low + w;
    // After cancellation an eigenvalue follows from the determinant, which is the product of both.
    if (!(std::abs(low) >= std::abs(high) * cancellation_limit))
        low = determinant / high;
    else if (!(std::abs(high) >= std::abs(low) * cancellation_limit))
        high = determinant / low;
    values = {low, high};
    return std::isfinite(low) && std::isfinite(high);
}

/// The same with the eigenvectors. The second one is the first one turned by a right angle. They have unit
/// length if `normalize` is set or the matrix is a multiple of the identity. If an eigenvalue is not finite,
/// the eigenvectors are 0.
[[nodiscard]] VORNIK1D_INLINE bool symmetric_eigen_2d(
    double a, double b, double c, bool normalize, eigen_system<2>& e)
{
    constexpr double isotropy_limit = 1e-24; // relative, on a squared length
    e = {};
    if (!symmetric_eigenvalues_2d(a, b, c, e.values)) return false;

    double const x = e.values[0] - a;
    double const y = e.values[0] - c;
    vector<2> first = y * y > x * x ? vector<2>{y, b} : vector<2>{b, x};
    double const square = std::max(x * x, y * y) + b * b;
    if (!(square > std::max(a * a, c * c) * isotropy_limit))
        first = {1, 0};
    else if (normalize) {
        double const length = std::sqrt(square);
        first = {first[0] / length, first[1] / length};
    }
    e.vectors[0] = first;
    e.vectors[1] = {-first[1], first[0]};
    return true;
}

/// Calls LAPACK's `dspev`. The eigenvectors are orthonormal and right-handed. False if it reports an error.
[[nodiscard]] bool symmetric_eigen_3d(tensor<3> const& m, eigen_system<3>& e);

/// The same without the eigenvectors.
[[nodiscard]] bool symmetric_eigenvalues_3d(tensor<3> const& m, vector<3>& values);

} // namespace trelk::vornik1d
