#include <gtest/gtest.h>

#include <cstdint>
#include <random>

#include <trelk/dense1D.h>
#include <trelk/dense2D.h>
#include <trelk/symmetric_fixed.h>
#include <trelk/vector_fixed.h>

#include "support.h"

using namespace trelk;

TEST(dense1D, views_share_values_through_growth_and_cuts)
{
    auto a = reals({1, 2, 3, 4});
    dense1D<double> whole = a;
    dense1D<double> part = a.sub_vector(1, 2);
    dense1D<double> own;
    ASSERT_TRUE(own.copy(a));

    ASSERT_TRUE(a.resize(1000, 7)); // moves the storage of all
    a[2] = 30;
    EXPECT_EQ(values_of(whole), (std::vector<double>{1, 2, 30, 4}));
    EXPECT_EQ(values_of(part), (std::vector<double>{2, 30}));
    EXPECT_EQ(values_of(own), (std::vector<double>{1, 2, 3, 4}));
    EXPECT_EQ(a[999], 7);

    // A view shorter than the storage grows: what the others show stays.
    ASSERT_TRUE(part.resize(5000));
    EXPECT_EQ(values_of(whole), (std::vector<double>{1, 2, 30, 4}));
    EXPECT_EQ(a[999], 7);

    EXPECT_EQ(a.sub_vector(998, 50).size(), 2U);
    EXPECT_EQ(a.sub_vector(2000, 1).size(), 0U);
    a.push_back(a[2]); // the value may come from the storage that moves
    EXPECT_EQ(a[1000], 30);
}

TEST(dense1D, reserved_room_cannot_fail)
{
    dense1D<double> a;
    ASSERT_TRUE(a.reserve(100));
    failing_allocations const none(0, failing_allocations::extent::all_behind);
    for (int k = 0; k < 100; ++k) ASSERT_TRUE(a.push_back(k));
    EXPECT_FALSE(a.push_back(100));
    EXPECT_FALSE(a.resize(101));
    EXPECT_FALSE(a.push_back_n(1, SIZE_MAX));
    EXPECT_EQ(a.size(), 100U);
    a.clear();
    EXPECT_TRUE(a.push_back_n(3, 100));
    EXPECT_EQ(dense1D<double>(5, 1.0).size(), 0U); // a constructor without storage
}

TEST(dense1D, foreign_values_are_seen_and_left_behind)
{
    unsigned values[3] = {5, 6, 7};
    dense1D<unsigned> view(3, values);
    view[1] = 60;
    EXPECT_EQ(values[1], 60U);
    view.push_back(8);
    view[0] = 50;
    EXPECT_EQ(values_of(view), (std::vector<unsigned>{50, 60, 7, 8}));
    EXPECT_EQ(values[0], 5U);
    EXPECT_EQ(values_of(dense1D<unsigned>(2, 0)), (std::vector<unsigned>{0, 0})); // not a null pointer
}

TEST(containers, sizes_beyond_arithmetic_are_refused)
{
    auto a = reals({1, 2});
    dense1D<double> tail = a.sub_vector(1, 1);
    for (std::size_t const n : {SIZE_MAX, SIZE_MAX / 8 + 1, SIZE_MAX / 16 + 1}) {
        EXPECT_FALSE(a.resize(n));
        EXPECT_FALSE(tail.reserve(n, 2));
        EXPECT_FALSE(a.push_back_n(0, n));
    }
    EXPECT_EQ(values_of(a), (std::vector<double>{1, 2}));

    auto m = columns({{1, 2}, {3, 4}});
    EXPECT_FALSE(m.resize(2, SIZE_MAX / 2 + 1));
    EXPECT_FALSE(m.resize(SIZE_MAX / 2, 3));
    EXPECT_FALSE(m.reserve(3, SIZE_MAX / 3));
    EXPECT_EQ(values_of(m), (std::vector<std::vector<double>>{{1, 2}, {3, 4}}));
    double value = 0;
    EXPECT_TRUE(dense2D<double>(SIZE_MAX / 2 + 1, 2, &value).empty());
}

TEST(dense2D, resizing_agrees_with_a_list_of_columns)
{
    std::mt19937 random(7);
    auto const up_to = [&](unsigned n) { return std::size_t(random() % (n + 1)); };
    for (int round = 0; round < 300; ++round) {
        dense2D<double> m;
        std::vector<std::vector<double>> model;
        double next = 1;
        for (int step = 0; step < 12; ++step) {
            if (up_to(3) == 0 && !m.empty()) { // go on with a block of it, whose columns stand apart
                std::size_t const row = up_to(unsigned(m.rows() - 1));
                std::size_t const col = up_to(unsigned(m.cols() - 1));
                m = m.sub_matrix(row, col, m.rows(), m.cols());
                model.erase(model.begin(), model.begin() + std::ptrdiff_t(col));
                for (auto& c : model) c.erase(c.begin(), c.begin() + std::ptrdiff_t(row));
            }
            std::size_t const rows = up_to(5);
            std::size_t const cols = up_to(6);
            bool const reserved = up_to(1) == 0 || m.reserve(rows, cols, 2);
            ASSERT_TRUE(reserved && m.resize(rows, cols, next));
            model.resize(cols);
            for (auto& c : model) c.resize(rows, next);
            next += 1;
            ASSERT_EQ(values_of(m), model);
            ASSERT_EQ(m.as_vector().size(), rows * cols);
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
    EXPECT_EQ(row.ld(), 2U);
    row(0, 1) = 40;
    EXPECT_EQ(values[3], 40);
    m.as_vector()[0] = 10;
    EXPECT_EQ(values[0], 10);
    row.as_vector()[0] = -1; // its values do not stand side by side: a copy
    EXPECT_EQ(values[1], 2);

    dense2D<double> shared;
    dense2D<double> own;
    shared.shallow_copy(m);
    ASSERT_TRUE(own.copy(m));
    shared(0, 0) = 11;
    EXPECT_EQ(m(0, 0), 11);
    EXPECT_EQ(own(0, 0), 10);
    EXPECT_TRUE(m.sub_matrix(0, 3, 2, 1).empty());
}

TEST(fixed, tensors_are_packed_column_by_column)
{
    symmetric_fixed<double, 3> t{0, 1, 2, 3, 4, 5};
    std::size_t k = 0;
    for (std::size_t j = 0; j < 3; ++j)
        for (std::size_t i = 0; i <= j; ++i, ++k) {
            EXPECT_EQ(t(i, j), double(k));
            EXPECT_EQ(t(j, i), t[k]);
        }
    vector_fixed<double, 2> const v{3, 4};
    EXPECT_EQ(v[1], 4);
}
