#pragma once

#include <cstddef>
#include <vector>

#include "network.h"

/// What there is to know of a mesh beside the network that it was made from.
struct network_summary
{
    std::size_t nodes = 0;
    std::size_t elements = 0;
    /// Where three or more elements meet, and elements of the same colours in both.
    std::size_t junctions = 0;
    /// Elements whose middle is nearer to an original element of another colour than to any of their own.
    std::size_t other_colors = 0;
    /// Lengths of elements, and the largest length over the target size there.
    double shortest = 0.0;
    double longest = 0.0;
    double longest_to_target = 0.0;
    /// The largest distance of a node of the original from the mesh, and of one of the mesh from the original.
    double original_off_mesh = 0.0;
    double mesh_off_original = 0.0;
};

/// `targets` holds the target size at each node of the original, one for all nodes of a line. Throws if a junction or an end of a line of the
/// original is missing in the mesh, if there is a new one, or if elements of other colours meet at one.
network_summary summarize(network const& mesh, network const& original, std::vector<double> const& targets);
