// Networks cut into chains, as NumPy arrays that can travel to other threads, processes and machines.

#include <algorithm>
#include <cstring>
#include <memory>
#include <stdexcept>
#include <utility>
#include <vector>

#include <pybind11/stl.h>

#include "remesh/network_rule.h"

#include "arrays.h"
#include "bindings.h"
#include "network_cut.h"

using namespace trelk;
using namespace trelk::vornik1d;

namespace {

remesh_rule rule_of(double default_size, remesh_limits const& by)
{
    return network_rule(default_size, by.force_even, by.max_angle, by.deviation_tolerance, by.max_gradation,
        by.min_size, by.min_elements, by.max_elements);
}

/// A network that has been cut, and the arrays that it views.
class cut_network
{
public:
    cut_network(real_array coords, node_array connect, double default_size, real_array const& sizes,
        node_array const& colors, node_array const& hard_nodes, node_array const& hard_edges,
        remesh_limits const& limits)
        : coords_(std::move(coords)), connect_(std::move(connect))
    {
        if (connect_.ndim() != 2 || connect_.shape(0) == 0 || connect_.shape(1) < 2)
            throw py::value_error("connect must have rows and at least 2 columns");
        connectivity const all = matrix_view(connect_);
        network_input const network{.coords = matrix_view(coords_),
            .connect = all.sub_matrix(0, 0, 2, all.cols()),
            .sizes = list_copy(sizes),
            .colors = list_copy(colors),
            .hard_nodes = list_copy(hard_nodes),
            .hard_edges = list_copy(hard_edges)};
        status_ = unlocked([&] { return cut_.cut(network, rule_of(default_size, limits)); });
    }

    int status() const { return status_; }

    node_array break_nodes() const { return to_array(copy_of(cut_.lines().break_nodes)); }

    /// The first chain of each batch of at least `elements` elements, and the number of chains.
    std::vector<std::size_t> batch_starts(std::size_t elements) const
    {
        auto const& chains = cut_.lines().chains;
        std::vector<std::size_t> result = {0};
        for (std::size_t c = 1; c <= chains.size(); ++c)
            if (c == chains.size() || chains.chain_starts[c] - chains.chain_starts[result.back()] >= elements)
                result.push_back(c);
        return result;
    }

    /// The elements of some chains: their number.
    std::size_t elements(std::size_t first, std::size_t last) const
    {
        auto const& starts = cut_.lines().chains.chain_starts;
        require(first, last);
        return starts[last] - starts[first];
    }

    /// The elements of some chains, in the order of travel.
    node_array rows(std::size_t first, std::size_t last) const
    {
        require(first, last);
        auto const& chains = cut_.lines().chains;
        return to_array(
            copy_of(chains.chain_elements.sub_vector(chains.chain_starts[first], elements(first, last))));
    }

    py::tuple part(std::size_t first, std::size_t last) const
    {
        require(first, last);
        chain_batch batch;
        dense1D<unsigned> colors;
        if (!unlocked_success([&] {
                return cut_.gather(first, last, batch) &&
                       colors.copy(cut_.lines().chain_colors.sub_vector(first, last - first));
            }))
            throw std::bad_alloc();
        return py::make_tuple(to_array(batch.nodes), to_array(batch.coords), to_array(batch.sizes),
            to_array(batch.counts), to_array(batch.hard), to_array(colors));
    }

private:
    void require(std::size_t first, std::size_t last) const
    {
        if (status_ != 0 || first >= last || last > cut_.lines().chains.size())
            throw py::index_error("no such chains");
    }

    static nodes copy_of(nodes const& list)
    {
        nodes result;
        if (!result.copy(list)) throw std::bad_alloc();
        return result;
    }

    template <class Call>
    static bool unlocked_success(Call call)
    {
        return unlocked([&] { return call() ? 1 : 0; }) == 1;
    }

    real_array coords_;
    node_array connect_;
    network_cut cut_;
    int status_ = 0;
};

/// False unless the arrays of a part fit together.
bool is_consistent(chain_batch const& batch)
{
    std::size_t nodes = 0;
    for (unsigned const count : batch.counts) {
        if (count == 0) return false;
        nodes += std::size_t{count} + 1;
    }
    bool const are_chains = std::all_of(
        batch.hard.begin(), batch.hard.end(), [&](unsigned c) { return c < batch.counts.size(); });
    bool const is_dimension = batch.coords.rows() == 2 || batch.coords.rows() == 3;
    return nodes > 0 && nodes == batch.nodes.size() && nodes == batch.coords.cols() &&
           nodes == batch.sizes.size() && are_chains && is_dimension;
}

py::tuple mesh_part(node_array const& part_nodes, real_array const& coords, real_array const& sizes,
    node_array const& counts, node_array const& hard, node_array const& fewest, double default_size,
    remesh_limits const& limits, unsigned min_loop_elements)
{
    chain_batch const batch{.nodes = list_view(part_nodes),
        .coords = matrix_view(coords),
        .sizes = list_view(sizes),
        .counts = list_view(counts),
        .hard = list_view(hard),
        .fewest = list_view(fewest)};
    if (!is_consistent(batch)) throw py::value_error("the arrays of a part do not fit together");
    batch_mesh mesh;
    int const status =
        unlocked([&] { return mesh_batch(batch, rule_of(default_size, limits), min_loop_elements, mesh); });
    if (mesh.new_coords.empty()) mesh.new_coords = matrix(batch.coords.rows(), 0);
    return py::make_tuple(status, to_array(mesh.new_coords), to_array(mesh.connect), to_array(mesh.counts),
        to_array(mesh.raised), to_array(mesh.short_loops));
}

/// Writes the mesh of a part into the arrays of the whole mesh: its new nodes from row `first_node` on, its
/// elements and their colours from row `first_element` on.
void put_part(real_array& all_coords, node_array& all_connect, node_array& all_colors, std::size_t first_node,
    std::size_t first_element, node_array const& part_nodes, node_array const& chain_colors,
    real_array const& new_coords, node_array const& connect, node_array const& counts)
{
    auto const rows = [](py::array const& array) { return static_cast<std::size_t>(array.shape(0)); };
    std::size_t const elements = rows(connect);
    std::size_t const fresh = rows(new_coords);
    std::size_t const old = rows(part_nodes);
    std::size_t const width = static_cast<std::size_t>(all_coords.shape(1));
    double* const coords_out = all_coords.mutable_data();
    unsigned* const connect_out = all_connect.mutable_data() + 2 * first_element;
    unsigned* const colors_out = all_colors.mutable_data() + first_element;
    bool fits = first_node + fresh <= rows(all_coords) && first_element + elements <= rows(all_connect) &&
                rows(all_colors) == rows(all_connect) && rows(counts) == rows(chain_colors) &&
                (fresh == 0 || static_cast<std::size_t>(new_coords.shape(1)) == width) &&
                (elements == 0 || connect.shape(1) == 2) && all_connect.shape(1) == 2;
    std::size_t counted = 0;
    for (std::size_t c = 0; c < rows(counts); ++c) counted += counts.data()[c];
    for (std::size_t i = 0; fits && i < 2 * elements; ++i) fits = connect.data()[i] < old + fresh;
    if (!fits || counted != elements) throw py::value_error("the mesh of a part does not fit");

    py::gil_scoped_release const release;
    if (fresh > 0)
        std::memcpy(coords_out + width * first_node, new_coords.data(), fresh * width * sizeof(double));
    unsigned const* const numbers = part_nodes.data();
    for (std::size_t i = 0; i < 2 * elements; ++i) {
        unsigned const node = connect.data()[i];
        connect_out[i] = node < old ? numbers[node] : static_cast<unsigned>(first_node + node - old);
    }
    unsigned* color = colors_out;
    for (std::size_t c = 0; c < rows(counts); ++c)
        color = std::fill_n(color, counts.data()[c], chain_colors.data()[c]);
}

/// Whether two elements alone meet at a node at which both start or both end.
bool has_opposed_elements(node_array const& connect, std::size_t node_count)
{
    connectivity const lines = matrix_view(connect);
    std::vector<unsigned char> starts(node_count), ends(node_count);
    py::gil_scoped_release const release;
    for (std::size_t e = 0; e < lines.cols(); ++e) {
        unsigned const a = lines(0, e);
        unsigned const b = lines(1, e);
        if (a >= node_count || b >= node_count) return false; // the library reports the fault
        starts[a] = static_cast<unsigned char>(std::min(starts[a] + 1, 3));
        ends[b] = static_cast<unsigned char>(std::min(ends[b] + 1, 3));
    }
    for (std::size_t n = 0; n < node_count; ++n)
        if (starts[n] + ends[n] == 2 && starts[n] != 1) return true;
    return false;
}

} // namespace

void bind_networks(py::module_& m)
{
    py::class_<cut_network>(m, "cut_network")
        .def(py::init<real_array, node_array, double, real_array const&, node_array const&, node_array const&,
            node_array const&, remesh_limits const&>())
        .def_property_readonly("status", &cut_network::status)
        .def("break_nodes", &cut_network::break_nodes)
        .def("batch_starts", &cut_network::batch_starts)
        .def("elements", &cut_network::elements)
        .def("rows", &cut_network::rows)
        .def("part", &cut_network::part);
    m.def("mesh_part", mesh_part);
    m.def("put_part", put_part);
    m.def("has_opposed_elements", has_opposed_elements);
}
