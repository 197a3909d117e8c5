#include "metric/reduction.h"

#include <cmath>

#include "metric/eigen.h"

namespace trelk::vornik1d {

bool cholesky_factor_3d(tensor<3> const& m, tensor<3>& u)
{
    double const m00 = m(0, 0);
    if (!(m00 > 0)) return false;
    double const a = m00 * m(1, 1) - m(0, 1) * m(0, 1);
    double const b = m00 * m(1, 2) - m(0, 2) * m(0, 1);
    if (!(a > 0)) return false;

    double const root = std::sqrt(a);
    u(0, 0) = std::sqrt(m00);
    double const reciprocal = 1 / u(0, 0);
    u(0, 1) = m(0, 1) * reciprocal;
    u(0, 2) = m(0, 2) * reciprocal;
    u(1, 1) = root / u(0, 0);
    u(1, 2) = b / root / u(0, 0);
    double const rest = m(2, 2) - (u(0, 2) * u(0, 2) + u(1, 2) * u(1, 2));
    if (!(rest >= 0)) return false;
    u(2, 2) = std::sqrt(rest);
    return true;
}

void congruence_3d(tensor<3> const& s, vector<3> const (&v)[3], tensor<3>& w)
{
    for (std::size_t i = 0; i < 3; ++i) {
        vector<3> t{}; // row i of V S
        for (std::size_t k = 0; k < 3; ++k) t[k] = v[i][0] * s(0, k) + v[i][1] * s(1, k) + v[i][2] * s(2, k);
        for (std::size_t j = 0; j <= i; ++j) w(j, i) += dot(t, v[j]);
    }
}

bool reduce_metric_pair(tensor<3> const& m0, tensor<3> const& m1, reduced_pair<3>& pair)
{
    tensor<3> u{};
    if (!cholesky_factor_3d(m0, u)) return false;
    double const delta = u(0, 0) * u(1, 1) * u(2, 2);
    if (delta == 0) return false;

    // The rows of V are delta times the columns of the inverse of U.
    vector<3> const v[3] = {{u(1, 1) * u(2, 2), 0, 0}, {-u(0, 1) * u(2, 2), u(0, 0) * u(2, 2), 0},
        {u(0, 1) * u(1, 2) - u(0, 2) * u(1, 1), -u(0, 0) * u(1, 2), u(0, 0) * u(1, 1)}};
    tensor<3> w{};
    congruence_3d(m1, v, w);
    eigen_system<3> system;
    if (!symmetric_eigen_3d(w, system)) return false;

    pair.lambda = system.values;
    scale(pair.lambda, 1 / (delta * delta));
    for (std::size_t i = 0; i < 3; ++i) {
        vector<3> const& z = system.vectors[i];
        for (std::size_t r = 0; r < 3; ++r) pair.p[i][r] = z[0] * v[0][r] + z[1] * v[1][r] + z[2] * v[2][r];
        normalize(pair.p[i]);
    }
    return true;
}

void dual_basis(vector<3> const (&p)[3], vector<3> (&q)[3])
{
    for (std::size_t i = 0; i < 3; ++i) q[i] = cross(p[(i + 1) % 3], p[(i + 2) % 3]);
    double const determinant = dot(p[0], q[0]);
    for (auto& v : q) divide(v, determinant);
}

} // namespace trelk::vornik1d
