#include "drawing.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>
#include <exception>
#include <limits>
#include <numbers>
#include <stdexcept>

#include <cairomm/surface.h>

namespace {

constexpr double label_size = 11.0;

void set_ink(canvas const& page, color const& ink) { page->set_source_rgb(ink.red, ink.green, ink.blue); }

void set_font(canvas const& page, double size, font face)
{
    page->select_font_face("DejaVu Sans", Cairo::ToyFontFace::Slant::NORMAL,
        face == font::bold ? Cairo::ToyFontFace::Weight::BOLD : Cairo::ToyFontFace::Weight::NORMAL);
    page->set_font_size(size);
}

} // namespace

void save_drawing(std::filesystem::path const& stem, double width, double height, color const& ground,
    std::function<void(canvas const&)> const& draw)
{
    auto const draw_on = [&](Cairo::RefPtr<Cairo::Surface> const& surface, double scale) {
        auto const page = Cairo::Context::create(surface);
        page->scale(scale, scale);
        set_ink(page, ground);
        page->paint();
        draw(page);
    };

    try {
        auto const svg = Cairo::SvgSurface::create(stem.string() + ".svg", width, height);
        draw_on(svg, 1.0);
        svg->finish();

        constexpr double pixels_per_point = 2.0;
        auto const png = Cairo::ImageSurface::create(Cairo::Surface::Format::RGB24,
            static_cast<int>(std::ceil(width * pixels_per_point)),
            static_cast<int>(std::ceil(height * pixels_per_point)));
        draw_on(png, pixels_per_point);
        png->write_to_png(stem.string() + ".png");
    } catch (std::exception const& error) {
        throw std::runtime_error(stem.string() + ".svg and .png: " + error.what());
    }
}

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

std::string brief(double number)
{
    std::array<char, 32> text;
    std::snprintf(text.data(), text.size(), "%g", number);
    return text.data();
}

std::string in_km(double length) { return brief(length) + " km"; }

void draw_text(
    canvas const& page, point const& where, std::string const& text, double size, color const& ink, font face)
{
    set_font(page, size, face);
    set_ink(page, ink);
    page->move_to(where.x, where.y);
    page->show_text(text);
}

map_frame::map_frame(canvas page, rectangle const& frame, rectangle const& region, color const& ground)
    : page_(std::move(page)), frame_(frame), region_(region), ground_(ground),
      points_per_unit_(frame.width / region.width)
{
    page_->save();
    page_->rectangle(frame_.corner.x, frame_.corner.y, frame_.width, frame_.height);
    page_->clip();
    page_->set_line_cap(Cairo::Context::LineCap::ROUND);
    page_->set_line_join(Cairo::Context::LineJoin::ROUND);
    set_ink(page_, ground_);
    page_->paint();
}

map_frame::~map_frame() { page_->restore(); }

void map_frame::lines(line_mesh const& mesh, color const& ink, double pen_width) const
{
    for (line const& chain : mesh.lines) {
        page_->begin_new_sub_path();
        for (unsigned const node : chain.nodes) {
            auto const [x, y] = to_page(mesh.node(node));
            page_->line_to(x, y);
        }
    }
    stroke(ink, pen_width);
}

void map_frame::clear(line_mesh const& mesh, double pen_width) const
{
    page_->set_line_cap(Cairo::Context::LineCap::BUTT);
    lines(mesh, ground_, pen_width);
    page_->set_line_cap(Cairo::Context::LineCap::ROUND);
}

void map_frame::nodes(line_mesh const& mesh, color const& ink, double diameter) const
{
    for (line const& chain : mesh.lines) {
        for (unsigned const node : chain.nodes) {
            if (shows(mesh.node(node))) add_dot(mesh.node(node));
        }
    }
    stroke(ink, diameter);
}

void map_frame::dot(point const& where, color const& ink, double diameter) const
{
    add_dot(where);
    stroke(ink, diameter);
}

void map_frame::circle(point const& centre, double radius, color const& ink, double pen_width) const
{
    auto const [x, y] = to_page(centre);
    page_->begin_new_sub_path();
    page_->arc(x, y, radius * points_per_unit_, 0.0, 2.0 * std::numbers::pi);
    stroke(ink, pen_width);
}

void map_frame::unit_ball(point const& centre, tensor const& metric, color const& ink, double pen_width) const
{
    // For M = U^T U with U upper triangular, the inverse of U maps the unit circle to the unit ball of M.
    auto const [m00, m01, m11] = metric;
    double const u00 = std::sqrt(m00);
    double const u01 = m01 / u00;
    double const u11 = std::sqrt(m11 - u01 * u01);
    auto const [x, y] = to_page(centre);
    page_->save();
    page_->translate(x, y);
    page_->scale(points_per_unit_, -points_per_unit_);
    page_->transform({1.0 / u00, 0.0, -u01 / (u00 * u11), 1.0 / u11, 0.0, 0.0});
    page_->begin_new_sub_path();
    page_->arc(0.0, 0.0, 1.0, 0.0, 2.0 * std::numbers::pi);
    page_->restore(); // the path stays; the pen is round again
    stroke(ink, pen_width);
}

void map_frame::box(rectangle const& area, color const& ink, double pen_width) const
{
    auto const [left, top] = to_page({area.corner.x, area.corner.y + area.height});
    page_->rectangle(left, top, area.width * points_per_unit_, area.height * points_per_unit_);
    stroke(ink, pen_width);
}

void map_frame::label(point const& where, std::string const& text, color const& ink) const
{
    set_font(page_, label_size, font::normal);
    Cairo::TextExtents extents;
    page_->get_text_extents(text, extents);
    auto const [x, y] = to_page(where);
    point const start = {x - 0.5 * extents.x_advance, y + 0.35 * label_size};

    // A halo keeps the text legible on top of lines.
    page_->move_to(start.x, start.y);
    page_->text_path(text);
    stroke(ground_, 5.0);
    draw_text(page_, start, text, label_size, ink);
}

void map_frame::scale_bar(double length, std::string const& text, color const& ink) const
{
    constexpr double tick = 4.0; // points
    double const unit_per_point = 1.0 / points_per_unit_;
    point const start = {region_.corner.x + 10.0 * unit_per_point, region_.corner.y + 10.0 * unit_per_point};
    auto const [left, bottom] = to_page(start);
    double const right = left + length * points_per_unit_;

    page_->move_to(left, bottom - tick);
    page_->line_to(left, bottom);
    page_->line_to(right, bottom);
    page_->line_to(right, bottom - tick);
    stroke(ink, 1.2);
    label({start.x + 0.5 * length, start.y + label_size * unit_per_point}, text, ink);
}

bool map_frame::shows(point const& where) const
{
    double const x = where.x - region_.corner.x;
    double const y = where.y - region_.corner.y;
    return x >= 0.0 && x <= region_.width && y >= 0.0 && y <= region_.height;
}

point map_frame::to_page(point const& where) const
{
    return {frame_.corner.x + (where.x - region_.corner.x) * points_per_unit_,
        frame_.corner.y + frame_.height - (where.y - region_.corner.y) * points_per_unit_};
}

// A stroke of length 0 with round ends is a dot. It needs less space in an SVG file than a circle.
void map_frame::add_dot(point const& where) const
{
    auto const [x, y] = to_page(where);
    page_->move_to(x, y);
    page_->line_to(x, y);
}

void map_frame::stroke(color const& ink, double pen_width) const
{
    page_->set_line_width(pen_width);
    set_ink(page_, ink);
    page_->stroke();
}
