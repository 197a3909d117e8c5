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
#include "placement/overwritten_entries.h"
#include "placement/place_nodes.h"
#include "rules.h"

namespace trelk::vornik1d {

/// What a placement writes beside the points of new nodes.
struct wanted_values
{
    bool params = true;
    bool targets = true;
};

/// Places nodes in passes, each along the line that the pass before has left, straight where they will stay: in
/// the columns after the last one of `coords`, which count when somebody takes them in, and in the lists of a
/// mesh. All lines of a call share its tables.
template <class Targets>
class node_placer
{
public:
    static constexpr std::size_t N = Targets::dimension;

    node_placer(dense2D<double>& coords, line_mesh<Targets>& mesh) : coords_(coords), mesh_(mesh) {}

    /// Tells how many columns `coords` is foreseen to have in the end.
    void expect_columns(std::size_t columns) { expected_columns_ = columns; }

    /// Takes up another line. Its mesh begins at entry `at` of the lists.
    void begin(std::size_t at)
    {
        at_ = at;
        count_ = planned_ = 0;
    }

    /// Measures a line of entries 0 to `last` by `fill(cum)`, which sets the metric lengths up to each entry, and
    /// plans its nodes. False without memory, or where 32-bit numbers cannot name them after the columns of
    /// `coords`.
    template <class Fill>
    [[nodiscard]] bool plan(std::size_t last, element_rule const& rule, Fill fill)
    {
        double* const cum = table(last + 1);
        if (!cum) return false;
        std::uint64_t const planned = new_node_count(fill(cum), rule);
        planned_ = static_cast<std::size_t>(planned);
        return planned <= unlimited && can_be_numbered(coords_.cols() + planned_);
    }

    std::size_t planned() const { return planned_; }

    /// Places the planned nodes along `line`, whose columns may be those of `coords`. Where there is no storage for
    /// their values, or where targets cannot be used, there are none. Returns 0, or `no_storage` where `coords`
    /// cannot grow.
    int place(line_view<Targets> const& line, wanted_values wanted)
    {
        return run(wanted, [&](new_nodes<Targets> const& out) {
            separate_line<Targets> const source{line.nodes ? line.over(coords_) : line};
            return place_nodes<Targets>(source, line.last(), metric_lengths_.data(), planned_, out);
        });
    }

    /// The same along the nodes of the pass before, from `first` to `end`, which the new ones replace.
    int replace(vector<N> const& first_point, vector<N> const& last_point, wanted_values wanted)
    {
        return run(wanted, [&](new_nodes<Targets> const& out) {
            replaced_line<Targets> source(placed(first_point, last_point), overwritten_);
            return place_nodes<Targets>(source, count_ + 1, metric_lengths_.data(), planned_, out);
        });
    }

    /// New nodes of the latest pass.
    std::size_t count() const { return count_; }

    /// The line from `first` over the new nodes to `end`.
    placed_line<Targets> placed(vector<N> const& first_point, vector<N> const& last_point) const
    {
        return {first_point, last_point, points(), coords_.ld(), params(), targets(), count_};
    }

    /// Gives the ends of the new line the parameters and targets of the old one's. False without storage.
    [[nodiscard]] bool set_ends(line_view<Targets> const& line, wanted_values wanted)
    {
        if (!reserve_values(count_, wanted)) return false;
        if (wanted.params) params()[0] = line.params[0], params()[count_ + 1] = line.params[line.last()];
        if (wanted.targets) {
            Targets::copy(line.target(0), targets());
            Targets::copy(line.target(line.last()), targets() + Targets::width * (count_ + 1));
        }
        return true;
    }

    /// Counts the new nodes in: they join the nodes of the mesh between `first`, with which these end unless there are
    /// none, and `last`. False without storage.
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

    /// The new nodes' points, and the parameters and targets of the line in work from its first node on.
    double* points() const { return coords_.col(coords_.cols()); }
    double* params() const { return mesh_.params.data() + at_; }
    double* targets() const { return mesh_.targets.data() + Targets::width * at_; }

private:
    /// Nodes that the second pass may have more than the first, for which it is not to move everything.
    static std::size_t spare_nodes(std::size_t count) { return count / 64; }

    template <class Walk>
    int run(wanted_values wanted, Walk walk)
    {
        if (planned_ > 0 && reserve_values(planned_, wanted)) {
            if (!reserve_points(planned_)) return no_storage;
            new_nodes<Targets> const out{points(), coords_.ld(), wanted.params ? params() : nullptr,
                wanted.targets ? targets() : nullptr};
            if (!walk(out)) planned_ = 0;
        } else
            planned_ = 0;
        count_ = planned_;
        return 0;
    }

    /// Makes room in the lists for `count` nodes between two ends.
    [[nodiscard]] bool reserve_values(std::size_t count, wanted_values wanted)
    {
        std::size_t const needed = at_ + count + 2;
        std::size_t const generous = needed + spare_nodes(count);
        return (!wanted.params || mesh_.params.reserve(generous, 2) || mesh_.params.reserve(needed, 2)) &&
               (!wanted.targets || Targets::reserve(mesh_.targets, generous) ||
                   Targets::reserve(mesh_.targets, needed)) &&
               (!wanted.params || mesh_.params.resize(needed)) &&
               (!wanted.targets || Targets::resize(mesh_.targets, needed));
    }

    /// Makes room for `count` columns in work; those that are there stay.
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

    /// Room for the metric lengths of a line's entries; null without storage. What stood there goes.
    double* table(std::size_t entries)
    {
        std::size_t const room = metric_lengths_.room();
        if (room < entries) {
            metric_lengths_ = {}; // first, so that the two do not stand side by side
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
    std::size_t at_ = 0;
    std::size_t count_ = 0;
    std::size_t planned_ = 0;
};

} // namespace trelk::vornik1d
