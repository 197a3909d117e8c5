#pragma once

#include "arrays/vectors.h"

namespace trelk::vornik1d {

/// Makes (t, u, w) a right-handed orthonormal frame. t keeps its direction; u is a hint, of which only the
/// part perpendicular to t counts. If t is 0, it becomes the first axis. If the hint is 0 or parallel to t,
/// the axis that is farthest from t replaces it.
void complete_frame(vector<3>& t, vector<3>& u, vector<3>& w);

} // namespace trelk::vornik1d
