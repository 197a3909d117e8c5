#include <vornik/toolkit.h>

#include <algorithm>
#include <cmath>

namespace trelk::vornik {

namespace {

bool is_finite(double const* values, std::size_t count)
{
    return std::all_of(values, values + count, [](double v) { return std::isfinite(v); });
}

bool is_positive_definite_2d(double const* m) { return m[0] > 0 && m[0] * m[2] - m[1] * m[1] > 0; }

/// A tensor is positive definite if all pivots of its Cholesky factorisation are positive. Unlike the
/// factorisation in metric/reduction.cpp, this one has no products of entries, which could overflow.
bool is_positive_definite_3d(double const* m)
{
    if (!(m[0] > 0)) return false;
    double const u00 = std::sqrt(m[0]);
    double const u01 = m[1] / u00;
    double const u02 = m[3] / u00;

    double const pivot1 = m[2] - u01 * u01;
    if (!(pivot1 > 0)) return false;
    double const u11 = std::sqrt(pivot1);
    double const u12 = (m[4] - u01 * u02) / u11;

    return m[5] - u02 * u02 - u12 * u12 > 0;
}

} // namespace

bool check_IDs(dense1D<unsigned> const& indices, std::size_t bound) noexcept
{
    return std::all_of(indices.begin(), indices.end(), [bound](unsigned id) { return id < bound; });
}

bool check_IDs(dense2D<unsigned> const& connect, element_type, std::size_t bound) noexcept
{
    if (connect.empty()) return true;
    if (connect.rows() < 2) return false;
    for (std::size_t e = 0; e < connect.cols(); ++e) {
        unsigned const* const ends = connect.col(e);
        if (ends[0] >= bound || ends[1] >= bound) return false;
    }
    return true;
}

bool are_valid_metrics(dense1D<double> const& sizes) noexcept
{
    return std::all_of(sizes.begin(), sizes.end(), [](double h) { return h > 0 && std::isfinite(h); });
}

bool are_valid_metrics(dense2D<double> const& metrics) noexcept
{
    if (metrics.empty()) return true;
    std::size_t const rows = metrics.rows();
    if (rows != 3 && rows != 6) return false;

    auto const is_positive_definite = rows == 3 ? is_positive_definite_2d : is_positive_definite_3d;
    for (std::size_t j = 0; j < metrics.cols(); ++j)
        if (!is_finite(metrics.col(j), rows) || !is_positive_definite(metrics.col(j))) return false;
    return true;
}

} // namespace trelk::vornik
