#include <vornik1d/vornik1d.h>

#include <cmath>

#include "extrude/extrude.h"

namespace trelk::vornik1d {

namespace {

/// About a centre, counter-clockwise in radians.
struct plane_rotation
{
    static constexpr std::size_t dimension = 2;
    static constexpr int size_argument = 5;

    vector<2> center;
    double angle;

    double path_length(vector<2> const& p) const { return norm(p - center) * std::abs(angle); }

    vector<2> position(vector<2> const& p, double t) const
    {
        auto const d = p - center;
        double const c = std::cos(t * angle);
        double const s = std::sin(t * angle);
        return {d[0] * c - d[1] * s + center[0], d[1] * c + d[0] * s + center[1]};
    }
};

/// About an axis through a centre, by a vector along the axis whose length is the turn in radians.
struct space_rotation
{
    static constexpr std::size_t dimension = 3;
    static constexpr int size_argument = 5;

    vector<3> center;
    vector<3> rotation;

    double path_length(vector<3> const& p) const { return norm(cross(p - center, rotation)); }

    /// Rodrigues' formula: R d = d + a r x d + b r x (r x d).
    vector<3> position(vector<3> const& p, double t) const
    {
        auto const r = t * rotation;
        double const q = dot(r, r);
        double const h = std::sqrt(q);
        double a = 0;   // sin(h) / h
        double b = 0;   // (1 - cos(h)) / h^2
        if (h <= 0.1) { // which loses digits in the differences above, but not in their series
            a = 1 - q / 6 * (1 - q / 20 * (1 - q / 42 * (1 - q / 72 * (1 - q / 110))));
            b = 0.5 - q / 24 * (1 - q / 30 * (1 - q / 56 * (1 - q / 90)));
        } else {
            a = std::sin(h) / h;
            b = (1 - std::cos(h)) * (1 / q);
        }
        auto const d = p - center;
        return center + d + a * cross(r, d) + b * (dot(r, d) * r - q * d);
    }
};

} // namespace

int extrude_rotate(dense2D<double>& coords, vector_fixed<double, 2> const& start_point,
    vector_fixed<double, 2> const& center, double angle, unsigned element_count,
    dense1D<unsigned>& indices) noexcept
{
    if (element_count == 0) return 0;
    return extrude(coords, start_point, plane_rotation{center, angle}, {element_count}, indices);
}

int extrude_rotate(dense2D<double>& coords, vector_fixed<double, 2> const& start_point,
    vector_fixed<double, 2> const& center, double angle, double size_a, double size_b, bool force_even,
    dense1D<unsigned>& indices) noexcept
{
    return extrude(
        coords, start_point, plane_rotation{center, angle}, {0, size_a, size_b, force_even}, indices);
}

int extrude_rotate(dense2D<double>& coords, unsigned start_node, vector_fixed<double, 2> const& center,
    double angle, unsigned element_count, dense1D<unsigned>& indices) noexcept
{
    if (element_count == 0) return 0;
    return extrude(coords, start_node, plane_rotation{center, angle}, {element_count}, indices);
}

int extrude_rotate(dense2D<double>& coords, unsigned start_node, vector_fixed<double, 2> const& center,
    double angle, double size_a, double size_b, bool force_even, dense1D<unsigned>& indices) noexcept
{
    return extrude(
        coords, start_node, plane_rotation{center, angle}, {0, size_a, size_b, force_even}, indices);
}

int extrude_rotate(dense2D<double>& coords, vector_fixed<double, 3> const& start_point,
    vector_fixed<double, 3> const& center, vector_fixed<double, 3> const& rotation, unsigned element_count,
    dense1D<unsigned>& indices) noexcept
{
    if (element_count == 0) return 0;
    return extrude(coords, start_point, space_rotation{center, rotation}, {element_count}, indices);
}

int extrude_rotate(dense2D<double>& coords, vector_fixed<double, 3> const& start_point,
    vector_fixed<double, 3> const& center, vector_fixed<double, 3> const& rotation, double size_a,
    double size_b, bool force_even, dense1D<unsigned>& indices) noexcept
{
    return extrude(
        coords, start_point, space_rotation{center, rotation}, {0, size_a, size_b, force_even}, indices);
}

int extrude_rotate(dense2D<double>& coords, unsigned start_node, vector_fixed<double, 3> const& center,
    vector_fixed<double, 3> const& rotation, unsigned element_count, dense1D<unsigned>& indices) noexcept
{
    if (element_count == 0) return bad_argument(5);
    return extrude(coords, start_node, space_rotation{center, rotation}, {element_count}, indices);
}

int extrude_rotate(dense2D<double>& coords, unsigned start_node, vector_fixed<double, 3> const& center,
    vector_fixed<double, 3> const& rotation, double size_a, double size_b, bool force_even,
    dense1D<unsigned>& indices) noexcept
{
    return extrude(
        coords, start_node, space_rotation{center, rotation}, {0, size_a, size_b, force_even}, indices);
}

} // namespace trelk::vornik1d
