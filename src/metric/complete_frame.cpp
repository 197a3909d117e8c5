#include "metric/complete_frame.h"

#include <algorithm>
#include <cmath>

namespace trelk::vornik1d {

namespace {

bool is_zero(vector<3> const& v) { return v[0] == 0 && v[1] == 0 && v[2] == 0; }

} // namespace

void complete_frame(vector<3>& t, vector<3>& u, vector<3>& w)
{
    if (dot(t, t) == 0) t[0] = 1;
    normalize(t);
    w = cross(t, u);
    if (is_zero(w)) {
        auto const* const smallest = std::min_element(
            t.values, t.values + 3, [](double a, double b) { return std::abs(a) < std::abs(b); });
        u = {};
        u[static_cast<std::size_t>(smallest - t.values)] = 1;
        w = cross(t, u);
    }
    normalize(w);
    u = cross(w, t);
}

} // namespace trelk::vornik1d
