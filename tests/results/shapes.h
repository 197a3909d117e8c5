#pragma once

#include <cstddef>
#include <vector>

#include <trelk/vector_fixed.h>

#include "random.h"
#include "world.h"

// Random arguments that make sense, from arithmetic alone: the last bits of sines and exponentials change with
// the C library.

/// A direction in the plane, turned by angles whose halves have a known tangent.
struct heading
{
    double x = 1;
    double y = 0;

    void turn(double half_tangent)
    {
        double const square = half_tangent * half_tangent;
        double const c = (1 - square) / (1 + square);
        double const s = 2 * half_tangent / (1 + square);
        double const before = x;
        x = before * c - y * s;
        y = before * s + y * c;
    }
};

/// Nodes in the order of a line, in space, with steps of length about 1.
struct drawn_line
{
    std::vector<trelk::vector_fixed<double, 3>> points;
    bool is_smooth; // it has no spikes, no kinks and no two nodes at one place
};

/// An open line of `n` nodes.
drawn_line draw_line(generator& g, std::size_t n);
/// A line of `n` nodes, 3 at least, whose last node is meant to be joined with the first.
drawn_line draw_ring(generator& g, std::size_t n);

/// Where a drawing is put, and how large.
struct frame
{
    double scale = 1;
    double offset = 0;
};
frame draw_frame(generator& g);
real_matrix coordinates(drawn_line const& line, std::size_t rows, frame const& at);

/// The coordinates of an open line of `n` nodes.
real_matrix draw_coordinates(generator& g, std::size_t n, std::size_t rows);

/// How many nodes a line has: few as a rule, up to `most` at times.
std::size_t draw_count(generator& g, std::size_t most);
