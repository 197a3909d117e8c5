#include "metric/eigen.h"

#include <algorithm>
#include <cmath>
#include <cstddef>

/// LAPACK: all eigenvalues, ascending, and for job 'V' the eigenvectors, as the columns of z, of a symmetric
/// matrix of order n, packed. `ap` is overwritten; `work` has 3n values. The last two arguments are the
/// lengths of the two texts, as Fortran passes them.
extern "C" void dspev_(char const* job, char const* triangle, int const* n, double* ap, double* w, double* z,
    int const* ldz, double* work, int* info, std::size_t, std::size_t);

namespace trelk::vornik1d {

namespace {

constexpr double cancellation_limit = 1e-12; // relative: an eigenvalue below it is rounding of the other one
constexpr double isotropy_limit = 1e-24;     // relative, on a squared length

bool dspev(char job, tensor<3> m, vector<3>& values, double* z, int ldz)
{
    constexpr int order = 3;
    constexpr char triangle = 'U';
    double work[3 * order];
    int info = 0;
    dspev_(&job, &triangle, &order, m.values, values.values, z, &ldz, work, &info, 1, 1);
    return info == 0;
}

} // namespace

bool symmetric_eigenvalues_2d(double a, double b, double c, vector<2>& values)
{
    double const determinant = a * c - b * b;
    double const w = std::sqrt((a - c) * (a - c) + 4 * (b * b));
    double low = (a + c - w) / 2;
    double high = low + w;
    // What cancellation has taken from the one, the determinant gives back.
    if (!(std::abs(low) >= std::abs(high) * cancellation_limit))
        low = determinant / high;
    else if (!(std::abs(high) >= std::abs(low) * cancellation_limit))
        high = determinant / low;
    values = {low, high};
    return std::isfinite(low) && std::isfinite(high);
}

bool symmetric_eigen_2d(double a, double b, double c, bool normalize, eigen_system<2>& e)
{
    e = {};
    if (!symmetric_eigenvalues_2d(a, b, c, e.values)) return false;

    double const x = e.values[0] - a;
    double const y = e.values[0] - c;
    vector<2> first = y * y > x * x ? vector<2>{y, b} : vector<2>{b, x};
    double const square = std::max(x * x, y * y) + b * b;
    if (!(square > std::max(a * a, c * c) * isotropy_limit))
        first = {1, 0};
    else if (normalize) {
        double const length = std::sqrt(square);
        first = {first[0] / length, first[1] / length};
    }
    e.vectors[0] = first;
    e.vectors[1] = {-first[1], first[0]};
    return true;
}

bool symmetric_eigen_3d(tensor<3> const& m, eigen_system<3>& e)
{
    e = {};
    double z[9] = {};
    if (!dspev('V', m, e.values, z, 3)) return false;
    e.vectors[0] = {z[0], z[1], z[2]};
    e.vectors[1] = {z[3], z[4], z[5]};
    e.vectors[2] = cross(e.vectors[0], e.vectors[1]);
    return true;
}

bool symmetric_eigenvalues_3d(tensor<3> const& m, vector<3>& values)
{
    values = {};
    double none = 0;
    return dspev('N', m, values, &none, 1);
}

} // namespace trelk::vornik1d
