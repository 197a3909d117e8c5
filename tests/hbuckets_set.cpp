#include <gtest/gtest.h>

#include <algorithm>
#include <set>

#include "remesh/hbuckets_set.h"
#include "support.h"

using namespace trelk;
using vornik1d::hbuckets_set;
using extent = failing_allocations::extent;

TEST(hbuckets_set, holds_what_a_set_holds_or_knows_that_it_does_not)
{
    random_numbers random(3);
    int incomplete = 0;
    for (unsigned const range : {10U, 3000U, 4294967295U})
        for (std::size_t first_failure = 0; first_failure < 13; ++first_failure) // 12: none fails
            for (auto const which : {extent::one, extent::all_behind}) {
                hbuckets_set set;
                std::set<unsigned> expected;
                EXPECT_FALSE(set.contains(0)); // not yet alive
                {
                    failing_allocations const some(first_failure < 12 ? first_failure : SIZE_MAX, which);
                    EXPECT_TRUE(set.init(23, 23) || first_failure < 12);
                    for (int step = 0; step < 900; ++step) {
                        unsigned const few[] = {random.below(range), random.below(range), 0, 4294967295};
                        std::size_t const before = set.keys();
                        if (step % 10 == 0) {
                            unsigned const added = set.insert_range(few, few + 4);
                            ASSERT_EQ(set.keys(), before + added);
                        } else
                            set.insert(few[0]);
                        for (unsigned const key : few)
                            if (step % 10 == 0 || key == few[0]) expected.insert(key);
                        ASSERT_TRUE(set.contains(few[0]) || !set.is_complete());
                        ASSERT_LE(set.contains(few[1]), expected.count(few[1]));
                        ASSERT_TRUE(set.keys() <= 2 * set.buckets());
                    }
                }
                std::vector<unsigned> keys;
                set.for_each([&](unsigned key) { keys.push_back(key); });
                std::sort(keys.begin(), keys.end());
                EXPECT_EQ(set.keys(), keys.size());
                for (unsigned const key : keys) ASSERT_TRUE(set.contains(key) && expected.count(key) == 1);
                EXPECT_TRUE(keys.size() == expected.size() || !set.is_complete());
                EXPECT_TRUE(set.is_complete() || first_failure < 12);
                incomplete += set.is_complete() ? 0 : 1;
            }
    EXPECT_GT(incomplete, 20);
}
