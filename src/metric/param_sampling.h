#pragma once

#include <algorithm>
#include <cmath>
#include <cstddef>

#include <trelk/dense1D.h>

#include "arrays/search.h"
#include "arrays/vectors.h"
#include "metric/metric_interpolator.h"
#include "metric/tensor.h"
#include "special_values.h"

// Interpolation of sizes and tensors that are given at parameter values.

namespace trelk::vornik1d {

/// True if there are at least two parameters, none is below the one before it, and none is NaN.
inline bool are_parameters(dense1D<double> const& params)
{
    return params.size() >= 2 && is_non_decreasing(params);
}

/// True if the queries are non-decreasing and lie within the parameters. There is at least one query.
inline bool are_queries(dense1D<double> const& params, dense1D<double> const& queries)
{
    double const first = params[0];
    double const last = params[params.size() - 1];
    return is_non_decreasing(queries) && !(first > queries[0]) && last >= queries[queries.size() - 1];
}

constexpr double params_tolerance = 1e-12; // absolute, on parameter gaps and on fractions of them

/// The position of a query: at fraction t of the way from parameter `lo` to parameter `hi`.
struct param_position
{
    std::size_t lo;
    std::size_t hi;
    double t;

    bool is_at_lo() const { return std::abs(t) < params_tolerance; }
    bool is_at_hi() const { return std::abs(1 - t) < params_tolerance; }
};

/// Finds the positions of non-decreasing queries. Each search starts where the last one ended.
class param_search
{
public:
    explicit param_search(dense1D<double> const& params)
        : first_(params.begin()), cursor_(first_), end_(params.end())
    {}

    VORNIK1D_INLINE param_position find(double query) { return position_in(move_to(query), query); }

    /// The value at a query: linear between two positive values, 0 if one of the two is not positive.
    VORNIK1D_INLINE double find_value(double query, double const* values)
    {
        gap const between = move_to(query);
        double const v_lo = values[between.lo];
        double const v_hi = values[between.hi];
        double const length = first_[between.hi] - first_[between.lo];
        bool const is_constant = v_lo > 0 && v_hi - v_lo == 0; // false for two infinite values
        if (is_constant && length <= largest) return v_lo;     // for every fraction
        param_position const at = position_in(between, query);
        if (at.is_at_lo()) return v_lo;
        if (at.is_at_hi()) return v_hi;
        return v_lo > 0 && v_hi > 0 ? (v_hi - v_lo) * at.t + v_lo : 0.0;
    }

private:
    /// Two adjacent parameters, or the first one twice.
    struct gap
    {
        std::size_t lo;
        std::size_t hi;
    };

    /// The gap in which a query lies.
    VORNIK1D_INLINE gap move_to(double query)
    {
        cursor_ = std::min(advance_to(cursor_, end_, query), end_ - 1);
        auto const hi = static_cast<std::size_t>(cursor_ - first_);
        return {hi > 0 ? hi - 1 : hi, hi};
    }

    VORNIK1D_INLINE param_position position_in(gap between, double query) const
    {
        double const p_lo = first_[between.lo];
        double const p_hi = first_[between.hi];
        return {
            between.lo, between.hi, p_hi > p_lo + params_tolerance ? (query - p_lo) / (p_hi - p_lo) : 0.0};
    }

    double const* first_;
    double const* cursor_;
    double const* end_;
};

/// Interpolates tensors at non-decreasing positions. If a pair of tensors cannot be reduced, the result of
/// the last query is returned again.
template <std::size_t N>
class tensor_sampler
{
public:
    tensor_sampler(double const* metrics, std::size_t ld) : metrics_(metrics), ld_(ld) {}

    tensor<N> const& find(param_position const& at)
    {
        if (at.is_at_lo())
            result_ = tensor_at<N>(metrics_ + ld_ * at.lo);
        else if (at.is_at_hi())
            result_ = tensor_at<N>(metrics_ + ld_ * at.hi);
        else {
            if (at.hi != built_hi_) {
                built_hi_ = at.hi;
                is_built_ = interpolator_.build(
                    tensor_at<N>(metrics_ + ld_ * at.lo), tensor_at<N>(metrics_ + ld_ * at.hi));
            }
            if (is_built_) result_ = interpolator_.evaluate(at.t);
        }
        return result_;
    }

private:
    double const* metrics_;
    std::size_t ld_;
    tensor<N> result_{};
    metric_interpolator<N> interpolator_;
    std::size_t built_hi_ = 0; // 0 means none: entry 0 is never an upper end
    bool is_built_ = false;
};

} // namespace trelk::vornik1d
