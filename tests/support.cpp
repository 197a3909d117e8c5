#include "support.h"

#include <cmath>
#include <cstdlib>
#include <new>

namespace {

struct switchboard
{
    bool is_on = false;
    std::size_t count = 0;
    std::size_t first = 0;
    failing_allocations::extent which{};
};

thread_local switchboard now;

bool must_fail()
{
    if (!now.is_on) return false;
    std::size_t const number = now.count++;
    return number == now.first ||
           (number > now.first && now.which == failing_allocations::extent::all_behind);
}

} // namespace

trelk::dense2D<double> arc(std::size_t n, double angle, std::size_t rows)
{
    trelk::dense2D<double> coords;
    if (!coords.resize(rows, n + 1)) return coords;
    for (std::size_t k = 0; k <= n; ++k) {
        double const at = angle * double(k) / double(n);
        coords(0, k) = std::cos(at);
        coords(1, k) = rows == 2 ? std::sin(at) : 0.6 * std::sin(at);
        if (rows == 3) coords(2, k) = 0.8 * std::sin(at);
    }
    return coords;
}

failing_allocations::failing_allocations(std::size_t first, extent which) { now = {true, 0, first, which}; }

failing_allocations::~failing_allocations() { now.is_on = false; }

bool failing_allocations::have_failed() { return now.count > now.first; }

// The linker sends the calls of library and tests here (--wrap).
extern "C" {

void* __real_malloc(std::size_t bytes);
void* __real__ZnwmRKSt9nothrow_t(std::size_t bytes, std::nothrow_t const& tag);

void* __wrap_malloc(std::size_t bytes) { return must_fail() ? nullptr : __real_malloc(bytes); }

void* __wrap__ZnwmRKSt9nothrow_t(std::size_t bytes, std::nothrow_t const& tag)
{
    return must_fail() ? nullptr : __real__ZnwmRKSt9nothrow_t(bytes, tag);
}
}
