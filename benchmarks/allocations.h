#pragma once

#include <cstddef>

/// What a stretch of the program asks of the allocator: the number of blocks, also those that are moved to be
/// larger, and the most bytes in use at a time above what was in use at its start.
struct allocations
{
    std::size_t count = 0;
    std::size_t peak = 0;
};

void start_counting();
allocations stop_counting();
