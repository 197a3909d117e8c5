#pragma once

#include <trelk/dense1D.h>

namespace trelk::vornik1d {

/// True if no value is below the one before it. False if one of several values is NaN.
inline bool is_non_decreasing(double const* first, double const* last) noexcept
{
    bool result = true; // no early exit, so that the loop is vectorised
    for (; last - first > 1; ++first) result &= first[1] >= first[0];
    return result;
}

inline bool is_non_decreasing(dense1D<double> const& values) noexcept
{
    return is_non_decreasing(values.begin(), values.end());
}

/// The first of the sorted values from `first` to `last` that is not below `value`, or `last`. Unlike
/// `std::lower_bound`, it also returns a position of the range if the values are not sorted or contain a NaN.
inline double const* first_not_below(double const* first, double const* last, double value) noexcept
{
    auto count = last - first;
    while (count > 0) {
        auto const half = count / 2;
        if (first[half] < value) {
            first += half + 1;
            count -= half + 1;
        } else
            count = half;
    }
    return first;
}

/// The same by linear search, for a caller that starts each search where the last one ended: all searches
/// together visit each value once.
inline double const* advance_to(double const* first, double const* last, double value) noexcept
{
    while (first != last && *first < value) ++first;
    return first;
}

} // namespace trelk::vornik1d
