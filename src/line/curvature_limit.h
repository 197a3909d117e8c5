#pragma once

#include <trelk/dense1D.h>
#include <trelk/dense2D.h>

namespace trelk::vornik1d {

/// Bounds `sizes` in place, so that at curvature c a size h obeys (h * c)^2 / 8 <= -`deviation_tolerance`:
/// the sagitta of a chord of length h on a circle of curvature c, relative to the circle's radius. The bound
/// is at least `min_size`. `sizes` is indexed by the node numbers in `chain`. Returns the status of
/// `curvatures`; on a failure the sizes stay as they are.
int limit_sizes_by_curvature(dense2D<double> const& coords, dense1D<unsigned> const& chain,
    dense1D<double>& sizes, double deviation_tolerance, double min_size) noexcept;

/// Bounds the sizes of tensors along their own axes in the same way; a tensor that cannot be decomposed
/// stays.
template <int N>
int limit_metrics_by_curvature(dense2D<double> const& coords, dense1D<unsigned> const& chain,
    dense2D<double>& metrics, double deviation_tolerance, double min_size) noexcept;

} // namespace trelk::vornik1d
