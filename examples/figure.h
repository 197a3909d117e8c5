#pragma once

#include <cstddef>
#include <filesystem>
#include <functional>
#include <string>
#include <vector>

#include "drawing.h"
#include "line_mesh.h"

struct heading
{
    std::string title;
    std::string subtitle;
    color ink;
};

/// Draws a map in a frame of the page, in a column and a row of the figure.
using map_drawing = std::function<void(canvas const&, rectangle const&, std::size_t, std::size_t)>;

/// Draws columns of maps side by side on STEM.svg and STEM.png. Each column has a heading above. Each row has
/// a shape: the height of its maps divided by their width. The lines of the caption are at the bottom. The
/// page width is in points.
void save_columns(std::filesystem::path const& stem, std::vector<heading> const& headings,
    std::vector<double> const& row_shapes, std::vector<std::string> const& caption,
    map_drawing const& draw_map, double page_width = 880.0);

/// What all maps of a figure share: the coast as it was read, a backdrop, the harbour, the part to enlarge,
/// and the caption.
struct scene
{
    line_mesh coast;
    std::function<void(map_frame const&)> backdrop;
    std::string harbour;
    rectangle detail;
    std::vector<std::string> caption;
};

struct panel : heading
{
    line_mesh mesh;
    bool with_targets = false;
};

/// Draws the panels side by side on STEM.svg and STEM.png. Each panel is a map with its enlarged part below.
void save_figure(std::filesystem::path const& stem, scene const& view, std::vector<panel> const& panels);
