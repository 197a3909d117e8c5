#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>

#include "arrays/vectors.h"
#include "placement/line.h"
#include "placement/overwritten_entries.h"
#include "placement/size_law.h"
#include "rules.h"

// Nodes at equal steps of metric length: a line is measured, and then walked once from start to end.

namespace trelk::vornik1d {

/// Calls `visit(s, length)` with the metric length of each segment s of a line.
template <class Targets, class Line, class Visit>
VORNIK1D_INLINE void for_each_metric_length(Line const& line, Visit visit)
{
    constexpr std::size_t N = Targets::dimension;
    auto near = vector_at<N>(line.point(0));
    for (std::size_t s = 0; s < line.last(); ++s) {
        auto const far = vector_at<N>(line.point(s + 1));
        visit(s, Targets::metric_length(far - near, line.target(s), line.target(s + 1)));
        near = far;
    }
}

/// Sets `cum` to the metric lengths from the first entry of a line to each entry; returns the last one.
template <class Targets, class Line>
double measure(Line const& line, double* cum)
{
    double sum = 0;
    cum[0] = 0;
    for_each_metric_length<Targets>(line, [&](std::size_t s, double length) { cum[s + 1] = sum += length; });
    return sum;
}

/// The number of nodes to place between the ends of a line; 0 if the metric length is NaN.
inline std::uint64_t new_node_count(double metric_length, element_rule const& rule)
{
    return metric_length >= 0 ? element_count(metric_length, rule) - 1 : 0;
}

/// Where new nodes k = 1, 2, ... are written: node k to entry k of each list and to column k - 1 of `points`.
/// There is room. A null list is not written.
template <class Targets>
struct new_nodes
{
    double* points;
    std::size_t ld;
    double* params;
    double* targets;

    double* point(std::size_t k) const { return points + ld * (k - 1); }
    double* target(std::size_t k) const { return targets + Targets::width * k; }
};

/// Reads a line that the new nodes do not overwrite.
template <class Targets>
struct separate_line
{
    line_view<Targets> line;

    entry_view operator[](std::size_t i) const { return {line.point(i), line.params[i], line.target(i)}; }
    bool before_write(std::size_t, std::size_t) const { return true; }
};

/// Reads the line of the pass before, which the new nodes overwrite: node k overwrites entry k.
template <class Targets>
class replaced_line
{
public:
    replaced_line(placed_line<Targets> const& line, overwritten_entries<Targets>& overwritten)
        : line_(line), overwritten_(overwritten)
    {}

    entry_view operator[](std::size_t i) const { return i < written_end_ ? overwritten_[i] : in_place(i); }

    /// Saves what node k overwrites, if it will still be read: the walk reads only entries from `first` on.
    bool before_write(std::size_t k, std::size_t first)
    {
        if (k >= first && k <= line_.last() && !overwritten_.save(k, first, in_place(k))) return false;
        written_end_ = k + 1;
        return true;
    }

private:
    entry_view in_place(std::size_t i) const { return {line_.point(i), line_.params[i], line_.target(i)}; }

    placed_line<Targets> line_;
    overwritten_entries<Targets>& overwritten_;
    std::size_t written_end_ = 0; // entry 0 is the line's first node: nothing replaces it
};

/// Places `count` nodes at equal steps of metric length along a line of entries 0 to `last`; `cum` has the
/// metric lengths up to each entry. False if the targets of a segment that gets a node cannot be used, or if
/// memory runs out.
template <class Targets, class Source>
[[nodiscard]] bool place_nodes(
    Source&& source, std::size_t last, double const* cum, std::size_t count, new_nodes<Targets> const& out)
{
    constexpr std::size_t N = Targets::dimension;
    double const step = cum[last] / static_cast<double>(count + 1);
    typename Targets::segment segment;
    vector<N> a{};
    vector<N> d{};
    double param = 0;
    double param_step = 0;

    std::size_t j = 1; // the first entry whose metric length is at least `goal`
    std::size_t entered = 0;
    for (std::size_t k = 1; k <= count; ++k) {
        double const goal = static_cast<double>(k) * step;
        while (cum[j] < goal && j < last) ++j; // an infinite goal stays on the last segment
        if (entered != j) {
            entered = j;
            entry_view const near = source[j - 1];
            entry_view const far = source[j];
            a = vector_at<N>(near.point);
            d = vector_at<N>(far.point) - a;
            param = near.param;
            param_step = far.param - near.param;
            if (!segment.enter(d, near.target, far.target)) return false;
        }

        // If the metric length is infinite, the fraction is 0, not NaN.
        double const before = cum[j - 1];
        double const t = cum[j] > before ? std::max(0.0, (goal - before) / (cum[j] - before)) : 0;
        double const u = segment.position(t);
        if (!source.before_write(k, j)) return false;
        double* const point = out.point(k);
        for (std::size_t r = 0; r < N; ++r) point[r] = d[r] * u + a[r];
        if (out.params) out.params[k] = param_step * u + param;
        if (out.targets) segment.evaluate(u, out.target(k));
    }
    return true;
}

} // namespace trelk::vornik1d
