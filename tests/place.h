#pragma once

#include <cstddef>
#include <vector>

#include "placement/place_nodes.h"
#include "placement/size_targets.h"
#include "support.h"

/// One placement along the chain of a meshing, by sizes: what stands between the two ends.
struct placement
{
    double length = 0;
    trelk::dense2D<double> coords;
    trelk::dense1D<double> sizes, params;
};

template <std::size_t N>
placement place_along(meshing const& m)
{
    using namespace trelk::vornik1d;
    using targets = size_targets<N>;
    line_view<targets> const chain{.points = m.coords.data(),
        .nodes = m.indices.data(),
        .params = m.params.data(),
        .targets = m.sizes.data(),
        .count = m.indices.size()};
    std::vector<double> cum(chain.count);
    placement p;
    p.length = measure<targets>(chain, cum.data());
    element_rule const rule{m.force_even, m.min_elements, m.max_elements};
    std::size_t const count = new_node_count(p.length, rule);
    trelk::dense1D<double> params(count + 2), sizes(count + 2);
    EXPECT_TRUE(p.coords.resize(N, count));
    new_nodes<targets> const out{p.coords.data(), N, params.data(), sizes.data()};
    EXPECT_TRUE(place_nodes<targets>(separate_line<targets>{chain}, chain.last(), cum.data(), count, out));
    p.params = params.sub_vector(1, count);
    p.sizes = sizes.sub_vector(1, count);
    return p;
}

inline placement place(meshing const& m)
{
    return m.coords.rows() == 2 ? place_along<2>(m) : place_along<3>(m);
}
