// extrude_translate and extrude_rotate
#include "overloads.h"
#include "shapes.h"
#include "targets.h"

using namespace trelk;

namespace {

enum class from { point, node };
enum class steps { counted, sized };

/// A vector with numbers of any sign, at times of length 0.
template <std::size_t N>
vector_fixed<double, N> draw_vector(generator& g, double longest)
{
    vector_fixed<double, N> v{};
    if (g.chance(0.05)) return v;
    for (std::size_t r = 0; r < N; ++r) v[r] = g.between(-longest, longest);
    return v;
}

/// Draws all arguments but the path and calls `extrude(start, steps...)` with them.
template <std::size_t N, from start, steps by, class Extrude>
int call(generator& g, world& w, Extrude extrude)
{
    std::size_t const n = start == from::node || g.chance(0.5) ? 1 + g.below(5) : 0;
    auto const line = draw_line(g, n);
    if (n > 0) w.coords = coordinates(line, g.chance(0.04) ? 5 - N : N, {});
    fill_outputs(g, 3, w);
    auto const point = draw_vector<N>(g, 3);
    unsigned const node = g.node(n + (g.chance(0.05) ? 2 : 1));
    unsigned const count = g.node(80);
    auto const sizes = draw_sizes(g, 2, 1);
    double const size_a = g.chance(0.05) ? -sizes[0] : sizes[0];
    double const size_b = g.chance(0.05) ? -infinity : sizes[1];
    bool const is_even = g.chance(0.5);
    w.mix_storage(g);
    auto const go = [&](auto const& at) {
        if constexpr (by == steps::counted)
            return extrude(at, count);
        else
            return extrude(at, size_a, size_b, is_even);
    };
    if constexpr (start == from::point)
        return go(point);
    else
        return go(node);
}

template <std::size_t N, from start, steps by>
int translate(generator& g, world& w)
{
    auto const path = draw_vector<N>(g, 9);
    return call<N, start, by>(g, w, [&](auto const& at, auto... how) {
        return vornik1d::extrude_translate(w.coords, at, path, how..., w.out_indices);
    });
}

template <from start, steps by>
int rotate_in_plane(generator& g, world& w)
{
    auto const center = draw_vector<2>(g, 3);
    double const angle = g.chance(0.05) ? 0 : g.between(-7, 7);
    return call<2, start, by>(g, w, [&](auto const& at, auto... how) {
        return vornik1d::extrude_rotate(w.coords, at, center, angle, how..., w.out_indices);
    });
}

template <from start, steps by>
int rotate_in_space(generator& g, world& w)
{
    auto const center = draw_vector<3>(g, 3);
    auto const rotation = draw_vector<3>(g, g.chance(0.4) ? 0.2 : 4);
    return call<3, start, by>(g, w, [&](auto const& at, auto... how) {
        return vornik1d::extrude_rotate(w.coords, at, center, rotation, how..., w.out_indices);
    });
}

} // namespace

void add_extrusion_overloads(std::vector<overload>& all)
{
    auto const add = [&all](char const* name, auto call) { all.push_back({name, 400, call}); };
    constexpr auto counted = steps::counted;
    constexpr auto sized = steps::sized;
    add("extrude_translate/point/plane/count", translate<2, from::point, counted>);
    add("extrude_translate/point/plane/sizes", translate<2, from::point, sized>);
    add("extrude_translate/point/space/count", translate<3, from::point, counted>);
    add("extrude_translate/point/space/sizes", translate<3, from::point, sized>);
    add("extrude_translate/node/plane/count", translate<2, from::node, counted>);
    add("extrude_translate/node/plane/sizes", translate<2, from::node, sized>);
    add("extrude_translate/node/space/count", translate<3, from::node, counted>);
    add("extrude_translate/node/space/sizes", translate<3, from::node, sized>);
    add("extrude_rotate/point/plane/count", rotate_in_plane<from::point, counted>);
    add("extrude_rotate/point/plane/sizes", rotate_in_plane<from::point, sized>);
    add("extrude_rotate/point/space/count", rotate_in_space<from::point, counted>);
    add("extrude_rotate/point/space/sizes", rotate_in_space<from::point, sized>);
    add("extrude_rotate/node/plane/count", rotate_in_plane<from::node, counted>);
    add("extrude_rotate/node/plane/sizes", rotate_in_plane<from::node, sized>);
    add("extrude_rotate/node/space/count", rotate_in_space<from::node, counted>);
    add("extrude_rotate/node/space/sizes", rotate_in_space<from::node, sized>);
}
