#pragma once

#include <cstddef>
#include <numeric>

#include <trelk/dense2D.h>
#include <vornik1d/vornik1d.h>

#include "arrays/search.h"
#include "arrays/vectors.h"
#include "measure/chain_position.h"
#include "placement/line.h"
#include "placement/line_mesh.h"
#include "placement/node_placer.h"
#include "rules.h"

namespace trelk::vornik1d {

/// Meshes a chain by its targets, in passes. The first pass places nodes along the chain. Each later pass
/// places nodes along the polyline of the pass before, after its nodes have been moved back onto the chain.
/// The passes end when the node count no longer decreases. It can decrease because the polyline cuts the
/// chain's corners and so has a shorter metric length.
///
/// The new nodes are stored after the last column of `coords`; `accept` makes them columns.
template <class Targets>
class range_mesher
{
public:
    static constexpr std::size_t N = Targets::dimension;

    range_mesher(dense2D<double>& coords, line_mesh<Targets>& mesh) : placer_(coords, mesh), coords_(coords)
    {}

    void expect_columns(std::size_t columns) { placer_.expect_columns(columns); }

    /// Meshes `chain`. `segment_lengths` has the metric lengths of its segments, or is null. The wanted
    /// parameters and targets of the mesh start at entry `first_value` of the lists. Returns 0, or
    /// `no_storage` if memory runs out or the nodes exceed 32-bit numbers.
    int run(line_view<Targets> const& chain, double const* segment_lengths, element_rule const& rule,
        std::size_t first_value, wanted_values wanted)
    {
        placer_.start_line(first_value);
        first_point_ = point_of(chain, 0);
        last_point_ = point_of(chain, chain.last());
        bool const is_straight = chain.count == 2; // one pass is exact
        std::size_t previous = no_limit;
        for (std::size_t pass = 0;; ++pass) {
            if (!(pass == 0 ? plan_along(chain, segment_lengths, rule) : plan_along_mesh(rule)))
                return no_storage;

            auto const is_last = [&](std::size_t nodes) {
                return is_straight || chain.count + nodes >= previous || nodes + 1 == rule.min_elements;
            };
            wanted_values const written = is_last(placer_.planned()) ? wanted : wanted_values{};
            int const status = pass == 0 ? placer_.place(chain, written)
                                         : placer_.replace(first_point_, last_point_, written);
            bool const is_done = is_last(placer_.count()); // if memory runs out, none are placed
            if (status != 0 || !placer_.set_ends(chain, is_done ? wanted : wanted_values{}))
                return no_storage;
            if (is_done) return 0;

            // Nodes of the first pass lie on the chain already. Later ones lie on chords of the pass before.
            if (pass > 0) move_back(chain);
            previous = chain.count + placer_.count();
        }
    }

    /// The number of new nodes of the chain meshed last.
    std::size_t count() const { return placer_.count(); }

    [[nodiscard]] bool accept(unsigned first, unsigned last) { return placer_.accept(first, last); }

    /// The mesh of the chain meshed last, with the ends as they are in `coords`.
    placed_line<Targets> mesh_of(line_view<Targets> const& chain) const
    {
        return placer_.placed(point_of(chain, 0), point_of(chain, chain.last()));
    }

private:
    vector<N> point_of(line_view<Targets> const& chain, std::size_t i) const
    {
        return vector_at<N>(coords_.col(chain.node(i)));
    }

    bool plan_along(line_view<Targets> const& chain, double const* segment_lengths, element_rule const& rule)
    {
        return placer_.plan(chain.last(), rule, [&](double* cum) {
            if (!segment_lengths) return measure<Targets>(chain.over(coords_), cum);
            cum[0] = 0;
            std::partial_sum(segment_lengths, segment_lengths + chain.last(), cum + 1);
            return cum[chain.last()];
        });
    }

    bool plan_along_mesh(element_rule const& rule)
    {
        return placer_.plan(placer_.count() + 1, rule,
            [&](double* cum) { return measure<Targets>(placer_.placed(first_point_, last_point_), cum); });
    }

    /// Moves the nodes of a pass, ends included, back onto the chain at their parameters. If rounding has
    /// made the parameters decrease, the nodes stay where they are.
    void move_back(line_view<Targets> const& chain)
    {
        double const* const params = placer_.params();
        std::size_t const count = placer_.count() + 2;
        if (!is_non_decreasing(params, params + count)) return;

        auto const on_coords = chain.over(coords_);
        std::size_t const last = chain.last();
        auto const chain_point = [&](std::size_t i) {
            if (i == 0) return first_point_;
            return i == last ? last_point_ : vector_at<N>(on_coords.point(i));
        };
        double* const points = placer_.points();
        std::size_t const ld = coords_.ld();
        locate_on_chain(chain.params, chain.count, params, count,
            [&](std::size_t k, std::size_t from, std::size_t to, double r) {
                auto const a = chain_point(from);
                auto const b = chain_point(to);
                double* const point = k == 0           ? first_point_.values
                                      : k + 1 == count ? last_point_.values
                                                       : points + ld * (k - 1);
                for (std::size_t i = 0; i < N; ++i) point[i] = (b[i] - a[i]) * r + a[i];
            });
    }

    node_placer<Targets> placer_;
    dense2D<double>& coords_;
    vector<N> first_point_{}; // the ends; `move_back` moves them too
    vector<N> last_point_{};
};

} // namespace trelk::vornik1d
