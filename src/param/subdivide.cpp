#include <vornik1d/vornik1d.h>

#include <algorithm>
#include <numeric>

#include <vornik/toolkit.h>

#include "arrays/append.h"
#include "arrays/columns.h"
#include "front_door.h"
#include "placement/place_nodes_iso.h"

namespace trelk::vornik1d {

namespace {

/// The nodes of a chain on the parameter axis, and those to be added.
struct subdivision
{
    dense1D<double> chain_params;
    dense1D<double> chain_sizes;
    dense1D<double> added_params;
    dense1D<double> added_sizes;
};

/// Places nodes along the chain. False without storage for the chain; a lack of storage for the new nodes
/// leaves none.
[[nodiscard]] bool subdivide_chain(
    bool round_up, bool force_even, unsigned min_elements, unsigned max_elements, subdivision& line)
{
    constexpr double any_length = -1;
    std::size_t const n = line.chain_params.size();
    dense2D<double> const points(1, n, line.chain_params.data());
    dense1D<unsigned> chain;
    if (points.empty() || !chain.resize(n)) return false;
    std::iota(chain.begin(), chain.end(), 0U);

    dense2D<double> new_points;
    dense1D<double> no_params;
    place_nodes_iso<1>(points, chain, no_params, line.chain_sizes, any_length, force_even, min_elements,
        max_elements, new_points, line.added_sizes, no_params, 0, round_up);
    line.added_params = new_points.as_vector();
    return true;
}

/// Appends the new nodes to the caller's lists; on false they are as they were.
[[nodiscard]] bool publish(subdivision const& line, unsigned first, unsigned last, dense1D<double>& params,
    dense1D<double>& sizes, dense1D<unsigned>& new_indices)
{
    std::size_t const base = params.size();
    std::size_t const added = line.added_params.size();
    if (!can_be_numbered(base + added)) return false;

    auto const params_before = params;
    auto const sizes_before = sizes;
    auto const indices_before = new_indices;
    if (make_room(params, added) && make_room(sizes, added) && make_room(new_indices, added + 2) &&
        append_values(line.added_params, params) && append_values(line.added_sizes, sizes)) {
        new_indices.push_back(first);
        for (std::size_t k = 0; k < added; ++k) new_indices.push_back(static_cast<unsigned>(base + k));
        new_indices.push_back(last);
        return true;
    }
    params = params_before;
    sizes = sizes_before;
    new_indices = indices_before;
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
                         subdivide_chain(round_up, force_even, min_elements, max_elements, line) &&
                         publish(line, indices[0], indices[n - 1], params, sizes, new_indices);
    return is_done ? 0 : no_storage;
}

} // namespace trelk::vornik1d
