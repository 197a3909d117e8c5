#include <vornik/toolkit.h>

#include <algorithm>

namespace trelk::vornik {

namespace {

unsigned color_of(dense1D<unsigned> const& colors, std::size_t element)
{
    return element < colors.size() ? colors[element] : none;
}

} // namespace

int get_neighbors(dense2D<unsigned> const& connect, element_type, bool, dense2D<unsigned>& neighbors) noexcept
{
    if (!connect.empty() && connect.rows() < 2) {
        neighbors.clear();
        return -1;
    }
    return find_neighbors(connect, neighbors) ? 0 : no_storage;
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
    unsigned result = 0;
    for (unsigned const color : colors)
        if (color != none) result = std::max(result, color);
    return result;
}

} // namespace trelk::vornik
