#pragma once

#include <filesystem>
#include <functional>
#include <string>

#include <cairomm/context.h>

#include "line_mesh.h"

using canvas = Cairo::RefPtr<Cairo::Context>;

struct color
{
    double red = 0.0;
    double green = 0.0;
    double blue = 0.0;
};

constexpr color grey = {0.4, 0.4, 0.4};
constexpr color medium_grey = {0.58, 0.58, 0.58};
constexpr color light_grey = {0.74, 0.74, 0.74};
constexpr color pale_blue = {0.72, 0.84, 0.94};
constexpr color map_ground = {0.94, 0.96, 0.98};
// Colours that colour-blind readers can tell apart.
constexpr color black = {0.2, 0.2, 0.2};
constexpr color vermilion = {0.84, 0.37, 0.0};
constexpr color blue = {0.0, 0.45, 0.7};
constexpr color green = {0.0, 0.5, 0.37};

/// `corner` is the lower left corner.
struct rectangle
{
    point corner;
    double width = 0.0;
    double height = 0.0;
};

/// The smallest rectangle around a mesh, and a rectangle that is wider on every side.
rectangle bounds(line_mesh const& mesh);
rectangle widened(rectangle const& area, double by);

/// Writes a drawing to STEM.svg and STEM.png. Width and height are in points; the PNG has two pixels per
/// point. Throws if the files cannot be written.
void save_drawing(std::filesystem::path const& stem, double width, double height, color const& ground,
    std::function<void(canvas const&)> const& draw);

/// A number without trailing zeros, and a length with its unit.
std::string brief(double number);
std::string in_km(double length);

enum class font { normal, bold };

/// Writes text whose baseline starts at `where`. The font is DejaVu Sans, Debian package fonts-dejavu-core.
void draw_text(canvas const& page, point const& where, std::string const& text, double size, color const& ink,
    font face = font::normal);

/// A map in a frame of the page. Positions are in length units of the model, y upwards; a third coordinate is
/// ignored. Widths of pens and dots are in points. Nothing is drawn outside the frame while the map exists.
class map_frame
{
public:
    /// Shows a region of the plane in a frame of the same shape.
    map_frame(canvas page, rectangle const& frame, rectangle const& region, color const& ground);
    map_frame(map_frame const&) = delete;
    map_frame& operator=(map_frame const&) = delete;
    ~map_frame();

    void lines(line_mesh const& mesh, color const& ink, double pen_width) const;
    /// Paints a strip of ground colour along the lines, up to their ends.
    void clear(line_mesh const& mesh, double pen_width) const;
    void nodes(line_mesh const& mesh, color const& ink, double diameter) const;
    void dot(point const& where, color const& ink, double diameter) const;
    void circle(point const& centre, double radius, color const& ink, double pen_width) const;
    /// The points at distance 1 from the centre, measured by the tensor.
    void unit_ball(point const& centre, tensor const& metric, color const& ink, double pen_width) const;
    void box(rectangle const& area, color const& ink, double pen_width) const;

    /// Text with its middle at `where`.
    void label(point const& where, std::string const& text, color const& ink) const;
    void scale_bar(double length, std::string const& text, color const& ink) const;

private:
    bool shows(point const& where) const;
    point to_page(point const& where) const;
    void add_dot(point const& where) const;
    void stroke(color const& ink, double pen_width) const;

    canvas page_;
    rectangle frame_;
    rectangle region_;
    color ground_;
    double points_per_unit_;
};
