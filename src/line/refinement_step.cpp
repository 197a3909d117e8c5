#include "line/refinement_step.h"

#include <algorithm>

namespace trelk::vornik1d {

namespace {

// Where a deviation does not answer to more elements (parameters that repeat, a detour between chain nodes),
// a range is meshed again as a whole so often without bringing it nearer to the threshold by the share below,
// and then split; sooner when such meshes have cost the chain too much. Where the deviation is that of chords of
// a curve, one step is enough.
constexpr unsigned most_stalled_remeshings = 1000;
constexpr std::uint64_t most_stalled_elements = 10'000'000;
constexpr double least_gain = 1e-3;

} // namespace

refinement_step decide(deviation_scan const& scan, span_task const& task, std::size_t elements,
    bool force_even, std::uint64_t& stalled_elements)
{
    bool const is_odd = elements % 2 == 1;
    if (!(scan.worst >= scan.threshold) && !(force_even && is_odd)) return {};

    // A remeshing of the whole that brings no more elements would bring them again and again.
    if (task.replaced_elements > 0 && elements <= task.replaced_elements) return {};

    // More elements shorten all of them by a ratio; a chord's deviation goes with the square of its length.
    std::size_t const more = force_even && !is_odd ? elements + 2 : elements + 1;
    double const ratio = static_cast<double>(elements) / static_cast<double>(more);
    bool const is_spread = scan.mean > 0.5 * scan.worst && ratio * ratio * scan.worst < scan.threshold;

    span_task again{task.first, task.last, is_spread ? more : 1, elements, scan.worst, 0};
    if (task.replaced_elements > 0) {
        double const excess = task.least_deviation - scan.threshold;
        double const gain = task.least_deviation - scan.worst;
        bool const has_gained = gain > 0 && gain >= least_gain * excess; // the excess may be 0
        again.least_deviation = std::min(task.least_deviation, scan.worst);
        again.stalled = task.stalled + (has_gained ? 0 : 1);
        if (!has_gained) stalled_elements += elements;
    }

    bool const can_be_split = scan.split < task.last - task.first;
    bool const is_stalled = again.stalled >= most_stalled_remeshings ||
                            (again.stalled > 0 && stalled_elements >= most_stalled_elements);
    if (can_be_split && (!is_spread || is_stalled)) return {action::split, scan.split, {}};
    if (is_stalled) return {};
    return {action::remesh, 0, again};
}

} // namespace trelk::vornik1d
