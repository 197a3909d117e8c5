#pragma once

#include <cstddef>
#include <cstdint>

#include "line/deviation.h"

namespace trelk::vornik1d {

/// A range of a chain, both ends included, that is to be meshed with at least `min_elements`.
struct span_task
{
    std::size_t first;
    std::size_t last;
    std::uint64_t min_elements = 1;

    // Of a range that is meshed again as a whole: the elements of the mesh that it replaces, the least of the
    // largest deviations of its meshes so far, and how many have hardly lowered that.
    std::size_t replaced_elements = 0;
    double least_deviation = 0;
    unsigned stalled = 0;
};

enum class action { keep, remesh, split };

/// What is to be done about the mesh of a range: nothing, meshing the range again as a whole, or splitting
/// it.
struct refinement_step
{
    action what = action::keep;
    std::size_t split = 0; // for `split`: counted from the range's first entry
    span_task again{};     // for `remesh`
};

/// Decides on a mesh of `elements` elements, to which `task` has led. `stalled_elements` is what meshes that hardly
/// lowered their deviation have cost so far, in the whole chain.
refinement_step decide(deviation_scan const& scan, span_task const& task, std::size_t elements,
    bool force_even, std::uint64_t& stalled_elements);

} // namespace trelk::vornik1d
