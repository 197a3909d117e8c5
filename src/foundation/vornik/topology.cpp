#include <vornik/toolkit.h>

#include <algorithm>

namespace trelk::vornik {

namespace {

constexpr int no_storage = -199;

/// Numbers the nodes of a connectivity from 0: by their distance from the lowest one, or where that would
/// take far more slots than there are ends of elements, by their rank.
class node_slots
{
public:
    [[nodiscard]] bool build(dense2D<unsigned> const& connect)
    {
        constexpr std::size_t widest = 32; // slots per element
        lowest_ = none;
        unsigned highest = 0;
        for (std::size_t e = 0; e < connect.cols(); ++e) {
            auto const [low, high] = std::minmax(connect(0, e), connect(1, e));
            lowest_ = std::min(lowest_, low);
            highest = std::max(highest, high);
        }
        size_ = std::size_t{highest} - lowest_ + 1;
        if (size_ / widest <= connect.cols()) return true;

        if (!ranked_.resize(2 * connect.cols())) return false;
        for (std::size_t e = 0; e < connect.cols(); ++e)
            std::copy_n(connect.col(e), 2, ranked_.data() + 2 * e);
        std::sort(ranked_.begin(), ranked_.end());
        size_ = static_cast<std::size_t>(std::unique(ranked_.begin(), ranked_.end()) - ranked_.begin());
        return true;
    }

    std::size_t size() const { return size_; }

    std::size_t operator()(unsigned node) const
    {
        if (ranked_.empty()) return node - lowest_;
        auto const* const first = ranked_.begin();
        return static_cast<std::size_t>(std::lower_bound(first, first + size_, node) - first);
    }

private:
    unsigned lowest_ = 0;
    std::size_t size_ = 0;
    dense1D<unsigned> ranked_;
};

unsigned color_of(dense1D<unsigned> const& colors, std::size_t element)
{
    return element < colors.size() ? colors[element] : none;
}

} // namespace

int get_neighbors(dense2D<unsigned> const& connect, element_type, bool, dense2D<unsigned>& neighbors) noexcept
{
    if (connect.empty() || connect.rows() < 2) {
        int const status = connect.empty() ? 0 : -1;
        neighbors.clear();
        return status;
    }
    std::size_t const n = connect.cols();
    node_slots slots;
    dense1D<unsigned> ends;   // at each node, 3 standing for more
    dense1D<unsigned> owners; // the elements of these ends, combined by exclusive or
    dense2D<unsigned> result;
    if (n > none || !slots.build(connect) || !ends.resize(slots.size(), 0) ||
        !owners.resize(slots.size(), 0) || !result.resize(2, n)) {
        neighbors.clear();
        return no_storage;
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
    return 0;
}

int get_colors_boundaries(dense2D<unsigned> const& connect, dense2D<unsigned> const& neighbors,
    dense1D<unsigned> const& colors, element_type, bool, bool, dense2D<unsigned>& boundary) noexcept
{
    dense1D<unsigned> nodes;
    auto const fail = [&](int status) {
        boundary.clear();
        return status;
    };
    if (connect.empty()) return fail(0);
    if (connect.rows() < 2) return fail(-1);
    if (neighbors.rows() != 2 || neighbors.cols() != connect.cols()) return fail(-2);

    for (std::size_t e = 0; e < connect.cols(); ++e)
        for (std::size_t i = 0; i < 2; ++i) {
            unsigned const other = neighbors(1 - i, e);
            if (other == none) continue;
            unsigned const color = color_of(colors, e);
            unsigned const other_color = color_of(colors, other);
            bool const meet = color != other_color && color != none && other_color != none;
            if (meet && !nodes.push_back(connect(i, e))) return fail(no_storage);
        }
    std::sort(nodes.begin(), nodes.end());
    auto const count = static_cast<std::size_t>(std::unique(nodes.begin(), nodes.end()) - nodes.begin());

    dense2D<unsigned> result;
    if (!result.resize(1, count)) return fail(no_storage);
    std::copy_n(nodes.begin(), count, result.data());
    boundary = result;
    return 0;
}

unsigned max_ID(dense1D<unsigned> const& colors) noexcept
{
    unsigned largest = 0;
    for (unsigned const color : colors)
        if (color != none) largest = std::max(largest, color);
    return largest;
}

} // namespace trelk::vornik
