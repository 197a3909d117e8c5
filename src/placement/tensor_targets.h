#pragma once

#include <algorithm>
#include <cmath>
#include <cstddef>

#include <trelk/dense2D.h>
#include <vornik/toolkit.h>

#include "metric/metric_interpolator.h"
#include "metric/param_sampling.h"
#include "metric/sizes.h"
#include "metric/tensor.h"
#include "placement/size_law.h"
#include "special_values.h"

namespace trelk::vornik1d {

/// The targets of a line in N dimensions are metric tensors: one column per entry. The size along a segment
/// is linear; the tensors at new nodes are interpolated.
///
/// The metric length of a segment follows from its lengths in the two end tensors. It is 0 unless both are
/// positive.
template <std::size_t N>
struct tensor_targets
{
    static constexpr std::size_t dimension = N;
    static constexpr std::size_t width = packed_rows<N>; // values per target
    using list = dense2D<double>;

    static std::size_t ld(list const& metrics) noexcept { return metrics.ld(); }

    [[nodiscard]] static bool resize(list& metrics, std::size_t count) noexcept
    {
        return metrics.resize(width, count);
    }

    [[nodiscard]] static bool reserve(list& metrics, std::size_t count) noexcept
    {
        return metrics.reserve(width, count, 2);
    }

    /// The target that asks for `size` in every direction.
    static void fill(double size, double* target) noexcept
    {
        tensor<N> m{};
        for (std::size_t i = 0; i < N; ++i) m(i, i) = inverse_square_guarded(size);
        copy(m.values, target);
    }

    static void copy(double const* source, double* target) noexcept { std::copy_n(source, width, target); }

    /// Lowers the sizes of a target along its axes to at most `limit`; NaN means no limit. A tensor that
    /// cannot be decomposed stays as it is.
    static void bound(double* target, double limit) noexcept
    {
        auto metric = tensor_at<N>(target);
        vornik::bound_metric(metric, limit, largest);
        copy(metric.values, target);
    }

    /// Lowers the sizes of a target to those that gradation allows along the edge d from a target `from`.
    static void bound_growth(
        double const* from, vector<N> const& d, double, double max_gradation, double* target) noexcept
    {
        auto metric = tensor_at<N>(target);
        vornik::bound_growth(tensor_at<N>(from), d, max_gradation, metric);
        copy(metric.values, target);
    }

    /// Interpolates targets at non-decreasing queries.
    class sampler
    {
    public:
        sampler(dense1D<double> const& params, double const* metrics, std::size_t ld)
            : search_(params), tensors_(metrics, ld)
        {}

        void find(double query, double* target) { copy(tensors_.find(search_.find(query)).values, target); }

    private:
        param_search search_;
        tensor_sampler<N> tensors_;
    };

    static double metric_length(vector<N> const& d, double const* from, double const* to)
    {
        auto const [l0, l1] = end_lengths(d, from, to);
        return l0 > 0 ? l0 * l1 * mean_inverse_size(l0, l1) : 0;
    }

    /// A segment on which nodes are placed. Values that depend only on the segment are computed once.
    class segment
    {
    public:
        /// Selects the segment along d with the given targets at its ends. False if the targets cannot be
        /// reduced.
        bool enter(vector<N> const& d, double const* from, double const* to)
        {
            // The size along d is inversely proportional to d's length: h0 : h1 = l1 : l0.
            // If one length is not positive, both are 0 and the law is linear.
            auto const [l0, l1] = end_lengths(d, from, to);
            law_ = size_law(l1, l0);
            return interpolator_.build(tensor_at<N>(from), tensor_at<N>(to));
        }

        /// Position at fraction t of the segment's metric length.
        double position(double t) const { return law_.position(t); }

        /// The target at position u.
        void evaluate(double u, double* target) const { copy(interpolator_.evaluate(u).values, target); }

    private:
        metric_interpolator<N> interpolator_;
        size_law law_{1, 1};
    };

private:
    struct lengths
    {
        double l0;
        double l1;
    };

    /// The lengths of d in two tensors; both are 0 unless both are positive.
    static lengths end_lengths(vector<N> const& d, double const* from, double const* to)
    {
        double const q0 = quadratic_form(from, d);
        double const q1 = quadratic_form(to, d);
        if (!(q0 > 0 && q1 > 0)) return {0, 0};
        return {std::sqrt(q0), std::sqrt(q1)};
    }
};

} // namespace trelk::vornik1d
