#include <vornik1d/vornik1d.h>

#include "arrays/append.h"
#include "front_door.h"

namespace trelk::vornik1d {

int split_into_linear(dense2D<unsigned> const& connect_in, dense2D<unsigned>& connect_out) noexcept
{
    if (connect_in.empty()) return 0;
    if (connect_in.rows() != 3) return bad_argument(1);
    if (connect_out.rows() != 0 && connect_out.rows() != 2) return bad_argument(2);

    std::size_t const n = connect_in.cols();
    std::size_t const present = filled_columns(connect_out);
    if (!extend(connect_out, 2, 2 * n)) return no_storage;
    for (std::size_t e = 0; e < n; ++e) {
        unsigned const* const nodes = connect_in.col(e);
        unsigned* const first_half = connect_out.col(present + 2 * e);
        unsigned* const second_half = connect_out.col(present + 2 * e + 1);
        first_half[0] = nodes[0];
        first_half[1] = second_half[0] = nodes[2];
        second_half[1] = nodes[1];
    }
    return 0;
}

} // namespace trelk::vornik1d
