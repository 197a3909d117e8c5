#include "support.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <iterator>
#include <new>
#include <numeric>

#include <vornik/toolkit.h>

using namespace trelk;

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
    if (number < now.first) return false;
    using extent = failing_allocations::extent;
    return now.which == extent::all_behind || number < now.first + (now.which == extent::one ? 1 : 5);
}

} // namespace

failing_allocations::failing_allocations(std::size_t first, extent which) { now = {true, 0, first, which}; }
failing_allocations::~failing_allocations() { now.is_on = false; }
bool failing_allocations::have_failed() { return now.count > now.first; }
std::size_t failing_allocations::count() { return now.count; }

// The linker sends the calls of library and tests here (--wrap).
extern "C" {

void* __real_malloc(std::size_t bytes);
void* __real_realloc(void* pointer, std::size_t bytes);
void* __real__ZnwmRKSt9nothrow_t(std::size_t bytes, std::nothrow_t const& tag);

void* __wrap_malloc(std::size_t bytes) { return must_fail() ? nullptr : __real_malloc(bytes); }

void* __wrap_realloc(void* pointer, std::size_t bytes)
{
    return must_fail() ? nullptr : __real_realloc(pointer, bytes);
}

void* __wrap__ZnwmRKSt9nothrow_t(std::size_t bytes, std::nothrow_t const& tag)
{
    return must_fail() ? nullptr : __real__ZnwmRKSt9nothrow_t(bytes, tag);
}
}

dense1D<unsigned> nodes_up_to(std::size_t n)
{
    dense1D<unsigned> result(n);
    std::iota(result.begin(), result.end(), 0U);
    return result;
}

dense2D<double> arc(std::size_t n, double angle, std::size_t rows)
{
    point_list corners(n + 1);
    for (std::size_t k = 0; k <= n; ++k) {
        double const at = angle * double(k) / double(n);
        corners[k] = {std::cos(at), 0.6 * std::sin(at), 0.8 * std::sin(at)};
        if (rows == 2) corners[k] = {std::cos(at), std::sin(at)};
    }
    return columns(corners);
}

unsigned random_numbers::below(unsigned n)
{
    state_ = state_ * 6364136223846793005 + 1442695040888963407; // Knuth, MMIX
    return static_cast<unsigned>((state_ >> 32) * n >> 32);
}

double random_numbers::between(double low, double high)
{
    return low + (high - low) * (below(1U << 30) + 0.5) / (1U << 30);
}

template <class Array>
static void detach(Array& array)
{
    Array own;
    EXPECT_TRUE(own.copy(array));
    array = own;
}

int meshing::run()
{
    vornik1d::spline_options spline = *this;
    spline.out_params = &out_params, spline.out_sizes = &out_sizes;
    spline.out_metrics = &out_metrics, spline.deviation = &deviation;
    vornik1d::line_options const line = {deviation_tolerance, min_size, force_even, min_elements,
        max_elements, which == overload::line ? params : reals(), &out_params, &out_sizes, &out_metrics};
    auto const call = [&](auto const& targets) {
        return which == overload::spline
                   ? vornik1d::mesh_spline(coords, indices, targets, out_indices, spline)
                   : vornik1d::mesh_line(coords, indices, targets, out_indices, line);
    };
    return metrics.empty() ? call(sizes) : call(metrics);
}

meshing meshing::copy() const
{
    meshing m = *this;
    detach(m.coords), detach(m.indices), detach(m.params), detach(m.sizes), detach(m.metrics);
    detach(m.out_indices), detach(m.out_params), detach(m.out_sizes), detach(m.out_metrics);
    return m;
}

void meshing::use_tensors()
{
    if (coords.rows() == 2)
        vornik::metrics_iso_to_aniso2d(sizes, metrics);
    else
        vornik::metrics_iso_to_aniso3d(sizes, metrics);
}

numbers meshing::pinned() const
{
    auto const all = mesh();
    numbers result;
    std::copy_if(all.begin(), all.end(), std::back_inserter(result),
        [this](unsigned node) { return node < indices.size(); });
    return result;
}

meshing chain_of(dense2D<double> const& coords, double size)
{
    meshing m;
    m.coords = coords;
    m.indices = nodes_up_to(coords.cols());
    m.sizes = dense1D<double>(coords.cols(), size);
    m.params = dense1D<double>(coords.cols());
    std::iota(m.params.begin(), m.params.end(), 0.0);
    return m;
}

meshing spline_of(dense2D<double> const& coords, double size, bool is_closed)
{
    auto const n = static_cast<unsigned>(coords.cols());
    meshing m;
    m.which = meshing::overload::spline;
    m.coords = coords;
    m.indices.push_back(is_closed ? n - 1 : 0);
    for (unsigned k = 0; k < n; ++k) m.indices.push_back(k);
    if (is_closed) m.indices.push_back(0);
    m.indices.push_back(is_closed ? 1 : n - 1);
    m.sizes = dense1D<double>(m.indices.size(), size);
    return m;
}

int remeshing::run()
{
    vornik1d::remesh_options options = *this;
    options.colors = &colors, options.hard_nodes = hard_nodes, options.break_nodes = &hard_nodes;
    return vornik1d::remesh_lines(coords, connect, default_size, options);
}

double length_of(dense2D<double> const& coords, dense2D<unsigned> const& connect)
{
    double length = 0;
    EXPECT_EQ(vornik1d::length(coords, connect, length), 0);
    return length;
}

remeshing remeshing::copy() const
{
    remeshing r = *this;
    detach(r.coords), detach(r.connect), detach(r.colors), detach(r.hard_nodes);
    return r;
}

remeshing network_of(dense2D<double> const& coords, double size)
{
    remeshing r;
    r.coords = coords;
    r.default_size = size;
    EXPECT_EQ(vornik1d::indices_to_connectE2(nodes_up_to(coords.cols()), r.connect), 0);
    return r;
}
