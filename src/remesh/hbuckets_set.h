#pragma once

#include <cstddef>
#include <cstdint>

#include <trelk/vector_view.h>

namespace trelk::vornik1d {

/// A node of the set: a key, and in `link` whether there is one (bit 0) and how many nodes farther on the
/// next one of the bucket's list stands (the other bits; 0 at its end).
template <class Key, class Link>
struct __hbuckets_node_type
{
    Key key;
    Link link;
};

/// The number of buckets to take where `wanted` are: the next prime of a table in which each is about twice
/// the one before; its last one where there is none.
std::size_t next_prime_size(std::size_t wanted);

/// A set of keys that only grows. Key k is on the list of bucket k modulo `buckets()`. All nodes stand in one
/// block: first the heads of the buckets, which may be unoccupied, then the overflow, in order of creation.
///
/// It is brought to life by `init`. Once a key has been left out for want of storage, `is_complete` is false.
class hbuckets_set : private __vector_view<__hbuckets_node_type<std::uint32_t, std::uint32_t>, 8>
{
public:
    hbuckets_set() noexcept = default;
    hbuckets_set(hbuckets_set&&) noexcept = default; // no copies: they would share the nodes
    hbuckets_set& operator=(hbuckets_set&&) noexcept = default;
    ~hbuckets_set() = default;

    /// Empties the set, with `bucket_hint` buckets, or 23 if that is more, and storage for `key_hint` keys at
    /// `load` keys a bucket. On false it may have fewer buckets, and no room for keys.
    [[nodiscard]] bool init(std::size_t key_hint, std::size_t bucket_hint, double load) noexcept;

    /// Adds a key, if there is storage for it: `is_complete` tells.
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

    /// Calls `visit(key)` for all keys, in the order of their nodes.
    template <class Visit>
    void for_each(Visit visit) const
    {
        for (std::size_t i = 0; i < used_; ++i)
            if (is_occupied(first()[i])) visit(first()[i].key);
    }

private:
    using node = __hbuckets_node_type<std::uint32_t, std::uint32_t>;

    static bool is_occupied(node const& n) { return (n.link & 1) != 0; }

    /// Without a test of the load.
    bool add(unsigned key) noexcept;

    std::size_t used_ = 0;
    std::size_t buckets_ = 0;
    std::size_t keys_ = 0;
    bool is_complete_ = true;
};

} // namespace trelk::vornik1d
