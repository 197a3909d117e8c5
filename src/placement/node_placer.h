#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <numeric>

#include <trelk/dense1D.h>
#include <trelk/dense2D.h>
#include <vornik1d/vornik1d.h>

#include "arrays/append.h"
#include "placement/line.h"
#include "placement/line_mesh.h"
#include "placement/overwritten_entries.h"
#include "placement/place_nodes.h"
#include "rules.h"
#include "special_values.h"

namespace trelk::vornik1d {

/// What a placement writes in addition to the points of new nodes.
struct wanted_values
{
    bool params = true;
    bool targets = true;
};

/// The workspace that places nodes. The first pass places them along a line; each later pass places them
/// along the result of the pass before and replaces it.
///
/// The nodes are written to their final place: the columns after the last one of `coords`, and the lists of a
/// mesh. `accept` makes them columns of `coords`. The memory is reused from line to line.
template <class Targets>
class node_placer
{
public:
    static constexpr std::size_t N = Targets::dimension;

    node_placer(dense2D<double>& coords, line_mesh<Targets>& mesh) : coords_(coords), mesh_(mesh) {}

    /// Sets how many columns `coords` is expected to have in the end.
    void expect_columns(std::size_t columns) { expected_columns_ = columns; }

    /// Starts another line. Its parameters and targets start at entry `first_value` of the lists.
    void start_line(std::size_t first_value)
    {
        first_value_ = first_value;
        count_ = planned_ = 0;
    }

    /// Measures a line of entries 0 to `last` and plans its nodes. `fill(cum)` sets the metric length up to
    /// each entry and returns that of the line. False if memory runs out, or if the columns of `coords` and
    /// the new nodes exceed 32-bit numbers.
    template <class Fill>
    [[nodiscard]] bool plan(std::size_t last, element_rule const& rule, Fill fill)
    {
        double* const cum = table(last + 1);
        if (!cum) return false;
        std::uint64_t const planned = new_node_count(fill(cum), rule);
        planned_ = static_cast<std::size_t>(planned);
        return can_be_numbered(planned) && can_be_numbered(coords_.cols() + planned_);
    }

    std::size_t planned() const { return planned_; }

    /// Places the planned nodes along `line`. If it has node numbers, they are columns of `coords`. No nodes
    /// are placed if memory for their values runs out or targets cannot be used. Returns 0, or `no_storage`
    /// if `coords` cannot grow.
    int place(line_view<Targets> const& line, wanted_values wanted)
    {
        return run(wanted, [&](new_nodes<Targets> const& out) {
            separate_line<Targets> const source{line.nodes ? line.over(coords_) : line};
            return place_nodes<Targets>(source, line.last(), metric_lengths_.data(), planned_, out);
        });
    }

    /// The same along the line from `first_point` over the nodes of the pass before to `last_point`. The new
    /// nodes replace the nodes of the pass before.
    int replace(vector<N> const& first_point, vector<N> const& last_point, wanted_values wanted)
    {
        return run(wanted, [&](new_nodes<Targets> const& out) {
            replaced_line<Targets> source(placed(first_point, last_point), overwritten_);
            return place_nodes<Targets>(source, count_ + 1, metric_lengths_.data(), planned_, out);
        });
    }

    /// The number of new nodes of the latest pass.
    std::size_t count() const { return count_; }

    /// The line from `first_point` over the new nodes to `last_point`.
    placed_line<Targets> placed(vector<N> const& first_point, vector<N> const& last_point) const
    {
        return {.first_point = first_point,
            .last_point = last_point,
            .points = points(),
            .ld = coords_.ld(),
            .params = params(),
            .targets = targets(),
            .new_nodes = count_};
    }

    /// Copies the parameters, if any, and targets of the ends of `line` to the ends of the new line. False if
    /// memory runs out.
    [[nodiscard]] bool set_ends(line_view<Targets> const& line, wanted_values wanted)
    {
        if (!reserve_values(count_, wanted)) return false;
        double const* const ends = line.params;
        if (wanted.params && ends) params()[0] = ends[0], params()[count_ + 1] = ends[line.last()];
        if (wanted.targets) {
            Targets::copy(line.target(0), targets());
            Targets::copy(line.target(line.last()), targets() + Targets::width * (count_ + 1));
        }
        return true;
    }

    /// Makes the new nodes columns of `coords`, and appends them and the node `last` to the mesh. The mesh is
    /// empty or ends with the node `first`. False if memory runs out.
    [[nodiscard]] bool accept(unsigned first, unsigned last)
    {
        dense1D<unsigned>& nodes = mesh_.nodes;
        std::size_t const settled = nodes.size();
        std::size_t const start = settled > 0 ? settled - 1 : 0;
        if (!nodes.reserve(start + count_ + 2, 2) || !nodes.resize(start + count_ + 2)) return false;

        std::size_t const columns = coords_.cols();
        nodes[start] = first;
        std::iota(nodes.begin() + start + 1, nodes.end() - 1, static_cast<unsigned>(columns));
        nodes[nodes.size() - 1] = last;
        return coords_.resize(N, columns + count_); // there is room
    }

    /// The points of the new nodes; the parameters and targets of the current line, its first node included.
    double* points() const { return coords_.col(coords_.cols()); }
    double* params() const { return mesh_.params.data() + first_value_; }
    double* targets() const { return mesh_.targets.data() + Targets::width * first_value_; }

private:
    /// Spare room, since a later pass may place slightly more nodes and should not move everything.
    static std::size_t spare_nodes(std::size_t count) { return count / 64; }

    template <class Walk>
    int run(wanted_values wanted, Walk walk)
    {
        if (planned_ > 0 && reserve_values(planned_, wanted)) {
            if (!reserve_points(planned_)) return no_storage;
            new_nodes<Targets> const out{.points = points(),
                .ld = coords_.ld(),
                .params = wanted.params ? params() : nullptr,
                .targets = wanted.targets ? targets() : nullptr};
            if (!walk(out)) planned_ = 0;
        } else
            planned_ = 0;
        count_ = planned_;
        return 0;
    }

    /// Makes room in the lists for `count` nodes between two ends.
    [[nodiscard]] bool reserve_values(std::size_t count, wanted_values wanted)
    {
        std::size_t const needed = first_value_ + count + 2;
        std::size_t const generous = needed + spare_nodes(count);
        return (!wanted.params || mesh_.params.reserve(generous, 2) || mesh_.params.reserve(needed, 2)) &&
               (!wanted.targets || Targets::reserve(mesh_.targets, generous) ||
                   Targets::reserve(mesh_.targets, needed)) &&
               (!wanted.params || mesh_.params.resize(needed)) &&
               (!wanted.targets || Targets::resize(mesh_.targets, needed));
    }

    /// Makes room for `count` new points. The points of the latest pass are kept.
    [[nodiscard]] bool reserve_points(std::size_t count)
    {
        std::size_t const columns = coords_.cols();
        std::size_t const needed = columns + count;
        static_cast<void>(coords_.resize(N, columns + count_)); // there is room
        bool const has_room =
            reserve_foreseen(coords_, N, needed, std::max(expected_columns_, needed + spare_nodes(count)));
        truncate(coords_, columns);
        return has_room;
    }

    /// Memory for the metric lengths of a line's entries; null if it runs out. Previous values are lost.
    double* table(std::size_t entries)
    {
        std::size_t const room = metric_lengths_.room();
        if (room < entries) {
            metric_lengths_ = {}; // first, so that old and new memory are not held at the same time
            if (!metric_lengths_.reserve(std::max(entries, 2 * room)) && !metric_lengths_.reserve(entries))
                return nullptr;
        }
        return metric_lengths_.data();
    }

    dense2D<double>& coords_;
    line_mesh<Targets>& mesh_;
    dense1D<double> metric_lengths_;
    overwritten_entries<Targets> overwritten_;
    std::size_t expected_columns_ = 0;
    std::size_t first_value_ = 0;
    std::size_t count_ = 0;
    std::size_t planned_ = 0;
};

} // namespace trelk::vornik1d
