#include "remesh.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <limits>
#include <string>
#include <vector>

#include <vornik1d/vornik1d.h>

#include "peak_memory.h"
#include "race.h"

using namespace trelk;

namespace {

constexpr unsigned no_limit = std::numeric_limits<unsigned>::max();
constexpr std::size_t elements_per_chain = 20;
constexpr double element_length = 0.05;
constexpr double default_size = 0.035;
constexpr double max_angle = 50;

/// Streets on a square lattice, each of `elements_per_chain` elements along a wave: nodes of valence 2 to 4 at
/// the crossings, where no street goes on without a corner.
struct network
{
    explicit network(std::size_t elements)
    {
        // side (side - 1) streets run either way
        std::size_t const streets = elements / elements_per_chain;
        auto const side =
            static_cast<unsigned>(std::lround(0.5 + std::sqrt(static_cast<double>(streets) / 2)));
        for (unsigned y = 0; y < side; ++y)
            for (unsigned x = 0; x < side; ++x) nodes.insert(nodes.end(), {double(x), double(y)});
        for (unsigned i = 0; i < side * side; ++i) {
            if (i % side + 1 < side) add_street(i, i + 1);
            if (i == 0) add_street(side, 0); // else two would begin at node 0, which is then no break node
            if (i > 0 && i / side + 1 < side) add_street(i, i + side);
        }
    }

    void add_street(unsigned from, unsigned to)
    {
        double const* const start = &nodes[std::size_t{2} * from];
        double const* const end = &nodes[std::size_t{2} * to];
        double const x = start[0];
        double const y = start[1];
        double const dx = end[0] - x;
        double const dy = end[1] - y;
        dense1D<unsigned> chain;
        chain.push_back(from);
        for (std::size_t k = 1; k < elements_per_chain; ++k) {
            double const t = static_cast<double>(k) * element_length;
            double const off = 0.08 * std::sin(7 * t) * (1 - t);
            chain.push_back(static_cast<unsigned>(nodes.size() / 2));
            nodes.push_back(x + t * dx - off * dy);
            nodes.push_back(y + t * dy + off * dx);
        }
        chain.push_back(to);
        connected = vornik1d::indices_to_connectE2(chain, connect) == 0 && connected;
        chains.push_back(chain);
    }

    std::vector<double> nodes;
    dense2D<unsigned> connect;
    std::vector<dense1D<unsigned>> chains;
    bool connected = true;
};

/// Meshes each of the chains on its own: what `remesh_lines` does once it has them.
int mesh_chains(network const& streets, double tolerance, dense2D<double>& coords)
{
    dense1D<unsigned> guided;
    dense1D<unsigned> mesh;
    dense1D<double> params;
    dense1D<double> sizes;
    dense1D<double> const targets(elements_per_chain + 3, default_size);
    int status = 0;
    for (auto const& chain : streets.chains) {
        mesh.clear(), params.clear(), sizes.clear(), guided.clear();
        double deviation = 0;
        double exact = 0;
        if (tolerance != 0) {
            guided.push_back(chain[0]);
            for (unsigned const node : chain) guided.push_back(node);
            guided.push_back(chain[elements_per_chain]);
            status += vornik1d::mesh_spline(coords, guided, targets, false, 1, no_limit, tolerance, 0.0,
                default_size, 0.0, mesh, params, sizes, deviation);
        } else {
            status += vornik1d::length(coords, chain, exact);
            status += vornik1d::mesh_line(
                coords, chain, targets, false, 1, no_limit, 1e-12 * exact, 0.0, mesh, params, sizes);
        }
    }
    return status;
}

/// `remesh_lines` beside the meshers on chains that are ready; a regime is a tolerance.
void remesh_lines(benchmark::State& state, std::size_t elements, double tolerance)
{
    network streets(elements);
    std::size_t const old_nodes = streets.nodes.size() / 2;
    dense2D<double> const old_coords(2, old_nodes, streets.nodes.data());
    dense2D<double> coords;
    dense2D<double> chain_coords;
    dense2D<unsigned> connect;
    bool is_ready = streets.connected && coords.copy(old_coords) && chain_coords.copy(old_coords);
    auto const prepare = [&] {
        connect = streets.connect;
        is_ready = coords.resize(2, old_nodes) && chain_coords.resize(2, old_nodes) && is_ready;
    };
    auto const library = [&] {
        return vornik1d::remesh_lines(
            coords, connect, default_size, false, max_angle, tolerance, 0.0, 0.0, 1, no_limit);
    };

    prepare();
    reset_peak_memory();
    int const status = library();
    auto const peak = static_cast<double>(peak_memory());
    std::size_t const new_nodes = coords.cols() - old_nodes;
    if (!is_ready || status != 0 || mesh_chains(streets, tolerance, chain_coords) != 0 ||
        chain_coords.cols() != coords.cols() ||
        std::memcmp(chain_coords.data(), coords.data(), 2 * coords.cols() * sizeof(double)) != 0) {
        disagree(state, "remesh_lines and the meshers on its chains do not agree");
        return;
    }
    auto const input =
        16.0 * static_cast<double>(old_nodes) + 8.0 * static_cast<double>(streets.connect.cols());
    auto const output = 16.0 * static_cast<double>(new_nodes) + 8.0 * static_cast<double>(connect.cols());
    std::size_t const old_elements = streets.connect.cols();
    race(
        state, {"chains", "element", old_elements}, [&] { mesh_chains(streets, tolerance, chain_coords); },
        prepare, library);
    state.counters["ns_per_new_node"] =
        state.counters["ns_per_element"] * static_cast<double>(old_elements) / static_cast<double>(new_nodes);
    state.counters["peak_over_in_and_out"] = (peak + input) / (input + output);
}

} // namespace

void enlist_remeshing()
{
    struct
    {
        char const* name;
        double tolerance;
    } const regimes[] = {{"line", 0}, {"spline_or_line", 0.01}, {"spline", -0.1}};
    for (auto const& [name, tolerance] : regimes)
        for (std::size_t elements = 1000; elements <= 1'000'000; elements *= 10)
            benchmark::RegisterBenchmark(
                (std::string("remesh_lines/") + name + "/elements:" + std::to_string(elements)).c_str(),
                remesh_lines, elements, tolerance)
                ->Iterations(std::max<std::int64_t>(5, static_cast<std::int64_t>(500'000 / elements)))
                ->UseManualTime()
                ->Unit(benchmark::kMicrosecond);
}
