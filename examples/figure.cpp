#include "figure.h"

#include <algorithm>
#include <string>

namespace {

constexpr color near_black = {0.1, 0.1, 0.1};
constexpr color white = {1.0, 1.0, 1.0};

// The page in points.
constexpr double margin = 12.0;
constexpr double gap = 14.0;
constexpr double heading_height = 44.0;
constexpr double caption_height = 24.0;
constexpr double line_height = 17.0;

/// Draws the unit balls of some targets of the mesh: the distance from centre to rim is the target length.
/// Centres are at least `clearance` apart, measured by both targets. Equal balls do not touch if this is at
/// least 2.
void draw_targets(map_frame const& map, line_mesh const& mesh, double clearance)
{
    struct ball
    {
        point centre;
        tensor target;
    };
    std::vector<ball> drawn;
    for (line const& chain : mesh.lines)
        for (std::size_t i = 0; i < chain.nodes.size(); ++i) {
            ball const next = {mesh.node(chain.nodes[i]), chain.target(i)};
            auto const is_near = [&](ball const& other) {
                return std::min(metric_distance(next.target, next.centre, other.centre),
                           metric_distance(other.target, next.centre, other.centre)) < clearance;
            };
            if (std::ranges::any_of(drawn, is_near)) continue;
            map.unit_ball(next.centre, next.target, medium_grey, 0.8);
            drawn.push_back(next);
        }
}

void draw_overview(canvas const& page, rectangle const& frame, rectangle const& region, scene const& view,
    panel const& content)
{
    map_frame const map(page, frame, region, map_ground);
    view.backdrop(map);
    if (content.with_targets) draw_targets(map, content.mesh, 4.0);
    map.lines(view.coast, light_grey, 1.6);
    map.lines(content.mesh, content.ink, 0.8);
    map.nodes(content.mesh, content.ink, 2.0);
    map.dot({}, near_black, 5.0);
    map.box(view.detail, near_black, 1.2);
    map.scale_bar(50.0, in_km(50.0), near_black);
}

void draw_detail(canvas const& page, rectangle const& frame, scene const& view, panel const& content)
{
    map_frame const map(page, frame, view.detail, map_ground);
    view.backdrop(map);
    if (content.with_targets) draw_targets(map, content.mesh, 2.4);
    map.lines(view.coast, light_grey, 3.0);
    map.lines(content.mesh, content.ink, 1.0);
    map.nodes(content.mesh, content.ink, 3.2);
    map.dot({}, near_black, 7.0);
    map.label({0.06 * view.detail.width, -0.045 * view.detail.width}, view.harbour, near_black);
    map.box(view.detail, near_black, 2.4);
    map.scale_bar(10.0, in_km(10.0), near_black);
}

} // namespace

void save_columns(std::filesystem::path const& stem, std::vector<heading> const& headings,
    std::vector<double> const& row_shapes, std::vector<std::string> const& caption,
    map_drawing const& draw_map, double page_width)
{
    auto const columns = static_cast<double>(headings.size());
    double const width = (page_width - 2.0 * margin - (columns - 1.0) * gap) / columns;
    std::vector<double> row_tops;
    double bottom = margin + heading_height - gap;
    for (double const shape : row_shapes) {
        row_tops.push_back(bottom + gap);
        bottom = row_tops.back() + width * shape;
    }
    auto const further_lines = static_cast<double>(caption.size()) - 1.0;
    double const page_height =
        bottom + (caption.empty() ? 0.0 : caption_height + further_lines * line_height) + margin;

    save_drawing(stem, page_width, page_height, white, [&](canvas const& page) {
        double left = margin;
        for (std::size_t column = 0; column < headings.size(); ++column) {
            auto const& [title, subtitle, ink] = headings[column];
            draw_text(page, {left, margin + 16.0}, title, 16.0, ink, font::bold);
            draw_text(page, {left, margin + 34.0}, subtitle, 12.0, grey);
            for (std::size_t row = 0; row < row_shapes.size(); ++row)
                draw_map(page, {{left, row_tops[row]}, width, width * row_shapes[row]}, column, row);
            left += width + gap;
        }
        double baseline = bottom + caption_height;
        for (std::string const& text : caption) {
            draw_text(page, {margin, baseline}, text, 12.0, grey);
            baseline += line_height;
        }
    });
}

void save_figure(std::filesystem::path const& stem, scene const& view, std::vector<panel> const& panels)
{
    rectangle const region = widened(bounds(view.coast), 6.0);
    double const overview_shape = region.height / region.width;
    double const detail_shape = view.detail.height / view.detail.width;
    save_columns(stem, {panels.begin(), panels.end()}, {overview_shape, detail_shape}, view.caption,
        [&](canvas const& page, rectangle const& frame, std::size_t column, std::size_t row) {
            if (row == 0)
                draw_overview(page, frame, region, view, panels[column]);
            else
                draw_detail(page, frame, view, panels[column]);
        });
}
