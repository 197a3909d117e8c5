// Makes pseudo-random calls of all overloads that the library exports and prints a hash over the outputs and
// statuses of each. With the name of an overload it prints the status and the hash of each of its calls.
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <vector>

#include "overloads.h"

namespace {

/// Makes call `number` of an overload, the same one in every run.
int run(overload const& one, unsigned number, hash& sum)
{
    hash seed;
    for (char const* c = one.name; *c != 0; ++c) seed.add(static_cast<unsigned>(*c));
    seed.add(number);
    generator g(seed.value());
    world w;
    int const status = one.call(g, w);
    sum.add(status);
    w.add_to(sum);
    return status;
}

void print_total(overload const& one)
{
    hash sum;
    for (unsigned k = 0; k < one.calls; ++k) run(one, k, sum);
    std::printf("%-36s %016llx\n", one.name, static_cast<unsigned long long>(sum.value()));
}

void print_calls(overload const& one)
{
    for (unsigned k = 0; k < one.calls; ++k) {
        hash sum;
        int const status = run(one, k, sum);
        std::printf("%u %d %016llx\n", k, status, static_cast<unsigned long long>(sum.value()));
    }
}

} // namespace

int main(int argc, char** argv)
{
    std::vector<overload> all;
    add_connect_overloads(all);
    add_extrusion_overloads(all);
    add_line_overloads(all);
    add_measure_overloads(all);
    add_metric_overloads(all);
    add_network_overloads(all);
    add_spline_overloads(all);
    add_straight_overloads(all);
    bool is_known = argc < 2;
    for (overload const& one : all) {
        if (argc < 2)
            print_total(one);
        else if (std::strcmp(argv[1], one.name) == 0)
            print_calls(one), is_known = true;
    }
    return is_known ? 0 : 2;
}
