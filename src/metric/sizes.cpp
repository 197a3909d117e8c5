#include "metric/sizes.h"

#include "metric/eigen.h"

namespace trelk::vornik1d {

namespace {

bool find_eigen(tensor<2> const& m, eigen_system<2>& e)
{
    return symmetric_eigen_2d(m[0], m[1], m[2], true, e);
}

bool find_eigen(tensor<3> const& m, eigen_system<3>& e) { return symmetric_eigen_3d(m, e); }

bool find_eigenvalues(tensor<2> const& m, vector<2>& values)
{
    return symmetric_eigenvalues_2d(m[0], m[1], m[2], values);
}

bool find_eigenvalues(tensor<3> const& m, vector<3>& values) { return symmetric_eigenvalues_3d(m, values); }

template <std::size_t N>
bool clamp(tensor<N>& m, double h_min, double h_max)
{
    double const highest = h_min > 0 ? 1 / (h_min * h_min) : largest;
    double const lowest = h_max > 0 ? 1 / (h_max * h_max) : 0;

    eigen_system<N> e;
    if (!find_eigen(m, e)) return false;
    bool has_changed = false;
    bool is_usable = true;
    for (double& v : e.values.values) {
        double const old = v;
        if (v > highest) v = highest;
        if (v < lowest) v = lowest;
        has_changed = has_changed || v != old;
        is_usable = is_usable && v > 0 && v < largest;
    }
    if (!has_changed || !is_usable) return false;

    m = recompose_metric(e.values, e.vectors);
    vector<N> values;
    return find_eigenvalues(m, values) && *std::min_element(values.values, values.values + N) > 0;
}

} // namespace

bool clamp_metric_sizes(tensor<2>& m, double h_min, double h_max) { return clamp(m, h_min, h_max); }
bool clamp_metric_sizes(tensor<3>& m, double h_min, double h_max) { return clamp(m, h_min, h_max); }

} // namespace trelk::vornik1d
