#include <vornik1d/vornik1d.h>

#include <algorithm>
#include <cmath>

#include <vornik/toolkit.h>

#include "arrays/vectors.h"
#include "front_door.h"
#include "special_values.h"

namespace trelk::vornik1d {

namespace {

enum class mode { weighted_mean, longest_element, shortest_element };

mode mode_of(double exponent)
{
    if (exponent > -largest && exponent < largest) return mode::weighted_mean;
    return exponent <= -largest ? mode::shortest_element : mode::longest_element; // NaN: longest
}

/// Adds an element's normal to the one stored at a node, or replaces that one. `weight` is the sum of weights
/// at the node, or the length of the element whose normal is stored.
void add_normal(mode how, double exponent, double length, vector<2> normal, double* stored, double& weight)
{
    if (how == mode::weighted_mean) {
        double const g = std::pow(length, exponent);
        weight += g;
        stored[0] += g * normal[0];
        stored[1] += g * normal[1];
        return;
    }
    bool const wins = how == mode::longest_element ? length > weight : length < weight || weight == 0;
    if (!wins) return;
    weight = length;
    std::copy_n(normal.values, 2, stored);
}

void finish_mean(double weight, bool unit_length, double* normal)
{
    auto n = vector_at<2>(normal);
    if (weight != 0) n = n * (1 / weight);
    double const square = dot(n, n);
    if (unit_length && square != 0 && square != 1) n = n * (1 / std::sqrt(square));
    std::copy_n(n.values, 2, normal);
}

} // namespace

int normals(dense2D<double> const& coords, dense2D<unsigned> const& connect, double exponent,
    bool unit_length, dense2D<double>& result) noexcept
{
    result.clear();
    if (coords.empty() || connect.empty()) return 0;
    std::size_t const nodes = coords.cols();
    if (coords.rows() != 2) return bad_argument(1);
    if (!vornik::check_IDs(connect, vornik::element_type::edge, nodes)) return bad_argument(2);
    dense1D<double> weights;
    if (!weights.resize(nodes, 0.0) || !result.resize(2, nodes, 0.0)) return no_storage;

    mode const how = mode_of(exponent);
    for (std::size_t e = 0; e < connect.cols(); ++e) {
        auto const d = edge_vector<2>(coords.col(connect(0, e)), coords.col(connect(1, e)));
        if (dot(d, d) == 0) continue;
        double const length = norm(d);
        vector<2> const normal{-(d[1] / length), d[0] / length}; // to the left
        for (std::size_t i = 0; i < 2; ++i) {
            unsigned const node = connect(i, e);
            add_normal(how, exponent, length, normal, result.col(node), weights[node]);
        }
    }
    if (how == mode::weighted_mean)
        for (std::size_t node = 0; node < nodes; ++node)
            finish_mean(weights[node], unit_length, result.col(node));
    return 0;
}

} // namespace trelk::vornik1d
