#pragma once

#include <cstddef>

#include <trelk/dense1D.h>
#include <trelk/dense2D.h>

#include "remesh/cut_lines.h"
#include "remesh/old_mesh.h"
#include "rules.h"

namespace trelk::vornik1d {

/// A mesh of two-node elements; `colors` has one entry per element, or is empty.
struct new_mesh
{
    dense2D<unsigned> connect;
    dense1D<unsigned> colors;
};

/// Meshes all chains except hard edges, which stay as they are. The elements have colours if the chains do.
/// Returns 0 or the status of the exported function; on a failure the caller must remove the new columns of
/// `coords`.
template <std::size_t N>
int mesh_network(dense2D<double>& coords, old_mesh const& old, remesh_rule const& rule,
    cut_lines const& lines, new_mesh& mesh);

} // namespace trelk::vornik1d
