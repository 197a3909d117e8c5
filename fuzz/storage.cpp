#include "storage.h"

#include <new>

namespace {

constexpr std::size_t largest = 16384; // bytes at once
constexpr std::size_t bytes_in_all = 1U << 18;
constexpr std::size_t number_in_all = 1000;

struct account
{
    bool is_open = false;
    bool all_behind = false;
    std::size_t first = 0, number = 0, bytes = 0;
};

account now;

bool is_refused(std::size_t bytes)
{
    if (!now.is_open) return false;
    std::size_t const number = now.number++;
    if (number == now.first || (number > now.first && now.all_behind)) return true;
    if (bytes > largest || now.bytes + bytes > bytes_in_all || number >= number_in_all) return true;
    now.bytes += bytes;
    return false;
}

} // namespace

scarce_storage::scarce_storage(std::size_t first, bool all_behind) { now = {true, all_behind, first, 0, 0}; }
scarce_storage::~scarce_storage() { now.is_open = false; }

// The linker sends the calls of the library here (--wrap).
extern "C" {

void* __real_malloc(std::size_t bytes);
void* __real_realloc(void* pointer, std::size_t bytes);
void* __real__ZnwmRKSt9nothrow_t(std::size_t bytes, std::nothrow_t const& tag);

void* __wrap_malloc(std::size_t bytes) { return is_refused(bytes) ? nullptr : __real_malloc(bytes); }

void* __wrap_realloc(void* pointer, std::size_t bytes)
{
    return is_refused(bytes) ? nullptr : __real_realloc(pointer, bytes);
}

void* __wrap__ZnwmRKSt9nothrow_t(std::size_t bytes, std::nothrow_t const& tag)
{
    return is_refused(bytes) ? nullptr : __real__ZnwmRKSt9nothrow_t(bytes, tag);
}
}
