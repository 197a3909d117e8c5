#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>

#include <trelk/dense1D.h>
#include <trelk/dense2D.h>

#include "random.h"

/// A hash of numbers and containers, bit for bit; but all NaNs are one.
class hash
{
public:
    void add(std::uint64_t bits) { value_ = generator::mix((value_ ^ bits) + 0x9E3779B97F4A7C15U); }
    void add(int number) { add(static_cast<std::uint64_t>(number)); }
    void add(unsigned number) { add(std::uint64_t{number}); }
    void add(double number)
    {
        bool const is_nan = number != number;
        add(is_nan ? std::uint64_t{0x7FF8000000000000U} : std::bit_cast<std::uint64_t>(number));
    }

    template <class T>
    void add(trelk::dense1D<T> const& list)
    {
        add(std::uint64_t{list.size()});
        for (T const value : list) add(value);
    }

    template <class T>
    void add(trelk::dense2D<T> const& matrix)
    {
        add(std::uint64_t{matrix.rows()});
        add(std::uint64_t{matrix.cols()});
        for (std::size_t j = 0; j < matrix.cols(); ++j)
            for (std::size_t i = 0; i < matrix.rows(); ++i) add(matrix(i, j));
    }

    std::uint64_t value() const { return value_; }

private:
    std::uint64_t value_ = 0;
};
