#include <gtest/gtest.h>

#include "support.h"

using namespace trelk;

// Every allocation of `mesh_line` in turn, alone and with all behind it, is refused. What reports it leaves
// the arguments as they were; what need not (a placement without storage places nothing) leaves a sound mesh.
TEST(allocation_failures, of_mesh_line_leave_the_arguments_as_they_were)
{
    using extent = failing_allocations::extent;
    for (double const tolerance : {-0.01, 0.0, 0.02})
        for (bool const with_params : {false, true})
            for (extent const which : {extent::one, extent::all_behind}) {
                int refused = 0;
                for (std::size_t number = 0;; ++number) {
                    meshing m = chain_of(arc(30, 4, 2 + number % 2), 0.15);
                    m.coords(0, 15) += 0.3; // a corner, so that refinement cuts
                    m.deviation_tolerance = tolerance;
                    m.with_params = with_params;
                    auto const before = m.untouched();
                    int status = 0;
                    bool has_failed = false;
                    {
                        failing_allocations const failing(number, which);
                        status = m.run();
                        has_failed = failing_allocations::have_failed();
                    }
                    if (!has_failed) break;
                    if (status == 0) {
                        ASSERT_EQ(m.out_params.size(), m.mesh().size());
                        ASSERT_EQ(m.out_sizes.size(), m.out_indices.size());
                        for (unsigned const node : m.mesh()) ASSERT_LT(node, m.coords.cols());
                        continue;
                    }
                    ++refused;
                    ASSERT_EQ(status, -199) << number;
                    ASSERT_EQ(m.untouched(), before) << number;
                    // Where the parameters themselves have no storage, the call has not come to its outputs.
                    bool const is_early = !with_params && number < 2;
                    ASSERT_EQ(m.out_params.size(), is_early ? 2U : 0U) << number;
                }
                EXPECT_GT(refused, 5);
            }
}
