#pragma once

#include <algorithm>
#include <cstddef>

#include <trelk/dense1D.h>
#include <trelk/dense2D.h>

#include "arrays/append.h"
#include "placement/line.h"
#include "placement/place_nodes_iso.h"

namespace trelk::vornik1d {

/// Targets of a line in N dimensions that are sizes, one number per entry.
template <int N>
struct size_targets
{
    static constexpr int dimension = N;
    static constexpr int gradation_mode = -1; // of the toolkit's rule of growth
    using list = dense1D<double>;

    static list part(list const& sizes, std::size_t first, std::size_t count) noexcept
    {
        return sizes.sub_vector(first, count);
    }

    [[nodiscard]] static bool resize(list& sizes, std::size_t count) noexcept { return sizes.resize(count); }

    /// Fills the empty list with `count` targets that ask for `size`.
    [[nodiscard]] static bool fill(list& sizes, std::size_t count, double size) noexcept
    {
        return sizes.resize(count, size);
    }

    [[nodiscard]] static bool make_room(list& sizes, std::size_t added) noexcept
    {
        return vornik1d::make_room(sizes, added);
    }

    [[nodiscard]] static bool append(list const& source, list& sizes) noexcept
    {
        return append_values(source, sizes);
    }

    static void copy_entry(list const& source, std::size_t i, list& sizes, std::size_t j) noexcept
    {
        sizes[j] = source[i];
    }

    /// Lowers entry k to `limit`; a NaN is no limit.
    static void bound(list& sizes, std::size_t k, double limit) noexcept
    {
        sizes[k] = std::min(sizes[k], limit);
    }

    /// Places nodes along `chain`; the lists of `mesh` get an entry more on either side, for the end nodes.
    static void place(dense2D<double> const& coords, line<size_targets> const& chain,
        element_rule const& rule, dense2D<double>& new_coords, line<size_targets>& mesh)
    {
        // The result is not read: without storage for new nodes there are none.
        place_nodes_iso<N>(coords, chain.nodes, chain.params, chain.targets, 0.0, rule.force_even,
            rule.min_elements, rule.max_elements, new_coords, mesh.targets, mesh.params, 1);
    }
};

} // namespace trelk::vornik1d
