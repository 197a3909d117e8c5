#pragma once

#include "metric/tensor.h"

namespace trelk::vornik1d {

/// Eigenvalues, ascending but for rounding, and the vectors that belong to them.
template <std::size_t N>
struct eigen_system
{
    vector<N> values{};
    vector<N> vectors[N] = {};
};

/// Of the matrix with rows (a, b) and (b, c), in closed form. The second vector is the first one turned by a
/// right angle; they have unit length if `normalize` is set, or where the matrix is a multiple of the
/// identity. False when an eigenvalue is not finite; there are no vectors then.
[[nodiscard]] bool symmetric_eigen_2d(double a, double b, double c, bool normalize, eigen_system<2>& e);

/// The eigenvalues alone.
[[nodiscard]] bool symmetric_eigenvalues_2d(double a, double b, double c, vector<2>& values);

/// By LAPACK's `dspev`. The vectors are orthonormal and right-handed. False when it reports an error.
[[nodiscard]] bool symmetric_eigen_3d(tensor<3> const& m, eigen_system<3>& e);

/// The eigenvalues alone.
[[nodiscard]] bool symmetric_eigenvalues_3d(tensor<3> const& m, vector<3>& values);

} // namespace trelk::vornik1d
