#pragma once

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>

#include <trelk/dense1D.h>
#include <trelk/dense2D.h>

#include "front_door.h"
#include "line/columns.h"
#include "line/line.h"
#include "line/mesh_span.h"
#include "placement/vectors.h"

namespace trelk::vornik1d {

/// How far the interior nodes of a chain lie from its mesh.
struct deviation_scan
{
    double largest = 0;
    double mean = 0;
    double threshold = 0; // the tolerance and one rounding unit at the size of the coordinates
    std::size_t split =
        0; // the chain entry with the largest weighted deviation; the last one if none has any
};

/// Length of the cross product of u and w: twice the area of their triangle.
inline double cross_length(vector_fixed<double, 2> const& u, vector_fixed<double, 2> const& w)
{
    return std::abs(u[0] * w[1] - u[1] * w[0]);
}

inline double cross_length(vector_fixed<double, 3> const& u, vector_fixed<double, 3> const& w)
{
    double const x = u[1] * w[2] - u[2] * w[1];
    double const y = u[2] * w[0] - u[0] * w[2];
    double const z = u[0] * w[1] - u[1] * w[0];
    return norm(vector_fixed<double, 3>{x, y, z});
}

/// Distance of p from the infinite line through a and b; 0 where a and b are one point.
template <int N>
double distance_from_line(double const* p, double const* a, double const* b)
{
    auto const u = edge_vector<N>(a, b);
    double const area = cross_length(u, edge_vector<N>(a, p));
    double const length = norm(u);
    return length > 0 ? area / length : area;
}

/// Measures the distance of each interior chain node from the mesh element that covers its parameter value:
/// chain and mesh are paired by parameter, not by nearest distance.
template <class Targets>
deviation_scan scan_deviation(dense2D<double> const& coords, line<Targets> const& chain,
    line<Targets> const& mesh, double deviation_tolerance)
{
    std::size_t const n = chain.size();
    double const first_param = chain.params[0];
    double const r = 1 / (chain.params[n - 1] - first_param);
    double const* const mesh_params = mesh.params.begin();
    double const* const last_mesh_param = mesh.params.end() - 1;
    double const* cursor = mesh_params;

    deviation_scan scan;
    scan.split = n - 1;
    double sum = 0;
    double best_weighted = 0;
    double magnitude = 0;
    for (std::size_t i = 1; i + 1 < n; ++i) {
        double const* const point = coords.col(chain.nodes[i]);
        double const param = chain.params[i];

        // Where no mesh node is at or above the value, beyond arithmetic, the last one stands for it.
        cursor = std::min(std::lower_bound(cursor, last_mesh_param + 1, param), last_mesh_param);
        auto const k = static_cast<std::size_t>(cursor - mesh_params);
        unsigned const b = mesh.nodes[k];
        unsigned const a = k > 0 ? mesh.nodes[k - 1] : b;
        double const distance = distance_from_line<Targets::dimension>(point, coords.col(a), coords.col(b));

        scan.largest = std::max(scan.largest, distance);
        sum += distance;
        for (std::size_t j = 0; j < Targets::dimension; ++j)
            magnitude = std::max(magnitude, std::abs(point[j]));

        // 1 at the ends of the parameter range, 2 in the middle: favours a split near the middle.
        double const t = (param - first_param) * r;
        double const weighted = ((1 - t) * t * 4 + 1) * distance;
        if (weighted > best_weighted) best_weighted = weighted, scan.split = i;
    }
    if (n > 2) scan.mean = sum / static_cast<double>(n - 2);
    scan.threshold = magnitude * 2.220446049250313e-16 + deviation_tolerance;
    return scan;
}

/// A range of the chain, both ends included, that is to be meshed with at least `min_elements`.
struct span_task
{
    std::size_t first;
    std::size_t last;
    std::uint64_t min_elements = 1;

    // Of a range that is meshed again as a whole: the nodes of the mesh that it replaces, the least of the
    // largest deviations of its meshes so far, and how many have hardly lowered that.
    std::size_t replaced = 0;
    double least_deviation = 0;
    unsigned stalled = 0;
};

/// Where a deviation does not answer to more elements (parameters that repeat, a detour between chain nodes), a
/// range is meshed again as a whole so often without bringing it nearer to the threshold by the share below, and
/// then cut. One element more brings it there in one step where the deviation is that of chords of a curve.
constexpr unsigned most_stalled_remeshings = 1000;
constexpr double least_gain = 1e-3;

/// What is to be done about the mesh of a range: nothing, meshing the range again as a whole, or cutting it
/// at `split` into two.
struct remedy
{
    enum class kind { none, remesh, cut };

    kind what = kind::none;
    std::size_t split = 0; // counted from the range's first entry
    span_task again{};     // for `remesh`
};

/// `nodes` is the node count of the mesh that `task` has led to.
inline remedy decide(deviation_scan const& scan, span_task const& task, std::size_t nodes, bool force_even)
{
    bool const is_odd = nodes % 2 == 0; // of the element count
    if (!(scan.largest >= scan.threshold) && !(force_even && is_odd)) return {};

    // A whole-chain remeshing that brings no more nodes would bring them again and again.
    if (task.replaced > 0 && nodes <= task.replaced) return {};

    // More elements shorten all of them by a ratio; a chord's deviation goes with the square of its length.
    std::size_t const target = force_even && !is_odd ? nodes + 1 : nodes;
    double const ratio = static_cast<double>(nodes - 1) / static_cast<double>(target);
    bool const is_spread = scan.mean > 0.5 * scan.largest && ratio * ratio * scan.largest < scan.threshold;

    span_task again{task.first, task.last, is_spread ? target : 1, nodes, scan.largest, 0};
    if (task.replaced > 0) {
        double const excess = task.least_deviation - scan.threshold;
        bool const has_gained = task.least_deviation - scan.largest >= least_gain * excess;
        again.least_deviation = std::min(task.least_deviation, scan.largest);
        again.stalled = task.stalled + (has_gained ? 0 : 1);
    }

    bool const can_be_cut = scan.split < task.last - task.first;
    bool const is_stalled = again.stalled >= most_stalled_remeshings;
    if (can_be_cut && (!is_spread || is_stalled)) return {remedy::kind::cut, scan.split, {}};
    if (is_stalled) return {};
    return {remedy::kind::remesh, 0, again};
}

/// Meshes a chain anew where its mesh strays from its interior nodes by `rule.deviation_tolerance` or more,
/// and examines the new meshes in the same way.
///
/// `mesh` is the mesh under examination; its new nodes stand in `coords` from column `base_columns` on. Where
/// it does not stand, `mesh` and those columns are replaced. The element limits of `rule` do not count here.
///
/// The work is a list of ranges, taken from left to right, so that neither the stack nor the memory grows
/// with the number of cuts in a row. The result is 0, or `no_storage` with new nodes in `coords` that belong
/// to no mesh.
template <class Targets>
int refine_span(dense2D<double>& coords, line<Targets> const& chain, span_rule rule, std::size_t base_columns,
    line<Targets>& mesh)
{
    constexpr int N = Targets::dimension;
    rule.min_elements = 1;
    rule.max_elements = unlimited;

    dense1D<span_task> pending; // the leftmost range is the last entry
    auto const schedule = [&pending](span_task const& task, remedy const& cure) {
        if (cure.what == remedy::kind::remesh) return pending.push_back(cure.again);
        std::size_t const split = task.first + cure.split;
        return pending.push_back({split, task.last}) && pending.push_back({task.first, split});
    };
    auto const examine = [&](dense2D<double> const& nodes, line<Targets> const& range, span_task const& task,
                             line<Targets> const& its_mesh) -> remedy {
        auto const scan = scan_deviation(nodes, range, its_mesh, rule.deviation_tolerance);
        return decide(scan, task, its_mesh.size(), rule.force_even);
    };

    std::size_t const n = chain.size();
    span_task const whole{0, n - 1};
    remedy const first_cure = examine(coords, chain, whole, mesh);
    if (first_cure.what == remedy::kind::none) return 0;

    // Columns 0 to n - 1 hold the chain's nodes, those behind them the nodes of the meshes that stand.
    dense2D<double> work_coords;
    line<Targets> numbered{{}, chain.params, chain.targets};
    if (!gather_columns(coords, chain.nodes, work_coords) || !count_from(0, n, numbered.nodes) ||
        !schedule(whole, first_cure))
        return no_storage;

    line<Targets> refined;
    line<Targets> range_mesh;
    while (!pending.empty()) {
        span_task const task = pending[pending.size() - 1];
        static_cast<void>(pending.resize(pending.size() - 1)); // cutting cannot fail

        auto const range = numbered.part(task.first, task.last - task.first + 1);
        std::size_t const mark = work_coords.cols();
        rule.min_elements = task.min_elements;
        if (mesh_span(work_coords, range, rule, range_mesh) != 0) return no_storage;

        remedy cure;
        if (range_mesh.size() - 1 < unlimited) cure = examine(work_coords, range, task, range_mesh);
        if (cure.what == remedy::kind::none) {
            if (refined.size() > 0) refined.drop_last(); // it is the first node of this mesh too
            if (!refined.append(range_mesh)) return no_storage;
        } else if (!work_coords.resize(N, mark) || !schedule(task, cure))
            return no_storage;
    }

    for (unsigned& node : refined.nodes)
        node = node < n ? chain.nodes[node] : static_cast<unsigned>(base_columns + (node - n));
    mesh = refined;
    auto const new_columns = work_coords.sub_matrix(0, n, N, work_coords.cols() - n);
    bool const is_done = can_be_numbered(base_columns + new_columns.cols()) &&
                         coords.resize(N, base_columns) && append_columns(new_columns, coords);
    return is_done ? 0 : no_storage;
}

} // namespace trelk::vornik1d
