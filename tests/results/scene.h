#pragma once

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <initializer_list>
#include <limits>
#include <memory>
#include <tuple>
#include <utility>
#include <vector>

#include <trelk/dense1D.h>
#include <trelk/dense2D.h>
#include <trelk/vector_fixed.h>

constexpr unsigned no_limit = 4294967295;
constexpr double largest = std::numeric_limits<double>::max();
constexpr double infinity = std::numeric_limits<double>::infinity();
constexpr double not_a_number = std::numeric_limits<double>::quiet_NaN();

using real_list = trelk::dense1D<double>;
using node_list = trelk::dense1D<unsigned>;
using real_matrix = trelk::dense2D<double>;
using node_matrix = trelk::dense2D<unsigned>;

template <class T>
trelk::dense2D<T> matrix_of(std::size_t rows, std::size_t cols, T value)
{
    trelk::dense2D<T> matrix;
    if (!matrix.resize(rows, cols, value)) std::abort();
    return matrix;
}

/// Pseudo-random numbers that are the same everywhere: splitmix64 (Steele, Lea and Flood, Fast splittable
/// pseudorandom number generators, 2014).
///
/// Two draws in one expression or argument list have no order. Take them in two statements, or in braces.
struct generator
{
    std::uint64_t state; ///< at first the seed

    static constexpr std::uint64_t mix(std::uint64_t z)
    {
        z = (z ^ (z >> 30)) * 0xBF58476D1CE4E5B9U;
        z = (z ^ (z >> 27)) * 0x94D049BB133111EBU;
        return z ^ (z >> 31);
    }

    std::uint64_t next() { return mix(state += 0x9E3779B97F4A7C15U); }

    /// From 0 to below 1.
    double unit() { return static_cast<double>(next() >> 11) * 0x1p-53; }
    double between(double low, double high) { return (high - low) * unit() + low; }
    bool chance(double probability) { return unit() < probability; }

    /// Below `n`; 0 for an `n` of 0.
    std::size_t below(std::size_t n) { return n > 0 ? next() % n : 0; }
    unsigned node(std::size_t n) { return static_cast<unsigned>(below(n)); }

    double pick(std::initializer_list<double> values) { return values.begin()[below(values.size())]; }

    /// Between 2^low and 2^high, spread evenly over the octaves.
    double octaves(int low, int high)
    {
        double const value = 1 + unit();
        return std::ldexp(value, low + static_cast<int>(below(static_cast<std::size_t>(high - low))));
    }
};

/// What the calls of a function are about.
struct subject
{
    std::size_t lines = 1;   ///< at most
    std::size_t nodes = 100; ///< of a line, at least 2 and at most this
    std::size_t rows = 0;    ///< 2 in the plane, 3 in space, 0 for either
    bool is_far = true;      ///< small, large or far from the origin at times
};

/// The lines that a call is about: open and closed ones, with junctions and corners. They come from arithmetic
/// alone, since the last bits of sines and exponentials change with the C library.
struct scene
{
    using point = std::array<double, 3>;

    scene(std::uint64_t seed, subject const& about) : g{seed}
    {
        rows = about.rows > 0 ? about.rows : 2 + g.below(2);
        is_odd = is_bounded = g.chance(0.15);
        double const place = about.is_far ? g.unit() : 1;
        if (place < 0.2) scale = g.octaves(-20, 20);
        if (place > 0.2 && place < 0.24) scale = g.pick({1e-75, 1e-40, 1e40, 1e75});
        target = scale;
        if (place > 0.24 && place < 0.25) scale = 1e-162, is_bounded = true; // squares of lengths underflow
        if (place < 0.35 && g.chance(0.3)) offset = scale * g.octaves(0, 20);

        std::size_t const lines = about.lines > 4 && g.chance(0.05) ? 40 : 1 + g.below(about.lines);
        for (unsigned line = 0; line < lines; ++line) {
            auto const usual = static_cast<std::size_t>(g.pick({2, 14, 14, 14, 60, 60}));
            std::size_t const most = g.chance(0.04) ? about.nodes : std::min(usual, about.nodes);
            add_line(2 + g.below(most - 1), line);
        }
        is_in_step = about.lines == 1 && g.chance(0.06);
        for (std::size_t k = 0; is_in_step && k < points.size(); ++k) points[k].fill(static_cast<double>(k));
        entries = points.size();

        double const turned = g.pick({0, 0, 0.02, 0.3});
        bool const is_mixed = g.chance(0.4);
        if (g.chance(0.1)) elements.push_back(elements[g.below(elements.size())]);
        if (g.chance(0.1)) elements.push_back({elements[0][0], elements[0][0], 0});
        for (auto& element : elements) {
            if (g.chance(turned)) std::swap(element[0], element[1]);
            if (is_mixed) element.swap(elements[g.below(elements.size())]);
        }
    }

    /// A node; at times one more than there are.
    unsigned any_node() { return g.node(points.size() + (g.chance(0.05) ? 1 : 0)); }

    /// A number that is hard on arithmetic.
    double odd(double /*before*/)
    {
        return scale * g.pick({0, -0.0, -1, not_a_number, infinity, -infinity, largest, -largest, 4.9e-324,
                           2.3e-308, 1e300, -1e300, 1e-300, 1e154, 1e-154});
    }
    unsigned odd(unsigned n) { return g.chance(0.3) ? no_limit : g.chance(0.5) ? n + 1 : any_node(); }

    generator g;
    std::size_t rows;
    double scale = 1;  // of positions
    double target = 1; // of sizes
    double offset = 0;
    bool is_odd;           // one of the arguments is to be wrong
    bool is_bounded;       // numbers of elements need a limit
    bool is_in_step;       // the line is straight and even
    bool is_smooth = true; // without spikes, kinks and nodes at one place
    bool is_closed = false;
    std::vector<point> points;
    std::vector<std::array<unsigned, 3>> elements; // two nodes and the line

    // What arguments must know of those before them.
    std::size_t entries;       // of the chain
    std::vector<double> given; // parameters
    unsigned least = 1;
    std::size_t wrong_in = 0;                // so many arguments
    std::vector<std::shared_ptr<void>> kept; // memory that containers do not own

    /// Appends a line of n new nodes. It may begin or end at an old one, or close.
    void add_line(std::size_t n, unsigned number)
    {
        std::size_t const old_nodes = points.size();
        bool const is_ring = n > 2 && g.chance(0.25);
        point origin{g.between(-9, 9), g.between(-9, 9), 0};
        std::vector<unsigned> nodes;
        if (old_nodes > 0 && !is_ring && g.chance(0.4))
            nodes = {g.node(old_nodes)}, origin = points[nodes[0]];
        for (point const& p : draw_line(n, is_ring)) {
            nodes.push_back(static_cast<unsigned>(points.size()));
            points.push_back({p[0] + origin[0], p[1] + origin[1], p[2] + origin[2]});
        }
        is_closed = is_ring || g.chance(0.1);
        if (is_closed || (old_nodes > 0 && g.chance(0.2)))
            nodes.push_back(is_closed ? nodes[0] : g.node(old_nodes));
        if (g.chance(0.3)) std::reverse(nodes.begin(), nodes.end());
        for (std::size_t k = 1; k < nodes.size(); ++k) elements.push_back({nodes[k - 1], nodes[k], number});
    }

    /// Nodes of an ellipse; or at steps of length about 1, in a direction that turns by angles whose halves have a
    /// known tangent; or without an order, some of them on a coarse grid.
    std::vector<point> draw_line(std::size_t n, bool is_ring)
    {
        enum { even, nearly_even, uneven, graded, on_grid, anywhere };
        std::size_t const kinds[] = {even, even, even, nearly_even, uneven, graded, on_grid, anywhere};
        auto const steps = kinds[g.below(is_ring ? 3 : 8)];
        double const noise = g.pick({0, 0, 0, 0, 1e-13, 1e-11, 1e-9, 1e-6, 0.05, 0.4, 0.4, 3, 90});
        double const noise_rate = g.pick({1, 1, 0.15});
        double const bend = g.chance(0.4) ? 0 : g.between(-0.4, 0.4);
        std::size_t const period = g.chance(0.3) ? 1 + g.below(8) : n;
        double const rise = g.chance(0.5) ? 0 : g.between(-1, 1);
        double const roughness = g.pick({0, 0, 1});
        is_smooth = is_smooth && noise < 1 && period > 1 && steps < uneven;

        std::vector<point> line;
        point p{};
        double half_tangent = g.chance(0.2) ? 0 : g.between(-1, 1);
        double x = 1, y = 0, length = 1, growth = g.between(0.85, 1.2);
        for (std::size_t k = 0; k < n; ++k) {
            double const square = half_tangent * half_tangent;
            double const c = (1 - square) / (1 + square), s = 2 * half_tangent / (1 + square);
            std::tie(x, y) = std::pair(x * c - y * s, x * s + y * c);
            double const bump = g.chance(noise_rate) ? noise * g.between(-1, 1) : 0;
            half_tangent = (k / period % 2 == 0 ? bend : -bend) + bump;

            if (steps == nearly_even) length = g.between(0.5, 1.5);
            if (steps == uneven) length = g.pick({1, 1, 0, 0.004, 0.015, 0.03, 0.5, 2});
            if (steps == graded) length *= length > 0.05 && length < 20 ? growth : growth = 1 / growth;
            p = {p[0] + length * x, p[1] + length * y, p[2] + length * rise * (1 - roughness * g.unit())};
            if (steps >= on_grid) p = {g.between(-2, 2), g.between(-2, 2), g.between(-2, 2)};
            if (steps == on_grid) p = {std::floor(p[0]), std::floor(p[1]), std::floor(p[2] / 2)};
            if (is_ring) { // half the ellipse, then the other half opposite to it
                auto const size = static_cast<double>(n), around = 4 * static_cast<double>(k) / size;
                double const t = around < 2 ? around - 1 : around - 3;
                double const r = (around < 2 ? size : -size) / 6 * (1 + bump) / (1 + t * t);
                p = {r * (1 - t * t), (1 - bend) * r * t, rise * r * (1 - t * t)};
            }
            line.push_back(p);
        }
        return line;
    }
};
