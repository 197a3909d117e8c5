// Calls every function, each overload, on fixed inputs and prints what it makes: a line per result, the name of
// the call and the numbers without rounding. The tests of the package compare its results with these.

#include <cstddef>
#include <cstdio>
#include <initializer_list>
#include <string>

#include <vornik1d/vornik1d.h>

using namespace trelk;
using namespace trelk::vornik1d;

namespace {

using reals = dense1D<double>;
using nodes = dense1D<unsigned>;
using matrix = dense2D<double>;
using connectivity = dense2D<unsigned>;

constexpr unsigned count = 12;
constexpr unsigned no_limit = 4294967295;

matrix make_coords(std::size_t rows)
{
    matrix result;
    static_cast<void>(result.resize(rows, count, 0.0));
    for (unsigned k = 0; k < count; ++k) {
        double const p[] = {k + k * k % 7 / 8.0, k * 5 % 11 / 4.0, k * 3 % 7 / 2.0};
        for (std::size_t r = 0; r < rows; ++r) result(r, k) = p[r];
    }
    return result;
}

matrix make_metrics(std::size_t rows)
{
    matrix result;
    static_cast<void>(result.resize(rows, count, 0.0));
    for (unsigned k = 0; k < count; ++k) {
        double const flat[] = {4.0 + k % 3, k % 2 / 2.0, 2.0 + k % 5};
        double const deep[] = {4.0 + k % 3, k % 2 / 2.0, 3.0, 0.25, 0.0, 2.0 + k % 5};
        for (std::size_t r = 0; r < rows; ++r) result(r, k) = rows == 3 ? flat[r] : deep[r];
    }
    return result;
}

template <class T>
dense1D<T> list(std::initializer_list<T> values)
{
    dense1D<T> result;
    for (T const value : values) result.push_back(value);
    return result;
}

void print(double value) { std::printf(" %a", value); }
void print(dense1D<double> const& values)
{
    for (double const value : values) print(value);
}
void print(dense1D<unsigned> const& values)
{
    for (unsigned const value : values) print(value);
}
template <class T>
void print(dense2D<T> const& values)
{
    for (std::size_t j = 0; j < values.cols() && values.rows() > 0; ++j)
        for (std::size_t i = 0; i < values.rows(); ++i) print(values(i, j));
}

/// A line for each result of a call that has returned `status`.
template <class... Results>
void show(std::string const& name, int status, Results const&... results)
{
    auto const show_one = [&](auto const& result) {
        std::printf("%s", name.c_str());
        if (status < 0) std::printf(" failed");
        print(result);
        std::puts("");
    };
    (show_one(results), ...);
}

struct inputs
{
    matrix coords, metrics;
    nodes chain, guided = list<unsigned>({0, 0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 11});
    reals params, sizes, guided_sizes;
    connectivity connect;
    nodes out;
    reals out_params, out_sizes;
    matrix out_metrics;

    explicit inputs(std::size_t rows)
        : coords(make_coords(rows)), metrics(make_metrics(rows * (rows + 1) / 2))
    {
        for (unsigned k = 0; k < count; ++k) {
            chain.push_back(k);
            params.push_back(k * (k + 1) / 2.0);
            sizes.push_back((1 + k % 4) / 4.0);
        }
        for (unsigned const k : guided) guided_sizes.push_back((1 + k % 4) / 4.0);
        static_cast<void>(indices_to_connectE2(chain, connect));
    }
};

template <std::size_t N>
void show_lines(std::string const& in)
{
    {
        inputs a(N);
        int const s = mesh_line(a.coords, a.chain, a.params, a.sizes, true, 1, no_limit, 0.5, 0.0, a.out,
            a.out_params, a.out_sizes);
        show("mesh_line params sizes" + in, s, a.coords, a.out, a.out_params, a.out_sizes);
    }
    {
        inputs a(N);
        int const s =
            mesh_line(a.coords, a.chain, a.sizes, false, 1, 99, -0.1, 0.2, a.out, a.out_params, a.out_sizes);
        show("mesh_line sizes" + in, s, a.coords, a.out, a.out_params, a.out_sizes);
    }
    {
        inputs a(N);
        int const s = mesh_line(a.coords, a.chain, a.params, a.metrics, false, 1, no_limit, 0.5, 0.0, a.out,
            a.out_params, a.out_metrics);
        show("mesh_line params metrics" + in, s, a.coords, a.out, a.out_params, a.out_metrics);
    }
    {
        inputs a(N);
        int const s = mesh_line(
            a.coords, a.chain, a.metrics, false, 1, no_limit, 0.0, 0.0, a.out, a.out_params, a.out_metrics);
        show("mesh_line metrics" + in, s, a.coords, a.out, a.out_params, a.out_metrics);
    }
    for (bool const by_tensors : {false, true}) {
        inputs a(N);
        double deviation = 0;
        matrix guided_metrics;
        static_cast<void>(guided_metrics.resize(a.metrics.rows(), a.guided.size()));
        for (std::size_t k = 0; k < a.guided.size(); ++k)
            for (std::size_t r = 0; r < a.metrics.rows(); ++r)
                guided_metrics(r, k) = a.metrics(r, a.guided[k]);
        if (by_tensors) {
            int const s = mesh_spline(a.coords, a.guided, guided_metrics, false, 1, no_limit, -0.01, 0.01,
                0.0, 0.5, a.out, a.out_params, a.out_metrics, deviation);
            show("mesh_spline metrics" + in, s, a.coords, a.out, a.out_params, a.out_metrics, deviation);
        } else {
            int const s = mesh_spline(a.coords, a.guided, a.guided_sizes, false, 1, no_limit, 0.05, 0.01, 0.0,
                0.5, a.out, a.out_params, a.out_sizes, deviation);
            show("mesh_spline sizes" + in, s, a.coords, a.out, a.out_params, a.out_sizes, deviation);
        }
    }
    inputs a(N);
    vector_fixed<double, N> point{};
    int status = spline_point(a.coords, 0, 1, 2, 3, 0.375, point);
    show("spline_point" + in, status, reals(N, point.values));

    auto const show_straight = [&](std::string const& name, auto const&... start) {
        inputs b(N);
        int const s = mesh_straight(b.coords, start..., b.out);
        show("mesh_straight " + name + in, s, b.coords, b.out);
    };
    show_straight("sizes", a.chain, a.sizes, true);
    show_straight("metrics", a.chain, a.metrics, false);
    show_straight("count", a.chain, 40U, false);
    show_straight("segment sizes", 2U, 5U, 0.25, 0.5, false);
    show_straight("segment count", 2U, 5U, 7U);
    show_straight("segments count", 2U, 5U, 9U, 7U);

    reals values;
    matrix tensors;
    auto const wanted = list({0.0, 0.5, 7.0, 66.0});
    status = interpolate_metrics(a.params, a.sizes, wanted, values);
    show("interpolate_metrics sizes" + in, status, values);
    status = interpolate_metrics(a.params, a.metrics, wanted, tensors);
    show("interpolate_metrics metrics" + in, status, tensors);
    status = curvatures(a.coords, a.chain, values);
    show("curvatures" + in, status, values);
    double result = 0;
    status = length(a.coords, a.chain, result);
    show("length" + in, status, result);
    status = length(a.coords, a.connect, result);
    show("length connect" + in, status, result);
    status = parametric_curvatures(a.params, a.connect, a.coords, values);
    show("parametric_curvatures" + in, status, values);
    status = interpolate_coordinates(a.coords, a.chain, a.params, list({3U, 4U}), list({0.5, 50.0}));
    show("interpolate_coordinates" + in, status, a.coords);

    {
        inputs b(N);
        status = remesh_lines(b.coords, b.connect, 0.75, true, 60, 0.0, 0.0, 0.0, 1, no_limit);
        show("remesh_lines" + in, status, b.coords, b.connect);
    }
    {
        inputs b(N);
        auto colors = list({7U, 7U, 9U});
        status = remesh_lines(b.coords, b.connect, 0.75, colors, false, 60, 0.1, 0.5, 0.01, 1, no_limit);
        show("remesh_lines colors" + in, status, b.coords, b.connect, colors);
    }
    {
        inputs b(N);
        auto colors = list({7U, 7U, 9U});
        auto hard = list({5U});
        status = remesh_lines(b.coords, b.connect, 0.75, list({0.25, 0.5}), colors, hard, list({8U}), false,
            60, -0.1, 0.5, 0.01, 1, no_limit);
        show("remesh_lines hard" + in, status, b.coords, b.connect, colors, hard);
    }

    using point_type = vector_fixed<double, N>;
    point_type start{}, path{}, center{};
    for (std::size_t i = 0; i < N; ++i)
        start[i] = 0.5, path[i] = 3.0 - double(i), center[i] = -0.25 * double(i);
    auto const show_extrusion = [&](std::string const& name, auto const& draw, auto... how) {
        for (bool const from_node : {false, true}) {
            inputs b(N);
            int const s =
                from_node ? draw(b.coords, 3U, how..., b.out) : draw(b.coords, start, how..., b.out);
            std::string label = name;
            label += from_node ? " node" : " point";
            show(label + in, s, b.coords, b.out);
        }
    };
    auto const rotate = [&](matrix& all, auto const& from, auto&... how) {
        if constexpr (N == 2)
            return extrude_rotate(all, from, center, 2.5, how...);
        else
            return extrude_rotate(all, from, center, path, how...);
    };
    auto const shift = [&](matrix& all, auto const& from, auto&... how) {
        return extrude_translate(all, from, path, how...);
    };
    show_extrusion("extrude_translate count", shift, 5U);
    show_extrusion("extrude_translate sizes", shift, 0.25, 0.75, true);
    show_extrusion("extrude_rotate count", rotate, 5U);
    show_extrusion("extrude_rotate sizes", rotate, 0.25, 0.75, true);
}

void show_rest()
{
    inputs a(2);
    inputs b(3);
    matrix metrics;
    int status = metrics_gen_aniso2d(a.coords, a.chain, 0.5, 2.0, metrics);
    show("metrics_gen_aniso2d directions", status, metrics);
    status = metrics_gen_aniso2d(a.coords, a.connect, -0.5, metrics);
    show("metrics_gen_aniso2d", status, metrics);
    metrics.clear();
    status = metrics_gen_aniso3d(b.coords, b.connect, 0.5, metrics);
    show("metrics_gen_aniso3d", status, metrics);
    status = metrics_gen_aniso3d(b.coords, b.connect, 0.25, 0.5, metrics);
    show("metrics_gen_aniso3d binormal", status, metrics);
    matrix result;
    status = normals(a.coords, a.connect, 1.0, true, result);
    show("normals", status, result);

    connectivity line = a.connect;
    connectivity cubic, quadratic, halves;
    status = indices_to_connectE2(list({0U, 11U}), line);
    show("indices_to_connectE2", status, line);
    status = indices_to_connectE3(list({0U, 1U, 2U, 3U, 4U}), quadratic);
    show("indices_to_connectE3", status, quadratic);
    status = indices_to_connectE4(list({0U, 1U, 2U, 3U}), cubic);
    show("indices_to_connectE4", status, cubic);
    status = split_into_linear(quadratic, halves);
    show("split_into_linear", status, halves);
    status = convert_into_high_order(a.coords, halves, 3, cubic);
    show("convert_into_high_order", status, a.coords, cubic);
    connectivity same;
    static_cast<void>(same.copy(halves));
    status = convert_into_high_order(a.coords, same, 0);
    show("convert_into_high_order none", status, same);
    status = convert_into_linear(cubic);
    show("convert_into_linear", status, cubic);
    status = convert_into_quadratic(b.coords, halves);
    show("convert_into_quadratic", status, b.coords, halves);
    status = convert_into_cubic(b.coords, b.connect);
    show("convert_into_cubic", status, b.coords, b.connect);
    status = flip(b.connect);
    show("flip", status, b.connect);

    connectivity mixed, sides;
    status = indices_to_connectE2(list({0U, 1U}), mixed);
    status += indices_to_connectE2(list({2U, 1U}), mixed);
    status += indices_to_connectE2(list({2U, 3U}), mixed);
    static_cast<void>(sides.resize(2, 3, no_limit));
    sides(0, 0) = 1, sides(0, 1) = 0, sides(1, 1) = 2, sides(1, 2) = 1;
    status += mesh_reorient(mixed, sides, 0, 1);
    show("mesh_reorient", status, mixed, sides, double(status));

    auto values = list({3.0, 1.0, 2.0, 1.0});
    auto numbers = list({7U, 5U, 6U, 4U});
    status = vornik1d::sort(values, numbers);
    show("sort", status, values, numbers);
    status = subdivide(a.params, a.sizes, a.chain, true, false, 1, no_limit, a.out);
    show("subdivide", status, a.params, a.sizes, a.out);
}

} // namespace

int main()
{
    show_lines<2>(" 2D");
    show_lines<3>(" 3D");
    show_rest();
}
