#pragma once

#include <cstddef>
#include <initializer_list>
#include <limits>
#include <vector>

#include <trelk/dense1D.h>
#include <trelk/dense2D.h>

// Builders of containers, and a switch that makes allocations fail.

constexpr unsigned no_limit = 4294967295;
constexpr double largest_double = std::numeric_limits<double>::max();
constexpr double infinity = std::numeric_limits<double>::infinity();
constexpr double not_a_number = std::numeric_limits<double>::quiet_NaN();

template <class T>
trelk::dense1D<T> list(std::vector<T> const& values)
{
    trelk::dense1D<T> result;
    for (T const value : values) result.push_back(value);
    return result;
}

inline trelk::dense1D<double> reals(std::initializer_list<double> values) { return list<double>(values); }

inline trelk::dense1D<unsigned> nodes(std::initializer_list<unsigned> values)
{
    return list<unsigned>(values);
}

inline trelk::dense1D<unsigned> nodes_up_to(unsigned n)
{
    trelk::dense1D<unsigned> result;
    for (unsigned k = 0; k < n; ++k) result.push_back(k);
    return result;
}

/// A matrix given column by column.
inline trelk::dense2D<double> columns(std::vector<std::vector<double>> const& values)
{
    trelk::dense2D<double> result;
    if (values.empty() || !result.resize(values[0].size(), values.size())) return result;
    for (std::size_t j = 0; j < result.cols(); ++j)
        for (std::size_t i = 0; i < result.rows(); ++i) result(i, j) = values[j][i];
    return result;
}

template <class T>
std::vector<T> values_of(trelk::dense1D<T> const& values)
{
    return {values.begin(), values.end()};
}

template <class T>
std::vector<std::vector<T>> values_of(trelk::dense2D<T> const& values)
{
    std::vector<std::vector<T>> result(values.cols());
    for (std::size_t j = 0; j < values.cols(); ++j)
        result[j].assign(values.col(j), values.col(j) + values.rows());
    return result;
}

/// n + 1 nodes on an arc of the given angle on a circle of radius 1, in the plane or, tilted, in space.
trelk::dense2D<double> arc(std::size_t n, double angle, std::size_t rows = 2);

/// While one stands, allocation number `first` of this thread and all behind it fail, or that one alone.
class failing_allocations
{
public:
    enum class extent { one, all_behind };

    failing_allocations(std::size_t first, extent which);
    failing_allocations(failing_allocations const&) = delete;
    failing_allocations& operator=(failing_allocations const&) = delete;
    ~failing_allocations();

    /// True when there was an allocation to fail.
    static bool have_failed();
};
