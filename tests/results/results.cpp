// Makes pseudo-random calls of all overloads that the library exports. Prints a hash over the outputs and statuses of
// each; with the name of an overload, the status and the hash of each of its calls.
#include <vornik1d/vornik1d.h>

#include <bit>
#include <concepts>
#include <cstdio>
#include <string>

#include "arguments.h"

namespace {

template <class T>
concept matrix = requires(T m)
{
    m.cols();
};
template <class T>
concept list = requires(T l)
{
    l.begin();
};

/// A hash of numbers and containers, bit for bit; but all NaNs are one.
struct hash
{
    void add(std::uint64_t bits) { state = generator::mix((state ^ bits) + 0x9E3779B97F4A7C15U); }
    void add(std::integral auto number) { add(static_cast<std::uint64_t>(number)); }
    void add(double x) { add(x != x ? 0x7FF8000000000000U : std::bit_cast<std::uint64_t>(x)); }
    template <std::size_t N>
    void add(trelk::vector_fixed<double, N> const& v)
    {
        for (double const x : v.values) add(x);
    }
    void add(list auto const& values)
    {
        add(values.size());
        for (auto const x : values) add(x);
    }
    void add(matrix auto const& values)
    {
        add(values.rows()), add(values.cols());
        add(values.as_vector());
    }

    std::uint64_t state = 0;
};

/// The role of an output. A container holds something before the call at times.
template <class T>
struct output
{
    T operator()(scene& s) const
    {
        std::size_t const n = s.g.chance(0.3) ? 1 + s.g.below(4) : 0;
        if constexpr (list<T>) return T(n, 3);
        if constexpr (matrix<T>) return matrix_of(s.rows == 2 ? 3 : 6, n, typename T::value_type{3});
        if constexpr (std::is_class_v<T> && !list<T> && !matrix<T>) {
            T vector{};
            vector[0] = 7;
            return vector;
        }
        if constexpr (!std::is_class_v<T>) return T{7};
    }
};

/// Makes an argument wrong, or odd.
template <class T>
void spoil(scene& s, T& value)
{
    if constexpr (std::same_as<T, double>)
        value = s.g.pick({-1, not_a_number, infinity, -infinity, largest, -largest});
    else if constexpr (std::integral<T>)
        value = static_cast<T>(s.g.chance(0.5) ? 0 : 1 + s.g.below(300));
    else
        spoil(s, value[s.g.below(2)]);
}
void spoil(scene& s, matrix auto& values)
{
    auto const kind = s.g.below(8);
    std::size_t const rows = values.rows();
    std::size_t const row = s.g.below(rows);
    std::size_t const col = s.g.below(values.cols());
    if (kind < 2 && rows > 0) values = values.sub_matrix(0, 0, kind == 0 ? row : rows - 1, values.cols());
    if (kind == 2) values = values.sub_matrix(0, 0, rows, col);
    if (kind == 3 && !values.resize(rows + 1 + row, values.cols(), 1)) std::abort();
    if (kind > 3 && !values.empty()) values(row, col) = s.odd(values(row, col));
}

/// Gives a matrix another kind of memory at times, with the same values in it: memory of others, a part of a larger
/// one, room for more.
template <matrix T>
void mix_memory(scene& s, T& values)
{
    enum { foreign, part, roomy };
    auto const kind = s.g.below(15);
    std::size_t const before = s.g.below(3);
    std::size_t const above = kind == foreign ? 0 : 1 + before;
    std::size_t const rows = values.rows();
    std::size_t const cols = values.cols();
    std::size_t const room = before + cols + s.g.below(6);
    if (kind == roomy && !values.reserve(rows, 3 * room)) std::abort();
    if (kind >= roomy || values.empty()) return;
    auto all = std::make_shared<T>(matrix_of(rows + above, room, typename T::value_type{5}));
    for (std::size_t j = 0; j < cols; ++j) std::copy_n(values.col(j), rows, all->col(before + j) + above / 2);
    values = kind == part ? all->sub_matrix(above / 2, before, rows, cols) : T(rows, cols, all->col(before));
    s.kept.push_back(std::move(all));
}

/// An argument of a role, as a call gets it.
template <class T>
T prepare(scene& s, T argument)
{
    if constexpr (list<T>) {
        auto column = matrix_of(argument.size(), 1, typename T::value_type{});
        std::copy(argument.begin(), argument.end(), column.col(0));
        return prepare(s, std::move(column)).as_vector();
    } else {
        if (s.wrong_in > 0 && --s.wrong_in == 0) spoil(s, argument);
        if constexpr (matrix<T>) mix_memory(s, argument);
        return argument;
    }
}

/// The argument; or at times, in place of an output or a list of nodes, another argument of its type. In place of a
/// number that may be an entry of a matrix.
template <class Role, class T, class... Arguments>
T& itself_or_other(scene& s, T& argument, Arguments&... arguments)
{
    bool const is_replaceable = std::same_as<Role, output<T>> || std::same_as<T, node_list>;
    if (!is_replaceable || !s.g.chance(0.03)) return argument;
    std::vector<T*> found{&argument};
    auto const look_at = [&](auto& other) {
        if constexpr (std::same_as<decltype(other), T&>) found.push_back(&other);
        if constexpr (std::same_as<T, double> && std::same_as<decltype(other), real_matrix&>)
            if (!other.empty() && s.offset == 0) found.push_back(other.col(0));
    };
    (look_at(arguments), ...);
    return *found[s.g.below(found.size())];
}

/// Makes pseudo-random calls of a function with arguments of these roles, the same calls in every run. Prints a hash
/// over statuses and arguments after the calls; for the function `only`, the status and the hash of each call.
struct recorder
{
    std::string only; ///< the one function to call, or nothing for all of them

    void operator()(std::string const& name, unsigned calls, subject const& about, auto call, auto... roles)
    {
        if (!only.empty() && only != name) return;
        hash total;
        for (unsigned number = 0; number < calls; ++number) {
            hash one;
            for (char const c : name) one.add(c);
            one.add(number);
            scene s(one.state, about);
            if (s.is_odd) s.wrong_in = 1 + s.g.below(sizeof...(roles));
            // Braces put draws in order.
            std::tuple<decltype(roles(s))...> arguments{prepare(s, roles(s))...};
            auto const make_call = [&](auto&... all) {
                std::tuple<decltype(all)...> chosen{itself_or_other<decltype(roles)>(s, all, all...)...};
                int const status = std::apply(call, chosen);
                one.add(status);
                (one.add(all), ...);
                return status;
            };
            int const status = std::apply(make_call, arguments);
            total.add(one.state);
            if (!only.empty()) std::printf("%u %d %016llx\n", number, status, 0ULL + one.state);
        }
        if (only.empty()) std::printf("%-36s %016llx\n", name.c_str(), 0ULL + total.state);
    }
};

#define CALL(function) [](auto&... arguments) { return trelk::vornik1d::function(arguments...); }

constexpr output<double> number;
constexpr output<real_list> reals;
constexpr output<node_list> nodes;
constexpr output<real_matrix> columns;
constexpr output<node_matrix> elements;

constexpr subject line;
constexpr subject long_line{.nodes = 300};
constexpr subject lines{.lines = 4, .nodes = 60};
constexpr subject planar_lines{.lines = 4, .nodes = 60, .rows = 2};
constexpr subject spatial_lines{.lines = 4, .nodes = 60, .rows = 3};
constexpr subject network{.lines = 6, .nodes = 120};

/// The overloads by a number of steps and by sizes.
void extrude(recorder& run, std::string const& name, auto call, auto... roles)
{
    std::size_t const rows = name.find("plane") != std::string::npos ? 2 : 3;
    subject const about{.nodes = 5, .rows = rows, .is_far = false};
    run(name + "/count", 400, about, call, roles..., below<80>, nodes);
    run(name + "/sizes", 400, about, call, roles..., size, size, flag, nodes);
}

void make_calls(recorder& run)
{
    auto const convert = CALL(convert_into_high_order);
    run("indices_to_connectE2", 450, line, CALL(indices_to_connectE2), row_of<2>, maybe<connect<2>>);
    run("indices_to_connectE3", 450, line, CALL(indices_to_connectE3), row_of<3>, maybe<connect<3>>);
    run("indices_to_connectE4", 450, line, CALL(indices_to_connectE4), row_of<4>, maybe<connect<4>>);
    run("split_into_linear", 450, lines, CALL(split_into_linear), connect<3>, maybe<connect<2>>);
    run("convert_into_linear", 450, lines, CALL(convert_into_linear), connect<0>);
    run("convert_into_high_order/another", 750, lines, convert, coords, connect<2>, below<6>, elements);
    run("convert_into_high_order/in_place", 750, lines, convert, coords, connect<0>, below<6>);
    run("convert_into_quadratic", 450, lines, CALL(convert_into_quadratic), coords, connect<0>);
    run("convert_into_cubic", 450, lines, CALL(convert_into_cubic), coords, connect<2>);
    run("flip", 300, lines, CALL(flip), connect<0>);
    run("mesh_reorient", 2000, lines, CALL(mesh_reorient), connect<2>, neighbors, element, way);
    auto const version = [](auto& text) {
        for (char const c : std::string(trelk::vornik1d::version())) text.push_back(static_cast<unsigned>(c));
        return 0;
    };
    run("version", 1, line, version, nodes);

    auto const move = CALL(extrude_translate);
    auto const turn = CALL(extrude_rotate);
    extrude(run, "extrude_translate/point/plane", move, maybe<coords>, vector<2>, vector<2>);
    extrude(run, "extrude_translate/point/space", move, maybe<coords>, vector<3>, vector<3>);
    extrude(run, "extrude_translate/node/plane", move, coords, node, vector<2>);
    extrude(run, "extrude_translate/node/space", move, coords, node, vector<3>);
    extrude(run, "extrude_rotate/point/plane", turn, maybe<coords>, vector<2>, vector<2>, radians);
    extrude(run, "extrude_rotate/point/space", turn, maybe<coords>, vector<3>, vector<3>, vector<3>);
    extrude(run, "extrude_rotate/node/plane", turn, coords, node, vector<2>, radians);
    extrude(run, "extrude_rotate/node/space", turn, coords, node, vector<3>, vector<3>);

    auto const mesh_line = CALL(mesh_line);
    run("mesh_line/params/sizes", 6000, long_line, mesh_line, coords, chain, params, sizes, flag, least, most,
        tolerance, min_size, nodes, reals, reals);
    run("mesh_line/sizes", 6000, long_line, mesh_line, coords, chain, sizes, flag, least, most, tolerance,
        min_size, nodes, reals, reals);
    run("mesh_line/params/tensors", 6000, long_line, mesh_line, coords, chain, params, tensors, flag, least,
        most, tolerance, min_size, nodes, reals, columns);
    run("mesh_line/tensors", 6000, long_line, mesh_line, coords, chain, tensors, flag, least, most, tolerance,
        min_size, nodes, reals, columns);

    auto const straight = CALL(mesh_straight);
    run("mesh_straight/sizes", 1200, line, straight, coords, chain, sizes, flag, nodes);
    run("mesh_straight/tensors", 1200, line, straight, coords, chain, tensors, flag, nodes);
    run("mesh_straight/count", 900, line, straight, coords, chain, below<200>, flag, nodes);
    run("mesh_straight/segment/sizes", 900, line, straight, coords, node, node, size, size, flag, nodes);
    run("mesh_straight/segment/count", 600, line, straight, coords, node, node, below<200>, nodes);
    run("mesh_straight/two_segments/count", 600, line, straight, coords, node, node, node, below<200>, nodes);

    auto const mesh_spline = CALL(mesh_spline);
    auto const span_point = CALL(spline_point);
    run("mesh_spline/sizes", 4500, long_line, mesh_spline, coords, guided_chain, sizes, flag, least, most,
        tolerance, min_size, maybe<size>, gradation, nodes, reals, reals, number);
    run("mesh_spline/tensors", 3000, line, mesh_spline, coords, guided_chain, tensors, flag, least, most,
        tolerance, min_size, maybe<size>, gradation, nodes, reals, columns, number);
    run("spline_point/plane", 1200, {.rows = 2}, span_point, coords, node, node, node, node, span_param,
        output<trelk::vector_fixed<double, 2>>());
    run("spline_point/space", 1200, {.rows = 3}, span_point, coords, node, node, node, node, span_param,
        output<trelk::vector_fixed<double, 3>>());

    auto const to_move = CALL(interpolate_coordinates);
    run("curvatures", 900, line, CALL(curvatures), coords, chain, reals);
    run("length/chain", 900, line, CALL(length), coords, chain, number);
    run("length/mesh", 600, lines, CALL(length), coords, connect<2>, number);
    run("parametric_curvatures", 900, lines, CALL(parametric_curvatures), params, connect<2>, coords, reals);
    run("normals", 900, planar_lines, CALL(normals), coords, connect<2>, exponent, flag, columns);
    run("interpolate_coordinates", 1200, line, to_move, coords, chain, params, any_nodes, between);
    run("sort", 600, line, CALL(sort), signed_sizes, any_nodes);
    run("subdivide", 1500, {.is_far = false}, CALL(subdivide), params, signed_sizes, chain, flag, flag, least,
        most_points, nodes);

    auto const interpolate = CALL(interpolate_metrics);
    auto const in_plane = CALL(metrics_gen_aniso2d);
    auto const in_space = CALL(metrics_gen_aniso3d);
    constexpr auto present = maybe<some_tensors>;
    run("interpolate_metrics/sizes", 1500, line, interpolate, params, sizes, between, reals);
    run("interpolate_metrics/tensors", 1800, line, interpolate, params, tensors_or_list, between, columns);
    run("metrics_gen_aniso2d/directions", 1500, {.rows = 2}, in_plane, coords, chain, size, size, present);
    run("metrics_gen_aniso2d/elements", 1500, planar_lines, in_plane, coords, connect<2>, across, present);
    run("metrics_gen_aniso3d/normal", 1500, spatial_lines, in_space, coords, connect<2>, across, present);
    run("metrics_gen_aniso3d/binormal", 1500, spatial_lines, in_space, coords, connect<2>, across, across,
        present);

    auto const remesh = CALL(remesh_lines);
    run("remesh_lines/all", 7500, network, remesh, coords, connect<2>, size, maybe<signed_sizes>,
        maybe<colors>, few_nodes, few_elements, flag, max_angle, tolerance, gradation, min_size, least, most);
    run("remesh_lines/colors", 2400, network, remesh, coords, connect<2>, size, colors, flag, max_angle,
        tolerance, gradation, min_size, least, most);
    run("remesh_lines", 2400, network, remesh, coords, connect<2>, size, flag, max_angle, tolerance,
        gradation, min_size, least, most);
}

} // namespace

int main(int argc, char** argv)
{
    recorder run{argc > 1 ? argv[1] : ""};
    make_calls(run);
}
