#pragma once

#include <algorithm>
#include <cstddef>

#include <trelk/dense1D.h>

namespace trelk::vornik1d {

/// One entry of a line, wherever its values are stored.
struct entry_view
{
    double const* point;
    double param;
    double const* target;
};

/// The entries of a line that have been overwritten before they were read. They are kept in a ring buffer:
/// entry i is at position i modulo the capacity. The buffer grows if the writer is farther ahead of the
/// reader than before.
template <class Targets>
class overwritten_entries
{
public:
    /// Saves entry `i`. Saved entries before `first` are no longer needed. False if memory runs out.
    [[nodiscard]] bool save(std::size_t i, std::size_t first, entry_view const& entry)
    {
        if (i - first >= capacity_ && !grow(i, first)) return false;
        double* const values = place_of(i);
        std::copy_n(entry.point, N, values);
        std::copy_n(entry.target, Targets::width, values + N);
        values[N + Targets::width] = entry.param;
        return true;
    }

    entry_view operator[](std::size_t i) const
    {
        double const* const values = place_of(i);
        return {values, values[N + Targets::width], values + N};
    }

private:
    static constexpr std::size_t N = Targets::dimension;
    static constexpr std::size_t entry_size = N + Targets::width + 1;
    static constexpr std::size_t least_capacity = 64; // a power of two, as all capacities are

    double* place_of(std::size_t i) { return ring_.data() + (i & (capacity_ - 1)) * entry_size; }
    double const* place_of(std::size_t i) const { return ring_.data() + (i & (capacity_ - 1)) * entry_size; }

    bool grow(std::size_t end, std::size_t first)
    {
        overwritten_entries wider;
        wider.capacity_ = std::max(2 * capacity_, least_capacity);
        if (!wider.ring_.resize(wider.capacity_ * entry_size)) return false;
        for (std::size_t i = first; i < end; ++i) std::copy_n(place_of(i), entry_size, wider.place_of(i));
        ring_.swap(wider.ring_);
        capacity_ = wider.capacity_;
        return true;
    }

    dense1D<double> ring_;
    std::size_t capacity_ = 0;
};

} // namespace trelk::vornik1d
