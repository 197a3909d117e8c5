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

using reals = trelk::dense1D<double>;
using nodes = trelk::dense1D<unsigned>;
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

/// A call of `mesh_line` or `mesh_spline` by options, in any of their overloads, that starts from outputs which hold
/// something.
struct meshing : trelk::vornik1d::spline_options
{
    enum class overload { line, line_by_chord_length, spline };

    overload which = overload::line;
    trelk::dense2D<double> coords;
    trelk::dense1D<unsigned> indices;
    trelk::dense1D<double> params, sizes;
    trelk::dense2D<double> metrics; // taken instead of the sizes unless there are none

    trelk::dense1D<unsigned> out_indices{77};
    trelk::dense1D<double> out_params{-7, -8}, out_sizes{0.7};
    trelk::dense2D<double> out_metrics;
    double deviation = 7;

    int run();

    /// The same call with inputs and outputs of its own, as they are now.
    meshing copy() const;

    /// Takes isotropic tensors of its sizes instead of these.
    void use_tensors();

    /// What no call changes.
    auto inputs() const { return std::tie(indices, params, sizes, metrics); }

    /// Everything that a failure must leave alone, but for `out_params`.
    auto untouched() const { return std::tie(coords, out_indices, out_sizes, out_metrics); }

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

/// A call of `remesh_lines` by options. Break nodes replace `hard_nodes`.
struct remeshing : trelk::vornik1d::remesh_options
{
    trelk::dense2D<double> coords;
    trelk::dense2D<unsigned> connect;
    double default_size = 0.3;
    trelk::dense1D<unsigned> colors, hard_nodes;

    int run();

    /// The same call with a mesh and lists of its own, as they are now.
    remeshing copy() const;

    auto untouched() const { return std::tie(coords, connect, colors, hard_nodes); }
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
