#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>

#include <trelk/dense1D.h>
#include <trelk/dense2D.h>

#include "arrays/append.h"
#include "arrays/vectors.h"
#include "front_door.h"
#include "placement/size_law.h"
#include "special_values.h"

// One extrusion for all motions. A motion in N dimensions has these members, for a node at p:
//
//     motion.path_length(p)     length of the node's path
//     motion.position(p, t)     position of the node at fraction t of the path
//     Motion::dimension         N
//     Motion::size_argument     position of `size_a` among the arguments of the exported function

namespace trelk::vornik1d {

/// The number of steps of an extrusion, or the sizes that determine it.
struct extrusion_steps
{
    unsigned element_count = 0; // 0: determined by the sizes
    double size_a = 0;
    double size_b = 0;
    bool force_even = false;
};

inline extrusion_steps equal_steps(unsigned element_count) { return {.element_count = element_count}; }

inline extrusion_steps steps_by_sizes(double size_a, double size_b, bool force_even)
{
    return {.size_a = size_a, .size_b = size_b, .force_even = force_even};
}

/// Appends the nodes on the path of `start_node` to `coords`, and the line that starts at that node to
/// `indices`. Returns the status of the exported function. On a failure nothing has changed.
template <class Motion>
int extrude(dense2D<double>& coords, unsigned start_node, Motion const& motion, extrusion_steps const& steps,
    dense1D<unsigned>& indices)
{
    constexpr std::size_t N = Motion::dimension;
    if (coords.rows() != N) return bad_argument(1);
    if (start_node >= coords.cols()) return bad_argument(2);
    auto const start = vector_at<N>(coords.col(start_node));

    std::uint64_t n = steps.element_count;
    if (n == 0) {
        double const length = motion.path_length(start);
        if (length == 0) return bad_argument(3);
        if (!(steps.size_a > 0)) return bad_argument(Motion::size_argument);
        if (!(steps.size_b > 0)) return bad_argument(Motion::size_argument + 1);
        double const metric_length = mean_inverse_size(steps.size_a, steps.size_b) * length;
        n = std::max<std::uint64_t>(round_to_multiple(metric_length, steps.force_even ? 2 : 1), 1);
    }
    std::size_t const base = coords.cols();
    if (!can_be_numbered(n) || !can_be_numbered(base + n) || !coords.reserve(N, base + n) ||
        !indices.reserve(indices.size() + 1 + n))
        return no_storage;

    size_law const law = steps.element_count == 0 ? size_law(steps.size_a, steps.size_b) : size_law(1, 1);
    double const reciprocal = 1 / static_cast<double>(n);
    indices.push_back(start_node);
    for (std::uint64_t k = 1; k <= n; ++k) {
        // The last node is at 1, but n times the reciprocal of n may differ from 1.
        double const t = k < n ? law.position(static_cast<double>(k) * reciprocal) : 1;
        static_cast<void>(append_point(motion.position(start, t), coords)); // there is room
        indices.push_back(static_cast<unsigned>(base + k - 1));
    }
    return 0;
}

/// The same from a new node at `start`, which is appended to `coords` before the others. An empty `coords`
/// gets the row count of the motion.
template <class Motion>
int extrude(dense2D<double>& coords, vector<Motion::dimension> start, Motion const& motion,
    extrusion_steps const& steps, dense1D<unsigned>& indices)
{
    if (!coords.empty() && coords.rows() != Motion::dimension) return bad_argument(1);
    std::size_t const base = filled_columns(coords);
    if (!can_be_numbered(base + 1 + steps.element_count)) return no_storage;

    dense2D<double> const before = coords;
    bool const has_start =
        coords.reserve(Motion::dimension, base + 1 + steps.element_count) && append_point(start, coords);
    int const status =
        has_start ? extrude(coords, static_cast<unsigned>(base), motion, steps, indices) : no_storage;
    if (status < 0) coords = before;
    return status;
}

} // namespace trelk::vornik1d
