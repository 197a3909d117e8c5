#pragma once

#include <cstddef>

/// Lets allocations of the library fail on this thread: from number `first` on if that is not 0, those of more
/// than 64 KiB, and all once there have been more than any sensible call makes.
void limit_allocations(std::size_t first);
void lift_limits();
