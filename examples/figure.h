#pragma once

#include <filesystem>
#include <functional>
#include <string>
#include <vector>

#include "drawing.h"
#include "line_mesh.h"

/// What every map of the figure shows: the coast as it was read, what is to be seen behind it, the harbour,
/// and the part to enlarge. The caption stands below, line by line.
struct scene
{
    line_mesh coast;
    std::function<void(map_frame const&)> backdrop;
    std::string harbour;
    rectangle detail;
    std::vector<std::string> caption;
};

struct panel
{
    std::string title;
    std::string subtitle;
    line_mesh mesh;
    color ink;
    bool with_targets = false;
};

/// Draws the panels side by side, each as a map with its enlarged part below, on STEM.svg and STEM.png.
void save_figure(std::filesystem::path const& stem, scene const& view, std::vector<panel> const& panels);
