#pragma once

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <iterator>
#include <limits>

#include <fuzzer/FuzzedDataProvider.h>

/// The bytes of a test case as choices and numbers, hostile ones now and then. Zeros once it has run out.
class stream
{
public:
    stream(std::uint8_t const* data, std::size_t size) : bytes_(data, size) {}

    bool empty() { return bytes_.remaining_bytes() == 0; }
    bool flag() { return bytes_.ConsumeBool(); }

    /// A number below n.
    std::size_t below(std::size_t n) { return bytes_.ConsumeIntegralInRange<std::size_t>(0, n - 1); }

    /// True once in n.
    bool rarely(std::size_t n) { return below(n) == n - 1; }

    double real()
    {
        constexpr double limits[] = {0.0, -0.0, not_a_number, infinity, -infinity, largest, -largest, 5e-324,
            -5e-324, 2.3e-308, 1e300, -1e300, 1e-300, 1e154, 1e-154, 1e16, 1e-16, -1e-16};
        auto const choice = bytes_.ConsumeIntegral<std::uint8_t>();
        if (choice < std::size(limits)) return limits[choice];
        if (choice < 24) return bytes_.ConsumeFloatingPoint<double>();
        return (choice - 140) / 16.0;
    }

    /// Mostly positive and neither tiny nor huge.
    double size() { return rarely(16) ? real() : std::ldexp(1.0 + double(below(8)) / 8, int(below(12)) - 8); }

    unsigned count()
    {
        constexpr unsigned limits[] = {4294967295, 4294967294, 2147483648, 2147483647, 65536, 1000};
        return rarely(12) ? limits[below(std::size(limits))] : unsigned(below(24));
    }

    /// Mostly one of n nodes.
    unsigned node(std::size_t n) { return n == 0 || rarely(48) ? count() : unsigned(below(n)); }

private:
    static constexpr double largest = std::numeric_limits<double>::max();
    static constexpr double infinity = std::numeric_limits<double>::infinity();
    static constexpr double not_a_number = std::numeric_limits<double>::quiet_NaN();

    FuzzedDataProvider bytes_;
};
