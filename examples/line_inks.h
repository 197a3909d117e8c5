#pragma once

#include <vector>

#include "drawing.h"
#include "line_mesh.h"

/// An ink for each colour of the lines, of which there are few inks and may be many colours: the one whose
/// other uses are farthest away, so that lines that meet differ. Coasts, lines with the sea on one side, all
/// have one ink. `colors` has a number for each line, counting from 0.
std::vector<color> choose_inks(line_mesh const& lines, std::vector<unsigned> const& colors);
