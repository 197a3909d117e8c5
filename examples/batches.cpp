#include "batches.h"

#include <algorithm>
#include <limits>
#include <new>
#include <numeric>
#include <stdexcept>
#include <string>
#include <utility>

using trelk::dense2D;

namespace {

constexpr unsigned none = std::numeric_limits<unsigned>::max();

/// A root for each node. All nodes of a component have the same root.
std::vector<unsigned> component_roots(dense2D<unsigned> const& connect, std::size_t nodes)
{
    std::vector<unsigned> parent(nodes);
    std::iota(parent.begin(), parent.end(), 0U);
    auto const root_of = [&parent](unsigned node) {
        while (parent[node] != node) {
            parent[node] = parent[parent[node]];
            node = parent[node];
        }
        return node;
    };
    for (std::size_t e = 0; e < connect.cols(); ++e) {
        unsigned const a = root_of(connect(0, e));
        unsigned const b = root_of(connect(1, e));
        parent[std::max(a, b)] = std::min(a, b);
    }
    for (unsigned node = 0; node < nodes; ++node) parent[node] = root_of(node);
    return parent;
}

} // namespace

network_batches::network_batches(network_mesh const& network, std::size_t elements) : network_(network)
{
    auto const& connect = network.connect;
    std::vector<unsigned> const roots = component_roots(connect, network.coords.cols());

    // Number components by their lowest elements, then list the elements of each, by counting.
    std::vector<unsigned> component_of_root(roots.size(), none);
    std::vector<std::size_t> first = {0};
    for (std::size_t e = 0; e < connect.cols(); ++e) {
        unsigned& component = component_of_root[roots[connect(0, e)]];
        if (component == none) {
            component = static_cast<unsigned>(components_++);
            first.push_back(0);
        }
        ++first[component + 1];
    }
    std::partial_sum(first.begin(), first.end(), first.begin());
    starts_ = {0};
    for (std::size_t const end : first)
        if (end - starts_.back() >= elements) starts_.push_back(end);
    if (starts_.back() < connect.cols()) starts_.push_back(connect.cols());

    elements_.resize(connect.cols());
    for (unsigned e = 0; e < connect.cols(); ++e)
        elements_[first[component_of_root[roots[connect(0, e)]]]++] = e;
    numbers_.assign(roots.size(), none);
    parts_.resize(size());
}

void network_batches::remesh(std::size_t batch, remesh_request const& request)
{
    part& own = parts_[batch];
    auto& [coords, connect] = own.mesh;
    std::size_t const count = starts_[batch + 1] - starts_[batch];
    if (!connect.resize(2, count)) throw std::bad_alloc();
    for (std::size_t k = 0; k < count; ++k)
        for (std::size_t i = 0; i < 2; ++i) {
            unsigned const node = network_.connect(i, elements_[starts_[batch] + k]);
            if (numbers_[node] == none) {
                numbers_[node] = static_cast<unsigned>(own.nodes.size());
                own.nodes.push_back(node);
            }
            connect(i, k) = numbers_[node];
        }
    std::size_t const rows = network_.coords.rows();
    if (!coords.resize(rows, own.nodes.size())) throw std::bad_alloc();
    for (std::size_t k = 0; k < own.nodes.size(); ++k)
        std::copy_n(network_.coords.col(own.nodes[k]), rows, coords.col(k));

    int const status = trelk::vornik1d::remesh_lines(coords, connect, request.size, options_of(request));
    if (status != 0) throw std::runtime_error("remesh_lines failed with status " + std::to_string(status));
}

network_mesh network_batches::prepare_join()
{
    std::size_t nodes = network_.coords.cols();
    std::size_t elements = 0;
    for (part& own : parts_) {
        own.first_new_node = std::exchange(nodes, nodes + own.mesh.coords.cols() - own.nodes.size());
        own.first_element = std::exchange(elements, elements + own.mesh.connect.cols());
    }
    network_mesh result;
    if (!result.coords.copy(network_.coords) || !result.coords.resize(network_.coords.rows(), nodes) ||
        !result.connect.resize(2, elements))
        throw std::bad_alloc();
    return result;
}

void network_batches::put(std::size_t batch, network_mesh& result) const
{
    part const& own = parts_[batch];
    auto const& [coords, connect] = own.mesh;
    std::size_t const old = own.nodes.size();
    for (std::size_t k = old; k < coords.cols(); ++k)
        std::copy_n(coords.col(k), coords.rows(), result.coords.col(own.first_new_node + k - old));
    for (std::size_t e = 0; e < connect.cols(); ++e)
        for (std::size_t i = 0; i < 2; ++i) {
            std::size_t const node = connect(i, e);
            result.connect(i, own.first_element + e) =
                node < old ? own.nodes[node] : static_cast<unsigned>(own.first_new_node + node - old);
        }
}
