#pragma once

#include "arrays/vectors.h"

namespace trelk::vornik1d {

/// Makes (t, u, w) a right-handed orthonormal frame: t is brought to length 1, u is a hint of which the part
/// across t counts. A t of 0 becomes the first axis; without a hint, or with one along t, the axis that is
/// farthest from t takes its place.
void complete_frame(vector<3>& t, vector<3>& u, vector<3>& w);

} // namespace trelk::vornik1d
