#include "placement/size_law.h"

#include <limits>

namespace trelk::vornik1d {

std::uint64_t round_to_multiple(double length, std::uint64_t step)
{
    constexpr std::uint64_t most = std::numeric_limits<std::uint64_t>::max();
    constexpr double beyond = 18446744073709551616.0; // 2^64
    std::uint64_t const largest_multiple = most / step * step;

    if (!(length > 0)) return step;
    double const quotient = length / static_cast<double>(step);
    if (quotient >= beyond) return largest_multiple;
    auto const whole = static_cast<std::uint64_t>(quotient);
    if (whole >= most / step) return largest_multiple;

    std::uint64_t const k = whole * step;
    // From k = 2^32 on the product wraps and the comparison always rounds up: no element count is that large.
    std::uint64_t const boundary = k * (k + step);
    return length * length >= static_cast<double>(boundary) ? k + step : k;
}

std::uint64_t element_count(double metric_length, bool force_even, std::uint64_t min_elements,
    std::uint64_t max_elements, bool round_up)
{
    std::uint64_t n = round_to_multiple(metric_length, force_even ? 2 : 1);
    n = std::max<std::uint64_t>(n, 1);
    n = std::max(n, min_elements);
    n = std::min(n, max_elements);
    if (round_up && static_cast<double>(n) < metric_length && n != std::numeric_limits<std::uint64_t>::max())
        ++n;
    if (force_even && n % 2 == 1 && n != std::numeric_limits<std::uint64_t>::max()) ++n;
    return n;
}

} // namespace trelk::vornik1d
