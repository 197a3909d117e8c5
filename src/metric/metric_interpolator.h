#pragma once

#include <algorithm>
#include <cmath>
#include <cstddef>

#include "metric/reduction.h"
#include "metric/sizes.h"
#include "metric/tensor.h"

namespace trelk::vornik1d {

/// Interpolation between two tensors M0 and M1. Both are diagonal in their common basis. Each entry gives the
/// size along a basis vector, and the sizes are interpolated linearly. So the result stays positive definite.
///
/// The members are the results of the last `build`, or 0 if it has failed.
template <std::size_t N>
struct metric_interpolator
{
    vector<N> p[N] = {}; // common directions, of unit length
    vector<N> q[N] = {}; // their dual basis
    vector<N> a0{};      // the quadratic values of M0 and M1 along p_i
    vector<N> a1{};
    vector<N> h0{}; // sizes along p_i in M0 and M1
    vector<N> h1{};

    /// False if the pair cannot be reduced.
    [[nodiscard]] bool build(tensor<N> const& m0, tensor<N> const& m1)
    {
        reduced_pair<N> pair;
        if (!reduce_metric_pair(m0, m1, pair)) {
            *this = {};
            return false;
        }
        for (std::size_t i = 0; i < N; ++i) {
            p[i] = pair.p[i];
            a0[i] = quadratic_form(m0.values, p[i]);
            a1[i] = pair.lambda[i] * a0[i];
        }
        dual_basis(p, q);
        h0 = a0;
        h1 = a1;
        inverse_sqrt_guarded(h0);
        inverse_sqrt_guarded(h1);
        if (std::any_of(h1.values, h1.values + N, [](double h) { return std::isnan(h); })) {
            // Rounding has made an eigenvalue negative. This can happen at aspect ratios of 1e4 and more.
            for (std::size_t i = 0; i < N; ++i) a1[i] = quadratic_form(m1.values, p[i]);
            h1 = a1;
            inverse_sqrt_guarded(h1);
        }
        return true;
    }

    /// The tensor at position u in [0, 1] on the way from M0 to M1.
    VORNIK1D_INLINE tensor<N> evaluate(double u) const
    {
        vector<N> d;
        for (std::size_t i = 0; i < N; ++i) d[i] = (h1[i] - h0[i]) * u + h0[i];
        inverse_square_guarded(d);
        return recompose_metric(d, q);
    }
};

} // namespace trelk::vornik1d
