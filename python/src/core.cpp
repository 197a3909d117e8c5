// The functions of the library on NumPy arrays, one binding per overload. Each returns a tuple: the status, then
// the results. The Python code adds names, default values and errors.

#include <array>
#include <optional>
#include <utility>
#include <variant>
#include <vector>

#include <pybind11/stl.h>

#include <vornik/toolkit.h>

#include "arrays.h"
#include "bindings.h"
#include "foresee.h"

using namespace trelk;
using namespace trelk::vornik1d;

namespace {

/// Calls `run(targets, out_targets)` with sizes if the array has one dimension, otherwise with tensors.
template <class Run>
void with_targets(real_array const& targets, Run run)
{
    if (targets.ndim() == 1)
        run(list_view(targets), reals());
    else
        run(matrix_view(targets), matrix());
}

template <std::size_t N>
vector_fixed<double, N> to_vector(real_array const& values)
{
    vector_fixed<double, N> result;
    for (std::size_t i = 0; i < N; ++i) result[i] = values.at(static_cast<py::ssize_t>(i));
    return result;
}

struct mesh_limits
{
    bool force_even;
    unsigned min_elements;
    unsigned max_elements;
    double deviation_tolerance;
    double min_size;
};

py::tuple line_mesh(real_array const& coords, node_array const& indices,
    std::optional<real_array> const& params, real_array const& targets, mesh_limits const& limits)
{
    py::tuple result;
    with_targets(targets, [&](auto const& wanted, auto out_targets) {
        matrix new_coords = matrix_view(coords);
        nodes const chain = list_view(indices);
        reals const given = params ? list_view(*params) : reals();
        nodes out;
        reals out_params;
        auto const run = [&](auto const&... start) {
            return mesh_line(new_coords, chain, start..., limits.force_even, limits.min_elements,
                limits.max_elements, limits.deviation_tolerance, limits.min_size, out, out_params,
                out_targets);
        };
        int const status = unlocked([&] { return params ? run(given, wanted) : run(wanted); });
        result = py::make_tuple(
            status, to_array(new_coords, coords), to_array(out), to_array(out_params), to_array(out_targets));
    });
    return result;
}

py::tuple spline_mesh(real_array const& coords, node_array const& indices, real_array const& targets,
    mesh_limits const& limits, double default_size, double max_gradation)
{
    py::tuple result;
    with_targets(targets, [&](auto const& wanted, auto out_targets) {
        matrix new_coords = matrix_view(coords);
        nodes const chain = list_view(indices);
        nodes out;
        reals out_params;
        double deviation = 0;
        int const status = unlocked([&] {
            return mesh_spline(new_coords, chain, wanted, limits.force_even, limits.min_elements,
                limits.max_elements, limits.deviation_tolerance, limits.min_size, default_size, max_gradation,
                out, out_params, out_targets, deviation);
        });
        result = py::make_tuple(status, to_array(new_coords, coords), to_array(out), to_array(out_params),
            to_array(out_targets), deviation);
    });
    return result;
}

/// Runs a call that appends nodes to coordinates and their numbers to a list.
template <class Call>
py::tuple append_nodes(real_array const& coords, Call call)
{
    matrix new_coords = matrix_view(coords);
    nodes out;
    int const status = unlocked([&] { return call(new_coords, out); });
    return py::make_tuple(status, to_array(new_coords, coords), to_array(out));
}

template <std::size_t N>
py::tuple point_of_spline(real_array const& coords, std::array<unsigned, 4> const& i, double t)
{
    vector_fixed<double, N> point{};
    matrix const nodes = matrix_view(coords);
    int const status = unlocked([&] { return spline_point(nodes, i[0], i[1], i[2], i[3], t, point); });
    return py::make_tuple(status, py::array_t<double>(N, point.values));
}

/// Runs a call that fills a list or a matrix.
template <class Result, class Call>
py::tuple make(Call call)
{
    Result result;
    int const status = unlocked([&] { return call(result); });
    return py::make_tuple(status, to_array(result));
}

/// Runs a call that changes a matrix, on a copy of it.
template <class T, class Call>
py::tuple change(py::array_t<T, py::array::c_style> const& values, Call call)
{
    dense2D<T> result = matrix_copy(values);
    int const status = unlocked([&] { return call(result); });
    return py::make_tuple(status, to_array(result));
}

/// The steps of an extrusion: their number, or the target sizes at the two ends.
using steps = std::variant<unsigned, std::array<double, 2>>;
using start = std::variant<unsigned, real_array>;

/// Calls `draw(coords, start, steps..., out)`.
template <std::size_t N, class Draw>
py::tuple extrude(real_array const& coords, start const& from, steps const& by, bool even, Draw draw)
{
    auto const draw_from = [&](auto const& where) {
        return append_nodes(coords, [&](matrix& new_coords, nodes& out) {
            if (auto const* const count = std::get_if<unsigned>(&by))
                return draw(new_coords, where, out, *count);
            auto const [a, b] = std::get<1>(by);
            return draw(new_coords, where, out, a, b, even);
        });
    };
    if (auto const* const node = std::get_if<unsigned>(&from)) return draw_from(*node);
    return draw_from(to_vector<N>(std::get<1>(from)));
}

template <std::size_t N>
py::tuple translate(
    real_array const& coords, start const& from, real_array const& path, steps const& by, bool even)
{
    auto const v = to_vector<N>(path);
    return extrude<N>(coords, from, by, even, [&](matrix& all, auto const& where, nodes& out, auto... how) {
        return extrude_translate(all, where, v, how..., out);
    });
}

py::tuple rotate_in_plane(real_array const& coords, start const& from, real_array const& center, double angle,
    steps const& by, bool even)
{
    auto const c = to_vector<2>(center);
    return extrude<2>(coords, from, by, even, [&](matrix& all, auto const& where, nodes& out, auto... how) {
        return extrude_rotate(all, where, c, angle, how..., out);
    });
}

py::tuple rotate_in_space(real_array const& coords, start const& from, real_array const& center,
    real_array const& rotation, steps const& by, bool even)
{
    auto const c = to_vector<3>(center);
    auto const r = to_vector<3>(rotation);
    return extrude<3>(coords, from, by, even, [&](matrix& all, auto const& where, nodes& out, auto... how) {
        return extrude_rotate(all, where, c, r, how..., out);
    });
}

py::tuple remesh(real_array const& coords, node_array const& connect, double size, real_array const& sizes,
    node_array const& colors, node_array const& hard_nodes, node_array const& hard_edges,
    remesh_limits const& by)
{
    matrix new_coords = matrix_view(coords);
    connectivity lines = matrix_view(connect); // replaced, as the colours are, not written to
    nodes new_colors = list_view(colors);
    nodes breaks = list_copy(hard_nodes); // the call writes to it
    reals const own_sizes = list_view(sizes);
    nodes const edges = list_view(hard_edges);
    int const status = unlocked([&] {
        return remesh_lines(new_coords, lines, size, own_sizes, new_colors, breaks, edges, by.force_even,
            by.max_angle, by.deviation_tolerance, by.max_gradation, by.min_size, by.min_elements,
            by.max_elements);
    });
    // After a failure they still view the caller's arrays.
    if (status != 0) return py::make_tuple(status, py::none(), py::none(), py::none(), py::none());
    if (lines.data() == connect.data() && !lines.copy(matrix_view(connect))) throw std::bad_alloc();
    if (new_colors.data() == colors.data() && !new_colors.copy(list_view(colors))) throw std::bad_alloc();
    return py::make_tuple(
        status, to_array(new_coords, coords), to_array(lines), to_array(new_colors), to_array(breaks));
}

void bind_line_meshing(py::module_& m)
{
    py::class_<mesh_limits>(m, "mesh_limits").def(py::init<bool, unsigned, unsigned, double, double>());
    py::class_<remesh_limits>(m, "remesh_limits")
        .def(py::init<bool, double, double, double, double, unsigned, unsigned>())
        .def_readonly("max_angle", &remesh_limits::max_angle)
        .def_readonly("deviation_tolerance", &remesh_limits::deviation_tolerance)
        .def_readonly("max_gradation", &remesh_limits::max_gradation)
        .def_readonly("min_size", &remesh_limits::min_size)
        .def_readonly("max_elements", &remesh_limits::max_elements)
        .def(py::pickle(
            [](remesh_limits const& by) {
                return py::make_tuple(by.force_even, by.max_angle, by.deviation_tolerance, by.max_gradation,
                    by.min_size, by.min_elements, by.max_elements);
            },
            [](py::tuple const& values) {
                return remesh_limits{values[0].cast<bool>(), values[1].cast<double>(),
                    values[2].cast<double>(), values[3].cast<double>(), values[4].cast<double>(),
                    values[5].cast<unsigned>(), values[6].cast<unsigned>()};
            }));
    m.def("mesh_line", line_mesh);
    m.def("mesh_spline", spline_mesh);
    m.def("spline_point", [](real_array const& coords, std::array<unsigned, 4> const& i, double t) {
        return coords.shape(1) == 2 ? point_of_spline<2>(coords, i, t) : point_of_spline<3>(coords, i, t);
    });
    m.def("mesh_straight_chain",
        [](real_array const& coords, node_array const& chain, real_array const& targets, bool even) {
            py::tuple result;
            with_targets(targets, [&](auto const& wanted, auto const&) {
                result = append_nodes(coords, [&](matrix& all, nodes& out) {
                    return mesh_straight(all, list_view(chain), wanted, even, out);
                });
            });
            return result;
        });
    m.def("mesh_straight_count",
        [](real_array const& coords, node_array const& chain, unsigned count, bool even) {
            nodes const indices = list_view(chain);
            return append_nodes(coords,
                [&](matrix& all, nodes& out) { return mesh_straight(all, indices, count, even, out); });
        });
    m.def("mesh_segment_sizes", [](real_array const& coords, std::array<unsigned, 2> const& ends,
                                    std::array<double, 2> const& sizes, bool even) {
        return append_nodes(coords, [&](matrix& all, nodes& out) {
            return mesh_straight(all, ends[0], ends[1], sizes[0], sizes[1], even, out);
        });
    });
    m.def("mesh_segment_count",
        [](real_array const& coords, std::vector<unsigned> const& ends, unsigned count) {
            return append_nodes(coords, [&](matrix& all, nodes& out) {
                return ends.size() == 2 ? mesh_straight(all, ends.at(0), ends.at(1), count, out)
                                        : mesh_straight(all, ends.at(0), ends.at(1), ends.at(2), count, out);
            });
        });
    m.def("remesh_hard_lines", remesh);
}

void bind_extrusion(py::module_& m)
{
    m.def("extrude_translate",
        [](real_array const& coords, start const& from, real_array const& path, steps const& by, bool even) {
            return path.size() == 2 ? translate<2>(coords, from, path, by, even)
                                    : translate<3>(coords, from, path, by, even);
        });
    m.def("extrude_rotate_2d", rotate_in_plane);
    m.def("extrude_rotate_3d", rotate_in_space);
}

void bind_metrics(py::module_& m)
{
    m.def("interpolate_metrics",
        [](real_array const& params, real_array const& values, real_array const& wanted) {
            py::tuple result;
            reals const from = list_view(params);
            reals const to = list_view(wanted);
            with_targets(values, [&](auto const& given, auto out) {
                int const status = unlocked([&] { return interpolate_metrics(from, given, to, out); });
                result = py::make_tuple(status, to_array(out));
            });
            return result;
        });
    m.def("metrics_from_directions", [](real_array const& directions, node_array const& indices, double along,
                                         double across, real_array const& metrics) {
        matrix const given = matrix_view(directions);
        nodes const chain = list_view(indices);
        return change(
            metrics, [&](matrix& all) { return metrics_gen_aniso2d(given, chain, along, across, all); });
    });
    m.def("metrics_gen_aniso2d", [](real_array const& coords, node_array const& connect, double normal_size,
                                     real_array const& metrics) {
        matrix const all = matrix_view(coords);
        connectivity const lines = matrix_view(connect);
        return change(
            metrics, [&](matrix& result) { return metrics_gen_aniso2d(all, lines, normal_size, result); });
    });
    m.def("metrics_gen_aniso3d", [](real_array const& coords, node_array const& connect, double normal_size,
                                     std::optional<double> binormal_size, real_array const& metrics) {
        matrix const all = matrix_view(coords);
        connectivity const lines = matrix_view(connect);
        return change(metrics, [&](matrix& result) {
            return binormal_size ? metrics_gen_aniso3d(all, lines, normal_size, *binormal_size, result)
                                 : metrics_gen_aniso3d(all, lines, normal_size, result);
        });
    });
}

void bind_measures(py::module_& m)
{
    m.def("curvatures", [](real_array const& coords, node_array const& indices) {
        matrix const all = matrix_view(coords);
        nodes const chain = list_view(indices);
        return make<reals>([&](reals& result) { return curvatures(all, chain, result); });
    });
    m.def("interpolate_coordinates",
        [](real_array const& coords, node_array const& indices, real_array const& params,
            node_array const& new_indices, real_array const& new_params) {
            nodes const chain = list_view(indices);
            nodes const moved = list_view(new_indices);
            reals const at = list_view(params);
            reals const to = list_view(new_params);
            return change(
                coords, [&](matrix& all) { return interpolate_coordinates(all, chain, at, moved, to); });
        });
    m.def("length", [](real_array const& coords, node_array const& elements) {
        double result = 0;
        matrix const all = matrix_view(coords);
        int const status = unlocked([&] {
            return elements.ndim() == 1 ? vornik1d::length(all, list_view(elements), result)
                                        : vornik1d::length(all, matrix_view(elements), result);
        });
        return py::make_tuple(status, result);
    });
    m.def("parametric_curvatures", [](real_array const& params, node_array const& connect,
                                       real_array const& tangents) {
        reals const at = list_view(params);
        connectivity const lines = matrix_view(connect);
        matrix const given = matrix_view(tangents);
        return make<reals>([&](reals& result) { return parametric_curvatures(at, lines, given, result); });
    });
    m.def("normals",
        [](real_array const& coords, node_array const& connect, double exponent, bool unit_length) {
            matrix const all = matrix_view(coords);
            connectivity const lines = matrix_view(connect);
            return make<matrix>(
                [&](matrix& result) { return normals(all, lines, exponent, unit_length, result); });
        });
}

void bind_elements(py::module_& m)
{
    using along = int (*)(nodes const&, connectivity&) noexcept;
    auto const define_along = [&m](char const* name, along append) {
        m.def(name, [append](node_array const& indices, node_array const& connect) {
            nodes const chain = list_view(indices);
            return change(connect, [&](connectivity& lines) { return append(chain, lines); });
        });
    };
    define_along("indices_to_connectE2", indices_to_connectE2);
    define_along("indices_to_connectE3", indices_to_connectE3);
    define_along("indices_to_connectE4", indices_to_connectE4);
    m.def("split_into_linear", [](node_array const& connect_in, node_array const& connect_out) {
        connectivity const given = matrix_view(connect_in);
        return change(connect_out, [&](connectivity& lines) { return split_into_linear(given, lines); });
    });
    m.def("convert_into_linear",
        [](node_array const& connect) { return change(connect, convert_into_linear); });
    m.def("convert_into_high_order",
        [](real_array const& coords, node_array const& connect, unsigned extra_nodes) {
            matrix all = matrix_view(coords);
            connectivity lines = matrix_copy(connect);
            connectivity const given = lines;
            connectivity result;
            int const status = unlocked([&] {
                if (extra_nodes == 0) return convert_into_high_order(all, lines, extra_nodes);
                return convert_into_high_order(all, given, extra_nodes, result);
            });
            return py::make_tuple(status, to_array(all, coords), to_array(extra_nodes == 0 ? lines : result));
        });
    using in_place = int (*)(matrix&, connectivity&) noexcept;
    auto const define_in_place = [&m](char const* name, in_place convert) {
        m.def(name, [convert](real_array const& coords, node_array const& connect) {
            matrix all = matrix_view(coords);
            connectivity lines = matrix_copy(connect);
            int const status = unlocked([&] { return convert(all, lines); });
            return py::make_tuple(status, to_array(all, coords), to_array(lines));
        });
    };
    define_in_place("convert_into_quadratic", convert_into_quadratic);
    define_in_place("convert_into_cubic", convert_into_cubic);
    m.def("flip", [](node_array const& connect) { return change(connect, flip); });
    m.def("get_neighbors", [](node_array const& connect) {
        connectivity const lines = matrix_view(connect);
        return make<connectivity>([&](connectivity& result) {
            return vornik::get_neighbors(lines, vornik::element_type::edge, false, result);
        });
    });
    m.def("mesh_reorient",
        [](node_array const& connect, node_array const& neighbors, unsigned first, bool all_components) {
            connectivity lines = matrix_copy(connect);
            connectivity sides = matrix_copy(neighbors);
            int const status =
                unlocked([&] { return mesh_reorient(lines, sides, first, all_components ? 1 : 0); });
            return py::make_tuple(status, to_array(lines), to_array(sides));
        });
}

void bind_forecasts(py::module_& m)
{
    m.def("chain_metric_lengths",
        [](real_array const& coords, node_array const& indices, real_array const& targets, bool each) {
            reals lengths;
            double sum = 0;
            matrix const all = matrix_view(coords);
            nodes const chain = list_view(indices);
            if (each && chain.size() > 1 && !lengths.resize(chain.size() - 1, 0.0)) throw std::bad_alloc();
            with_targets(targets, [&](auto const& wanted, auto const&) {
                unlocked([&] {
                    sum = chain_metric_length(all, chain, wanted, lengths.empty() ? nullptr : lengths.data());
                    return 0;
                });
            });
            return py::make_tuple(sum, to_array(lengths));
        });
    m.def("network_metric_lengths", [](real_array const& coords, node_array const& connect, double size,
                                        real_array const& sizes, bool each) {
        reals lengths;
        network_request result;
        matrix const all = matrix_view(coords);
        connectivity const lines = matrix_view(connect);
        reals const own_sizes = list_view(sizes);
        if (each && !lengths.resize(lines.cols(), 0.0)) throw std::bad_alloc();
        unlocked([&] {
            result = request_of(all, lines, size, own_sizes, lengths.empty() ? nullptr : lengths.data());
            return 0;
        });
        return py::make_tuple(result.metric_length, result.is_steep, to_array(lengths));
    });
    m.def(
        "network_chains", [](real_array const& coords, node_array const& connect, double size,
                              real_array const& sizes, node_array const& colors, node_array const& hard_nodes,
                              node_array const& hard_edges, double max_angle, double min_size) {
            matrix const all = matrix_view(coords);
            connectivity const given = matrix_view(connect);
            connectivity const elements = given.sub_matrix(0, 0, 2, given.cols());
            reals const own_sizes = list_view(sizes);
            nodes const own_colors = list_view(colors);
            nodes const breaks = list_view(hard_nodes);
            nodes const edges = list_view(hard_edges);
            remesh_rule rule;
            rule.default_size = size;
            rule.max_angle = max_angle;
            rule.min_size = min_size;
            cut_lines lines;
            bool const is_cut = unlocked([&] {
                old_mesh const old{.connect = elements,
                    .sizes = own_sizes,
                    .colors = own_colors,
                    .hard_nodes = breaks,
                    .hard_edges = edges,
                    .max_node = largest_entry(elements)};
                return all.rows() == 2 ? cut_network<2>(all, old, rule, lines)
                                       : cut_network<3>(all, old, rule, lines);
            }) != 0;
            if (!is_cut) throw std::bad_alloc();
            return py::make_tuple(to_array(lines.chains.chain_starts), to_array(lines.chains.chain_elements),
                to_array(lines.node_sizes));
        });
    m.def("element_count", [](double metric_length, bool even, unsigned fewest, unsigned most) {
        return element_count(
            metric_length, {.force_even = even, .min_elements = fewest, .max_elements = most});
    });
}

void bind_parameters(py::module_& m)
{
    m.def("sort", [](real_array const& params, node_array const& indices) {
        reals values = list_copy(params);
        nodes list = list_copy(indices);
        int const status = unlocked([&] { return vornik1d::sort(values, list); });
        return py::make_tuple(status, to_array(values), to_array(list));
    });
    m.def("subdivide", [](real_array const& params, real_array const& sizes, node_array const& indices,
                           bool round_up, bool even, unsigned fewest, unsigned most) {
        reals values = list_copy(params);
        reals targets = list_copy(sizes);
        nodes const chain = list_view(indices);
        nodes out;
        int const status =
            unlocked([&] { return subdivide(values, targets, chain, round_up, even, fewest, most, out); });
        return py::make_tuple(status, to_array(values), to_array(targets), to_array(out));
    });
    m.def("version", version, "The version of the library.");
}

} // namespace

PYBIND11_MODULE(_core, m)
{
    m.doc() = "The compiled part of vornik1d. Use the functions of the package.";
    bind_line_meshing(m);
    bind_extrusion(m);
    bind_metrics(m);
    bind_measures(m);
    bind_elements(m);
    bind_parameters(m);
    bind_networks(m);
    bind_forecasts(m);
}
