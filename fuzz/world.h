#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <vector>

#include <vornik1d/vornik1d.h>

#include "stream.h"

using reals = trelk::dense1D<double>;
using lists = trelk::dense1D<unsigned>;
using matrix = trelk::dense2D<double>;
using connectivity = trelk::dense2D<unsigned>;

/// The containers that calls take their arguments from and leave their results in. Each has a usual part, for
/// which it is made fit in `prepare`, but any of them can be taken for any argument of its type.
struct world
{
    enum real_parts { params, sizes, new_params, new_sizes, result };
    enum list_parts { chain, new_chain, colors, hard_nodes, hard_edges };
    enum matrix_parts { coords, metrics, new_metrics, directions };
    enum connectivity_parts { line, neighbors, new_line };

    std::array<reals, 5> real_lists;
    std::array<lists, 5> node_lists;
    std::array<matrix, 4> matrices;
    std::array<connectivity, 3> meshes;

    /// Makes a line of a few nodes, with targets, parameters and elements that fit to it.
    void prepare(stream& in);

    /// Damages one container, or has it share the storage of another.
    void disturb(stream& in);

    /// Cuts containers back that have grown large.
    void trim();

    /// Whether two containers share storage.
    bool is_entangled() const;

    /// All values and shapes, container by container; those at `left_out` are empty.
    using snapshot = std::vector<std::vector<std::uint64_t>>;
    snapshot take(std::vector<void const*> const& left_out) const;

private:
    std::array<double, 16> own_values_{}; // for views without ownership
    std::array<unsigned, 16> own_nodes_{};

    template <class Self, class Visit>
    static void for_each(Self& self, Visit visit)
    {
        for (auto& c : self.real_lists) visit(c);
        for (auto& c : self.node_lists) visit(c);
        for (auto& c : self.matrices) visit(c);
        for (auto& c : self.meshes) visit(c);
    }
};
