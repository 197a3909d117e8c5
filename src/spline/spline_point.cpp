#include <vornik1d/vornik1d.h>

#include "front_door.h"
#include "spline/spline_span.h"

namespace trelk::vornik1d {

namespace {

template <std::size_t N>
int find_point(dense2D<double> const& coords, unsigned i0, unsigned i1, unsigned i2, unsigned i3, double t,
    vector<N>& point)
{
    std::size_t const nodes = coords.cols();
    if (coords.rows() != N) return bad_argument(1);
    if (i0 >= nodes) return bad_argument(2);
    if (i1 >= nodes) return bad_argument(3);
    if (i2 >= nodes) return bad_argument(4);
    if (i3 >= nodes) return bad_argument(5);

    auto const span = spline_coefficients<N>(coords, i0, i1, i2, i3);
    point = span_offset(span, t) + span.a0;
    return 0;
}

} // namespace

int spline_point(dense2D<double> const& coords, unsigned i0, unsigned i1, unsigned i2, unsigned i3, double t,
    vector_fixed<double, 2>& point) noexcept
{
    return find_point(coords, i0, i1, i2, i3, t, point);
}

int spline_point(dense2D<double> const& coords, unsigned i0, unsigned i1, unsigned i2, unsigned i3, double t,
    vector_fixed<double, 3>& point) noexcept
{
    return find_point(coords, i0, i1, i2, i3, t, point);
}

} // namespace trelk::vornik1d
