#include <vornik1d/vornik1d.h>

#include <algorithm>

#include "arrays/append.h"
#include "front_door.h"

namespace trelk::vornik1d {

namespace {

/// Appends elements of `nodes` nodes along `indices`. Each element begins at the last node of the one before.
int append_elements(dense1D<unsigned> const& indices, std::size_t nodes, dense2D<unsigned>& connect)
{
    std::size_t const n = indices.size();
    std::size_t const stride = nodes - 1;
    if (n == 0) return 0;
    if (n < nodes || n % stride != 1 % stride) return bad_argument(1);
    if (!connect.empty() && connect.rows() != nodes) return bad_argument(2);

    std::size_t const present = filled_columns(connect);
    std::size_t const added = (n - 1) / stride;
    if (!extend(connect, nodes, added)) return no_storage;
    for (std::size_t k = 0; k < added; ++k) {
        unsigned const* const from = indices.begin() + k * stride;
        unsigned* const column = connect.col(present + k);
        column[0] = from[0];
        column[1] = from[stride];
        std::copy_n(from + 1, stride - 1, column + 2);
    }
    return 0;
}

} // namespace

int indices_to_connectE2(dense1D<unsigned> const& indices, dense2D<unsigned>& connect) noexcept
{
    return append_elements(indices, 2, connect);
}

int indices_to_connectE3(dense1D<unsigned> const& indices, dense2D<unsigned>& connect) noexcept
{
    return append_elements(indices, 3, connect);
}

int indices_to_connectE4(dense1D<unsigned> const& indices, dense2D<unsigned>& connect) noexcept
{
    return append_elements(indices, 4, connect);
}

} // namespace trelk::vornik1d
