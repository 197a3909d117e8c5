#pragma once

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <limits>

#include "arrays/vectors.h"
#include "rules.h"

// The basic law of the library. Between two points with target sizes h0 and h1 the size varies linearly with
// the position. The metric length of a curve is the integral of 1/h along it. So a segment of length d has
// metric length d * ln(h1/h0) / (h1 - h0).
//
// With hi and lo the larger and the smaller size and x = (lo - hi) / hi in (-1, 0], all formulas are
// functions of x alone, scaled by 1/hi. Near x = 0 they are 0/0, so they are replaced by their series:
//
//     x < -0.01             closed form, log1p and expm1
//     -0.01 <= x < -1e-12   series; the first term left out is x^6/7 of the mean, below 2e-13, and
//                           s(s-1)(s-2)(s-3)(s-4) x^4/120 of the position, below 4e-10 and 0 at both ends
//     -1e-12 <= x           the sizes are equal to rounding

namespace trelk::vornik1d {

constexpr double closed_form_limit = -0.01;
constexpr double equal_sizes_limit = -1e-12;

/// Mean of 1/h on a segment where h runs linearly from h0 to h1; 0 if the smaller size is 0.
VORNIK1D_INLINE double mean_inverse_size(double h0, double h1)
{
    double const lo = std::min(h0, h1);
    double const hi = std::max(h0, h1);
    if (lo == 0) return 0;

    double const r = 1 / hi;
    double const x = (lo - hi) * r;
    double f = 1;
    if (x < closed_form_limit)
        f = std::log1p(x) / x;
    else if (x < equal_sizes_limit) {
        double const xx = x * x;
        f = ((1.0 / 5 - x / 6) * xx + (1.0 / 3 - x / 4)) * xx + (1 - x / 2);
    }
    return r * f;
}

/// Position along a segment as a function of the fraction t of its metric length, counted from the end with
/// size h0: u = ((h1/h0)^t - 1) / (h1/h0 - 1). Values that depend only on the sizes are computed once.
class size_law
{
public:
    size_law(double h0, double h1) : mirrored_(h1 > h0)
    {
        if (h0 == h1) return; // linear

        double const hi = mirrored_ ? h1 : h0;
        double const lo = mirrored_ ? h0 : h1;
        x_ = (lo - hi) / hi;
        if (x_ < closed_form_limit) {
            form_ = form::closed;
            log_ratio_ = std::log1p(x_);
        } else
            form_ = x_ < equal_sizes_limit ? form::series : form::equal;
    }

    /// A position in [0, 1] for t in [0, 1]. The computation runs from the larger size to the smaller one.
    VORNIK1D_INLINE double position(double t) const
    {
        if (form_ == form::linear || t == 0 || t == 1) return t;

        double const s = mirrored_ ? 1 - t : t;
        double v = s;
        if (form_ == form::closed)
            v = std::expm1(log_ratio_ * s) / x_;
        else if (form_ == form::series) {
            double const xx = x_ * x_;
            double const xxx = xx * x_;
            v = s *
                (1 + (s - 1) * x_ / 2 + (s - 2) * (s - 1) * xx / 6 + (s - 3) * (s - 2) * (s - 1) * xxx / 24);
        }
        if (mirrored_) v = 1 - v;
        return v >= 0 ? std::min(v, 1.0) : 0.0; // 0 for a NaN
    }

private:
    enum class form { linear, equal, series, closed };

    form form_ = form::linear;
    bool mirrored_;
    double x_ = 0;
    double log_ratio_ = 0;
};

/// The multiple of `step` (1 or more) nearest to `length` on a geometric scale: the boundary between k
/// and k + step is sqrt(k * (k + step)), and a tie is rounded up. At least `step`, also for NaN and negative
/// lengths; at most the largest multiple that 64 bits hold.
inline std::uint64_t round_to_multiple(double length, std::uint64_t step)
{
    constexpr std::uint64_t most = std::numeric_limits<std::uint64_t>::max();
    constexpr double beyond = 18446744073709551616.0; // 2^64
    std::uint64_t const largest_multiple = most / step * step;

    if (!(length > 0)) return step;
    double const quotient = length / static_cast<double>(step);
    if (quotient >= beyond) return largest_multiple;
    auto const whole = static_cast<std::uint64_t>(quotient);
    if (whole >= most / step) return largest_multiple;

    std::uint64_t const k = whole * step;
    // From k = 2^32 on the product wraps, and the length is always rounded up. No element count is that
    // large.
    std::uint64_t const boundary = k * (k + step);
    return length * length >= static_cast<double>(boundary) ? k + step : k;
}

/// The number of elements of a line of the given metric length: the length rounded, then adjusted by these
/// rules in this order; a later rule overrides an earlier one: `min_elements`, `max_elements`, `round_up`
/// (the count is not below the length), `force_even`.
inline std::uint64_t element_count(double metric_length, element_rule const& rule, bool round_up = false)
{
    constexpr std::uint64_t most = std::numeric_limits<std::uint64_t>::max();
    std::uint64_t n = round_to_multiple(metric_length, rule.force_even ? 2 : 1);
    n = std::max<std::uint64_t>(n, 1);
    n = std::max(n, rule.min_elements);
    n = std::min(n, rule.max_elements);
    if (round_up && static_cast<double>(n) < metric_length && n != most) ++n;
    if (rule.force_even && n % 2 == 1 && n != most) ++n;
    return n;
}

} // namespace trelk::vornik1d
