#pragma once

#include <cstddef>
#include <limits>
#include <memory>
#include <vector>

#include <trelk/dense1D.h>
#include <trelk/dense2D.h>

#include "hash.h"
#include "random.h"

constexpr unsigned no_limit = 4294967295;
constexpr double largest_double = std::numeric_limits<double>::max();
constexpr double infinity = std::numeric_limits<double>::infinity();
constexpr double not_a_number = std::numeric_limits<double>::quiet_NaN();

using real_list = trelk::dense1D<double>;
using node_list = trelk::dense1D<unsigned>;
using real_matrix = trelk::dense2D<double>;
using node_matrix = trelk::dense2D<unsigned>;

/// What calls are made with; a call uses a part of it, and all of it is hashed afterwards.
struct world
{
    real_matrix coords, metrics, out_metrics;
    node_matrix connect, out_connect;
    real_list params, sizes, out_params, out_sizes;
    node_list indices, colors, hard_nodes, hard_edges, out_indices;
    double number = 7;
    double point[3] = {7, 8, 9};

    void add_to(hash& sum) const;

    /// Gives some of the containers other kinds of storage: a part of a larger one, memory that is not
    /// theirs, room for more. Their values stay.
    void mix_storage(generator& g);

    // What views look at.
    std::vector<std::unique_ptr<double[]>> reals;
    std::vector<std::unique_ptr<unsigned[]>> numbers;
    std::vector<real_list> real_lists;
    std::vector<node_list> node_lists;
    std::vector<real_matrix> real_matrices;
    std::vector<node_matrix> node_matrices;
};

/// Puts something into the outputs of a mesher, or leaves them empty.
void fill_outputs(generator& g, std::size_t metric_rows, world& w);

/// A number that is hard on arithmetic.
double odd_number(generator& g);

/// Takes containers, which have no failing constructors that tell.
[[noreturn]] void give_up();

template <class T>
trelk::dense1D<T> list_of(std::vector<T> const& values)
{
    trelk::dense1D<T> list(values.size());
    if (list.size() != values.size()) give_up();
    for (std::size_t k = 0; k < values.size(); ++k) list[k] = values[k];
    return list;
}

template <class T>
trelk::dense2D<T> matrix_of(std::size_t rows, std::size_t cols, T value)
{
    trelk::dense2D<T> matrix;
    if (!matrix.resize(rows, cols, value)) give_up();
    return matrix;
}
