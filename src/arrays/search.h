#pragma once

namespace trelk::vornik1d {

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

} // namespace trelk::vornik1d
