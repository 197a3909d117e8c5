#include "placement/place_nodes_aniso.h"

#include <algorithm>
#include <cmath>

#include "metric/metric_interpolator.h"
#include "placement/place_nodes.h"

namespace trelk::vornik1d {

namespace {

/// Metric tensors along a chain. Along a segment the size in its own direction runs linearly; across it the
/// tensors are interpolated.
template <int N>
class tensor_field
{
public:
    tensor_field(dense2D<double> const& metrics, dense2D<double>& new_metrics)
        : metrics_(metrics), new_metrics_(new_metrics)
    {}

    void clear() { new_metrics_.clear(); }
    bool resize(std::size_t count) { return new_metrics_.resize(packed_rows<N>, count); }

    double metric_length(std::size_t s, vector_fixed<double, N> const& d) const
    {
        auto const [l0, l1] = end_lengths(s, d);
        return l0 > 0 ? l0 * l1 * mean_inverse_size(l0, l1) : 0;
    }

    bool enter(std::size_t s, vector_fixed<double, N> const& d)
    {
        // The size along d is the inverse of d's length: it is proportional to l1 at the near end.
        auto const [l0, l1] = end_lengths(s, d);
        is_measured_ = l0 > 0;
        law_ = size_law(l1, l0);
        return interpolator_.build(tensor_at<N>(metrics_.col(s)), tensor_at<N>(metrics_.col(s + 1)));
    }

    double position(double t) const { return is_measured_ ? law_.position(t) : 0; }

    void place(std::size_t k, double u)
    {
        std::copy_n(interpolator_.evaluate(u).values, packed_rows<N>, new_metrics_.col(k));
    }

private:
    struct lengths
    {
        double l0;
        double l1;
    };

    /// Of d in the tensors at both ends of segment s; 0 unless both are positive.
    lengths end_lengths(std::size_t s, vector_fixed<double, N> const& d) const
    {
        double const q0 = quadratic_form(metrics_.col(s), d);
        double const q1 = quadratic_form(metrics_.col(s + 1), d);
        if (!(q0 > 0 && q1 > 0)) return {0, 0};
        return {std::sqrt(q0), std::sqrt(q1)};
    }

    dense2D<double> const& metrics_;
    dense2D<double>& new_metrics_;
    metric_interpolator<N> interpolator_;
    size_law law_{1, 1};
    bool is_measured_ = false;
};

} // namespace

template <int N>
double place_nodes_aniso(dense2D<double> const& coords, dense1D<unsigned> const& indices,
    dense1D<double> const& params, dense2D<double> const& metrics, double min_metric_length, bool force_even,
    std::uint64_t min_elements, std::uint64_t max_elements, dense2D<double>& new_coords,
    dense2D<double>& new_metrics, dense1D<double>& new_params, std::size_t margin)
{
    tensor_field<N> field(metrics, new_metrics);
    return place_nodes<N>(coords, indices, params, field, min_metric_length, force_even, min_elements,
        max_elements, new_coords, new_params, margin);
}

template double place_nodes_aniso<2>(dense2D<double> const&, dense1D<unsigned> const&, dense1D<double> const&,
    dense2D<double> const&, double, bool, std::uint64_t, std::uint64_t, dense2D<double>&, dense2D<double>&,
    dense1D<double>&, std::size_t);
template double place_nodes_aniso<3>(dense2D<double> const&, dense1D<unsigned> const&, dense1D<double> const&,
    dense2D<double> const&, double, bool, std::uint64_t, std::uint64_t, dense2D<double>&, dense2D<double>&,
    dense1D<double>&, std::size_t);

} // namespace trelk::vornik1d
