#include "remesh/chains.h"

#include "arrays/element_flags.h"

namespace trelk::vornik1d {

bool extract_chains(dense2D<unsigned> const& connect, dense2D<unsigned> const& neighbors,
    hbuckets_set const& break_nodes, std::size_t node_count, line_chains& chains)
{
    std::size_t const n = connect.cols();
    element_flags visited;
    element_flags breaks;
    chains = {};
    if (!visited.init(n) || !breaks.init(node_count) || !chains.chain_elements.reserve(n) ||
        !chains.chain_starts.push_back(0))
        return false;
    break_nodes.for_each([&](unsigned node) { breaks.set(node); });

    auto const add_chain_from = [&](std::size_t first) {
        for (std::size_t e = first; !visited.test(e); e = neighbors(0, e)) {
            chains.chain_elements.push_back(static_cast<unsigned>(e));
            visited.set(e);
            if (breaks.test(connect(1, e))) break;
        }
        return chains.chain_starts.push_back(static_cast<unsigned>(chains.chain_elements.size()));
    };
    for (std::size_t e = 0; e < n; ++e)
        if (!visited.test(e) && breaks.test(connect(0, e)) && !add_chain_from(e)) return false;
    for (std::size_t e = 0; e < n; ++e)
        if (!visited.test(e) && !add_chain_from(e)) return false;
    return true;
}

} // namespace trelk::vornik1d
