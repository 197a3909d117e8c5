#include <vornik1d/vornik1d.h>

#include <algorithm>
#include <cmath>

#include "arrays/search.h"
#include "front_door.h"
#include "metric/metric_interpolator.h"

namespace trelk::vornik1d {

namespace {

constexpr double params_tolerance = 1e-12; // absolute, on parameter gaps and on fractions of them

/// The checks that values and tensors share, in the order of the contract. `is_parallel`: one is given per
/// parameter.
int check_parameters(dense1D<double> const& params, bool is_parallel, dense1D<double> const& new_params)
{
    if (params.size() < 2 || !is_non_decreasing(params)) return bad_argument(1);
    if (!is_parallel) return bad_argument(2);
    if (!is_non_decreasing(new_params)) return bad_argument(3);
    std::size_t const last = params.size() - 1;
    std::size_t const new_last = new_params.size() - 1;
    if (params[0] > new_params[0] || !(params[last] >= new_params[new_last])) return bad_argument(3);
    return 0;
}

/// Calls `sample(k, lo, hi, t)` for each entry k of `new_params`: it lies at fraction t of the way from entry
/// lo of `params` to entry hi.
template <class Sample>
void sample_along(dense1D<double> const& params, dense1D<double> const& new_params, Sample sample)
{
    double const* const first = params.begin();
    double const* const last = params.end() - 1;
    double const* at = first;
    for (std::size_t k = 0; k < new_params.size(); ++k) {
        double const query = new_params[k];
        at = std::min(first_not_below(at, params.end(), query), last);
        auto const hi = static_cast<std::size_t>(at - first);
        std::size_t const lo = hi > 0 ? hi - 1 : hi;
        double const p_lo = params[lo];
        double const p_hi = params[hi];
        sample(k, lo, hi, p_hi > p_lo + params_tolerance ? (query - p_lo) / (p_hi - p_lo) : 0.0);
    }
}

bool is_at_start(double t) { return std::abs(t) < params_tolerance; }
bool is_at_end(double t) { return std::abs(1 - t) < params_tolerance; }

void sample_values(dense1D<double> const& params, dense1D<double> const& values,
    dense1D<double> const& new_params, double* result)
{
    sample_along(params, new_params, [&](std::size_t k, std::size_t lo, std::size_t hi, double t) {
        double const v_lo = values[lo];
        double const v_hi = values[hi];
        if (is_at_start(t))
            result[k] = v_lo;
        else if (is_at_end(t))
            result[k] = v_hi;
        else
            result[k] = v_lo > 0 && v_hi > 0 ? (v_hi - v_lo) * t + v_lo : 0.0;
    });
}

template <std::size_t N>
void sample_tensors(dense1D<double> const& params, dense2D<double> const& metrics,
    dense1D<double> const& new_params, dense2D<double>& new_metrics)
{
    metric_interpolator<N> interpolator;
    tensor<N> result{}; // of the query before, where a pair cannot be reduced
    sample_along(params, new_params, [&](std::size_t k, std::size_t lo, std::size_t hi, double t) {
        auto const m_lo = tensor_at<N>(metrics.col(lo));
        auto const m_hi = tensor_at<N>(metrics.col(hi));
        if (is_at_start(t))
            result = m_lo;
        else if (is_at_end(t))
            result = m_hi;
        else if (interpolator.build(m_lo, m_hi))
            result = interpolator.evaluate(t);
        std::copy_n(result.values, packed_rows<N>, new_metrics.col(k));
    });
}

} // namespace

int interpolate_metrics(dense1D<double> const& params, dense1D<double> const& sizes,
    dense1D<double> const& new_params, dense1D<double>& new_sizes) noexcept
{
    new_sizes.clear();
    if (new_params.empty()) return 0;
    int const status = check_parameters(params, sizes.size() == params.size(), new_params);
    if (status != 0) return status;

    if (!new_sizes.resize(new_params.size())) return no_storage;
    sample_values(params, sizes, new_params, new_sizes.data());
    return 0;
}

int interpolate_metrics(dense1D<double> const& params, dense2D<double> const& metrics,
    dense1D<double> const& new_params, dense2D<double>& new_metrics) noexcept
{
    new_metrics.clear();
    if (new_params.empty()) return 0;
    std::size_t const rows = metrics.rows();
    bool const is_parallel =
        metrics.cols() == params.size() && (rows == 0 || rows == 1 || rows == 3 || rows == 6);
    int const status = check_parameters(params, is_parallel, new_params);
    if (status != 0) return status;

    // A single row is a list of values; they stand side by side or are copied so.
    auto const values = rows == 1 ? metrics.as_vector() : dense1D<double>();
    if ((rows == 1 && values.empty()) || !new_metrics.resize(rows, new_params.size())) return no_storage;
    if (rows == 1) sample_values(params, values, new_params, new_metrics.data());
    if (rows == 3) sample_tensors<2>(params, metrics, new_params, new_metrics);
    if (rows == 6) sample_tensors<3>(params, metrics, new_params, new_metrics);
    return 0;
}

} // namespace trelk::vornik1d
