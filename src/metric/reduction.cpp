#include "metric/reduction.h"

#include <cmath>

#include "metric/eigen.h"

namespace trelk::vornik1d {

namespace {

template <std::size_t N>
void scale(vector<N>& values, double factor)
{
    if (factor == 1) return;
    for (double& v : values.values) v *= factor;
}

template <std::size_t N>
void divide(vector<N>& v, double divisor)
{
    for (double& x : v.values) x /= divisor;
}

} // namespace

bool reduce_metric_pair(tensor<2> const& m0, tensor<2> const& m1, reduced_pair<2>& pair)
{
    auto const [a, b, c] = m0.values;
    auto const [e, f, g] = m1.values;
    double const determinant = a * c - b * b;
    if (a == 0 || !(determinant > 0)) return false;

    // With T of columns (s, 0) and (-b, a), T^T M0 T is a * determinant times the identity; B = T^T M1 T.
    double const s = std::sqrt(determinant);
    double const b00 = e * determinant;
    double const b01 = (a * f - e * b) * s;
    double const b11 = a * a * g - (2 * a * f - e * b) * b;
    eigen_system<2> system;
    if (!symmetric_eigen_2d(b00, b01, b11, false, system)) return false;

    pair.lambda = system.values;
    scale(pair.lambda, 1 / (determinant * a));
    for (std::size_t i = 0; i < 2; ++i) {
        vector<2> const& w = system.vectors[i];
        pair.p[i] = {s * w[0] - b * w[1], a * w[1]};
        normalize(pair.p[i]);
    }
    return true;
}

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

void dual_basis(vector<2> const (&p)[2], vector<2> (&q)[2])
{
    double const determinant = p[0][0] * p[1][1] - p[0][1] * p[1][0];
    q[0] = {p[1][1], -p[1][0]};
    q[1] = {-p[0][1], p[0][0]};
    for (auto& v : q) divide(v, determinant);
}

void dual_basis(vector<3> const (&p)[3], vector<3> (&q)[3])
{
    for (std::size_t i = 0; i < 3; ++i) q[i] = cross(p[(i + 1) % 3], p[(i + 2) % 3]);
    double const determinant = dot(p[0], q[0]);
    for (auto& v : q) divide(v, determinant);
}

} // namespace trelk::vornik1d
