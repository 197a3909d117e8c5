#include <vornik1d/vornik1d.h>

#include <algorithm>

#include "front_door.h"
#include "metric/param_sampling.h"

namespace trelk::vornik1d {

namespace {

/// Makes the checks that sizes and tensors share, in the documented order. `is_parallel`: there is one size
/// or tensor per parameter.
int check_parameters(dense1D<double> const& params, bool is_parallel, dense1D<double> const& new_params)
{
    if (!are_parameters(params)) return bad_argument(1);
    if (!is_parallel) return bad_argument(2);
    return are_queries(params, new_params) ? 0 : bad_argument(3);
}

void sample_values(dense1D<double> const& params, dense1D<double> const& values,
    dense1D<double> const& new_params, double* result)
{
    param_search search(params);
    for (double const query : new_params) *result++ = search.find_value(query, values.begin());
}

template <std::size_t N>
void sample_tensors(dense1D<double> const& params, dense2D<double> const& metrics,
    dense1D<double> const& new_params, dense2D<double>& new_metrics)
{
    param_search search(params);
    tensor_sampler<N> sampler(metrics.data(), metrics.ld());
    for (std::size_t k = 0; k < new_params.size(); ++k)
        std::copy_n(sampler.find(search.find(new_params[k])).values, packed_rows<N>, new_metrics.col(k));
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

    // A matrix with one row is a list of sizes: a view if its values are adjacent, otherwise a copy.
    auto const values = rows == 1 ? metrics.as_vector() : dense1D<double>();
    if ((rows == 1 && values.empty()) || !new_metrics.resize(rows, new_params.size())) return no_storage;
    if (rows == 1) sample_values(params, values, new_params, new_metrics.data());
    if (rows == 3) sample_tensors<2>(params, metrics, new_params, new_metrics);
    if (rows == 6) sample_tensors<3>(params, metrics, new_params, new_metrics);
    return 0;
}

} // namespace trelk::vornik1d
