#pragma once

#include <algorithm>
#include <array>
#include <bit>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <numeric>
#include <vector>

#include <vornik1d/vornik1d.h>

#include "chains.h"
#include "networks.h"

// Calls of the library as records: made with their inputs filled and their outputs empty, run once. What is timed
// and what is measured for memory are the same calls.

constexpr unsigned no_limit = std::numeric_limits<unsigned>::max();

inline void require(bool is_true)
{
    if (!is_true) std::abort(); // no memory for the inputs
}

template <class T>
trelk::dense1D<T> copy_of(trelk::dense1D<T> const& values)
{
    trelk::dense1D<T> result;
    require(result.copy(values));
    return result;
}

template <class T>
trelk::dense2D<T> copy_of(trelk::dense2D<T> const& values)
{
    trelk::dense2D<T> result;
    require(result.copy(values));
    return result;
}

template <class T>
std::size_t bytes(trelk::dense1D<T> const& values)
{
    return values.size() * sizeof(T);
}

template <class T>
std::size_t bytes(trelk::dense2D<T> const& values)
{
    return values.rows() * values.cols() * sizeof(T);
}

/// Tells results apart that differ in any bit.
class hasher
{
public:
    template <class T>
    hasher& add(trelk::dense1D<T> const& values)
    {
        return add(values.size(), values.begin());
    }

    template <class T>
    hasher& add(trelk::dense2D<T> const& values) // packed, as `copy_of` and the library make them
    {
        return add(values.rows() * values.cols(), values.cols() > 0 ? values.col(0) : nullptr);
    }

    std::uint64_t value() const { return state_; }

private:
    template <class T>
    hasher& add(std::size_t count, T const* values)
    {
        mix(count);
        for (std::size_t i = 0; i < count; ++i) {
            if constexpr (sizeof(T) == sizeof(std::uint64_t))
                mix(std::bit_cast<std::uint64_t>(values[i]));
            else
                mix(values[i]);
        }
        return *this;
    }

    void mix(std::uint64_t word)
    {
        state_ = (state_ ^ word) * 0x9e3779b97f4a7c15;
        state_ ^= state_ >> 29;
    }

    std::uint64_t state_ = 0x243f6a8885a308d3;
};

/// A chain of all nodes in their order, with sizes or packed tensors at them.
template <class Targets>
struct chain_input
{
    trelk::dense2D<double> coords;
    trelk::dense1D<unsigned> indices;
    trelk::dense1D<double> params;
    Targets targets;
};

using sized_chain = chain_input<trelk::dense1D<double>>;
using tensor_chain = chain_input<trelk::dense2D<double>>;

template <std::size_t N>
sized_chain to_input(bare::line<N>& chain)
{
    sized_chain input;
    input.coords = copy_of(trelk::dense2D<double>(N, chain.size(), chain.points.front().data()));
    require(input.indices.resize(chain.size()));
    std::iota(input.indices.begin(), input.indices.end(), 0U);
    input.params = copy_of(trelk::dense1D<double>(chain.size(), chain.params.data()));
    input.targets = copy_of(trelk::dense1D<double>(chain.size(), chain.sizes.data()));
    return input;
}

/// The chain with tensors that ask for its sizes along the direction of travel and for `stretch` times as much
/// across: with a stretch of 1 the same in all directions.
template <std::size_t N>
tensor_chain with_tensors(sized_chain const& chain, double stretch)
{
    std::size_t const n = chain.indices.size();
    tensor_chain result{chain.coords, chain.indices, chain.params, {}};
    require(result.targets.resize(N * (N + 1) / 2, n));
    for (std::size_t i = 0; i < n; ++i) {
        double const* const before = chain.coords.col(i > 0 ? i - 1 : 0);
        double const* const after = chain.coords.col(std::min(i + 1, n - 1));
        std::array<double, N> along;
        double square = 0;
        for (std::size_t r = 0; r < N; ++r) along[r] = after[r] - before[r], square += along[r] * along[r];

        double const size = chain.targets[i];
        double const across = 1 / (stretch * size * (stretch * size));
        double const surplus = 1 / (size * size) - across;
        for (std::size_t column = 0, k = 0; column < N; ++column)
            for (std::size_t row = 0; row <= column; ++row, ++k)
                result.targets(k, i) =
                    (row == column ? across : 0) + surplus * along[row] * along[column] / square;
    }
    return result;
}

/// What a call on a chain makes.
template <class Targets>
struct chain_output
{
    trelk::dense2D<double> coords; // holds the old nodes at first
    trelk::dense1D<unsigned> mesh;
    trelk::dense1D<double> params;
    Targets targets;

    std::uint64_t hash() const { return hasher().add(coords).add(mesh).add(params).add(targets).value(); }
};

template <class Targets>
chain_output<Targets> before_call(chain_input<Targets> const& input)
{
    chain_output<Targets> out;
    out.coords = copy_of(input.coords);
    return out;
}

/// Bytes of all that goes into a call and comes out of it, nodes that are in both counted once.
template <class Targets>
std::size_t old_and_new_bytes(chain_input<Targets> const& in, chain_output<Targets> const& out)
{
    return bytes(in.indices) + bytes(in.params) + bytes(in.targets) + bytes(out.coords) + bytes(out.mesh) +
           bytes(out.params) + bytes(out.targets);
}

template <class Targets>
std::size_t old_bytes(chain_input<Targets> const& in)
{
    return bytes(in.coords) + bytes(in.indices) + bytes(in.params) + bytes(in.targets);
}

template <class Targets>
int mesh_line(chain_input<Targets> const& in, double tolerance, chain_output<Targets>& out)
{
    return trelk::vornik1d::mesh_line(out.coords, in.indices, in.params, in.targets, false, 1, no_limit,
        tolerance, 0.0, out.mesh, out.params, out.targets);
}

inline int mesh_straight(sized_chain const& in, chain_output<trelk::dense1D<double>>& out)
{
    return trelk::vornik1d::mesh_straight(out.coords, in.indices, in.targets, false, out.mesh);
}

/// The chain between guide nodes that leave its ends free.
inline sized_chain with_guides(sized_chain const& chain)
{
    auto const doubled = [](auto const& values) {
        auto result = copy_of(values);
        require(result.resize(values.size() + 2));
        std::copy(values.begin(), values.end(), result.begin() + 1);
        result[0] = values[0];
        result[values.size() + 1] = values[values.size() - 1];
        return result;
    };
    return {chain.coords, doubled(chain.indices), {}, doubled(chain.targets)};
}

inline int mesh_spline(sized_chain const& in, double tolerance, chain_output<trelk::dense1D<double>>& out)
{
    double deviation = 0;
    return trelk::vornik1d::mesh_spline(out.coords, in.indices, in.targets, false, 1, no_limit, tolerance,
        0.0, 0.0, 0.0, out.mesh, out.params, out.targets, deviation);
}

/// Argument and result of `remesh_lines`.
struct remeshing
{
    trelk::dense2D<double> coords;
    trelk::dense2D<unsigned> connect;

    std::uint64_t hash() const { return hasher().add(coords).add(connect).value(); }
};

inline remeshing before_call(network const& lines) { return {copy_of(lines.coords), copy_of(lines.connect)}; }

inline std::size_t old_bytes(network const& lines) { return bytes(lines.coords) + bytes(lines.connect); }

inline std::size_t old_and_new_bytes(network const& lines, remeshing const& mesh)
{
    return bytes(mesh.coords) + bytes(lines.connect) + bytes(mesh.connect);
}

inline int remesh_lines(double default_size, double tolerance, remeshing& mesh)
{
    constexpr double max_angle = 60;
    return trelk::vornik1d::remesh_lines(
        mesh.coords, mesh.connect, default_size, false, max_angle, tolerance, 0.0, 0.0, 1, no_limit);
}

struct regime
{
    char const* name;
    double tolerance; // degrees, or relative to the radius of curvature
};
constexpr std::array<regime, 3> regimes{{{"0", 0}, {"positive", 0.02}, {"negative", -0.01}}};
