#pragma once

#include <algorithm>
#include <cstddef>
#include <initializer_list>
#include <limits>
#include <utility>
#include <vector>

#include <vornik1d/vornik1d.h>

// Builders of containers and calls, and a switch that makes allocations fail.

using trelk::vornik1d::no_limit;
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

inline trelk::dense1D<double> reals(std::vector<double> const& values) { return list(values); }
inline trelk::dense1D<unsigned> nodes(std::vector<unsigned> const& values) { return list(values); }
trelk::dense1D<unsigned> nodes_up_to(std::size_t n);

/// A matrix given column by column.
template <class T = double>
trelk::dense2D<T> columns(std::vector<std::vector<T>> const& values)
{
    trelk::dense2D<T> result;
    if (values.empty() || !result.resize(values[0].size(), values.size())) return result;
    for (std::size_t j = 0; j < values.size(); ++j)
        std::copy(values[j].begin(), values[j].end(), result.col(j));
    return result;
}

/// n + 1 nodes on an arc of the given angle on a circle of radius 1, in the plane or, tilted, in space.
trelk::dense2D<double> arc(std::size_t n, double angle, std::size_t rows = 2);

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

/// A call of `mesh_line` or `mesh_spline`, in any of their overloads, that starts from outputs which hold
/// something.
struct meshing
{
    trelk::dense2D<double> coords;
    trelk::dense1D<unsigned> indices;
    trelk::dense1D<double> params, sizes;
    trelk::dense2D<double> metrics; // taken instead of the sizes unless there are none
    bool force_even = false;
    unsigned min_elements = 1;
    unsigned max_elements = no_limit;
    double deviation_tolerance = 0;
    double min_size = 0;
    bool with_params = true;

    bool as_spline = false;
    double default_size = 0;
    double max_gradation = 0;
    double deviation = 7;

    trelk::dense1D<unsigned> out_indices = nodes({77});
    trelk::dense1D<double> out_params = reals({-7, -8});
    trelk::dense1D<double> out_sizes = reals({0.7});
    trelk::dense2D<double> out_metrics;

    int run();

    /// Takes isotropic tensors of its sizes instead of these.
    void use_tensors();

    /// Everything that a failure must leave alone, but for `out_params`.
    auto untouched() const
    {
        return std::pair(std::pair(values_of(coords), values_of(out_indices)), values_of(out_sizes));
    }

    /// The nodes that the call has appended, and those of them that are chain nodes.
    std::vector<unsigned> mesh() const { return {out_indices.begin() + 1, out_indices.end()}; }
    std::vector<unsigned> pinned() const;
    std::size_t elements() const { return out_indices.size() - 2; }
};

/// The chain of all columns of `coords`, in order, with one size for all, at parameters 0, 1, 2, ...
meshing chain_of(trelk::dense2D<double> const& coords, double size);

/// The spline through all columns of `coords`, in order, with one size for all: an open one with free ends,
/// or one closed from the last to the first.
meshing spline_of(trelk::dense2D<double> const& coords, double size, bool is_closed = false);

/// While one stands, allocation number `first` of this thread fails: alone, with the four behind it (a list that
/// grows tries more than once), or with all behind it.
class failing_allocations
{
public:
    enum class extent { one, five, all_behind };

    failing_allocations(std::size_t first, extent which);
    failing_allocations(failing_allocations const&) = delete;
    failing_allocations& operator=(failing_allocations const&) = delete;
    ~failing_allocations();

    /// True when there was an allocation to fail.
    static bool have_failed();

    /// Allocations since the last one of these was made, failed ones included.
    static std::size_t count();
};
