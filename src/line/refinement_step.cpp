#include "line/refinement_step.h"

#include <algorithm>

namespace trelk::vornik1d {

namespace {

// A remeshing of a whole range usually lowers the deviation, since it has more elements. It stalls if
// parameters repeat or the chain makes a detour between its nodes. After too many stalled meshes the range is
// split.
constexpr double least_gain = 1e-3; // share of the excess over the threshold; below it a mesh is stalled
constexpr unsigned most_stalled_remeshings = 1000;          // in a range
constexpr std::uint64_t most_stalled_elements = 10'000'000; // in a chain

} // namespace

refinement_step decide(deviation_scan const& scan, range_task const& task, std::size_t elements,
    bool force_even, std::uint64_t& stalled_elements)
{
    bool const is_odd = elements % 2 == 1;
    if (!(scan.worst >= scan.threshold) && !(force_even && is_odd)) return {};

    // A remeshing that has not increased the element count would be repeated for ever.
    if (task.replaced_elements > 0 && elements <= task.replaced_elements) return {};

    // More elements are shorter by a ratio; the deviation of a chord is proportional to the square of its
    // length.
    std::size_t const more = force_even && !is_odd ? elements + 2 : elements + 1;
    double const ratio = static_cast<double>(elements) / static_cast<double>(more);
    bool const is_spread = scan.mean > 0.5 * scan.worst && ratio * ratio * scan.worst < scan.threshold;

    range_task again{.first = task.first,
        .last = task.last,
        .min_elements = is_spread ? more : 1,
        .replaced_elements = elements,
        .least_deviation = scan.worst};
    if (task.replaced_elements > 0) {
        double const excess = task.least_deviation - scan.threshold;
        double const gain = task.least_deviation - scan.worst;
        bool const has_gained = gain > 0 && gain >= least_gain * excess; // `excess` may be 0
        again.least_deviation = std::min(task.least_deviation, scan.worst);
        again.stalled = task.stalled + (has_gained ? 0 : 1);
        if (!has_gained) stalled_elements += elements;
    }

    // If all parameters of the range are equal, the weights are NaN and there is no place to split at.
    bool const can_be_split = scan.split < task.last - task.first;
    bool const is_stalled = again.stalled >= most_stalled_remeshings ||
                            (again.stalled > 0 && stalled_elements >= most_stalled_elements);
    if (can_be_split && (!is_spread || is_stalled)) return {action::split, scan.split, {}};
    if (is_stalled) return {};
    return {action::remesh, 0, again};
}

} // namespace trelk::vornik1d
