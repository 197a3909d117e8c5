#pragma once

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <numbers>
#include <vector>

#include "bare_loop.h"

constexpr double waves = 3;
constexpr double amplitude = 0.1;

/// The curve on which a chain lies, at t from 0 to 1: `waves` sine waves along the first axis.
inline std::array<double, 3> wave_point(double t)
{
    double const turn = 2 * std::numbers::pi * waves * t;
    return {t, amplitude * std::sin(turn), amplitude * std::cos(turn)};
}

/// A chain of `segments` segments with smooth sizes, by 1:5 in two waves, on which `new_nodes` come to lie.
/// Waves so long keep the metric length of the mesh within half an element of the line's own.
template <std::size_t N>
bare::line<N> make_chain(std::size_t segments, std::size_t new_nodes)
{
    bare::line<N> chain;
    chain.resize(segments + 1);
    for (std::size_t i = 0; i <= segments; ++i) {
        double const t = static_cast<double>(i) / static_cast<double>(segments);
        std::copy_n(wave_point(t).begin(), N, chain.points[i].begin());
        chain.sizes[i] = std::pow(5, 0.5 * std::sin(4 * std::numbers::pi * t));
        chain.params[i] = t;
    }

    std::vector<double> cum(segments + 1);
    double const scale = bare::cumulate(chain, cum.data()) / static_cast<double>(new_nodes + 1);
    for (double& size : chain.sizes) size *= scale;
    return chain;
}

/// The line from the first to the last point of `chain` through `placed`.
template <std::size_t N>
bare::line<N> with_ends(bare::line<N> const& chain, bare::nodes<N> const& placed)
{
    bare::line<N> result;
    auto const enclose = [&](auto const& ends, auto const& between, auto& values) {
        values.push_back(ends.front());
        values.insert(values.end(), between.get(), between.get() + placed.count);
        values.push_back(ends.back());
    };
    enclose(chain.points, placed.points, result.points);
    enclose(chain.sizes, placed.sizes, result.sizes);
    enclose(chain.params, placed.params, result.params);
    return result;
}
