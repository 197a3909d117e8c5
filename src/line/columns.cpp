#include "line/columns.h"

#include <algorithm>

#include "placement/append.h"

namespace trelk::vornik1d {

namespace {

/// Appends `added` columns of `source`; `column_at(k)` is the number of the k-th of them.
template <class ColumnAt>
bool append_some(
    dense2D<double> const& source, std::size_t added, ColumnAt column_at, dense2D<double>& target) noexcept
{
    std::size_t const rows = source.rows();
    std::size_t const present = target.cols();
    if (present + added > target.room() / std::max<std::size_t>({target.ld(), rows, 1}))
        static_cast<void>(target.reserve(rows, grown(present, added))); // resize tries with less
    if (!target.resize(rows, present + added)) return false;
    for (std::size_t k = 0; k < added; ++k)
        std::copy_n(source.col(column_at(k)), rows, target.col(present + k));
    return true;
}

} // namespace

bool gather_columns(
    dense2D<double> const& source, dense1D<unsigned> const& columns, dense2D<double>& target) noexcept
{
    if (columns.empty()) return true;
    return append_some(
        source, columns.size(), [&](std::size_t k) { return columns[k]; }, target);
}

bool append_columns(dense2D<double> const& source, dense2D<double>& target) noexcept
{
    if (source.empty()) return true;
    return append_some(
        source, source.cols(), [](std::size_t k) { return k; }, target);
}

} // namespace trelk::vornik1d
