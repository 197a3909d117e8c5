#include "figure.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace {

constexpr color black = {0.1, 0.1, 0.1};
constexpr color grey = {0.4, 0.4, 0.4};
constexpr color light_grey = {0.74, 0.74, 0.74};
constexpr color white = {1.0, 1.0, 1.0};
constexpr color sea = {0.94, 0.96, 0.98};

// The page in points.
constexpr double page_width = 1000.0;
constexpr double margin = 12.0;
constexpr double gap = 14.0;
constexpr double heading_height = 44.0;
constexpr double caption_height = 24.0;

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

/// Rings about the harbour where the target size is a power of two times the finest one.
void draw_size_rings(map_frame const& map, size_field const& sizes)
{
    constexpr double label_angle = -1.68; // a little west of south: open water off Lofoten
    for (double size = 2.0 * sizes.finest; size < sizes.coarsest; size *= 2.0) {
        double const radius = sizes.radius(size);
        map.circle({}, radius, light_grey, 0.8);
        map.label({radius * std::cos(label_angle), radius * std::sin(label_angle)}, in_km(size), grey);
    }
}

void draw_overview(canvas const& page, rectangle const& frame, rectangle const& region, scene const& view,
    panel const& content)
{
    map_frame const map(page, frame, region, sea);
    draw_size_rings(map, view.sizes);
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
    draw_size_rings(map, view.sizes);
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
    double const page_height = caption_top + caption_height + margin;

    save_drawing(stem, page_width, page_height, white, [&](canvas const& page) {
        double left = margin;
        for (panel const& content : panels) {
            draw_text(page, {left, margin + 16.0}, content.title, 16.0, content.ink, font::bold);
            draw_text(page, {left, margin + 34.0}, content.subtitle, 12.0, grey);
            draw_overview(page, {{left, overview_top}, width, overview_height}, region, view, content);
            draw_detail(page, {{left, detail_top}, width, detail_height}, view, content);
            left += width + gap;
        }
        draw_text(page, {margin, caption_top + caption_height},
            "Dots are nodes, the pale line is the input. Rings about the harbour are labelled with the "
            "target "
            "size of the elements there.",
            12.0, grey);
    });
}
