#pragma once

#include <array>
#include <cstdio>
#include <filesystem>
#include <functional>
#include <initializer_list>
#include <new>
#include <stdexcept>
#include <string>
#include <vector>

#include <vornik1d/vornik1d.h>

#include "drawing.h"
#include "figure.h"
#include "line_mesh.h"

// Helpers for the pictures of the manual. A picture is a row or a column of panels.

constexpr double picture_width = 720.0; // points

/// Throws if a function of the library has not returned 0.
inline void require_success(int status)
{
    if (status != 0) throw std::runtime_error("a function failed with status " + std::to_string(status));
}

template <class T>
trelk::dense1D<T> list_of(std::vector<T> const& values)
{
    trelk::dense1D<T> result;
    for (T const value : values)
        if (!result.push_back(value)) throw std::bad_alloc();
    return result;
}

inline trelk::dense2D<double> nodes_at(std::vector<point> const& places)
{
    trelk::dense2D<double> result;
    if (!result.resize(2, places.size())) throw std::bad_alloc();
    for (std::size_t k = 0; k < places.size(); ++k) {
        result(0, k) = places[k].x;
        result(1, k) = places[k].y;
    }
    return result;
}

/// The nodes 0, 1, ..., n - 1.
inline trelk::dense1D<unsigned> first_nodes(std::size_t n)
{
    trelk::dense1D<unsigned> result(n);
    for (std::size_t k = 0; k < n; ++k) result[k] = static_cast<unsigned>(k);
    return result;
}

/// A mesh of one line, with its own copy of the values.
inline line_mesh one_line(trelk::dense2D<double> const& coords, trelk::dense1D<unsigned> const& nodes)
{
    line_mesh result;
    result.lines.emplace_back();
    if (!result.coords.copy(coords) || !result.lines[0].nodes.copy(nodes)) throw std::bad_alloc();
    return result;
}

inline line_mesh polyline(std::vector<point> const& places)
{
    return one_line(nodes_at(places), first_nodes(places.size()));
}

inline std::string counted(std::size_t elements)
{
    return std::to_string(elements) + (elements == 1 ? " element" : " elements");
}

struct picture_panel
{
    heading title;
    std::function<void(map_frame const&)> draw;
};

/// Draws panels side by side on STEM.svg and STEM.png. `regions` has one region for all panels, or one for
/// each; all have the same shape.
inline void save_panels(std::filesystem::path const& stem, std::vector<rectangle> const& regions,
    std::vector<picture_panel> const& panels)
{
    std::vector<heading> headings;
    for (picture_panel const& panel : panels) headings.push_back(panel.title);
    auto const draw_map = [&](canvas const& page, rectangle const& frame, std::size_t k, std::size_t) {
        map_frame const map(page, frame, regions[regions.size() > 1 ? k : 0], map_ground);
        panels[k].draw(map);
    };
    save_columns(stem, headings, {regions[0].height / regions[0].width}, {}, draw_map, picture_width);
}

inline void draw_mesh(map_frame const& map, line_mesh const& mesh, color const& ink, double scale = 1.0)
{
    map.lines(mesh, ink, 1.2 * scale);
    map.nodes(mesh, ink, 5.0 * scale);
}

/// Three significant digits, as in 0.52 or 1.05.
inline std::string short_number(double value)
{
    std::array<char, 32> text;
    std::snprintf(text.data(), text.size(), "%.3g", value);
    return text.data();
}

/// Draw the pictures of the guide. Those of the recipes show what the recipes printed.
void draw_ideas(std::filesystem::path const& folder);
void draw_recipes(std::filesystem::path const& results, std::filesystem::path const& folder);
