// Times a function of the library on a line from a file, for benchmarks/peers.py, and prints JSON:
// vornik1d_peer_line FILE FUNCTION. The file holds doubles: 2 coordinates of each node, then a size and then a
// parameter for each.

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <string_view>
#include <vector>

#include "calls.h"
#include "race.h"

namespace {

bare::line<2> read_line(char const* path)
{
    bare::line<2> line;
    line.resize(std::filesystem::file_size(path) / (4 * sizeof(double)));
    std::ifstream file(path, std::ios::binary);
    auto const read = [&](auto& values) {
        file.read(reinterpret_cast<char*>(values.data()),
            static_cast<std::streamsize>(values.size() * sizeof values[0]));
    };
    read(line.points), read(line.sizes), read(line.params);
    if (!file || line.size() < 2) line.resize(0);
    return line;
}

/// `remesh_lines` on the segments of a line, with its sizes at their nodes. The tolerance lets a spline through.
int remesh(sized_chain const& in, remeshing& mesh)
{
    auto const segments = static_cast<double>(in.indices.size() - 1);
    double const tolerance = 10 / (segments * segments);
    trelk::dense1D<unsigned> colors;
    trelk::dense1D<unsigned> hard_nodes;
    trelk::dense1D<unsigned> const hard_edges;
    return trelk::vornik1d::remesh_lines(mesh.coords, mesh.connect, 0.0, in.targets, colors, hard_nodes,
        hard_edges, false, 60, tolerance, 0.0, 0.0, 1, no_limit);
}

/// Median time of a call, in nanoseconds, from as many as take a quarter of a second; prints it and the number
/// of new nodes.
template <class Prepare, class Run>
bool measure(std::size_t old_nodes, Prepare const& prepare, Run const& run)
{
    constexpr double enough = 2.5e8;
    std::size_t new_nodes = 0;
    {
        auto call = prepare();
        if (run(call) != 0) return false;
        new_nodes = call.coords.cols() - old_nodes;
    }
    std::vector<double> times;
    double sum = 0;
    while (sum < enough) {
        times.push_back(fresh_nanoseconds(prepare, run));
        sum += times.back();
    }
    std::printf("{\"ns\": %.0f, \"new_nodes\": %zu}\n", median(times), new_nodes);
    return true;
}

bool measure(std::string_view function, bare::line<2>& line)
{
    std::size_t const n = line.size();
    auto const input = to_input(line);
    auto const prepare = [&] { return before_call(input); };
    if (function == "mesh_line")
        return measure(n, prepare, [&](auto& out) { return mesh_line(input, 0.0, out); });
    if (function == "mesh_straight")
        return measure(n, prepare, [&](auto& out) { return mesh_straight(input, out); });
    if (function == "mesh_spline") {
        auto const guided = with_guides(input);
        return measure(n, prepare, [&](auto& out) { return mesh_spline(guided, 0.0, out); });
    }
    if (function == "remesh_lines") {
        network lines;
        lines.coords = copy_of(input.coords);
        require(trelk::vornik1d::indices_to_connectE2(input.indices, lines.connect) == 0);
        return measure(
            n, [&] { return before_call(lines); }, [&](auto& mesh) { return remesh(input, mesh); });
    }
    return false;
}

} // namespace

int main(int argc, char** argv)
{
    auto line = argc == 3 ? read_line(argv[1]) : bare::line<2>();
    if (line.size() < 2 || !measure(argv[2], line)) {
        std::fputs("vornik1d_peer_line: no such line, or no such function, or it fails\n", stderr);
        return 1;
    }
    return 0;
}
