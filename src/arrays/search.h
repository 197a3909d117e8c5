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

/// The same for sorted values of which the answer is near `first`: a search in steps that double.
inline double const* first_not_below_from(double const* first, double const* last, double value) noexcept
{
    auto const count = last - first;
    decltype(last - first) step = 1;
    while (step <= count && first[step - 1] < value) step *= 2;
    auto const known = step / 2; // so many are below
    return first_not_below(first + known, first + (step <= count ? step - 1 : count), value);
}

} // namespace trelk::vornik1d
