#include <vornik1d/vornik1d.h>

#include "metric/complete_frame.h"
#include "metric/generation.h"

namespace trelk::vornik1d {

namespace {

/// Squares of the sizes across a line: in the plane in which it bends, and perpendicular to that plane.
struct sizes_across
{
    double normal;
    double binormal;
};

/// The tensor of an element at one of its ends. `onward` is the unit tangent of the neighbour at that end, in
/// the direction of travel, or null if there is none. Without a neighbour, or if the line is straight there,
/// both sizes across the line are the larger one.
tensor<3> tensor_at_end(vector<3>& t, double square, vector<3> const* onward, sizes_across across)
{
    constexpr double straight_join_limit = 1e-12; // on twice the distance between the unit tangents
    vector<3> u{};
    vector<3> w{};
    if (onward && 2 * norm(t - *onward) > straight_join_limit) {
        w = cross(*onward, t);
        u = cross(w, t);
    } else
        across.normal = across.binormal = std::max(across.normal, across.binormal);
    complete_frame(t, u, w);
    return tensor_along<3>({1 / square, 1 / across.normal, 1 / across.binormal}, {t, u, w});
}

} // namespace

int metrics_gen_aniso3d(dense2D<double> const& coords, dense2D<unsigned> const& connect, double normal_size,
    dense2D<double>& metrics) noexcept
{
    if (connect.empty()) return 0;
    if (int const status = prepare_generation<3>(coords, connect, metrics); status != 0) return status;

    for_each_direction<3>(coords, connect, [&](std::size_t e, element_direction<3> along) {
        double const s = square_of_size(normal_size, along.square);
        auto const m = tensor_at_end(along.tangent, along.square, nullptr, {s, s});
        merge_into(m, metrics.col(connect(0, e)));
        merge_into(m, metrics.col(connect(1, e)));
    });
    return 0;
}

int metrics_gen_aniso3d(dense2D<double> const& coords, dense2D<unsigned> const& connect, double normal_size,
    double binormal_size, dense2D<double>& metrics) noexcept
{
    if (connect.empty()) return 0;
    if (int const status = prepare_generation<3>(coords, connect, metrics); status != 0) return status;
    dense2D<unsigned> neighbors;
    if (vornik::get_neighbors(connect, vornik::element_type::edge, false, neighbors) != 0) return no_storage;

    for_each_direction<3>(coords, connect, [&](std::size_t e, element_direction<3> along) {
        sizes_across const across{
            square_of_size(normal_size, along.square), square_of_size(binormal_size, along.square)};
        for (std::size_t i = 0; i < 2; ++i) {
            unsigned const end = connect(i, e);
            unsigned const f = neighbors(1 - i, e);
            vector<3> onward{};
            if (f != vornik::none) {
                unsigned const far = connect(0, f) == end ? connect(1, f) : connect(0, f);
                // At the first end the neighbour comes before the element, at the second end after it.
                onward = i == 0 ? edge_vector<3>(coords.col(far), coords.col(end))
                                : edge_vector<3>(coords.col(end), coords.col(far));
                normalize(onward);
            }
            auto const m =
                tensor_at_end(along.tangent, along.square, f != vornik::none ? &onward : nullptr, across);
            merge_into(m, metrics.col(end));
        }
    });
    return 0;
}

} // namespace trelk::vornik1d
