#pragma once

#include <algorithm>
#include <cstddef>

#include <trelk/dense1D.h>

#include "arrays/vectors.h"
#include "metric/param_sampling.h"
#include "placement/size_law.h"

namespace trelk::vornik1d {

/// The targets of a line in N dimensions are sizes: one number per entry, linear along each segment.
template <std::size_t N>
struct size_targets
{
    static constexpr std::size_t dimension = N;
    static constexpr std::size_t width = 1; // values per target
    using list = dense1D<double>;

    static std::size_t ld(list const&) noexcept { return width; }

    [[nodiscard]] static bool resize(list& sizes, std::size_t count) noexcept { return sizes.resize(count); }

    [[nodiscard]] static bool reserve(list& sizes, std::size_t count) noexcept
    {
        return sizes.reserve(count, 2);
    }

    /// The target that asks for `size`.
    static void fill(double size, double* target) noexcept { *target = size; }

    static void copy(double const* source, double* target) noexcept { *target = *source; }

    /// Lowers a target to at most `limit`; NaN means no limit.
    static void bound(double* target, double limit) noexcept { *target = std::min(*target, limit); }

    /// Lowers a target to the size that gradation allows at distance `length` from a target `from`.
    static void bound_growth(
        double const* from, vector<N> const&, double length, double max_gradation, double* target) noexcept
    {
        *target = std::min(*target, *from + max_gradation * length);
    }

    /// Interpolates targets at non-decreasing queries.
    class sampler
    {
    public:
        sampler(dense1D<double> const& params, double const* sizes, std::size_t)
            : search_(params), sizes_(sizes)
        {}

        void find(double query, double* target) { *target = search_.find_value(query, sizes_); }

    private:
        param_search search_;
        double const* sizes_;
    };

    static double metric_length(vector<N> const& d, double const* from, double const* to)
    {
        return norm(d) * mean_inverse_size(*from, *to);
    }

    /// A segment on which nodes are placed. Values that depend only on the segment are computed once.
    class segment
    {
    public:
        /// Selects the segment along d with the given targets at its ends. Cannot fail.
        bool enter(vector<N> const&, double const* from, double const* to)
        {
            law_ = size_law(*from, *to);
            size_ = *from;
            size_step_ = *to - *from;
            return true;
        }

        /// Position at fraction t of the segment's metric length.
        double position(double t) const { return law_.position(t); }

        /// The target at position u.
        void evaluate(double u, double* target) const { *target = size_step_ * u + size_; }

    private:
        size_law law_{1, 1};
        double size_ = 0;
        double size_step_ = 0;
    };
};

} // namespace trelk::vornik1d
