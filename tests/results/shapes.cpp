#include "shapes.h"

#include <cmath>

namespace {

using point = trelk::vector_fixed<double, 3>;

enum class walk {
    circle,
    spiral,
    straight,
    zigzag,
    wander,
    wild,
    spikes,
    uneven,
    noise,
    graded,
    wave,
    corners
};

/// Tells the half tangent of the turn before step k, and its length.
class stride
{
public:
    stride(generator& g, walk kind) : kind_(kind), bend_(g.between(-0.3, 0.3)), turn_(bend_)
    {
        constexpr double noises[] = {1e-13, 1e-11, 1e-9, 1e-6};
        noise_ = g.pick(noises);
        growth_ = g.between(0.85, 1.2);
        period_ = 2 + g.below(8);
    }

    double turn(generator& g, std::size_t k)
    {
        double const random = g.between(-1, 1);
        switch (kind_) {
        case walk::circle:
            return bend_;
        case walk::spiral:
            return turn_ *= 0.97;
        case walk::zigzag:
            return k % 2 == 0 ? 3 * bend_ : -3 * bend_;
        case walk::wander:
            return 0.4 * random;
        case walk::wild:
            return 3 * random;
        case walk::spikes:
            return g.chance(0.2) ? 90 * random : 0.1 * random;
        case walk::uneven:
            return 0.3 * random;
        case walk::noise:
            return noise_ * random;
        case walk::graded:
            return 0.05 * random;
        case walk::wave:
            return k / period_ % 2 == 0 ? bend_ : -bend_;
        case walk::corners:
            return g.chance(0.15) ? random : 0;
        case walk::straight:
            break;
        }
        return 0;
    }

    double length(generator& g)
    {
        constexpr double lengths[] = {1, 1, 0.004, 0.015, 0.03, 0.5, 2};
        switch (kind_) {
        case walk::uneven:
            return g.pick(lengths);
        case walk::graded:
            if (!(length_ > 0.05 && length_ < 20)) growth_ = 1 / growth_;
            return length_ *= growth_;
        case walk::wander:
        case walk::straight:
        case walk::noise:
            return g.between(0.5, 1.5);
        default:
            return 1;
        }
    }

private:
    walk kind_;
    double bend_;
    double turn_;
    double noise_;
    double growth_;
    std::size_t period_;
    double length_ = 1;
};

drawn_line draw_walk(generator& g, std::size_t n, walk kind)
{
    heading ahead;
    ahead.turn(g.between(-1, 1));
    stride next(g, kind);
    double const rise = g.chance(0.5) ? 0 : g.between(-1, 1);
    bool const is_rough = g.chance(0.3);
    bool const is_smooth = kind == walk::circle || kind == walk::spiral || kind == walk::straight ||
                           kind == walk::wander || kind == walk::wave || kind == walk::noise;
    drawn_line line{{}, is_smooth};
    point at{g.between(-1, 1), g.between(-1, 1), 0};
    for (std::size_t k = 0; k < n; ++k) {
        line.points.push_back(at);
        ahead.turn(next.turn(g, k));
        double const length = next.length(g);
        at[0] += length * ahead.x;
        at[1] += length * ahead.y;
        at[2] += length * (is_rough ? rise * g.unit() : rise);
    }
    return line;
}

drawn_line draw_scatter(generator& g, std::size_t n)
{
    std::size_t const kind = g.below(4);
    drawn_line line{{}, false};
    for (std::size_t k = 0; k < n; ++k) {
        point p{g.between(-2, 2), g.between(-2, 2), g.between(-2, 2)};
        if (kind == 0) p = {std::floor(p[0]), std::floor(p[1]), std::floor(p[2] / 2)};
        if (kind == 1) p = {0.25, -1.5, 0.5};
        if (kind == 2) p = {k % 2 == 0 ? 0.0 : 1.0, 0.0, 0.0};
        line.points.push_back(p);
    }
    return line;
}

} // namespace

drawn_line draw_line(generator& g, std::size_t n)
{
    constexpr walk kinds[] = {walk::circle, walk::spiral, walk::straight, walk::zigzag, walk::wander,
        walk::wild, walk::spikes, walk::uneven, walk::noise, walk::graded, walk::wave, walk::corners};
    return g.chance(0.1) ? draw_scatter(g, n) : draw_walk(g, n, g.pick(kinds));
}

drawn_line draw_ring(generator& g, std::size_t n)
{
    double const flatness = g.between(0.3, 1);
    double const wobble = g.chance(0.5) ? 0 : g.between(0, 0.2);
    double const tilt = g.chance(0.5) ? 0 : g.between(-1, 1);
    double const radius = static_cast<double>(n) / 6;
    drawn_line line{{}, true};
    for (std::size_t k = 0; k < n; ++k) {
        // Half the circle, and the other half opposite to it.
        double const around = 4 * static_cast<double>(k) / static_cast<double>(n);
        double const t = around < 2 ? around - 1 : around - 3;
        double const side = around < 2 ? 1 : -1;
        double const r = side * radius * (1 + wobble * g.unit()) / (1 + t * t);
        double const x = r * (1 - t * t);
        line.points.push_back({x, flatness * 2 * r * t, tilt * x});
    }
    line.is_smooth = !g.chance(0.3);
    if (!line.is_smooth) line.points[g.below(n)][1] += radius; // a corner
    return line;
}

frame draw_frame(generator& g)
{
    frame at;
    if (g.chance(0.2)) at.scale = g.octaves(-20, 20);
    if (g.chance(0.1)) at.offset = at.scale * g.octaves(0, 20);
    return at;
}

real_matrix coordinates(drawn_line const& line, std::size_t rows, frame const& at)
{
    auto coords = matrix_of(rows, line.points.size(), 0.0);
    for (std::size_t j = 0; j < coords.cols() && rows > 0; ++j)
        for (std::size_t i = 0; i < rows && i < 3; ++i)
            coords(i, j) = at.scale * line.points[j][i] + at.offset;
    return coords;
}

real_matrix draw_coordinates(generator& g, std::size_t n, std::size_t rows)
{
    auto const line = draw_line(g, n);
    return coordinates(line, rows, draw_frame(g));
}

std::size_t draw_count(generator& g, std::size_t most)
{
    double const kind = g.unit();
    if (kind < 0.15) return 2 + g.below(2);
    if (kind < 0.7) return 2 + g.below(14);
    return 2 + g.below(kind < 0.96 ? 60 : most);
}
