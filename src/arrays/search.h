#pragma once

namespace trelk::vornik1d {

/// True when no value falls below the one before it. A NaN among several values fails.
inline bool is_non_decreasing(double const* first, double const* last) noexcept
{
    bool result = true; // no early exit: the loop is then done in steps of several values
    for (; last - first > 1; ++first) result &= first[1] >= first[0];
    return result;
}

/// The first of the sorted values from `first` to `last` that is not below `value`, or `last`. As
/// `std::lower_bound`, but for values with a NaN or a fall among them it also ends within the range.
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

/// The same step by step, for sorted values and a caller that goes on from there: all its searches together take
/// one run along the values.
inline double const* advance_to(double const* first, double const* last, double value) noexcept
{
    while (first != last && *first < value) ++first;
    return first;
}

} // namespace trelk::vornik1d
