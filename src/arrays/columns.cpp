#include "arrays/columns.h"

#include <algorithm>

#include "arrays/append.h"

namespace trelk::vornik1d {

namespace {

/// Adds `added` columns to `target`, in the row count of `source`.
bool grow(dense2D<double> const& source, std::size_t added, dense2D<double>& target) noexcept
{
    std::size_t const rows = source.rows();
    std::size_t const present = filled_columns(target);
    if (present + added > target.room() / std::max<std::size_t>({target.ld(), rows, 1}))
        static_cast<void>(target.reserve(rows, grown(present, added))); // resize tries with less
    return target.resize(rows, present + added);
}

} // namespace

bool gather_columns(
    dense2D<double> const& source, dense1D<unsigned> const& columns, dense2D<double>& target) noexcept
{
    if (columns.empty()) return true;
    std::size_t const present = filled_columns(target);
    if (!grow(source, columns.size(), target)) return false;
    for (std::size_t k = 0; k < columns.size(); ++k)
        std::copy_n(source.col(columns[k]), source.rows(), target.col(present + k));
    return true;
}

bool append_columns(dense2D<double> const& source, dense2D<double>& target) noexcept
{
    if (source.empty()) return true;
    std::size_t const rows = source.rows();
    std::size_t const added = source.cols();
    std::size_t const present = filled_columns(target);
    if (!grow(source, added, target)) return false;
    if (source.ld() == rows && target.ld() == rows)
        std::copy_n(source.data(), rows * added, target.col(present));
    else
        for (std::size_t k = 0; k < added; ++k) std::copy_n(source.col(k), rows, target.col(present + k));
    return true;
}

unsigned largest_entry(dense2D<unsigned> const& connect) noexcept
{
    unsigned result = 0;
    if (connect.empty()) return result;
    for (std::size_t j = 0; j < connect.cols(); ++j)
        result = std::max(result, *std::max_element(connect.col(j), connect.col(j) + connect.rows()));
    return result;
}

bool gather_values(
    dense1D<double> const& source, dense1D<unsigned> const& selection, dense1D<double>& target) noexcept
{
    std::size_t const present = target.size();
    if (present + selection.size() > target.room())
        static_cast<void>(target.reserve(grown(present, selection.size()))); // resize tries with less
    if (!target.resize(present + selection.size())) return false;
    for (std::size_t k = 0; k < selection.size(); ++k) target[present + k] = source[selection[k]];
    return true;
}

} // namespace trelk::vornik1d
