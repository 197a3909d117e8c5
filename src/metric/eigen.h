#pragma once

#include <algorithm>
#include <cmath>
#include <cstddef>

#include "metric/tensor.h"

namespace trelk::vornik1d {

/// Eigenvalues, ascending but for rounding, and the vectors that belong to them.
template <std::size_t N>
struct eigen_system
{
    vector<N> values{};
    vector<N> vectors[N] = {};
};

/// The eigenvalues of the matrix with rows (a, b) and (b, c), in closed form. False when one is not finite.
[[nodiscard]] VORNIK1D_INLINE bool symmetric_eigenvalues_2d(double a, double b, double c, vector<2>& values)
{
    constexpr double cancellation_limit =
        1e-12; // relative: below it an eigenvalue is rounding of the other one
    double const determinant = a * c - b * b;
    double const w = std::sqrt((a - c) * (a - c) + 4 * (b * b));
    double low = (a + c - w) / 2;
    double high = low + w;
    // What cancellation has taken from the one, the determinant gives back.
    if (!(std::abs(low) >= std::abs(high) * cancellation_limit))
        low = determinant / high;
    else if (!(std::abs(high) >= std::abs(low) * cancellation_limit))
        high = determinant / low;
    values = {low, high};
    return std::isfinite(low) && std::isfinite(high);
}

/// The same with the vectors that belong to them. The second vector is the first one turned by a right angle; they
/// have unit length if `normalize` is set, or where the matrix is a multiple of the identity. There are none
/// when an eigenvalue is not finite.
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

/// By LAPACK's `dspev`. The vectors are orthonormal and right-handed. False when it reports an error.
[[nodiscard]] bool symmetric_eigen_3d(tensor<3> const& m, eigen_system<3>& e);

/// The eigenvalues alone.
[[nodiscard]] bool symmetric_eigenvalues_3d(tensor<3> const& m, vector<3>& values);

} // namespace trelk::vornik1d
