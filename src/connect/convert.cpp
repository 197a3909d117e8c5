#include <vornik1d/vornik1d.h>

#include <vornik/toolkit.h>

#include "front_door.h"
#include "special_values.h"

namespace trelk::vornik1d {

namespace {

/// Gives each element `extra_nodes` interior nodes and appends their coordinates. `connect_out` may be
/// `connect_in`. On a failure `connect_out` and `coords` are as they were.
int add_interior_nodes(dense2D<double>& coords, dense2D<unsigned> const& connect_in, unsigned extra_nodes,
    dense2D<unsigned>& connect_out)
{
    std::size_t const elements = connect_in.cols();
    std::size_t const rows = coords.rows();
    std::size_t const base = coords.cols();
    if (!vornik::check_IDs(connect_in, vornik::element_type::edge, base)) return bad_argument(2);

    std::size_t const nodes = base + elements * extra_nodes;
    bool const have_numbers = // the sum cannot overflow if the first two are true
        can_be_numbered(elements) && can_be_numbered(base) && can_be_numbered(nodes);
    dense2D<unsigned> result;
    if (!have_numbers || !result.resize(std::size_t{extra_nodes} + 2, elements) ||
        !coords.resize(rows, nodes))
        return no_storage;

    double const part = 1 / (static_cast<double>(extra_nodes) + 1);
    std::size_t node = base;
    for (std::size_t j = 0; j < elements; ++j) {
        unsigned const a = connect_in(0, j);
        unsigned const b = connect_in(1, j);
        unsigned* const column = result.col(j);
        column[0] = a;
        column[1] = b;
        for (std::size_t k = 0; k < extra_nodes; ++k, ++node) {
            double const t = static_cast<double>(k + 1) * part;
            column[k + 2] = static_cast<unsigned>(node);
            for (std::size_t r = 0; r < rows; ++r)
                coords(r, node) = coords(r, a) + t * (coords(r, b) - coords(r, a));
        }
    }
    connect_out = result;
    return 0;
}

bool has_one_to_three_rows(dense2D<double> const& coords) { return coords.rows() >= 1 && coords.rows() <= 3; }

} // namespace

int convert_into_linear(dense2D<unsigned>& connect) noexcept
{
    if (connect.empty()) return 0;
    if (connect.rows() < 3) return bad_argument(1);
    static_cast<void>(connect.resize(2, connect.cols())); // to fewer rows, which cannot fail
    return 0;
}

int convert_into_high_order(dense2D<double>& coords, dense2D<unsigned> const& connect_in,
    unsigned extra_nodes, dense2D<unsigned>& connect_out) noexcept
{
    if (!has_one_to_three_rows(coords)) return bad_argument(1);
    connect_out.clear();
    if (connect_in.empty() || extra_nodes == 0) return 0;
    return add_interior_nodes(coords, connect_in, extra_nodes, connect_out);
}

int convert_into_high_order(
    dense2D<double>& coords, dense2D<unsigned>& connect, unsigned extra_nodes) noexcept
{
    if (!has_one_to_three_rows(coords)) return bad_argument(1);
    if (connect.empty() || extra_nodes == 0) return 0;
    return add_interior_nodes(coords, connect, extra_nodes, connect);
}

int convert_into_quadratic(dense2D<double>& coords, dense2D<unsigned>& connect) noexcept
{
    return convert_into_high_order(coords, connect, 1);
}

int convert_into_cubic(dense2D<double>& coords, dense2D<unsigned>& connect) noexcept
{
    return convert_into_high_order(coords, connect, 2);
}

} // namespace trelk::vornik1d
