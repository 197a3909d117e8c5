#include <gtest/gtest.h>

#include <cmath>
#include <string>

#include <vornik/toolkit.h>

#include "metric/tensor.h"
#include "support.h"

using namespace trelk;
using namespace trelk::vornik1d;
using overload = meshing::overload;

// What `mesh_line` and `mesh_spline` have in common, in all their overloads.

namespace {

void damage(meshing& m, char what)
{
    if (what == 'R') m.coords.clear();
    if (what == 'r') m.coords = columns(point_list(5, {0, 0, 0, 0}));
    if (what == 'l') m.indices = nodes(m.which == overload::spline ? numbers{0, 1, 2} : numbers{0});
    if (what == 'n') m.indices[1] = 5;
    if (what == 'p') m.params[2] = 0.5;
    if (what == 'P') m.params[2] = not_a_number;
    if (what == 't') m.sizes[4] = 0, m.metrics(0, 4) = -1;
    if (what == 'T') m.sizes = m.sizes.sub_vector(0, 4), m.metrics = m.metrics.sub_matrix(0, 0, 3, 4);
    if (what == 'd') vornik::metrics_iso_to_aniso3d(reals({1, 1, 1, 1, 1, 1, 1}), m.metrics);
    if (what == 'c') m.min_elements = 0;
    if (what == 'C') m.min_elements = 3, m.max_elements = 2;
    if (what == 's') m.min_size = -1e-9;
    if (what == 'S') m.min_size = not_a_number;
    if (what == 'o') m.out_metrics = columns({{1, 0, 1, 0, 0, 1}});
    if (what == 'i') m.coords(0, 3) = infinity;
}

} // namespace

TEST(mesh_line_and_spline, statuses_in_the_order_of_the_checks)
{
    // Arguments to damage, one more at a time, from the last check to the first, and the statuses.
    struct
    {
        overload which;
        std::string damages;
        std::vector<int> statuses;
    } const rows[] = {{overload::line, "nocCtTdpPlrR", {-2, -11, -6, -6, -4, -4, -4, -3, -3, -2, -1, -1}},
        {overload::line_by_chord_length, "ocCtTdnlrR", {-11, -6, -6, -4, -4, -4, -2, -2, -1, -1}},
        {overload::spline, "iosScCtTdnlrR", {-1, -13, -8, -8, -5, -5, -3, -3, -3, -2, -2, -1, -1}}};
    for (auto const& [which, damages, statuses] : rows)
        for (bool const by_tensors : {false, true}) {
            meshing m = which == overload::spline ? spline_of(arc(4, 1), 0.1) : chain_of(arc(4, 1), 0.1);
            m.which = which;
            m.use_tensors();
            for (std::size_t k = 0; k < damages.size(); ++k) {
                if (damages[k] == 'o' && !by_tensors) continue;
                damage(m, damages[k]);
                meshing call = m.copy();
                if (!by_tensors) call.metrics.clear();
                meshing const before = call.copy();
                ASSERT_EQ(call.run(), statuses[k]) << damages << ' ' << damages[k] << ' ' << by_tensors;
                EXPECT_EQ(call.untouched(), before.untouched());
                EXPECT_EQ(call.deviation, which == overload::spline ? 0 : 7);
                // A line replaces the parameters: they are emptied first, or when there are new ones.
                bool const is_kept =
                    which == overload::spline || (which != overload::line && statuses[k] >= -2);
                EXPECT_EQ(call.out_params.size(), is_kept ? 2U : 0U);
            }
        }
    // Chord lengths beyond arithmetic.
    for (auto const& [far, status] : {std::pair(0.0, -2), {infinity, -4}, {1e-170, -2}, {not_a_number, -2}}) {
        meshing m = chain_of(columns({{0, 0}, {far, 0}, {0, 0}}), 1);
        m.which = overload::line_by_chord_length;
        EXPECT_EQ(m.run(), status) << far;
    }
    for (double const tolerance : {0.0, 1e-300}) { // a finite curve without a finite length
        meshing m = spline_of(columns({{0, 0}, {1, 1}, {2, 0}, {1.7e308, 0}}), 1);
        m.deviation_tolerance = tolerance;
        EXPECT_EQ(m.run(), -1);
    }
    meshing guided =
        spline_of(columns({{infinity, 0}, {0, 0}, {1, 1}, {2, 0}}), 1); // by a node that is not finite
    guided.indices = nodes({0, 1, 2, 3});
    EXPECT_EQ(guided.run(), -1);
}

namespace {

meshing random_line(random_numbers& random, overload which)
{
    point_list corners(4 + random.below(30), {0, 0});
    for (std::size_t k = 1; k < corners.size(); ++k)
        for (std::size_t r = 0; r < 2; ++r)
            corners[k][r] = corners[k - 1][r] + (r == 0 ? 1 : 0) + random.between(-0.7, 0.7);
    bool const is_spline = which == overload::spline;
    meshing m =
        is_spline ? spline_of(columns(corners), 1, random.below(2) == 0) : chain_of(columns(corners), 1);
    m.which = which;
    for (double& h : m.sizes) h = random.between(0.1, 1);
    double const tolerances[] = {-0.02, 0, 0.05};
    m.deviation_tolerance = tolerances[random.below(3)];
    m.force_even = random.below(2) == 0;
    m.min_size = 0.05, m.max_gradation = 0.3;
    m.default_size = random.below(5) == 0 ? 2 : 0;
    return m;
}

/// Tensors of random axes, with sizes from a quarter of the given ones up to these.
void set_random_tensors(random_numbers& random, meshing& m)
{
    ASSERT_TRUE(m.metrics.resize(3, m.sizes.size()));
    for (std::size_t k = 0; k < m.sizes.size(); ++k) {
        double const a = random.between(0, 7), low = 1 / (m.sizes[k] * m.sizes[k]);
        double const high = low * random.between(1, 16);
        auto const t =
            recompose_metric<2>({low, high}, {{std::cos(a), std::sin(a)}, {-std::sin(a), std::cos(a)}});
        std::copy_n(t.values, 3, m.metrics.col(k));
    }
}

/// The matrix with columns x and y, both `scale` long, at right angles.
struct frame
{
    vector<2> x, y;
    double scale;
    double close; // how far the image of a mesh may be from the mesh of the image

    meshing image(meshing const& line) const
    {
        meshing m = line.copy();
        m.min_size *= scale, m.default_size *= scale;
        if (m.deviation_tolerance > 0) m.deviation_tolerance *= scale;
        for (double& h : m.sizes) h *= scale;
        for (std::size_t k = 0; k < m.coords.cols(); ++k)
            std::copy_n((x * line.coords(0, k) + y * line.coords(1, k)).values, 2, m.coords.col(k));
        for (std::size_t k = 0; k < m.metrics.cols(); ++k) {
            double* const t = m.metrics.col(k);
            double const a = t[0], b = t[1], c = t[2], s = std::pow(scale, 4);
            auto const entry = [&](std::size_t i, std::size_t j) {
                return (x[i] * x[j] * a + (x[i] * y[j] + y[i] * x[j]) * b + y[i] * y[j] * c) / s;
            };
            t[0] = entry(0, 0), t[1] = entry(0, 1), t[2] = entry(1, 1);
        }
        return m;
    }

    void expect_image(meshing const& plain, meshing m) const
    {
        ASSERT_EQ(m.run(), 0);
        ASSERT_EQ(m.mesh(), plain.mesh());
        double const unit = m.which == overload::spline ? scale : 1;
        EXPECT_NEAR(m.deviation, plain.deviation * unit, 1e-12 * unit);
        for (std::size_t j = 0; j < m.coords.cols(); ++j)
            for (std::size_t r = 0; r < 2; ++r)
                ASSERT_NEAR(m.coords(r, j), x[r] * plain.coords(0, j) + y[r] * plain.coords(1, j), close);
        for (std::size_t k = 0; k < m.out_params.size(); ++k)
            ASSERT_NEAR(m.out_params[k], plain.out_params[k], close);
        if (!plain.metrics.empty()) return;
        ASSERT_EQ(m.out_sizes.size() - 1 + m.out_metrics.cols(), m.mesh().size());
        for (std::size_t k = 0; k < m.mesh().size(); ++k) {
            double const size = m.metrics.empty() ? m.out_sizes[k + 1] : 1 / std::sqrt(m.out_metrics(0, k));
            ASSERT_NEAR(size, plain.out_sizes[k + 1] * scale, close);
        }
    }
};

} // namespace

TEST(mesh_line_and_spline, mesh_alike_in_every_frame_and_by_isotropic_tensors)
{
    random_numbers random(23);
    for (int round = 0; round < 300; ++round) {
        meshing given = random_line(random, overload(round % 3));
        if (random.below(2) == 0) set_random_tensors(random, given);
        meshing plain = given.copy();
        ASSERT_EQ(plain.run(), 0);
        EXPECT_EQ(plain.inputs(), given.inputs());
        // What counts as a bend of a spline is a matter of lengths.
        double const large =
            std::ldexp(1, given.which == overload::spline && given.deviation_tolerance == 0 ? -20 : 20);
        double const c = std::cos(0.7), s = std::sin(0.7);
        frame const alike{{1, 0}, {0, 1}, 1, 0}, close{{1, 0}, {0, 1}, 1, 1e-9};
        for (frame const& f :
            {frame{{large, 0}, {0, large}, large, 0}, {{1, 0}, {0, -1}, 1, 0}, {{c, s}, {-s, c}, 1, 1e-9}})
            f.expect_image(plain, f.image(given));

        // As rows of a larger matrix; in space; by isotropic tensors.
        auto larger = columns(point_list(given.coords.cols(), {0, 0, 0}));
        for (std::size_t k = 0; k < larger.cols(); ++k) std::copy_n(given.coords.col(k), 2, larger.col(k));
        meshing part = given.copy(), tensors = given.copy();
        part.coords = larger.sub_matrix(0, 0, given.metrics.empty() && round % 2 == 0 ? 3 : 2, larger.cols());
        alike.expect_image(plain, part);
        if (given.metrics.empty()) tensors.use_tensors();
        close.expect_image(plain, tensors);
    }
}

TEST(mesh_line_and_spline, arguments_may_share_memory)
{
    for (auto const which : {overload::line, overload::line_by_chord_length, overload::spline}) {
        // The lists of the mesh continue those of the line.
        meshing own = which == overload::spline ? spline_of(arc(20, 3), 0.1) : chain_of(arc(20, 3), 0.1);
        own.which = which, own.deviation_tolerance = 1e-4;
        meshing shared = own.copy();
        std::size_t const given = own.indices.size();
        shared.out_indices = shared.indices, shared.out_sizes = shared.sizes;
        ASSERT_EQ(own.run() + shared.run(), 0);
        EXPECT_EQ(shared.out_indices.sub_vector(given, 1000), nodes(own.mesh()));
        EXPECT_EQ(shared.out_sizes.sub_vector(given, 1000), own.out_sizes.sub_vector(1, 1000));
        EXPECT_EQ(shared.coords, own.coords);

        // Sizes lie in the memory of the coordinates, which moves when these grow.
        auto const line = columns({{0.5, 0.01}, {1, 0.01}, {2, 0.01}, {3, 0.01}});
        meshing inside = which == overload::spline ? spline_of(line, 0.5) : chain_of(line, 0.5);
        inside.which = which;
        meshing apart = inside.copy();
        inside.sizes = inside.coords.as_vector().sub_vector(0, 6);
        ASSERT_TRUE(apart.sizes.copy(inside.sizes));
        ASSERT_EQ(inside.run() + apart.run(), 0);
        EXPECT_EQ(inside.coords, apart.coords);
    }
    // An entry of a list that has to grow for the result cannot take the deviation.
    meshing spline = spline_of(arc(6, 2), 0.01);
    auto const call = [&spline](double& deviation) {
        return mesh_spline(spline.coords, spline.indices, spline.sizes, false, 1, 1000, 0, 0, 0, 0,
            spline.out_indices, spline.out_params, spline.out_sizes, deviation);
    };
    EXPECT_EQ(call(spline.coords(0, 0)) + call(spline.out_params[0]) + call(spline.out_sizes[0]), 0);
    EXPECT_EQ(spline.coords(0, 0) + spline.out_sizes[0] + spline.out_params[0], 0);
}

TEST(mesh_line, curvature_bounds_sizes_by_the_sagitta)
{
    // On a circle of radius 1 a negative tolerance bounds sizes by h^2 / 8 = -tolerance, but not below min_size.
    struct
    {
        double tolerance, min_size, first, last;
    } const rows[] = {{-0.02, 0, 0.25, 0.4}, {-0.02, 0.5, 0.25, 0.5}, {0, 0.5, 0.25, 0.9},
        {largest_double, 0, 0.25, 0.9}, {-largest_double, 0, 0.25, 0.9}, {not_a_number, 0, 0.25, 0.9},
        {-infinity, 0, 0.25, 0.9}};
    for (auto const& row : rows)
        for (std::size_t const dimension : {2U, 3U}) {
            meshing m = chain_of(arc(200, 3, dimension), 0.9);
            m.which = dimension == 2 ? overload::line : overload::line_by_chord_length;
            m.sizes[0] = 0.25;
            m.deviation_tolerance = row.tolerance, m.min_size = row.min_size;
            ASSERT_EQ(m.run(), 0);
            EXPECT_NEAR(m.out_sizes[1], row.first, 1e-10);
            EXPECT_NEAR(m.out_sizes[m.out_sizes.size() - 1], row.last, 1e-10);
        }
    // What is straight keeps its sizes, and so do entries with a twin on either side.
    meshing m = chain_of(columns({{0, 0}, {1, 2}, {1, 2}, {1, 2}, {4, 8}}), 0.5);
    m.deviation_tolerance = -1e-9;
    ASSERT_EQ(m.run(), 0);
    EXPECT_EQ(m.elements(), 18U);
}

TEST(mesh_line, counts)
{
    struct
    {
        std::size_t chain;
        double size, tolerance;
        bool even;
        unsigned fewest, most;
        std::size_t elements;
    } const rows[] = {{10, 0.3, 1e-6, true, 1, 5, 6}, // an even count wins
        {10, 0.3, 1e-6, false, 1, 7, 7},              // one at the limit is not refined
        {2000, 0.5, 0.01991, false, 1, 5, 6},         // one below it is, and does not keep to the limit
        {64, 0.5, 0.0312, false, 1, 9, 4},            // the sagitta of 1/4 is 0.0311
        {64, 0.5, 0.0306, false, 1, 9, 5}, {64, 0.5, 0.0306, true, 1, 9, 6}, {10, 0.3, 0, false, 13, 13, 13},
        {10, 100, 0, false, 1, no_limit, 1}, {10, 1e-300, 0, false, 1, 1000, 1000}};
    for (auto const& row : rows)
        for (auto const which : {overload::line, overload::line_by_chord_length}) {
            meshing m = chain_of(arc(row.chain, 2), row.size);
            m.which = which;
            m.force_even = row.even, m.min_elements = row.fewest, m.max_elements = row.most;
            m.deviation_tolerance = row.tolerance;
            ASSERT_EQ(m.run(), 0);
            EXPECT_EQ(m.elements(), row.elements) << &row - rows;
            EXPECT_EQ(m.pinned().size(), 2U);
        }
}

TEST(mesh_line, nodes_of_every_pass_lie_on_the_chain)
{
    meshing fewer = chain_of(arc(300, 3), 1.2);   // 3 elements along the chain, 2 along their chords
    meshing limited = chain_of(arc(300, 3), 100); // one placement only: chords would have other sizes
    for (std::size_t k = 0; k < 301; ++k) limited.sizes[k] = 10 + double(k);
    limited.min_elements = 4;
    for (meshing* const m : {&fewer, &limited}) {
        ASSERT_EQ(m->run(), 0);
        EXPECT_EQ(m->elements(), m == &fewer ? 2U : 4U);
        for (std::size_t j = 301; j < m->coords.cols(); ++j)
            EXPECT_NEAR(std::hypot(m->coords(0, j), m->coords(1, j)), 1, 1e-4);
    }
    meshing by_chords = chain_of(columns({{0, 0}, {49, 0}}), 10); // 49 times its reciprocal is not 1
    by_chords.which = overload::line_by_chord_length;
    ASSERT_EQ(by_chords.run(), 0);
    EXPECT_EQ(by_chords.out_params[by_chords.out_params.size() - 1], 1);
}
