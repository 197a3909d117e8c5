#include "remesh/hbuckets_set.h"

#include <algorithm>
#include <cmath>
#include <iterator>
#include <utility>

namespace trelk::vornik1d {

namespace {

constexpr std::size_t fewest_buckets = 23;
constexpr std::size_t most_keys_per_bucket = 2; // on average
constexpr std::size_t most_nodes = 4294967294;
constexpr std::size_t longest_link = 2147483647;

} // namespace

std::size_t next_prime_size(std::size_t wanted)
{
    constexpr std::size_t primes[] = {13, 23, 53, 97, 193, 389, 769, 1543, 3079, 6151, 12289, 24593, 49157,
        98317, 196613, 393241, 786433, 1572869, 3145739, 6291469, 12582917, 25165843, 50331653, 100663319,
        201326611, 402653189, 805306457, 1610612741, 3221225473, 4294967291};
    auto const* const at = std::lower_bound(std::begin(primes), std::end(primes), wanted);
    return at != std::end(primes) ? *at : *std::prev(at);
}

bool hbuckets_set::init(std::size_t key_hint, std::size_t bucket_hint) noexcept
{
    buckets_ = std::max(bucket_hint, fewest_buckets);
    auto const m = static_cast<double>(buckets_);
    // The expected share of empty buckets if the keys are random. Empty buckets need nodes in addition to
    // those of the keys. The factor 1.3 is a margin for keys that are not random.
    double const empty = std::exp(static_cast<double>(key_hint) * std::log1p(-1 / m));
    double const spare = std::min(1.3 * empty, 1.0) * m;

    used_ = keys_ = 0;
    bool const can_count = key_hint <= most_nodes && spare <= static_cast<double>(most_nodes - key_hint);
    bool const is_planned = can_count && fit(static_cast<std::size_t>(spare) + key_hint, 0, 1);
    if (!is_planned) buckets_ = fewest_buckets;
    bool const has_heads = fit(buckets_, 0, 1);
    if (has_heads) {
        used_ = buckets_;
        std::fill_n(first(), used_, node{0, 0});
    }
    return is_planned && has_heads;
}

void hbuckets_set::insert(unsigned key) noexcept
{
    bool const is_full = keys_ + 1 > most_keys_per_bucket * buckets_;
    bool const is_stored = (!is_full || rehash(2 * keys_)) && add(key);
    if (!is_stored) is_complete_ = false;
}

unsigned hbuckets_set::insert_range(unsigned const* first_key, unsigned const* last_key) noexcept
{
    auto const added = static_cast<std::size_t>(last_key - first_key);
    bool const is_full = keys_ + added > most_keys_per_bucket * buckets_;
    if (is_full && !rehash(std::max(2 * keys_, keys_ + added))) {
        is_complete_ = false;
        return 0;
    }
    std::size_t const before = keys_;
    for (; first_key != last_key; ++first_key)
        if (!add(*first_key)) is_complete_ = false;
    return static_cast<unsigned>(keys_ - before);
}

bool hbuckets_set::add(unsigned key) noexcept
{
    if (used_ < buckets_) return false; // `init` has failed
    std::size_t at = key % buckets_;
    if (!is_occupied(first()[at])) { // only a head can be unoccupied, and its list is then empty
        first()[at] = {key, 1};
        ++keys_;
        return true;
    }
    for (;;) {
        node const& n = first()[at];
        if (n.key == key) return true;
        if (n.link >> 1 == 0) break;
        at += n.link >> 1;
    }
    std::size_t const distance = used_ - at;
    if (used_ >= most_nodes || distance > longest_link || !fit(used_ + 1, used_, 2)) return false;
    first()[used_++] = {key, 1};
    first()[at].link = static_cast<std::uint32_t>(distance * 2 + 1);
    ++keys_;
    return true;
}

bool hbuckets_set::rehash(std::size_t wanted) noexcept
{
    std::size_t const m = next_prime_size(wanted);
    if (keys_ == 0) return init(0, m);

    hbuckets_set fresh;
    if (!fresh.init(keys_, m)) return false;
    bool all_came = true;
    for_each([&](unsigned key) { all_came = fresh.add(key) && all_came; });
    fresh.is_complete_ = is_complete_ && all_came;
    *this = std::move(fresh);
    return all_came;
}

bool hbuckets_set::contains(unsigned key) const noexcept
{
    if (used_ < buckets_ || buckets_ == 0) return false;
    for (node const* n = first() + key % buckets_;; n += n->link >> 1) {
        if (is_occupied(*n) && n->key == key) return true;
        if (n->link >> 1 == 0) return false;
    }
}

} // namespace trelk::vornik1d
