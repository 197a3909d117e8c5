#pragma once

#include <cstddef>
#include <cstdint>

#include "line/deviation.h"

namespace trelk::vornik1d {

/// A range of a chain, both ends included, that is to be meshed with at least `min_elements`.
struct range_task
{
    std::size_t first;
    std::size_t last;
    std::uint64_t min_elements = 1;

    // For a range that is meshed again as a whole, otherwise 0:
    std::size_t replaced_elements = 0; // of the mesh to be replaced
    double least_deviation = 0;        // the smallest of the largest deviations of its meshes
    unsigned stalled = 0;              // how many of its meshes have hardly lowered that
};

enum class action { keep, remesh, split };

/// What to do about the mesh of a range: keep it, mesh the range again as a whole, or split the range.
struct refinement_step
{
    action what = action::keep;
    std::size_t split = 0; // for `split`: counted from the range's first entry
    range_task again{};    // for `remesh`
};

/// Decides on a mesh of `elements` elements that is the result of `task`. `stalled_elements` counts, over the
/// whole chain, the elements of meshes that hardly lowered their deviation.
refinement_step decide(deviation_scan const& scan, range_task const& task, std::size_t elements,
    bool force_even, std::uint64_t& stalled_elements);

} // namespace trelk::vornik1d
