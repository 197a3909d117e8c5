#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <tuple>
#include <vector>

#include <vornik1d/vornik1d.h>

// Builders of containers and calls, and a switch that makes allocations fail.

using numbers = std::vector<unsigned>;
using element_list = std::vector<numbers>; // the nodes of each
using point_list = std::vector<std::vector<double>>;

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

/// Numbers that are the same in every run and with every standard library.
class random_numbers
{
public:
    explicit random_numbers(unsigned seed) : state_(seed) {}
    unsigned below(unsigned n);
    double between(double low, double high);

private:
    unsigned long long state_;
};

/// A call of `mesh_line` or `mesh_spline`, in any of their overloads, that starts from outputs which hold something.
struct meshing
{
    enum class overload { line, line_by_chord_length, spline };

    overload which = overload::line;
    trelk::dense2D<double> coords;
    trelk::dense1D<unsigned> indices;
    trelk::dense1D<double> params, sizes;
    trelk::dense2D<double> metrics; // taken instead of the sizes unless there are none
    bool force_even = false;
    unsigned min_elements = 1;
    unsigned max_elements = no_limit;
    double deviation_tolerance = 0;
    double min_size = 0;
    double default_size = 0;
    double max_gradation = 0;
    double deviation = 7;

    trelk::dense1D<unsigned> out_indices = nodes({77});
    trelk::dense1D<double> out_params = reals({-7, -8});
    trelk::dense1D<double> out_sizes = reals({0.7});
    trelk::dense2D<double> out_metrics;

    int run();

    /// The same call with inputs and outputs of its own, as they are now.
    meshing copy() const;

    /// Takes isotropic tensors of its sizes instead of these.
    void use_tensors();

    /// What no call changes.
    auto inputs() const
    {
        return std::tuple(values_of(indices), values_of(params), values_of(sizes), values_of(metrics));
    }

    /// Everything that a failure must leave alone, but for `out_params`.
    auto untouched() const
    {
        return std::tuple(
            values_of(coords), values_of(out_indices), values_of(out_sizes), out_metrics.cols());
    }

    /// The nodes that the call has appended, and those of them that are chain nodes.
    numbers mesh() const { return {out_indices.begin() + 1, out_indices.end()}; }
    numbers pinned() const;
    std::size_t elements() const { return out_indices.size() - 2; }
};

/// The chain of all columns of `coords`, in order, with one size for all, at parameters 0, 1, 2, ...
meshing chain_of(trelk::dense2D<double> const& coords, double size);

/// The spline through all columns of `coords`, in order, with one size for all: an open one with free ends,
/// or one closed from the last to the first.
meshing spline_of(trelk::dense2D<double> const& coords, double size, bool is_closed = false);

/// A call of `remesh_lines`, in any of its overloads.
struct remeshing
{
    enum class overload { full, with_colors, plain };

    overload which = overload::full;
    trelk::dense2D<double> coords;
    trelk::dense2D<unsigned> connect;
    double default_size = 0.3;
    trelk::dense1D<double> sizes;
    trelk::dense1D<unsigned> colors, hard_nodes, hard_edges;
    bool force_even = false;
    double max_angle = 40, deviation_tolerance = 0, max_gradation = 0, min_size = 0;
    unsigned min_elements = 1, max_elements = no_limit;

    int run();

    /// The same call with a mesh and lists of its own, as they are now.
    remeshing copy() const;

    auto untouched() const
    {
        return std::tuple(values_of(coords), values_of(connect), values_of(colors), values_of(hard_nodes));
    }
};

double length_of(trelk::dense2D<double> const& coords, trelk::dense2D<unsigned> const& connect);

/// A network whose elements join the columns of `coords` in order.
remeshing network_of(trelk::dense2D<double> const& coords, double size);

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

/// Makes allocation after allocation of `run(arguments)` fail, up to number `most`, with arguments from `make()`;
/// `check(arguments, status)` looks at what is left. Returns how many of the calls reported it.
template <class Make, class Run, class Check>
int for_each_failure(Make make, Run run, Check check, std::size_t most = SIZE_MAX)
{
    using extent = failing_allocations::extent;
    int refused = 0;
    for (auto const which : {extent::one, extent::five, extent::all_behind})
        for (std::size_t number = 0; number < most; ++number) {
            auto arguments = make();
            int status = 0;
            {
                failing_allocations const failing(number, which);
                status = run(arguments);
                if (!failing_allocations::have_failed()) break;
            }
            EXPECT_TRUE(status == 0 || status == -199) << status;
            refused += status == 0 ? 0 : 1;
            check(arguments, status);
            if (testing::Test::HasFailure()) return refused;
        }
    return refused;
}

/// The same for copies of a call.
template <class Call, class Check>
int for_each_failed_copy(Call const& given, Check check, std::size_t most = SIZE_MAX)
{
    return for_each_failure([&] { return given.copy(); }, [](Call& call) { return call.run(); }, check, most);
}
