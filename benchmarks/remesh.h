#pragma once

/// Adds the benchmarks of `remesh_lines` to those to be run.
void enlist_remeshing();
