#include <string_view>

#include <benchmark/benchmark.h>

#include "race.h"

void enlist_lines();
void enlist_splines();
void enlist_remeshing();

int main(int argc, char** argv)
{
    enlist_lines();
    enlist_splines();
    enlist_remeshing();
    benchmark::Initialize(&argc, argv);
    if (argc == 2 && std::string_view(argv[1]) == "--first_touch") is_first_touch = argc-- == 2;
    if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 1;
    benchmark::RunSpecifiedBenchmarks();
    return all_agree ? 0 : 1;
}
