#pragma once

#include <utility>
#include <vector>

#include <vornik1d/vornik1d.h>

#include "support.h"

/// A call of `mesh_line`, with or without parameters, that starts from outputs which hold something.
struct meshing
{
    trelk::dense2D<double> coords;
    trelk::dense1D<unsigned> indices;
    trelk::dense1D<double> params, sizes;
    bool force_even = false;
    unsigned min_elements = 1;
    unsigned max_elements = no_limit;
    double deviation_tolerance = 0;
    double min_size = 0;
    bool with_params = true;

    trelk::dense1D<unsigned> out_indices = nodes({77});
    trelk::dense1D<double> out_params = reals({-7, -8});
    trelk::dense1D<double> out_sizes = reals({0.7});

    int run()
    {
        using trelk::vornik1d::mesh_line;
        return with_params ? mesh_line(coords, indices, params, sizes, force_even, min_elements, max_elements,
                                 deviation_tolerance, min_size, out_indices, out_params, out_sizes)
                           : mesh_line(coords, indices, sizes, force_even, min_elements, max_elements,
                                 deviation_tolerance, min_size, out_indices, out_params, out_sizes);
    }

    /// Everything that a failure must leave alone, but for `out_params`.
    auto untouched() const
    {
        return std::pair(std::pair(values_of(coords), values_of(out_indices)), values_of(out_sizes));
    }

    /// The nodes that the call has appended.
    std::vector<unsigned> mesh() const { return {out_indices.begin() + 1, out_indices.end()}; }
    std::size_t elements() const { return out_indices.size() - 2; }
};

/// The chain of all columns of `coords`, in order, with one size for all, at parameters 0, 1, 2, ...
inline meshing chain_of(trelk::dense2D<double> const& coords, double size)
{
    meshing m;
    m.coords = coords;
    m.indices = nodes_up_to(unsigned(coords.cols()));
    m.sizes = trelk::dense1D<double>(coords.cols(), size);
    for (std::size_t k = 0; k < coords.cols(); ++k) m.params.push_back(double(k));
    return m;
}
