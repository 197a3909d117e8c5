#pragma once

#include "metric/tensor.h"

namespace trelk::vornik1d {

/// The simultaneous reduction of a pair of tensors (M0, M1): unit vectors with M1 p_i = lambda_i M0 p_i,
/// which are orthogonal to each other in both metrics.
template <std::size_t N>
struct reduced_pair
{
    vector<N> lambda{};
    vector<N> p[N] = {};
};

/// False when M0 is not definite, or when an eigenvalue is not finite (2D) or not found (3D). M1 is not
/// tested: it may be semi-definite.
[[nodiscard]] bool reduce_metric_pair(tensor<2> const& m0, tensor<2> const& m1, reduced_pair<2>& pair);
[[nodiscard]] bool reduce_metric_pair(tensor<3> const& m0, tensor<3> const& m1, reduced_pair<3>& pair);

/// Upper triangular U with U^T U = M, packed like M. False when M is not positive definite; a last pivot of 0
/// passes.
[[nodiscard]] bool cholesky_factor_3d(tensor<3> const& m, tensor<3>& u);

/// Adds V S V^T to W; `v` holds the rows of V.
void congruence_3d(tensor<3> const& s, vector<3> const (&v)[3], tensor<3>& w);

/// The vectors q_i with q_i . p_i = 1 and q_i . p_j = 0: the rows of the inverse of the matrix with columns
/// p_i.
void dual_basis(vector<2> const (&p)[2], vector<2> (&q)[2]);
void dual_basis(vector<3> const (&p)[3], vector<3> (&q)[3]);

} // namespace trelk::vornik1d
