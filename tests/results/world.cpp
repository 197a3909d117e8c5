#include "world.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>

namespace {

enum class storage { own, foreign, part, roomy };

storage draw_storage(generator& g)
{
    constexpr storage kinds[] = {storage::foreign, storage::part, storage::roomy};
    return g.chance(0.8) ? storage::own : g.pick(kinds);
}

template <class T>
void mix(generator& g, trelk::dense1D<T>& list, std::vector<std::unique_ptr<T[]>>& memory,
    std::vector<trelk::dense1D<T>>& kept)
{
    std::size_t const n = list.size();
    storage const kind = draw_storage(g);
    if (kind == storage::foreign) {
        auto& values = memory.emplace_back(new T[n + 1]);
        std::copy_n(list.begin(), n, values.get());
        list = trelk::dense1D<T>(n, values.get());
    } else if (kind == storage::part) {
        std::size_t const before = g.below(4);
        auto& all = kept.emplace_back(n + before + g.below(6), T{5});
        std::copy_n(list.begin(), n, all.begin() + before);
        list = all.sub_vector(before, n);
    } else if (kind == storage::roomy && !list.reserve(n + g.below(60)))
        give_up();
}

template <class T>
void mix(generator& g, trelk::dense2D<T>& matrix, std::vector<std::unique_ptr<T[]>>& memory,
    std::vector<trelk::dense2D<T>>& kept)
{
    if (matrix.empty()) return;
    std::size_t const rows = matrix.rows();
    std::size_t const cols = matrix.cols();
    storage const kind = draw_storage(g);
    if (kind == storage::foreign) {
        auto& values = memory.emplace_back(new T[rows * cols]);
        for (std::size_t j = 0; j < cols; ++j) std::copy_n(matrix.col(j), rows, values.get() + rows * j);
        matrix = trelk::dense2D<T>(rows, cols, values.get());
    } else if (kind == storage::part) {
        std::size_t const above = g.below(3);
        std::size_t const before = g.below(3);
        auto& all = kept.emplace_back(matrix_of(rows + above + 1, cols + before + g.below(4), T{5}));
        for (std::size_t j = 0; j < cols; ++j) std::copy_n(matrix.col(j), rows, all.col(before + j) + above);
        matrix = all.sub_matrix(above, before, rows, cols);
    } else if (kind == storage::roomy && !matrix.reserve(rows, cols + g.below(60)))
        give_up();
}

} // namespace

void give_up()
{
    std::fputs("no storage for the arguments\n", stderr);
    std::exit(3);
}

void world::add_to(hash& sum) const
{
    for (auto const* matrix : {&coords, &metrics, &out_metrics}) sum.add(*matrix);
    for (auto const* matrix : {&connect, &out_connect}) sum.add(*matrix);
    for (auto const* list : {&params, &sizes, &out_params, &out_sizes}) sum.add(*list);
    for (auto const* list : {&indices, &colors, &hard_nodes, &hard_edges, &out_indices}) sum.add(*list);
    sum.add(number);
    for (double const x : point) sum.add(x);
}

void world::mix_storage(generator& g)
{
    for (auto* matrix : {&coords, &metrics, &out_metrics}) mix(g, *matrix, reals, real_matrices);
    for (auto* matrix : {&connect, &out_connect}) mix(g, *matrix, numbers, node_matrices);
    for (auto* list : {&params, &sizes, &out_params, &out_sizes}) mix(g, *list, reals, real_lists);
    for (auto* list : {&indices, &colors, &hard_nodes, &hard_edges, &out_indices})
        mix(g, *list, numbers, node_lists);
}

void fill_outputs(generator& g, std::size_t metric_rows, world& w)
{
    for (auto* list : {&w.out_params, &w.out_sizes})
        if (g.chance(0.3)) *list = real_list(1 + g.below(4), 2.5);
    if (g.chance(0.3)) w.out_indices = node_list(1 + g.below(4), 3);
    if (g.chance(0.3)) w.out_metrics = matrix_of(metric_rows, 1 + g.below(3), 1.5);
}

double odd_number(generator& g)
{
    constexpr double numbers[] = {0, -0.0, -1, not_a_number, infinity, -infinity, largest_double,
        -largest_double, 4.9e-324, 2.3e-308, 1e300, -1e300, 1e-300, 1e154, 1e-154, 4294967295, 1e18, 1e-9, 90,
        180};
    return g.pick(numbers);
}
