// Drives all functions of the library by one stream of bytes: lines are prepared, damaged and handed from call
// to call, with storage refused now and then. What a call must keep is checked after it.

#include <array>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <utility>
#include <vector>

#include <vornik1d/vornik1d.h>

#include "allocations.h"
#include "stream.h"
#include "world.h"

using namespace trelk;
using namespace trelk::vornik1d;

namespace {

using lost = std::vector<void const*>; // containers that a failure may empty

class driver
{
public:
    explicit driver(stream& in) : in_(in) {}

    void run()
    {
        world_.prepare(in_);
        for (int calls = 0; calls < 8 && !in_.empty(); ++calls) {
            for (int damages = 0; damages < 3 && in_.rarely(3); ++damages) world_.disturb(in_);
            (this->*families[in_.below(families.size())])();
            world_.trim();
        }
    }

private:
    // Each argument is mostly the container that is meant for it.
    template <class Container, std::size_t n>
    Container& pick(std::array<Container, n>& containers, std::size_t part)
    {
        return containers[in_.rarely(16) ? in_.below(n) : part];
    }
    reals& real_list(std::size_t part) { return pick(world_.real_lists, part); }
    lists& node_list(std::size_t part) { return pick(world_.node_lists, part); }
    matrix& grid(std::size_t part) { return pick(world_.matrices, part); }
    connectivity& mesh(std::size_t part) { return pick(world_.meshes, part); }

    unsigned node() { return in_.node(world_.matrices[world::coords].cols()); }

    template <std::size_t N>
    vector_fixed<double, N> vector()
    {
        vector_fixed<double, N> v;
        for (double& x : v.values) x = in_.real();
        return v;
    }

    static void demand(bool holds, char const* what, int status)
    {
        if (holds) return;
        std::fprintf(stderr, "%s, status %d\n", what, status);
        std::abort();
    }

    /// Makes a call. On a failure all but what it may lose must be as it was; a success must keep the nodes that
    /// there were, and name none that there are not.
    template <class Call>
    void attempt(int arguments, lost const& may_lose, Call call)
    {
        bool const is_checked = in_.flag() && !world_.is_entangled();
        auto const before = is_checked ? world_.take(may_lose) : world::snapshot{};
        std::size_t const first_refused = in_.rarely(6) ? 1 + in_.below(60) : 0;
        limit_allocations(first_refused);
        int const status = call();
        lift_limits();
        bool const is_lack = status == no_storage || status == no_storage + 3 || status == no_storage + 4;
        demand(status >= -arguments || is_lack, "No such status", status);
        demand(!is_checked || status >= 0 || world_.take(may_lose) == before, "Changed on a failure", status);
    }

    /// The same for a call that makes nodes, appends their numbers to `nodes` and keeps all others.
    template <class Call>
    void attempt_mesh(int arguments, matrix& coords, lists& nodes, lost const& may_lose, Call call)
    {
        bool const is_checked = !world_.is_entangled();
        matrix old;
        static_cast<void>(old.copy(coords));
        std::size_t const count = nodes.size();
        int status = 0;
        attempt(arguments, may_lose, [&] { return status = call(); });
        if (status != 0 || !is_checked || coords.rows() != old.rows()) return;
        for (std::size_t k = count; k < nodes.size(); ++k)
            demand(nodes[k] < coords.cols(), "No such node", status);
        demand(coords.cols() >= old.cols(), "Nodes lost", status);
        for (std::size_t j = 0; j < old.cols(); ++j)
            for (std::size_t i = 0; i < old.rows(); ++i)
                demand(coords(i, j) == old(i, j) || old(i, j) != old(i, j), "Node moved", status);
    }

    void line_by(bool with_tensors, bool with_params)
    {
        auto& coords = grid(world::coords);
        auto& out = node_list(world::new_chain);
        auto& out_params = real_list(world::new_params);
        auto const& chain = node_list(world::chain);
        auto const& params = real_list(world::params);
        bool const even = in_.flag();
        unsigned const fewest = 1 + in_.count() % 9;
        unsigned const most = in_.count();
        double const tolerance = in_.rarely(2) ? in_.real() : 0.0;
        double const least = in_.real();
        auto const run = [&](auto const& targets, auto& out_targets) {
            attempt_mesh(12, coords, out, {&out_params}, [&] {
                return with_params ? mesh_line(coords, chain, params, targets, even, fewest, most, tolerance,
                                         least, out, out_params, out_targets)
                                   : mesh_line(coords, chain, targets, even, fewest, most, tolerance, least,
                                         out, out_params, out_targets);
            });
        };
        if (with_tensors)
            run(grid(world::metrics), grid(world::new_metrics));
        else
            run(real_list(world::sizes), real_list(world::new_sizes));
    }

    void lines() { line_by(in_.flag(), in_.flag()); }

    void splines()
    {
        auto& coords = grid(world::coords);
        auto& out = node_list(world::new_chain);
        auto& out_params = real_list(world::new_params);
        auto const& chain = node_list(world::chain);
        bool const even = in_.flag();
        unsigned const fewest = 1 + in_.count() % 9;
        unsigned const most = in_.count();
        double const tolerance = in_.real();
        double const least = in_.rarely(4) ? in_.real() : 1e-3;
        double const usual = in_.real();
        double const growth = in_.real();
        double own = 7;
        auto& result = real_list(world::result);
        bool const is_inside = in_.rarely(8) && !result.empty();
        double& deviation = is_inside ? result[0] : own;
        auto const run = [&](auto const& targets, auto& out_targets) {
            attempt_mesh(14, coords, out, {&result}, [&] {
                return mesh_spline(coords, chain, targets, even, fewest, most, tolerance, least, usual,
                    growth, out, out_params, out_targets, deviation);
            });
        };
        if (in_.flag())
            run(grid(world::metrics), grid(world::new_metrics));
        else
            run(real_list(world::sizes), real_list(world::new_sizes));
    }

    void spline_points()
    {
        auto const& coords = grid(world::coords);
        unsigned const i[] = {node(), node(), node(), node()};
        double const t = in_.real();
        auto in_plane = vector<2>();
        auto in_space = vector<3>();
        attempt(7, {}, [&] { return spline_point(coords, i[0], i[1], i[2], i[3], t, in_plane); });
        attempt(7, {}, [&] { return spline_point(coords, i[0], i[1], i[2], i[3], t, in_space); });
    }

    void straight_lines()
    {
        auto& coords = grid(world::coords);
        auto& out = node_list(world::new_chain);
        auto const& chain = node_list(world::chain);
        auto const& sizes = real_list(world::sizes);
        auto const& metrics = grid(world::metrics);
        bool const even = in_.flag();
        unsigned const a = node();
        unsigned const b = node();
        unsigned const c = node();
        unsigned const count = in_.count();
        double const h = in_.size();
        double const k = in_.size();
        std::size_t const form = in_.below(6);
        attempt_mesh(7, coords, out, {}, [&] {
            switch (form) {
            case 0:
                return mesh_straight(coords, chain, sizes, even, out);
            case 1:
                return mesh_straight(coords, chain, metrics, even, out);
            case 2:
                return mesh_straight(coords, chain, count, even, out);
            case 3:
                return mesh_straight(coords, a, b, h, k, even, out);
            case 4:
                return mesh_straight(coords, a, b, count, out);
            default:
                return mesh_straight(coords, a, b, c, count, out);
            }
        });
    }

    void interpolations()
    {
        auto const& params = real_list(world::params);
        auto const& wanted = real_list(world::new_params);
        if (in_.flag()) {
            auto const& values = real_list(world::sizes);
            auto& result = real_list(world::result);
            attempt(4, {&result}, [&] { return interpolate_metrics(params, values, wanted, result); });
        } else {
            auto const& tensors = grid(world::metrics);
            auto& result = grid(world::new_metrics);
            attempt(4, {&result}, [&] { return interpolate_metrics(params, tensors, wanted, result); });
        }
        auto& coords = grid(world::coords);
        auto const& chain = node_list(world::chain);
        auto const& targets = node_list(world::new_chain);
        attempt(5, {}, [&] { return interpolate_coordinates(coords, chain, params, targets, wanted); });
    }

    void generation()
    {
        auto const& coords = grid(world::coords);
        auto const& directions = grid(world::directions);
        auto const& line = mesh(world::line);
        auto const& chain = node_list(world::chain);
        auto& metrics = grid(world::new_metrics);
        double const h = in_.size();
        double const k = in_.real();
        std::size_t const form = in_.below(4);
        attempt(5, {&metrics}, [&] { // columns of zeros may have been added
            switch (form) {
            case 0:
                return metrics_gen_aniso2d(directions, chain, h, std::abs(k), metrics);
            case 1:
                return metrics_gen_aniso2d(coords, line, k, metrics);
            case 2:
                return metrics_gen_aniso3d(coords, line, k, metrics);
            default:
                return metrics_gen_aniso3d(coords, line, k, h, metrics);
            }
        });
    }

    void measures()
    {
        auto const& coords = grid(world::coords);
        auto const& chain = node_list(world::chain);
        auto const& line = mesh(world::line);
        auto const& params = real_list(world::params);
        auto const& tangents = grid(world::directions);
        auto& result = real_list(world::result);
        auto& at_nodes = grid(world::new_metrics);
        double const exponent = in_.real();
        bool const unit = in_.flag();
        double sum = 0;
        attempt(3, {&result}, [&] { return curvatures(coords, chain, result); });
        attempt(3, {}, [&] { return length(coords, chain, sum); });
        attempt(3, {}, [&] { return length(coords, line, sum); });
        attempt(4, {&result}, [&] { return parametric_curvatures(params, line, tangents, result); });
        attempt(5, {&at_nodes}, [&] { return normals(coords, line, exponent, unit, at_nodes); });
        demand(version()[0] == '5', "No version", 0);
    }

    void connectivities()
    {
        auto& coords = grid(world::coords);
        auto& line = mesh(world::line);
        auto& other = mesh(world::new_line);
        auto& neighbors = mesh(world::neighbors);
        auto const& chain = node_list(world::chain);
        unsigned const extra = in_.count();
        unsigned const start = in_.node(line.cols());
        int const all = int(in_.below(3)) - 1;
        std::size_t const form = in_.below(11);
        lost may_lose;
        if (form == 5) may_lose = {&other};
        if (form == 10) may_lose = {&line, &neighbors}; // turns made before are kept
        attempt(4, may_lose, [&] {
            switch (form) {
            case 0:
                return indices_to_connectE2(chain, other);
            case 1:
                return indices_to_connectE3(chain, other);
            case 2:
                return indices_to_connectE4(chain, other);
            case 3:
                return split_into_linear(line, other);
            case 4:
                return convert_into_linear(line);
            case 5:
                return convert_into_high_order(coords, line, extra, other);
            case 6:
                return convert_into_high_order(coords, line, extra);
            case 7:
                return convert_into_quadratic(coords, line);
            case 8:
                return convert_into_cubic(coords, line);
            case 9:
                return flip(line);
            default:
                return mesh_reorient(line, neighbors, start, all);
            }
        });
    }

    /// Both counts of a motion, from a point and from a node.
    template <class Translate, class Rotate, std::size_t N>
    void extrusion(vector_fixed<double, N> const& point, Translate translate, Rotate rotate)
    {
        auto& coords = grid(world::coords);
        auto& out = node_list(world::new_chain);
        unsigned const start = node();
        unsigned const count = in_.count();
        double const h = in_.size();
        double const k = in_.size();
        bool const even = in_.flag();
        std::size_t const form = in_.below(8);
        attempt_mesh(8, coords, out, {}, [&] {
            switch (form) {
            case 0:
                return translate(coords, point, count, out);
            case 1:
                return translate(coords, point, h, k, even, out);
            case 2:
                return translate(coords, start, count, out);
            case 3:
                return translate(coords, start, h, k, even, out);
            case 4:
                return rotate(coords, point, count, out);
            case 5:
                return rotate(coords, point, h, k, even, out);
            case 6:
                return rotate(coords, start, count, out);
            default:
                return rotate(coords, start, h, k, even, out);
            }
        });
    }

    void plane_extrusions()
    {
        auto const v = vector<2>();
        double const angle = in_.real();
        extrusion(
            vector<2>(),
            [&](auto& coords, auto start, auto&&... rest) {
                return extrude_translate(coords, start, v, rest...);
            },
            [&](auto& coords, auto start, auto&&... rest) {
                return extrude_rotate(coords, start, v, angle, rest...);
            });
    }

    void space_extrusions()
    {
        auto const v = vector<3>();
        auto const axis = vector<3>();
        extrusion(
            vector<3>(),
            [&](auto& coords, auto start, auto&&... rest) {
                return extrude_translate(coords, start, v, rest...);
            },
            [&](auto& coords, auto start, auto&&... rest) {
                return extrude_rotate(coords, start, v, axis, rest...);
            });
    }

    void remeshing()
    {
        auto& coords = grid(world::coords);
        auto& line = mesh(world::line);
        auto& colors = node_list(world::colors);
        auto& hard_nodes = node_list(world::hard_nodes);
        auto const& hard_edges = node_list(world::hard_edges);
        auto const& sizes = real_list(world::sizes);
        double const usual = in_.size();
        bool const even = in_.flag();
        double const angle = in_.rarely(4) ? in_.real() : 40.0;
        double const tolerance = in_.real();
        double const growth = in_.rarely(2) ? in_.real() : 0.0;
        double const least = in_.rarely(4) ? in_.real() : 1e-3;
        unsigned const fewest = in_.count() % 5;
        unsigned const most = in_.count();
        std::size_t const form = in_.below(3);
        attempt(14, {}, [&] {
            switch (form) {
            case 0:
                return remesh_lines(coords, line, usual, sizes, colors, hard_nodes, hard_edges, even, angle,
                    tolerance, growth, least, fewest, most);
            case 1:
                return remesh_lines(
                    coords, line, usual, colors, even, angle, tolerance, growth, least, fewest, most);
            default:
                return remesh_lines(coords, line, usual, even, angle, tolerance, growth, least, fewest, most);
            }
        });
    }

    void parameters()
    {
        auto& params = real_list(world::params);
        auto& sizes = real_list(world::sizes);
        auto& chain = node_list(world::chain);
        auto& out = node_list(world::new_chain);
        bool const up = in_.flag();
        bool const even = in_.flag();
        unsigned const fewest = in_.count();
        unsigned const most = in_.count();
        attempt(8, {}, [&] { return subdivide(params, sizes, chain, up, even, fewest, most, out); });
        attempt(2, {}, [&] { return vornik1d::sort(params, chain); });
    }

    static constexpr std::array families = {&driver::lines, &driver::lines, &driver::splines,
        &driver::spline_points, &driver::straight_lines, &driver::interpolations, &driver::generation,
        &driver::measures, &driver::connectivities, &driver::plane_extrusions, &driver::space_extrusions,
        &driver::remeshing, &driver::remeshing, &driver::parameters};

    stream& in_;
    world world_;
};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size)
{
    stream in(data, size);
    driver(in).run();
    return 0;
}
