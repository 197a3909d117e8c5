#pragma once

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <numbers>
#include <random>
#include <vector>

#include "bare_loop.h"

/// Sizes along a chain: by 1:5 in two waves, or by 1:3 at random from entry to entry.
enum class size_pattern { smooth, rough };

/// A line of three waves, of `entries` points, with sizes on which `new_nodes` come to lie. Waves so long,
/// with smooth sizes, keep the metric length of the mesh within half an element of the line's own.
template <std::size_t N>
bare::line<N> make_chain(std::size_t entries, size_pattern pattern, std::size_t new_nodes)
{
    std::mt19937_64 random(20240229);
    std::uniform_real_distribution<double> one_to_three(1, 3);
    bare::line<N> chain;
    chain.resize(entries);
    for (std::size_t i = 0; i < entries; ++i) {
        double const t = static_cast<double>(i) / static_cast<double>(entries - 1);
        double const turn = 2 * std::numbers::pi * t;
        std::array const point{t, 0.1 * std::sin(3 * turn), 0.1 * std::cos(3 * turn)};
        std::copy_n(point.begin(), N, chain.points[i].begin());
        bool const is_smooth = pattern == size_pattern::smooth;
        chain.sizes[i] = is_smooth ? std::pow(5, 0.5 * std::sin(2 * turn)) : one_to_three(random);
        chain.params[i] = t;
    }

    std::vector<double> cum(entries);
    double const scale = bare::cumulate(chain, cum.data()) / static_cast<double>(new_nodes + 1);
    for (double& size : chain.sizes) size *= scale;
    return chain;
}

/// The line from the first to the last point of `chain` through `nodes`.
template <std::size_t N>
bare::line<N> with_ends(bare::line<N> const& chain, bare::line<N> nodes)
{
    auto const enclose = [](auto const& ends, auto& values) {
        values.insert(values.begin(), ends.front());
        values.push_back(ends.back());
    };
    enclose(chain.points, nodes.points);
    enclose(chain.sizes, nodes.sizes);
    enclose(chain.params, nodes.params);
    return nodes;
}
