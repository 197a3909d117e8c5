#pragma once

#include <array>
#include <cmath>
#include <string>

/// A section of the NACA four-digit series, in chord lengths: Jacobs, Ward, Pinkerton, The characteristics of
/// 78 related airfoil sections from tests in the variable-density wind tunnel, NACA Report 460, 1933. The
/// last coefficient of the thickness is -0.1036 instead of the report's -0.1015, which closes the trailing
/// edge.
struct naca_section
{
    double camber;
    double camber_position;
    double thickness;

    explicit naca_section(std::string const& digits)
        : camber(0.01 * (digits[0] - '0')), camber_position(0.1 * (digits[1] - '0')),
          thickness(0.01 * std::stod(digits.substr(2)))
    {}

    /// The trailing edge is at angle 0, the leading edge at pi, the trailing edge again at 2 pi. The upper
    /// side comes first. For equal steps of the angle, points are closest near the two edges.
    std::array<double, 2> at(double angle) const
    {
        double const s = std::cos(0.5 * angle);
        double const x = s * s;
        double const half_thickness =
            5.0 * thickness *
            (0.2969 * std::abs(s) + x * (-0.1260 + x * (-0.3516 + x * (0.2843 - x * 0.1036))));
        double const offset = std::copysign(half_thickness, s);

        double const p = camber_position;
        double const q = x < p ? p : 1.0 - p;
        double const mean =
            camber / (q * q) * (x < p ? x * (2.0 * p - x) : 1.0 - 2.0 * p + x * (2.0 * p - x));
        double const slope = std::atan(2.0 * camber / (q * q) * (p - x));
        return {x - offset * std::sin(slope), mean + offset * std::cos(slope)};
    }
};

/// The knot that runs twice around the axis of a torus while it runs three times around the tube.
struct torus_knot
{
    double ring_radius = 0.31;
    double tube_radius = 0.15;

    std::array<double, 3> at(double angle) const
    {
        double const radius = ring_radius + tube_radius * std::cos(3.0 * angle);
        return {radius * std::cos(2.0 * angle), radius * std::sin(2.0 * angle),
            tube_radius * std::sin(3.0 * angle)};
    }
};
