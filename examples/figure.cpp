#include "figure.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <string>

namespace {

constexpr color black = {0.1, 0.1, 0.1};
constexpr color white = {1.0, 1.0, 1.0};
constexpr color sea = {0.94, 0.96, 0.98};

// The page in points.
constexpr double page_width = 1000.0;
constexpr double margin = 12.0;
constexpr double gap = 14.0;
constexpr double heading_height = 44.0;
constexpr double caption_height = 24.0;
constexpr double line_height = 17.0;

rectangle bounds(line_mesh const& mesh)
{
    constexpr double infinity = std::numeric_limits<double>::infinity();
    point low = {infinity, infinity};
    point high = {-infinity, -infinity};
    for (line const& chain : mesh.lines) {
        for (unsigned const node : chain.nodes) {
            auto const [x, y] = mesh.node(node);
            low = {std::min(low.x, x), std::min(low.y, y)};
            high = {std::max(high.x, x), std::max(high.y, y)};
        }
    }
    return {low, high.x - low.x, high.y - low.y};
}

rectangle widened(rectangle const& area, double by)
{
    return {{area.corner.x - by, area.corner.y - by}, area.width + 2.0 * by, area.height + 2.0 * by};
}

/// The unit balls of some of the mesh's targets, which tell how long elements should be: from the middle to
/// the rim. Their middles are `clearance` apart, in the targets of both; like balls do not touch from 2 on.
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
    map_frame const map(page, frame, region, sea);
    view.backdrop(map);
    if (content.with_targets) draw_targets(map, content.mesh, 4.0);
    map.lines(view.coast, light_grey, 1.6);
    map.lines(content.mesh, content.ink, 0.8);
    map.nodes(content.mesh, content.ink, 2.0);
    map.dot({}, black, 5.0);
    map.box(view.detail, black, 1.2);
    map.scale_bar(50.0, black);
}

void draw_detail(canvas const& page, rectangle const& frame, scene const& view, panel const& content)
{
    map_frame const map(page, frame, view.detail, sea);
    view.backdrop(map);
    if (content.with_targets) draw_targets(map, content.mesh, 2.4);
    map.lines(view.coast, light_grey, 3.0);
    map.lines(content.mesh, content.ink, 1.0);
    map.nodes(content.mesh, content.ink, 3.2);
    map.dot({}, black, 7.0);
    map.label({0.06 * view.detail.width, -0.045 * view.detail.width}, view.harbour, black);
    map.box(view.detail, black, 2.4);
    map.scale_bar(10.0, black);
}

} // namespace

void save_figure(std::filesystem::path const& stem, scene const& view, std::vector<panel> const& panels)
{
    rectangle const region = widened(bounds(view.coast), 6.0);
    auto const count = static_cast<double>(panels.size());
    double const width = (page_width - 2.0 * margin - (count - 1.0) * gap) / count;
    double const overview_top = margin + heading_height;
    double const overview_height = width * region.height / region.width;
    double const detail_top = overview_top + overview_height + gap;
    double const detail_height = width * view.detail.height / view.detail.width;
    double const caption_top = detail_top + detail_height;
    auto const caption_lines = static_cast<double>(view.caption.size());
    double const page_height = caption_top + caption_height + (caption_lines - 1.0) * line_height + margin;

    save_drawing(stem, page_width, page_height, white, [&](canvas const& page) {
        double left = margin;
        for (panel const& content : panels) {
            draw_text(page, {left, margin + 16.0}, content.title, 16.0, content.ink, font::bold);
            draw_text(page, {left, margin + 34.0}, content.subtitle, 12.0, grey);
            draw_overview(page, {{left, overview_top}, width, overview_height}, region, view, content);
            draw_detail(page, {{left, detail_top}, width, detail_height}, view, content);
            left += width + gap;
        }
        double baseline = caption_top + caption_height;
        for (std::string const& text : view.caption) {
            draw_text(page, {margin, baseline}, text, 12.0, grey);
            baseline += line_height;
        }
    });
}
