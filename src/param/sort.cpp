#include <vornik1d/vornik1d.h>

#include <algorithm>
#include <cmath>

#include "front_door.h"

namespace trelk::vornik1d {

namespace {

struct node_param
{
    double param;
    unsigned node;
};

/// Orders by parameter, then by node. NaN comes after all numbers; 0 and -0 are equal.
bool comes_before(node_param const& a, node_param const& b)
{
    bool const a_is_nan = std::isnan(a.param);
    bool const b_is_nan = std::isnan(b.param);
    if (a_is_nan != b_is_nan) return b_is_nan;
    if (!a_is_nan && a.param != b.param) return a.param < b.param;
    return a.node < b.node;
}

} // namespace

int sort(dense1D<double>& params, dense1D<unsigned>& indices) noexcept
{
    std::size_t const n = params.size();
    if (indices.size() != n) return bad_argument(1);
    dense1D<node_param> pairs;
    if (!pairs.resize(n)) return no_storage;

    for (std::size_t i = 0; i < n; ++i) pairs[i] = {params[i], indices[i]};
    std::sort(pairs.begin(), pairs.end(), comes_before);
    for (std::size_t i = 0; i < n; ++i) params[i] = pairs[i].param;
    for (std::size_t i = 0; i < n; ++i) indices[i] = pairs[i].node;
    return 0;
}

} // namespace trelk::vornik1d
