#include "arrays/columns.h"

#include <algorithm>
#include <cmath>

#include "arrays/append.h"

namespace trelk::vornik1d {

bool append_columns(dense2D<double> const& source, dense2D<double>& target) noexcept
{
    if (source.empty()) return true;
    std::size_t const rows = source.rows();
    std::size_t const added = source.cols();
    std::size_t const present = filled_columns(target);
    if (!extend(target, rows, added)) return false;
    if (source.ld() == rows && target.ld() == rows)
        std::copy_n(source.data(), rows * added, target.col(present));
    else
        for (std::size_t k = 0; k < added; ++k) std::copy_n(source.col(k), rows, target.col(present + k));
    return true;
}

double distance(dense2D<double> const& points, std::size_t a, std::size_t b) noexcept
{
    double square = 0;
    for (std::size_t r = 0; r < points.rows(); ++r)
        square += (points(r, b) - points(r, a)) * (points(r, b) - points(r, a));
    return std::sqrt(square);
}

unsigned largest_entry(dense2D<unsigned> const& connect) noexcept
{
    unsigned result = 0;
    for (std::size_t j = 0; j < connect.cols(); ++j)
        result = std::max(result, *std::max_element(connect.col(j), connect.col(j) + connect.rows()));
    return result;
}

bool gather_values(
    dense1D<double> const& source, dense1D<unsigned> const& selection, dense1D<double>& target) noexcept
{
    std::size_t const present = target.size();
    if (!extend(target, selection.size())) return false;
    for (std::size_t k = 0; k < selection.size(); ++k) target[present + k] = source[selection[k]];
    return true;
}

} // namespace trelk::vornik1d
