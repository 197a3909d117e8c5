#pragma once

#include <algorithm>
#include <cstddef>

#include <trelk/dense1D.h>
#include <trelk/dense2D.h>

namespace trelk::vornik {

/// The number that means "no element" and "no colour".
constexpr unsigned none = 4294967295;

namespace detail {

/// Numbers the nodes of a connectivity from 0. The number of a node is its distance from the lowest node. If
/// that would need far more numbers than there are element ends, it is the node's rank.
class node_slots
{
public:
    /// `connect` has at least 2 rows and one column. False if memory runs out.
    [[nodiscard]] bool build(dense2D<unsigned> const& connect) noexcept
    {
        constexpr std::size_t most_per_element = 32;
        lowest_ = none;
        unsigned highest = 0;
        for (std::size_t e = 0; e < connect.cols(); ++e) {
            unsigned const* const ends = connect.col(e);
            lowest_ = std::min({lowest_, ends[0], ends[1]});
            highest = std::max({highest, ends[0], ends[1]});
        }
        size_ = std::size_t{highest} - lowest_ + 1;
        return size_ / most_per_element <= connect.cols() || rank(connect);
    }

    std::size_t size() const noexcept { return size_; }

    std::size_t operator()(unsigned node) const noexcept
    {
        if (ranked_.empty()) return node - lowest_;
        unsigned const* const first = ranked_.data();
        return static_cast<std::size_t>(std::lower_bound(first, first + size_, node) - first);
    }

private:
    bool rank(dense2D<unsigned> const& connect) noexcept
    {
        if (!ranked_.resize(2 * connect.cols())) return false;
        unsigned* const first = ranked_.data();
        unsigned* const last = first + ranked_.size();
        for (std::size_t e = 0; e < connect.cols(); ++e) std::copy_n(connect.col(e), 2, first + 2 * e);
        std::sort(first, last);
        size_ = static_cast<std::size_t>(std::unique(first, last) - first);
        return true;
    }

    unsigned lowest_ = 0;
    std::size_t size_ = 0;
    dense1D<unsigned> ranked_; // empty unless nodes are numbered by rank
};

} // namespace detail

/// Finds the neighbours of two-node elements. `connect` has one element per column, with its end nodes in
/// rows 0 and 1. It has at least 2 rows unless it is empty.
///
/// Two element ends are neighbours if no other element end is at their node. An element that begins and ends
/// at one node has no neighbours.
///
/// @param[out] neighbors  is replaced: row 0 of column e is the neighbour of element e at its second node,
///                 row 1 the one at its first node; `none` if there is no neighbour. Empty on false.
/// @return false if memory runs out or there are more elements than 32-bit numbers below `none`.
///
/// Takes linear time in elements and in the range of node numbers. If that range is more than 32 times the
/// number of elements E, takes E log E time instead.
[[nodiscard]] inline bool find_neighbors(
    dense2D<unsigned> const& connect, dense2D<unsigned>& neighbors) noexcept
{
    if (connect.empty()) {
        neighbors.clear();
        return true;
    }
    std::size_t const n = connect.cols();
    detail::node_slots slots;
    dense1D<unsigned> ends;   // their count at each node; 3 means 3 or more
    dense1D<unsigned> owners; // the elements of these ends, combined by exclusive or
    dense2D<unsigned> result;
    if (n > none || !slots.build(connect) || !ends.resize(slots.size(), 0) ||
        !owners.resize(slots.size(), 0) || !result.resize(2, n)) {
        neighbors.clear();
        return false;
    }
    for (std::size_t e = 0; e < n; ++e)
        for (std::size_t i = 0; i < 2; ++i) {
            std::size_t const slot = slots(connect(i, e));
            ends[slot] = std::min(ends[slot] + 1, 3U);
            owners[slot] ^= static_cast<unsigned>(e);
        }
    for (std::size_t e = 0; e < n; ++e)
        for (std::size_t i = 0; i < 2; ++i) {
            std::size_t const slot = slots(connect(i, e));
            bool const is_pair = ends[slot] == 2 && connect(0, e) != connect(1, e);
            result(1 - i, e) = is_pair ? owners[slot] ^ static_cast<unsigned>(e) : none;
        }
    neighbors = result;
    return true;
}

} // namespace trelk::vornik
