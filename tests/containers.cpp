#include <gtest/gtest.h>

#include <array>
#include <cstdint>
#include <random>
#include <span>

#include "support.h"

using namespace trelk;

TEST(dense1D, views_share_values_through_growth)
{
    auto a = reals({1, 2, 3, 4});
    dense1D<double> whole = a;
    dense1D<double> part = a.sub_vector(1, 2);
    dense1D<double> own;
    ASSERT_TRUE(own.copy(a) && a.resize(1000, 7)); // moves the storage of all views
    a[2] = 30;
    EXPECT_EQ(whole, (reals{1, 2, 30, 4}));
    EXPECT_EQ(part, (reals{2, 30}));
    EXPECT_EQ(own, (reals{1, 2, 3, 4}));

    // When a view that is shorter than the storage grows, what the others show stays.
    ASSERT_TRUE(part.resize(5000));
    EXPECT_EQ(whole, (reals{1, 2, 30, 4}));
    EXPECT_EQ(a[999], 7);
    a.push_back(a[2]); // a value from the storage that moves
    EXPECT_EQ(a[1000], 30);
    EXPECT_EQ(a.sub_vector(999, 50).size(), 2U);
    EXPECT_EQ(a.sub_vector(2000, 1).size(), 0U);
}

TEST(containers, are_made_of_what_is_written)
{
    EXPECT_EQ((nodes{5, 7}), nodes(numbers{5, 7}));
    EXPECT_EQ(nodes(2, 7), (nodes{7, 7}));
    EXPECT_EQ(reals(2), (reals{0, 0}));

    std::vector<double> values{1, 2, 3, 4};
    dense1D<double> const copy(values);
    dense2D<double> const square(2, 2, values);
    values[0] = -1;
    EXPECT_EQ(copy, (dense1D<double>{1, 2, 3, 4}));
    EXPECT_EQ(square, (dense2D<double>{{1, 2}, {3, 4}}));
    std::array const pair{1U, 2U};
    EXPECT_EQ(dense1D<unsigned>(pair), dense1D<unsigned>(std::span(pair)));
    EXPECT_TRUE(dense1D<double>(std::vector<double>()).empty());

    EXPECT_EQ(dense2D<double>(2, 1), (dense2D<double>{{0, 0}}));
    EXPECT_EQ((dense2D<unsigned>{{0}, {1}, {2}}).cols(), 3U);
    EXPECT_TRUE((dense2D<double>{{1, 2}, {3}}).empty()); // columns of different lengths
    EXPECT_TRUE(dense2D<double>(3, 2, values).empty());  // 4 values are not 6
}

TEST(containers, compare_shapes_and_values)
{
    dense2D<double> const m{{1, 2, 3}, {4, 5, 6}};
    dense2D<double> const block = m.sub_matrix(1, 0, 2, 2); // its columns stand apart
    EXPECT_EQ(block, (dense2D<double>{{2, 3}, {5, 6}}));
    EXPECT_NE(block, (dense2D<double>{{2, 3}, {5, 7}}));
    EXPECT_NE(dense2D<double>(2, 3), dense2D<double>(3, 2));
    EXPECT_NE((dense1D<unsigned>{1, 2}), (dense1D<unsigned>{1, 2, 0}));

    std::vector<double> sums;
    for (auto const column : block.columns()) sums.push_back(column[0] + column[1] + double(column.size()));
    EXPECT_EQ(sums, (std::vector<double>{7, 13}));
    for (auto const column : dense2D<double>().columns()) FAIL() << column.size();
    for (auto const column : dense2D<double>{{4, 5}}.columns()) // of a temporary
        EXPECT_EQ(column[1], 5);
}

TEST(dense1D, foreign_values_are_seen_and_left_behind)
{
    unsigned values[3] = {5, 6, 7};
    dense1D<unsigned> view(3, values);
    view[1] = 60;
    EXPECT_EQ(values[1], 60U);
    view.push_back(8);
    view[0] = 50;
    EXPECT_EQ(view, (nodes{50, 60, 7, 8}));
    EXPECT_EQ(values[0], 5U);
    EXPECT_EQ(dense1D<unsigned>(2, 0), (nodes{0, 0})); // 0 is no null pointer
}

TEST(containers, refuse_what_storage_or_arithmetic_cannot_hold)
{
    auto a = reals({1, 2});
    auto tail = a.sub_vector(1, 1);
    auto m = columns({{1, 2}, {3, 4}}), same = columns({{1, 2}, {3, 4}});
    for (std::size_t const n : {SIZE_MAX, SIZE_MAX / 8 + 1, SIZE_MAX / 16 + 1})
        EXPECT_FALSE(
            a.resize(n) || tail.reserve(n, 2) || a.push_back_n(0, n) || m.resize(2, n) || m.resize(n, 3));
    ASSERT_TRUE(a.reserve(100) && m.reserve(2, 100));

    failing_allocations const none(0, failing_allocations::extent::all_behind);
    EXPECT_TRUE(a.push_back_n(3, 98) && m.resize(2, 100) && m.resize(2, 2)); // reserved
    EXPECT_FALSE(a.push_back(4) || a.resize(101) || m.resize(3, 2) || m.resize(2, 101));
    EXPECT_EQ(a.size(), 100U);
    EXPECT_EQ(m, same);
    EXPECT_TRUE(dense1D<double>(5, 1.0).empty());

    // No view of values that are not there, or that no address space has room for.
    double value = 1;
    EXPECT_EQ(dense2D<double>(2, 2, static_cast<double*>(nullptr)).cols(), 0U);
    EXPECT_EQ(dense2D<double>(SIZE_MAX / 2, 3, &value).cols(), 0U);
    EXPECT_EQ(m.sub_matrix(2, 0, 1, 1).cols() + m.sub_matrix(0, 2, 1, 1).cols(), 0U);
    EXPECT_TRUE(m.sub_matrix(0, 0, 1, 2).as_vector().empty()); // a copy without storage

    // A matrix without rows may have any number of columns.
    dense2D<double> bare, copy;
    EXPECT_TRUE(m.resize(0, SIZE_MAX, 1.0) && bare.resize(0, SIZE_MAX) && copy.copy(bare));
    EXPECT_EQ(copy.cols(), SIZE_MAX);
}

TEST(containers, take_less_where_they_cannot_double)
{
    auto a = reals({1, 2, 3, 4});
    std::size_t const room = a.room();
    ASSERT_TRUE(a.resize(room, 5));
    failing_allocations const failing(0, failing_allocations::extent::one);
    EXPECT_TRUE(a.push_back(6));
    EXPECT_TRUE(failing_allocations::have_failed());
    EXPECT_EQ(a[room], 6);
}

TEST(dense2D, resizing_agrees_with_a_list_of_columns)
{
    std::mt19937 random(7);
    auto const up_to = [&](std::size_t n) { return random() % (n + 1); };
    for (int round = 0; round < 300; ++round) {
        dense2D<double> m;
        std::vector<std::vector<double>> model;
        for (int step = 0; step < 12; ++step) {
            if (up_to(3) == 0 && !m.empty()) { // go on with a block of it, whose columns stand apart
                auto const row = std::ptrdiff_t(up_to(m.rows() - 1));
                auto const col = std::ptrdiff_t(up_to(m.cols() - 1));
                m = m.sub_matrix(std::size_t(row), std::size_t(col), m.rows(), m.cols());
                model.erase(model.begin(), model.begin() + col);
                for (auto& c : model) c.erase(c.begin(), c.begin() + row);
            }
            std::size_t const rows = up_to(5);
            std::size_t const cols = up_to(6);
            bool const reserved = up_to(1) == 0 || m.reserve(rows, cols, 2);
            ASSERT_TRUE(reserved && m.resize(rows, cols, step));
            model.resize(cols);
            for (auto& c : model) c.resize(rows, step);
            ASSERT_TRUE(cols > 0 ? m == columns(model) : m == dense2D<double>(rows, 0));
            for (std::size_t k = 0; k < rows * cols; ++k)
                ASSERT_EQ(m.as_vector()[k], model[k / rows][k % rows]);
        }
    }
}

TEST(dense2D, views_share_values)
{
    double values[6] = {1, 2, 3, 4, 5, 6};
    dense2D<double> m(2, 3, values);
    dense2D<double> row = m.sub_matrix(1, 0, 1, 3);
    dense2D<double> own;
    ASSERT_TRUE(own.copy(m));
    row(0, 1) = 40;
    m.as_vector()[0] = 10;
    row.as_vector()[0] = -1; // its values do not stand side by side: a copy
    EXPECT_EQ(std::vector<double>(values, values + 4), (std::vector<double>{10, 2, 3, 40}));
    EXPECT_EQ(own(0, 0), 1);
}
