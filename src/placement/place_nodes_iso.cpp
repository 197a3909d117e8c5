#include "placement/place_nodes_iso.h"

#include "placement/place_nodes.h"

namespace trelk::vornik1d {

namespace {

/// Target sizes along a chain, linear along each segment.
template <int N>
class size_field
{
public:
    size_field(dense1D<double> const& sizes, dense1D<double>& new_sizes)
        : sizes_(sizes.data()), new_sizes_(new_sizes)
    {}

    void clear() { new_sizes_.clear(); }

    double metric_length(std::size_t s, vector_fixed<double, N> const& d) const
    {
        return norm(d) * mean_inverse_size(sizes_[s], sizes_[s + 1]);
    }

    bool resize(std::size_t count)
    {
        if (!new_sizes_.resize(count)) return false;
        placed_ = new_sizes_.data();
        return true;
    }

    bool enter(std::size_t s, vector_fixed<double, N> const&)
    {
        law_ = size_law(sizes_[s], sizes_[s + 1]);
        size0_ = sizes_[s];
        size_step_ = sizes_[s + 1] - sizes_[s];
        return true;
    }

    double position(double t) const { return law_.position(t); }

    void place(std::size_t k, double u) { placed_[k] = size_step_ * u + size0_; }

private:
    double const* sizes_;
    dense1D<double>& new_sizes_;
    double* placed_ = nullptr;
    size_law law_{1, 1};
    double size0_ = 0;
    double size_step_ = 0;
};

} // namespace

template <int N>
double place_nodes_iso(dense2D<double> const& coords, dense1D<unsigned> const& indices,
    dense1D<double> const& params, dense1D<double> const& sizes, double min_metric_length, bool force_even,
    std::uint64_t min_elements, std::uint64_t max_elements, dense2D<double>& new_coords,
    dense1D<double>& new_sizes, dense1D<double>& new_params, std::size_t margin, bool round_up)
{
    size_field<N> field(sizes, new_sizes);
    return place_nodes<N>(coords, indices, params, field, min_metric_length, force_even, min_elements,
        max_elements, new_coords, new_params, margin, round_up);
}

template double place_nodes_iso<1>(dense2D<double> const&, dense1D<unsigned> const&, dense1D<double> const&,
    dense1D<double> const&, double, bool, std::uint64_t, std::uint64_t, dense2D<double>&, dense1D<double>&,
    dense1D<double>&, std::size_t, bool);
template double place_nodes_iso<2>(dense2D<double> const&, dense1D<unsigned> const&, dense1D<double> const&,
    dense1D<double> const&, double, bool, std::uint64_t, std::uint64_t, dense2D<double>&, dense1D<double>&,
    dense1D<double>&, std::size_t, bool);
template double place_nodes_iso<3>(dense2D<double> const&, dense1D<unsigned> const&, dense1D<double> const&,
    dense1D<double> const&, double, bool, std::uint64_t, std::uint64_t, dense2D<double>&, dense1D<double>&,
    dense1D<double>&, std::size_t, bool);

} // namespace trelk::vornik1d
