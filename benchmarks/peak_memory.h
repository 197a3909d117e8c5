#pragma once

#include <cstddef>

/// Bytes that the program has had from malloc at most since `reset_peak_memory`, above what it had then.
std::size_t peak_memory();
void reset_peak_memory();
