#include "metric/eigen.h"

#include <algorithm>
#include <cmath>
#include <cstddef>

/// LAPACK: all eigenvalues of a packed symmetric matrix of order n, in ascending order. For job 'V' the
/// columns of z are the eigenvectors. `ap` is overwritten; `work` has 3n values. The last two arguments are
/// the lengths of the two texts, as Fortran passes them.
extern "C" void dspev_(char const* job, char const* triangle, int const* n, double* ap, double* w, double* z,
    int const* ldz, double* work, int* info, std::size_t, std::size_t);

namespace trelk::vornik1d {

namespace {

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
    double unused = 0;
    return dspev('N', m, values, &unused, 1);
}

} // namespace trelk::vornik1d
