#include <vornik1d/vornik1d.h>

#include <cmath>

#include "extrude/extrude.h"

namespace trelk::vornik1d {

namespace {

/// A rotation about a centre, counter-clockwise, by an angle in radians.
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

/// A rotation about an axis through a centre. The vector `rotation` points along the axis; its length is the
/// angle in radians.
struct space_rotation
{
    static constexpr std::size_t dimension = 3;
    static constexpr int size_argument = 5;

    vector<3> center;
    vector<3> rotation;

    double path_length(vector<3> const& p) const { return norm(cross(p - center, rotation)); }

    /// Rodrigues' formula: R = I + a K + b K^2, where K v = r x v.
    vector<3> position(vector<3> const& p, double t) const
    {
        auto const r = t * rotation;
        double const q = dot(r, r);
        double const h = std::sqrt(q);
        double a = 0;   // sin(h) / h
        double b = 0;   // (1 - cos(h)) / h^2
        if (h <= 0.1) { // series, since the closed forms lose digits here
            a = 1 - q / 6 + q * q / 120 - q * q * q / 5040 + q * q * q * q / 362880 -
                q * q * q * q * q / 39916800;
            b = 0.5 - q / 24 + q * q / 720 - q * q * q / 40320 + q * q * q * q / 3628800;
        } else {
            a = std::sin(h) / h;
            b = (1 - std::cos(h)) * (1 / q);
        }
        vector<3> const skew[3] = {{0, -r[2], r[1]}, {r[2], 0, -r[0]}, {-r[1], r[0], 0}};
        auto const d = p - center;
        auto result = center;
        for (std::size_t i = 0; i < 3; ++i) {
            vector<3> row;
            for (std::size_t j = 0; j < 3; ++j)
                row[j] = (i == j ? 1.0 : 0.0) + a * skew[i][j] + b * (r[i] * r[j] - (i == j ? q : 0.0));
            result[i] += dot(row, d);
        }
        return result;
    }
};

} // namespace

int extrude_rotate(dense2D<double>& coords, vector_fixed<double, 2> const& start_point,
    vector_fixed<double, 2> const& center, double angle, unsigned element_count,
    dense1D<unsigned>& indices) noexcept
{
    if (element_count == 0) return 0;
    return extrude(coords, start_point, plane_rotation{center, angle}, equal_steps(element_count), indices);
}

int extrude_rotate(dense2D<double>& coords, vector_fixed<double, 2> const& start_point,
    vector_fixed<double, 2> const& center, double angle, double size_a, double size_b, bool force_even,
    dense1D<unsigned>& indices) noexcept
{
    return extrude(coords, start_point, plane_rotation{center, angle},
        steps_by_sizes(size_a, size_b, force_even), indices);
}

int extrude_rotate(dense2D<double>& coords, unsigned start_node, vector_fixed<double, 2> const& center,
    double angle, unsigned element_count, dense1D<unsigned>& indices) noexcept
{
    if (element_count == 0) return 0;
    return extrude(coords, start_node, plane_rotation{center, angle}, equal_steps(element_count), indices);
}

int extrude_rotate(dense2D<double>& coords, unsigned start_node, vector_fixed<double, 2> const& center,
    double angle, double size_a, double size_b, bool force_even, dense1D<unsigned>& indices) noexcept
{
    return extrude(coords, start_node, plane_rotation{center, angle},
        steps_by_sizes(size_a, size_b, force_even), indices);
}

int extrude_rotate(dense2D<double>& coords, vector_fixed<double, 3> const& start_point,
    vector_fixed<double, 3> const& center, vector_fixed<double, 3> const& rotation, unsigned element_count,
    dense1D<unsigned>& indices) noexcept
{
    if (element_count == 0) return 0;
    return extrude(
        coords, start_point, space_rotation{center, rotation}, equal_steps(element_count), indices);
}

int extrude_rotate(dense2D<double>& coords, vector_fixed<double, 3> const& start_point,
    vector_fixed<double, 3> const& center, vector_fixed<double, 3> const& rotation, double size_a,
    double size_b, bool force_even, dense1D<unsigned>& indices) noexcept
{
    return extrude(coords, start_point, space_rotation{center, rotation},
        steps_by_sizes(size_a, size_b, force_even), indices);
}

int extrude_rotate(dense2D<double>& coords, unsigned start_node, vector_fixed<double, 3> const& center,
    vector_fixed<double, 3> const& rotation, unsigned element_count, dense1D<unsigned>& indices) noexcept
{
    if (element_count == 0) return bad_argument(5);
    return extrude(coords, start_node, space_rotation{center, rotation}, equal_steps(element_count), indices);
}

int extrude_rotate(dense2D<double>& coords, unsigned start_node, vector_fixed<double, 3> const& center,
    vector_fixed<double, 3> const& rotation, double size_a, double size_b, bool force_even,
    dense1D<unsigned>& indices) noexcept
{
    return extrude(coords, start_node, space_rotation{center, rotation},
        steps_by_sizes(size_a, size_b, force_even), indices);
}

} // namespace trelk::vornik1d
