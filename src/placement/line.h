#pragma once

#include <cstddef>
#include <cstdint>
#include <numeric>

#include <trelk/dense1D.h>
#include <trelk/dense2D.h>

#include "arrays/append.h"
#include "arrays/columns.h"

namespace trelk::vornik1d {

/// Stands for no practical limit on a count of elements or nodes: the largest 32-bit number.
constexpr std::uint64_t unlimited = 4294967295;

/// Nodes in the order of travel, with a parameter value and a target for each: a chain that is to be meshed,
/// or the mesh of one. `Targets` tells how the targets are kept and worked on.
template <class Targets>
struct line
{
    dense1D<unsigned> nodes;
    dense1D<double> params;
    typename Targets::list targets;

    std::size_t size() const noexcept { return nodes.size(); }
    std::size_t elements() const noexcept { return size() - 1; }

    /// A view of the entries from `first` on, `count` of them.
    line part(std::size_t first, std::size_t count) const noexcept
    {
        return {nodes.sub_vector(first, count), params.sub_vector(first, count),
            Targets::part(targets, first, count)};
    }

    [[nodiscard]] bool resize(std::size_t count) noexcept
    {
        return nodes.resize(count) && params.resize(count) && Targets::resize(targets, count);
    }

    /// Entry j becomes entry i of `source`.
    void copy_entry(line const& source, std::size_t i, std::size_t j) noexcept
    {
        nodes[j] = source.nodes[i];
        params[j] = source.params[i];
        Targets::copy_entry(source.targets, i, targets, j);
    }

    /// Appends the entries of `other`. False may leave some of them behind.
    [[nodiscard]] bool append(line const& other) noexcept
    {
        return append_values(other.nodes, nodes) && append_values(other.params, params) &&
               Targets::append(other.targets, targets);
    }

    void drop_last() noexcept
    {
        std::size_t const rest = size() - 1;
        truncate(nodes, rest);
        truncate(params, rest);
        truncate(targets, rest);
    }
};

/// Prepares a chain to be worked on: its nodes become columns 0, 1, 2, ... of `work_coords`, and `numbered`
/// is the chain in those numbers, a view of its parameters and targets.
template <class Targets>
[[nodiscard]] bool gather_chain(dense2D<double> const& coords, line<Targets> const& chain,
    dense2D<double>& work_coords, line<Targets>& numbered) noexcept
{
    numbered.params = chain.params;
    numbered.targets = chain.targets;
    if (!gather_columns(coords, chain.nodes, work_coords) || !numbered.nodes.resize(chain.size()))
        return false;
    std::iota(numbered.nodes.begin(), numbered.nodes.end(), 0U);
    return true;
}

/// Into how many elements a line is to be cut.
struct element_rule
{
    bool force_even;
    std::uint64_t min_elements;
    std::uint64_t max_elements;
};

/// Places nodes along `chain`. `new_coords` is replaced, and `mesh`: the parameters and targets of the new
/// nodes between those of the chain's ends. Its node numbers are for the caller to set. False without storage
/// for the mesh; a lack of storage within the placement leaves a single element.
template <class Targets>
[[nodiscard]] bool place_between_ends(dense2D<double> const& coords, line<Targets> const& chain,
    element_rule const& rule, dense2D<double>& new_coords, line<Targets>& mesh)
{
    Targets::place(coords, chain, rule, new_coords, mesh);
    std::size_t const added = new_coords.cols();
    if (!mesh.resize(added + 2)) return false;
    mesh.copy_entry(chain, 0, 0);
    mesh.copy_entry(chain, chain.size() - 1, added + 1);
    return true;
}

/// Appends the new nodes to `coords` and numbers the mesh that they belong to: from `first` over them to
/// `last`. False, with `coords` as it was, without storage or numbers for them.
template <class Targets>
[[nodiscard]] bool add_new_nodes(dense2D<double> const& new_coords, unsigned first, unsigned last,
    dense2D<double>& coords, line<Targets>& mesh)
{
    std::size_t const base = coords.cols();
    if (!can_be_numbered(base + new_coords.cols()) || !append_columns(new_coords, coords)) return false;
    mesh.nodes[0] = first;
    std::iota(mesh.nodes.begin() + 1, mesh.nodes.end() - 1, static_cast<unsigned>(base));
    mesh.nodes[mesh.elements()] = last;
    return true;
}

/// Appends a mesh to the caller's lists; on false they are as they were. Also correct when the lists share
/// storage or are one object.
template <class Targets>
[[nodiscard]] bool publish(line<Targets> const& mesh, dense1D<unsigned>& out_indices,
    dense1D<double>& out_params, typename Targets::list& out_targets)
{
    line<Targets> const before{out_indices, out_params, out_targets};
    std::size_t const added = mesh.size();
    if (Targets::make_room(out_targets, added) && make_room(out_indices, added) &&
        make_room(out_params, added) && Targets::append(mesh.targets, out_targets) &&
        append_values(mesh.nodes, out_indices) && append_values(mesh.params, out_params))
        return true;

    out_indices = before.nodes;
    out_params = before.params;
    out_targets = before.targets;
    return false;
}

} // namespace trelk::vornik1d
