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

/// True when 32-bit node numbers, of which the largest one means "none", can name `count` nodes.
constexpr bool can_be_numbered(std::size_t count) noexcept { return count <= unlimited; }

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

/// How a chain is to be cut into elements. `deviation_tolerance` is cleaned: no NaN, no largest double.
struct span_rule
{
    bool force_even;
    std::uint64_t min_elements;
    std::uint64_t max_elements;
    double deviation_tolerance;
    double min_size;
};

} // namespace trelk::vornik1d
