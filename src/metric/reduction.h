#pragma once

#include <cmath>
#include <cstddef>

#include "metric/eigen.h"
#include "metric/tensor.h"

namespace trelk::vornik1d {

/// The simultaneous reduction of a pair of tensors (M0, M1): unit vectors p_i with M1 p_i = lambda_i M0 p_i.
/// They are orthogonal to each other in both metrics.
template <std::size_t N>
struct reduced_pair
{
    vector<N> lambda{};
    vector<N> p[N] = {};
};

template <std::size_t N>
VORNIK1D_INLINE void scale(vector<N>& values, double factor)
{
    if (factor == 1) return;
    for (double& v : values.values) v *= factor;
}

template <std::size_t N>
VORNIK1D_INLINE void divide(vector<N>& v, double divisor)
{
    for (double& x : v.values) x /= divisor;
}

/// False if M0 is not definite, or if an eigenvalue is not finite (2D) or not found (3D). M1 is not tested:
/// it may be semi-definite.
[[nodiscard]] VORNIK1D_INLINE bool reduce_metric_pair(
    tensor<2> const& m0, tensor<2> const& m1, reduced_pair<2>& pair)
{
    auto const [a, b, c] = m0.values;
    auto const [e, f, g] = m1.values;
    double const determinant = a * c - b * b;
    if (!(determinant > 0)) return false; // also if a is 0

    // With T of columns (s, 0) and (-b, a), T^T M0 T is a * determinant times the identity; B = T^T M1 T.
    double const s = std::sqrt(determinant);
    double const b00 = e * determinant;
    double const b01 = (a * f - e * b) * s;
    double const b11 = a * a * g - (2 * a * f - e * b) * b;
    eigen_system<2> system;
    if (!symmetric_eigen_2d(b00, b01, b11, false, system)) return false;

    pair.lambda = system.values;
    scale(pair.lambda, 1 / (determinant * a));
    for (std::size_t i = 0; i < 2; ++i) {
        vector<2> const& w = system.vectors[i];
        pair.p[i] = {s * w[0] - b * w[1], a * w[1]};
        normalize(pair.p[i]);
    }
    return true;
}

[[nodiscard]] bool reduce_metric_pair(tensor<3> const& m0, tensor<3> const& m1, reduced_pair<3>& pair);

/// The upper triangular U with U^T U = M, packed like M. False if M is not positive definite, except that the
/// last pivot may be 0.
[[nodiscard]] bool cholesky_factor_3d(tensor<3> const& m, tensor<3>& u);

/// Adds V S V^T to W. `v` has the rows of V.
void congruence_3d(tensor<3> const& s, vector<3> const (&v)[3], tensor<3>& w);

/// The vectors q_i with q_i . p_i = 1 and q_i . p_j = 0: the rows of the inverse of the matrix with columns
/// p_i.
VORNIK1D_INLINE void dual_basis(vector<2> const (&p)[2], vector<2> (&q)[2])
{
    double const determinant = p[0][0] * p[1][1] - p[0][1] * p[1][0];
    q[0] = {p[1][1], -p[1][0]};
    q[1] = {-p[0][1], p[0][0]};
    for (auto& v : q) divide(v, determinant);
}

void dual_basis(vector<3> const (&p)[3], vector<3> (&q)[3]);

} // namespace trelk::vornik1d
