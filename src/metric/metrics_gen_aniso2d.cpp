#include <vornik1d/vornik1d.h>

#include "metric/generation.h"

namespace trelk::vornik1d {

namespace {

vector<2> left_of(vector<2> const& d) { return {-d[1], d[0]}; }

} // namespace

int metrics_gen_aniso2d(dense2D<double> const& directions, dense1D<unsigned> const& indices,
    double size_along, double size_across, dense2D<double>& metrics) noexcept
{
    if (indices.empty()) return 0;
    if (directions.rows() != 2) return bad_argument(1);
    if (!vornik::check_IDs(indices, directions.cols())) return bad_argument(2);
    if (!(size_along > 0)) return bad_argument(3);
    if (!(size_across > 0)) return bad_argument(4);
    if (!metrics.empty() && metrics.rows() != 3) return bad_argument(5);
    if (!make_columns<2>(*std::max_element(indices.begin(), indices.end()), metrics)) return no_storage;

    vector<2> const values{1 / (size_along * size_along), 1 / (size_across * size_across)};
    for (unsigned const node : indices) {
        auto const d = vector_at<2>(directions.col(node));
        merge_into(tensor_along<2>(values, {d, left_of(d)}), metrics.col(node));
    }
    return 0;
}

int metrics_gen_aniso2d(dense2D<double> const& coords, dense2D<unsigned> const& connect, double normal_size,
    dense2D<double>& metrics) noexcept
{
    if (connect.empty()) return 0;
    if (int const status = prepare_generation<2>(coords, connect, metrics); status != 0) return status;

    for_each_direction<2>(coords, connect, [&](std::size_t e, element_direction<2> const& along) {
        vector<2> const values{1 / along.square, 1 / square_of_size(normal_size, along.square)};
        auto const m = tensor_along<2>(values, {along.tangent, left_of(along.tangent)});
        merge_into(m, metrics.col(connect(0, e)));
        merge_into(m, metrics.col(connect(1, e)));
    });
    return 0;
}

} // namespace trelk::vornik1d
