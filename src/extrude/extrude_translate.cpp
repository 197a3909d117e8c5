#include <vornik1d/vornik1d.h>

#include "extrude/extrude.h"

namespace trelk::vornik1d {

namespace {

template <std::size_t N>
struct translation
{
    static constexpr std::size_t dimension = N;
    static constexpr int size_argument = 4;

    vector<N> path;

    double path_length(vector<N> const&) const { return norm(path); }
    vector<N> position(vector<N> const& p, double t) const { return p + t * path; }
};

} // namespace

int extrude_translate(dense2D<double>& coords, vector_fixed<double, 2> const& start_point,
    vector_fixed<double, 2> const& path, unsigned element_count, dense1D<unsigned>& indices) noexcept
{
    if (element_count == 0) return 0;
    return extrude(coords, start_point, translation<2>{path}, equal_steps(element_count), indices);
}

int extrude_translate(dense2D<double>& coords, vector_fixed<double, 2> const& start_point,
    vector_fixed<double, 2> const& path, double size_a, double size_b, bool force_even,
    dense1D<unsigned>& indices) noexcept
{
    return extrude(
        coords, start_point, translation<2>{path}, steps_by_sizes(size_a, size_b, force_even), indices);
}

int extrude_translate(dense2D<double>& coords, unsigned start_node, vector_fixed<double, 2> const& path,
    unsigned element_count, dense1D<unsigned>& indices) noexcept
{
    if (element_count == 0) return 0;
    return extrude(coords, start_node, translation<2>{path}, equal_steps(element_count), indices);
}

int extrude_translate(dense2D<double>& coords, unsigned start_node, vector_fixed<double, 2> const& path,
    double size_a, double size_b, bool force_even, dense1D<unsigned>& indices) noexcept
{
    return extrude(
        coords, start_node, translation<2>{path}, steps_by_sizes(size_a, size_b, force_even), indices);
}

int extrude_translate(dense2D<double>& coords, vector_fixed<double, 3> const& start_point,
    vector_fixed<double, 3> const& path, unsigned element_count, dense1D<unsigned>& indices) noexcept
{
    if (element_count == 0) return 0;
    return extrude(coords, start_point, translation<3>{path}, equal_steps(element_count), indices);
}

int extrude_translate(dense2D<double>& coords, vector_fixed<double, 3> const& start_point,
    vector_fixed<double, 3> const& path, double size_a, double size_b, bool force_even,
    dense1D<unsigned>& indices) noexcept
{
    return extrude(
        coords, start_point, translation<3>{path}, steps_by_sizes(size_a, size_b, force_even), indices);
}

int extrude_translate(dense2D<double>& coords, unsigned start_node, vector_fixed<double, 3> const& path,
    unsigned element_count, dense1D<unsigned>& indices) noexcept
{
    if (element_count == 0) return 0;
    return extrude(coords, start_node, translation<3>{path}, equal_steps(element_count), indices);
}

int extrude_translate(dense2D<double>& coords, unsigned start_node, vector_fixed<double, 3> const& path,
    double size_a, double size_b, bool force_even, dense1D<unsigned>& indices) noexcept
{
    return extrude(
        coords, start_node, translation<3>{path}, steps_by_sizes(size_a, size_b, force_even), indices);
}

} // namespace trelk::vornik1d
