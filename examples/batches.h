#pragma once

#include <cstddef>
#include <vector>

#include <vornik1d/vornik1d.h>

struct network_mesh
{
    trelk::dense2D<double> coords;
    trelk::dense2D<unsigned> connect;
};

/// Arguments of `remesh_lines`.
struct remesh_request
{
    double size = 1.0;
    double max_angle = 40.0;
    double deviation_tolerance = 0.0;
};

inline trelk::vornik1d::remesh_options options_of(remesh_request const& request)
{
    trelk::vornik1d::remesh_options options;
    options.deviation_tolerance = request.deviation_tolerance;
    options.max_angle = request.max_angle;
    return options;
}

/// A network, split into batches of components that share no node. Each batch has its own containers. So
/// batches can be remeshed at the same time and joined afterwards.
///
/// Batches depend on the network alone. They hold components in the order of their lowest elements. In the
/// joined mesh old nodes keep their numbers. New nodes and elements follow batch by batch.
class network_batches
{
public:
    /// A batch ends with the component that brings it to at least `elements` elements. Throws std::bad_alloc.
    network_batches(network_mesh const& network, std::size_t elements);

    std::size_t size() const { return starts_.size() - 1; }
    std::size_t components() const { return components_; }

    /// Remeshes a batch. May be called for different batches at the same time. Throws std::bad_alloc or
    /// std::runtime_error.
    void remesh(std::size_t batch, remesh_request const& request);

    /// Joins the remeshed batches. `for_each(n, body)` calls `body(i)` for all i below n, in any order.
    template <class ForEach>
    network_mesh join(ForEach for_each)
    {
        network_mesh result = prepare_join();
        for_each(size(), [&](std::size_t batch) { put(batch, result); });
        return result;
    }

private:
    struct part
    {
        std::vector<unsigned> nodes; // old nodes: entry i is the network number of node i of the batch
        network_mesh mesh;
        std::size_t first_new_node = 0;
        std::size_t first_element = 0;
    };

    network_mesh prepare_join();
    void put(std::size_t batch, network_mesh& result) const;

    network_mesh const& network_;
    std::size_t components_ = 0;
    std::vector<unsigned> elements_;  // by component
    std::vector<std::size_t> starts_; // of the batches, in elements_
    std::vector<unsigned> numbers_;   // of each node in its batch
    std::vector<part> parts_;
};
