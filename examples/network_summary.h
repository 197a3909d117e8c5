#pragma once

#include <cstddef>
#include <vector>

#include "network.h"

/// Figures about a mesh, compared with the network that it was made from.
struct network_summary
{
    std::size_t nodes = 0;
    std::size_t elements = 0;
    /// Nodes at which at least three elements meet. The colours there are the same in both.
    std::size_t junctions = 0;
    /// Elements whose middle is nearer to an original element of another colour than to any of its own.
    std::size_t other_colors = 0;
    /// Lengths of elements, and the largest length over the target size there.
    double shortest = 0.0;
    double longest = 0.0;
    double longest_to_target = 0.0;
    /// The largest distance of an original node from the mesh, and of a mesh node from the original.
    double original_off_mesh = 0.0;
    double mesh_off_original = 0.0;
};

/// `targets` holds the target size at each node of the original, the same for all nodes of a line. Throws if
/// a junction or an end of a line is missing in the mesh, if the mesh has a new one, or if other colours meet
/// there.
network_summary summarize(network const& mesh, network const& original, std::vector<double> const& targets);
