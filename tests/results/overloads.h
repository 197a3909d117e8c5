#pragma once

#include <vector>

#include <vornik1d/vornik1d.h>

#include "random.h"
#include "world.h"

/// An overload of the library, and how often it is called.
struct overload
{
    char const* name;
    unsigned calls;

    /// Fills the world, makes one call and returns its status.
    int (*call)(generator& g, world& w);
};

// One function for each source file beside this one.
void add_line_overloads(std::vector<overload>& all);
void add_straight_overloads(std::vector<overload>& all);
void add_spline_overloads(std::vector<overload>& all);
void add_network_overloads(std::vector<overload>& all);
void add_metric_overloads(std::vector<overload>& all);
void add_measure_overloads(std::vector<overload>& all);
void add_connect_overloads(std::vector<overload>& all);
void add_extrusion_overloads(std::vector<overload>& all);
