#pragma once

#include <cstddef>

#include <trelk/dense2D.h>

/// Lines that meet at common nodes, in degrees; elements of one line stand side by side.
struct network
{
    trelk::dense2D<double> coords;
    trelk::dense2D<unsigned> connect;
    double size = 0; // the target size to remesh it by
};

/// A network like the coasts and borders of a map, made up from a fixed seed, of just so many elements. Lines of
/// 4 to 4000 elements, as many of n or more as n^-0.8 says, by midpoint displacement: three quarters are islands,
/// the rest open. Across some of the larger islands run borders, which meet the coast and each other.
network make_coast(std::size_t elements);

/// The borders of Europe, from data/.
network read_borders();
