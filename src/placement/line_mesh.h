#pragma once

#include <trelk/dense1D.h>

#include "arrays/hand_over.h"

namespace trelk::vornik1d {

/// A mesh under construction: the numbers of the accepted nodes, and the parameters and targets of the
/// accepted nodes and of the latest placement. Parameters and targets of accepted nodes are kept only on
/// request.
template <class Targets>
struct line_mesh
{
    dense1D<unsigned> nodes;
    dense1D<double> params;
    typename Targets::list targets;
};

/// Appends a mesh to the caller's lists; a list without memory takes over that of the mesh. On false the
/// lists are as they were. Also correct if lists share memory or are one object.
template <class Targets>
[[nodiscard]] bool publish(line_mesh<Targets> const& mesh, dense1D<unsigned>& out_indices,
    dense1D<double>& out_params, typename Targets::list& out_targets) noexcept
{
    dense1D<unsigned> const indices_before = out_indices;
    typename Targets::list const targets_before = out_targets;
    if (make_room_for(mesh.targets, out_targets) && make_room_for(mesh.nodes, out_indices) &&
        make_room_for(mesh.params, out_params) && hand_over(mesh.targets, out_targets) &&
        hand_over(mesh.nodes, out_indices) && hand_over(mesh.params, out_params))
        return true;

    // If there is room for each, this can only fail if parameters and targets are one object.
    out_indices = indices_before;
    out_targets = targets_before;
    return false;
}

} // namespace trelk::vornik1d
