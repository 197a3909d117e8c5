#include "peak_memory.h"

#include <algorithm>

#include <malloc.h>

namespace {

std::size_t in_use = 0;
std::size_t at_reset = 0;
std::size_t peak = 0;

} // namespace

std::size_t peak_memory() { return peak - at_reset; }
void reset_peak_memory() { at_reset = peak = in_use; }

// The linker sends the library's calls here (--wrap).
extern "C" {

void* __real_malloc(std::size_t bytes);
void __real_free(void* pointer);

void* __wrap_malloc(std::size_t bytes)
{
    void* const pointer = __real_malloc(bytes);
    in_use += malloc_usable_size(pointer);
    peak = std::max(peak, in_use);
    return pointer;
}

void __wrap_free(void* pointer)
{
    in_use -= malloc_usable_size(pointer);
    __real_free(pointer);
}
}
