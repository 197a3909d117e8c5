#include "allocations.h"

#include <new>

namespace {

constexpr std::size_t largest_block = 65536;
constexpr std::size_t most_allocations = 20000;

struct limits
{
    bool are_set = false;
    std::size_t first = 0;
    std::size_t count = 0;
};

thread_local limits now;

bool is_refused(std::size_t bytes)
{
    if (!now.are_set) return false;
    ++now.count;
    return bytes > largest_block || now.count > most_allocations || (now.first > 0 && now.count >= now.first);
}

} // namespace

void limit_allocations(std::size_t first) { now = {true, first, 0}; }
void lift_limits() { now = {}; }

// The linker sends the calls of library and containers here (--wrap).
extern "C" {

void* __real_malloc(std::size_t bytes);
void* __real__ZnwmRKSt9nothrow_t(std::size_t bytes, std::nothrow_t const& tag);

void* __wrap_malloc(std::size_t bytes) { return is_refused(bytes) ? nullptr : __real_malloc(bytes); }

void* __wrap__ZnwmRKSt9nothrow_t(std::size_t bytes, std::nothrow_t const& tag)
{
    return is_refused(bytes) ? nullptr : __real__ZnwmRKSt9nothrow_t(bytes, tag);
}
}
