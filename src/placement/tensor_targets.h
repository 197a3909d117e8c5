#pragma once

#include <algorithm>
#include <cstddef>

#include <trelk/dense1D.h>
#include <trelk/dense2D.h>
#include <vornik/toolkit.h>

#include "arrays/columns.h"
#include "metric/sizes.h"
#include "metric/tensor.h"
#include "placement/line.h"
#include "placement/place_nodes_aniso.h"

namespace trelk::vornik1d {

/// Targets of a line in N dimensions that are metric tensors, one column per entry.
template <int N>
struct tensor_targets
{
    static constexpr int dimension = N;
    static constexpr int gradation_mode = 0; // of the toolkit's rule of growth
    static constexpr std::size_t rows = packed_rows<N>;
    using list = dense2D<double>;

    static list part(list const& metrics, std::size_t first, std::size_t count) noexcept
    {
        return metrics.sub_matrix(0, first, rows, count);
    }

    [[nodiscard]] static bool resize(list& metrics, std::size_t count) noexcept
    {
        return metrics.resize(rows, count);
    }

    /// Fills the empty list with `count` targets that ask for `size` in every direction.
    [[nodiscard]] static bool fill(list& metrics, std::size_t count, double size) noexcept
    {
        dense1D<double> sizes;
        if (!sizes.resize(count, size)) return false;
        return N == 2 ? vornik::metrics_iso_to_aniso2d(sizes, metrics)
                      : vornik::metrics_iso_to_aniso3d(sizes, metrics);
    }

    [[nodiscard]] static bool make_room(list& metrics, std::size_t added) noexcept
    {
        return metrics.reserve(rows, filled_columns(metrics) + added, 2);
    }

    [[nodiscard]] static bool append(list const& source, list& metrics) noexcept
    {
        return append_columns(source, metrics);
    }

    static void copy_entry(list const& source, std::size_t i, list& metrics, std::size_t j) noexcept
    {
        std::copy_n(source.col(i), rows, metrics.col(j));
    }

    /// Lowers the sizes of entry k to `limit` along its axes; a NaN is no limit. A tensor that cannot be
    /// decomposed stays.
    static void bound(list& metrics, std::size_t k, double limit) noexcept
    {
        auto metric = tensor_at<N>(metrics.col(k));
        vornik::bound_metric(metric, limit, largest);
        std::copy_n(metric.values, rows, metrics.col(k));
    }

    /// Places nodes along `chain`; the lists of `mesh` get an entry more on either side, for the end nodes.
    static void place(dense2D<double> const& coords, line<tensor_targets> const& chain,
        element_rule const& rule, dense2D<double>& new_coords, line<tensor_targets>& mesh)
    {
        // The result is not read: without storage for new nodes, or with tensors that cannot be reduced,
        // there are none.
        place_nodes_aniso<N>(coords, chain.nodes, chain.params, chain.targets, 0.0, rule.force_even,
            rule.min_elements, rule.max_elements, new_coords, mesh.targets, mesh.params, 1);
    }
};

} // namespace trelk::vornik1d
