#include "allocations.h"

#include <algorithm>
#include <cerrno>
#include <cstddef>

#include <malloc.h>

namespace {

bool is_counting = false;
allocations counted;
std::ptrdiff_t in_use = 0; // what is freed may be older

void* note(void* block)
{
    if (is_counting && block) {
        ++counted.count;
        in_use += static_cast<std::ptrdiff_t>(malloc_usable_size(block));
        if (in_use > 0) counted.peak = std::max(counted.peak, static_cast<std::size_t>(in_use));
    }
    return block;
}

void note_freed(void* block)
{
    if (is_counting && block) in_use -= static_cast<std::ptrdiff_t>(malloc_usable_size(block));
}

} // namespace

void start_counting()
{
    counted = {};
    in_use = 0;
    is_counting = true;
}

allocations stop_counting()
{
    is_counting = false;
    return counted;
}

// A program may replace these; all that it is linked with then calls them here. glibc has its own ones under
// other names too, and parameters whose names are reserved.
// NOLINTBEGIN(readability-inconsistent-declaration-parameter-name)
extern "C" {

void* __libc_malloc(std::size_t bytes);
void* __libc_calloc(std::size_t count, std::size_t bytes);
void* __libc_realloc(void* block, std::size_t bytes);
void* __libc_memalign(std::size_t alignment, std::size_t bytes);
void __libc_free(void* block);

void* malloc(std::size_t bytes) { return note(__libc_malloc(bytes)); }
void* calloc(std::size_t count, std::size_t bytes) { return note(__libc_calloc(count, bytes)); }
void* aligned_alloc(std::size_t alignment, std::size_t bytes)
{
    return note(__libc_memalign(alignment, bytes));
}
int posix_memalign(void** block, std::size_t alignment, std::size_t bytes)
{
    void* const made = aligned_alloc(alignment, bytes);
    if (!made) return ENOMEM;
    *block = made;
    return 0;
}

void* realloc(void* block, std::size_t bytes)
{
    std::ptrdiff_t const before = block ? static_cast<std::ptrdiff_t>(malloc_usable_size(block)) : 0;
    void* const moved = __libc_realloc(block, bytes);
    if (moved && is_counting) in_use -= before;
    return note(moved);
}

void free(void* block)
{
    note_freed(block);
    __libc_free(block);
}
}
// NOLINTEND(readability-inconsistent-declaration-parameter-name)
