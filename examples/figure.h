#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "drawing.h"
#include "line_mesh.h"
#include "size_field.h"

/// What every map of the figure shows: the coast as it was read, the harbour, and the part to enlarge.
struct scene
{
    line_mesh coast;
    size_field sizes;
    std::string harbour;
    rectangle detail;
};

struct panel
{
    std::string title;
    std::string subtitle;
    line_mesh mesh;
    color ink;
};

/// Draws the panels side by side, each as a map with its enlarged part below, on STEM.svg and STEM.png.
void save_figure(std::filesystem::path const& stem, scene const& view, std::vector<panel> const& panels);
