#pragma once

#include <trelk/dense1D.h>
#include <trelk/dense2D.h>

#include "line/curvature_limit.h"
#include "line/line.h"
#include "placement/append.h"
#include "placement/place_nodes_iso.h"

namespace trelk::vornik1d {

/// Targets of a line that are sizes, one number per entry.
struct size_targets
{
    using list = dense1D<double>;

    static std::size_t size(list const& sizes) noexcept { return sizes.size(); }

    static list part(list const& sizes, std::size_t first, std::size_t count) noexcept
    {
        return sizes.sub_vector(first, count);
    }

    [[nodiscard]] static bool reserve(list& sizes, std::size_t count) noexcept
    {
        return sizes.reserve(count);
    }

    static void cut(list& sizes, std::size_t count) noexcept
    {
        static_cast<void>(sizes.resize(count)); // to fewer: cannot fail
    }

    [[nodiscard]] static bool append(list const& source, list& sizes) noexcept
    {
        return append_values(source, sizes);
    }

    template <int N>
    static void limit_by_curvature(
        dense2D<double> const& coords, line<size_targets>& chain, span_rule const& rule)
    {
        // Without storage for the curvatures the sizes stay as they are.
        static_cast<void>(limit_sizes_by_curvature(
            coords, chain.nodes, chain.targets, rule.deviation_tolerance, rule.min_size));
    }

    template <int N>
    static void place(dense2D<double> const& coords, line<size_targets> const& chain, span_rule const& rule,
        dense2D<double>& new_coords, list& new_sizes, dense1D<double>& new_params)
    {
        place_nodes_iso<N>(coords, chain.nodes, chain.params, chain.targets, 0.0, rule.force_even,
            rule.min_elements, rule.max_elements, new_coords, new_sizes, new_params);
    }
};

} // namespace trelk::vornik1d
