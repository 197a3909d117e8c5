#pragma once

#include <pybind11/pybind11.h>

/// The options of `remesh_lines`.
struct remesh_limits
{
    bool force_even;
    double max_angle;
    double deviation_tolerance;
    double max_gradation;
    double min_size;
    unsigned min_elements;
    unsigned max_elements;
};

/// Adds the functions of networks.cpp to the module.
void bind_networks(pybind11::module_& m);
