#include <vornik1d/vornik1d.h>

#include <cstddef>

#include <vornik/toolkit.h>

#include "arrays/append.h"
#include "arrays/columns.h"
#include "front_door.h"
#include "placement/place_nodes.h"
#include "placement/size_targets.h"
#include "rules.h"
#include "special_values.h"

namespace trelk::vornik1d {

namespace {

/// The nodes of a chain on the parameter axis, and the nodes to be added.
struct subdivision
{
    dense1D<double> chain_params;
    dense1D<double> chain_sizes;
    dense1D<double> added_params;
    dense1D<double> added_sizes;
};

/// Places nodes along the chain. False if memory runs out for the chain; if it runs out for the new nodes,
/// none are placed.
[[nodiscard]] bool subdivide_chain(element_rule const& rule, bool round_up, subdivision& line)
{
    using target_type = size_targets<1>;
    std::size_t const last = line.chain_params.size() - 1;
    dense1D<double> cum;
    if (!cum.resize(last + 1)) return false;
    line_view<target_type> const chain{.points = line.chain_params.data(),
        .params = line.chain_params.data(),
        .targets = line.chain_sizes.data(),
        .count = last + 1};
    double const length = measure<target_type>(chain, cum.data());
    auto const count = static_cast<std::size_t>(element_count(length, rule, round_up) - 1);

    // Like that of a mesh, the list of sizes has an entry for the first node.
    dense1D<double> sizes;
    if (count == 0 || !line.added_params.resize(count) || !sizes.resize(count + 1)) {
        line.added_params.clear();
        return true;
    }
    new_nodes<target_type> const added{
        .points = line.added_params.data(), .ld = 1, .params = nullptr, .targets = sizes.data()};
    static_cast<void>(
        place_nodes<target_type>(separate_line<target_type>{chain}, last, cum.data(), count, added)); // true
    line.added_sizes = sizes.sub_vector(1, count);
    return true;
}

/// Appends the new nodes to the caller's lists. On false the lists are as they were.
[[nodiscard]] bool publish(subdivision const& line, unsigned first, unsigned last, dense1D<double>& params,
    dense1D<double>& sizes, dense1D<unsigned>& new_indices)
{
    std::size_t const base = params.size();
    std::size_t const added = line.added_params.size();
    if (!can_be_numbered(base + added)) return false;

    auto const params_before = params;
    if (make_room(params, added) && make_room(sizes, added) && make_room(new_indices, added + 2) &&
        append_values(line.added_params, params) && append_values(line.added_sizes, sizes)) {
        new_indices.push_back(first);
        for (std::size_t k = 0; k < added; ++k) new_indices.push_back(static_cast<unsigned>(base + k));
        new_indices.push_back(last);
        return true;
    }
    // If there is room for each list, this can only fail if parameters and sizes are one object.
    params = params_before;
    return false;
}

} // namespace

int subdivide(dense1D<double>& params, dense1D<double>& sizes, dense1D<unsigned> const& indices,
    bool round_up, bool force_even, unsigned min_elements, unsigned max_elements,
    dense1D<unsigned>& new_indices) noexcept
{
    std::size_t const n = indices.size();
    if (n < 2 || !vornik::check_IDs(indices, params.size())) return bad_argument(2);
    if (min_elements == 0 || min_elements > max_elements) return bad_argument(6);
    if (sizes.size() < params.size()) return bad_argument(2);

    subdivision line;
    bool const is_done = gather_values(params, indices, line.chain_params) &&
                         gather_values(sizes, indices, line.chain_sizes) &&
                         subdivide_chain({force_even, min_elements, max_elements}, round_up, line) &&
                         publish(line, indices[0], indices[n - 1], params, sizes, new_indices);
    return is_done ? 0 : no_storage;
}

} // namespace trelk::vornik1d
