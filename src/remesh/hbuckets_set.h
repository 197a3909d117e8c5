#pragma once

#include <cstddef>
#include <cstdint>

#include <trelk/vector_view.h>

namespace trelk::vornik1d {

/// A node of the set. Bit 0 of `link` tells whether the node has a key. The other bits are the distance, in
/// nodes, to the next node of the bucket's list; 0 at the end of the list.
template <class Key, class Link>
struct __hbuckets_node_type
{
    Key key;
    Link link;
};

/// The smallest prime of a table that is at least `wanted`, or the last prime of the table. Each prime of the
/// table is about twice the one before.
std::size_t next_prime_size(std::size_t wanted);

/// A hash set without removal. Key k is on the list of bucket k modulo `buckets()`. All nodes are in one
/// block: first the heads of the buckets, which may be unoccupied, then the overflow, in order of creation.
///
/// Call `init` first. If memory runs out, keys are left out and `is_complete` is false.
class hbuckets_set : private __vector_view<__hbuckets_node_type<std::uint32_t, std::uint32_t>, 8>
{
public:
    hbuckets_set() noexcept = default;
    hbuckets_set(hbuckets_set&&) noexcept = default; // no copies: they would share the nodes
    hbuckets_set& operator=(hbuckets_set&&) noexcept = default;
    ~hbuckets_set() = default;

    /// Empties the set. It gets at least 23 and at least `bucket_hint` buckets, and memory for `key_hint`
    /// keys. On false it may have fewer buckets and no room for keys.
    [[nodiscard]] bool init(std::size_t key_hint, std::size_t bucket_hint) noexcept;

    /// Adds a key. If memory runs out, the key is left out and `is_complete` is false.
    void insert(unsigned key) noexcept;

    /// Adds keys; returns how many were new.
    unsigned insert_range(unsigned const* first, unsigned const* last) noexcept;

    /// Moves the set to `next_prime_size(wanted)` buckets.
    [[nodiscard]] bool rehash(std::size_t wanted) noexcept;

    bool contains(unsigned key) const noexcept;

    bool is_complete() const noexcept { return is_complete_; }
    std::size_t keys() const noexcept { return keys_; }
    std::size_t buckets() const noexcept { return buckets_; }

    /// Nodes in use, heads included.
    std::size_t used() const noexcept { return used_; }

    /// Calls `visit(key)` for each key, in the order of the nodes.
    template <class Visit>
    void for_each(Visit visit) const
    {
        for (std::size_t i = 0; i < used_; ++i)
            if (is_occupied(first()[i])) visit(first()[i].key);
    }

private:
    using node = __hbuckets_node_type<std::uint32_t, std::uint32_t>;

    static bool is_occupied(node const& n) { return (n.link & 1) != 0; }

    /// Adds a key without rehashing. False if memory runs out.
    bool add(unsigned key) noexcept;

    std::size_t used_ = 0;
    std::size_t buckets_ = 0;
    std::size_t keys_ = 0;
    bool is_complete_ = true;
};

} // namespace trelk::vornik1d
