#include <gtest/gtest.h>

#include <cmath>

#include "support.h"

using namespace trelk;
using namespace trelk::vornik1d;

TEST(mesh_straight, cuts_each_segment_on_its_own)
{
    dense2D<double> coords;
    auto const expect_elements = [&](std::size_t first, std::size_t second, auto... arguments) {
        coords = columns({{0, 0}, {1, 0}, {1, 3}});
        auto mesh = nodes({9});
        ASSERT_EQ(mesh_straight(coords, arguments..., mesh), 0);
        numbers expected = {9, 0};
        for (unsigned k = 3; k < 3 + first - 1; ++k) expected.push_back(k);
        expected.push_back(1);
        for (auto k = unsigned(2 + first); second > 0 && k < 1 + first + second; ++k) expected.push_back(k);
        if (second > 0) expected.push_back(2);
        EXPECT_EQ(mesh, nodes(expected));
        for (unsigned k = 1; k < first; ++k) EXPECT_NEAR(coords(0, 2 + k), k / double(first), 1e-14);
        EXPECT_EQ(coords.cols(), 3 + first - 1 + (second > 0 ? second - 1 : 0));
    };
    auto const ends = nodes({0, 1, 2});
    expect_elements(1, 3, ends, 4U, false);
    expect_elements(2, 4, ends, 4U, true); // 1 becomes 2, 3 becomes 4
    expect_elements(1, 3, 0U, 1U, 2U, 4U);
    expect_elements(49, 0, 0U, 1U, 49U);
    expect_elements(4, 0, 0U, 1U, end_sizes{0.25, 0.25});
    expect_elements(6, 0, 0U, 1U, end_sizes{0.2, 0.2, true});
    expect_elements(1, 4, ends, reals({1, 1, 0.5}), false); // 3 ln(2) / 0.5 = 4.2
    expect_elements(1, 4, ends, columns({{1, 0, 1}, {1, 0, 1}, {4, 0, 4}}), false);
    coords = columns({{0, 0}, {1, 0}});
    nodes mesh;
    ASSERT_EQ(mesh_straight(coords, 0, 1, {0.1, 0.5}, mesh), 0); // ln(5) / 0.4 = 4.02
    EXPECT_NEAR(coords(0, 2), (std::pow(5, 0.25) - 1) / 4, 1e-12);
    EXPECT_EQ(version(), std::string("5.6.0.0"));
}
