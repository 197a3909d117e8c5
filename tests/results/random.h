#pragma once

#include <cstddef>
#include <cstdint>

/// Pseudo-random numbers that are the same everywhere: splitmix64 (Steele, Lea and Flood, Fast splittable
/// pseudorandom number generators, 2014).
///
/// Two draws in one expression or argument list have no order between them; take them in two statements.
class generator
{
public:
    explicit generator(std::uint64_t seed) : state_(seed) {}

    static constexpr std::uint64_t mix(std::uint64_t z)
    {
        z = (z ^ (z >> 30)) * 0xBF58476D1CE4E5B9U;
        z = (z ^ (z >> 27)) * 0x94D049BB133111EBU;
        return z ^ (z >> 31);
    }

    std::uint64_t next() { return mix(state_ += 0x9E3779B97F4A7C15U); }

    /// From 0 to below 1.
    double unit() { return static_cast<double>(next() >> 11) * 0x1p-53; }
    double between(double low, double high) { return (high - low) * unit() + low; }

    /// Below `n`; 0 for an `n` of 0.
    std::size_t below(std::size_t n) { return n > 0 ? next() % n : 0; }
    unsigned node(std::size_t n) { return static_cast<unsigned>(below(n)); }

    bool chance(double probability) { return unit() < probability; }

    template <class T, std::size_t N>
    T pick(T const (&values)[N])
    {
        return values[below(N)];
    }

    /// Between 2^low and 2^high, spread over the octaves evenly.
    double octaves(int low, int high)
    {
        double value = 1 + unit();
        for (auto k = low + static_cast<int>(below(static_cast<std::size_t>(high - low))); k != 0;
             k += k > 0 ? -1 : 1)
            value = k > 0 ? value * 2 : value / 2;
        return value;
    }

private:
    std::uint64_t state_;
};
