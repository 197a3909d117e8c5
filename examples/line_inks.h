#pragma once

#include <vector>

#include "drawing.h"
#include "line_mesh.h"

/// An ink for each colour of the lines. There are fewer inks than colours. So each colour gets the ink whose
/// other lines are farthest away, and lines that meet differ. All coasts have the same ink; a coast has the
/// sea on one side. `colors` has a number for each line, counting from 0.
std::vector<color> choose_inks(line_mesh const& lines, std::vector<unsigned> const& colors);
