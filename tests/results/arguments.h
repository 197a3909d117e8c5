#pragma once

#include "scene.h"

// Roles of arguments: each draws a value that fits the scene and the arguments before it.

/// The value of a role, or nothing.
template <auto Role>
constexpr auto maybe = [](scene& s) { return s.g.chance(0.5) ? Role(s) : decltype(Role(s))(); };

inline bool flag(scene& s) { return s.g.chance(0.3); }
template <unsigned N>
constexpr auto below = [](scene& s) { return s.g.node(N); };
inline int way(scene& s) { return static_cast<int>(s.g.below(3)) - 1; }
inline unsigned element(scene& s) { return s.g.node(s.elements.size()); }
inline unsigned node(scene& s) { return s.any_node(); }

inline unsigned least(scene& s)
{
    if (s.g.chance(0.3)) s.least = 1 + s.g.node(30);
    if (s.is_in_step) s.least = (1 + s.g.node(3)) * static_cast<unsigned>(s.entries - 1);
    return s.least;
}
inline unsigned most(scene& s)
{
    if (s.is_in_step || s.g.chance(0.01)) return s.is_in_step ? s.least : s.least - 1;
    return s.is_bounded || s.g.chance(0.3) ? s.least + s.g.node(60) : no_limit;
}

/// A limit also of metric lengths that are infinite, which ask for more memory than some machines have.
inline unsigned most_points(scene& s) { return std::min(most(s), 100'000U); }

inline double radians(scene& s) { return s.g.between(-7, 7); }
inline double span_param(scene& s) { return s.g.chance(0.7) ? s.g.unit() : s.g.between(-2, 3); }
inline double size(scene& s) { return s.target * s.g.octaves(-3, 4); }

/// A size in length units, one relative to elements, or an odd one.
inline double across(scene& s) { return s.g.chance(0.3) ? -size(s) : s.g.chance(0.1) ? s.odd(0.0) : size(s); }

/// Not positive while numbers of elements need a limit, which it would lift.
inline double tolerance(scene& s)
{
    double const kind = s.g.unit();
    if (kind < 0.3) return -s.g.octaves(-14, -1);
    if (kind < 0.7) return s.is_bounded ? 0 : s.target * s.g.octaves(-12, 2);
    return s.g.pick({0, 0, 0, 0, 0, 0, -0.0, largest, -largest, not_a_number, -1, -2});
}

/// Where a curve has kinks, this alone bounds the number of samples.
inline double min_size(scene& s)
{
    return s.scale != s.target || (s.is_smooth && s.g.chance(0.5)) ? 0 : s.target * s.g.octaves(-6, 1);
}
inline double gradation(scene& s) { return s.g.chance(0.5) ? s.g.octaves(-5, 1) : s.g.pick({0, 0, largest}); }
inline double max_angle(scene& s)
{
    return s.g.pick({40, 40, 40, 0, 1e-5, 1, 20, 89.9, 90, 91, 180, infinity});
}

/// Whole numbers or none: the power function's last bits change with the C library.
inline double exponent(scene& s)
{
    return s.g.pick({0, 1, -1, 2, -2, infinity, -infinity, largest, -largest});
}

/// A vector with numbers of any sign, at times of length 0.
template <std::size_t N>
trelk::vector_fixed<double, N> vector(scene& s)
{
    double const longest = s.g.pick({0, 0.2, 0.2, 0.2, 0.2, 0.2, 3, 3, 3, 3, 3, 9, 9, 9, 9});
    trelk::vector_fixed<double, N> v{};
    for (double& x : v.values) x = s.g.between(-longest, longest);
    return v;
}

inline real_matrix coords(scene& s)
{
    auto positions = matrix_of(s.rows, s.points.size(), s.offset);
    for (std::size_t j = 0; j < positions.cols(); ++j)
        for (std::size_t i = 0; i < s.rows; ++i) positions(i, j) += s.scale * s.points[j][i];
    return positions;
}

/// The nodes of the line in order; at times a part of them, or some in another order.
inline node_list chain(scene& s)
{
    enum { mixed, backward, closed, repeating, plain };
    std::size_t const kind = s.is_in_step ? std::size_t{plain} : s.g.below(12);
    if (s.g.chance(0.3)) s.entries -= s.g.below(s.entries / 2);
    auto const n = static_cast<unsigned>(s.entries);
    node_list nodes(n);
    for (unsigned k = 0; k < n; ++k) {
        nodes[k] = kind == backward ? n - 1 - k : k;
        if (kind == mixed) nodes[k] = s.any_node();
        if (kind == repeating && k > 0 && s.g.chance(0.1)) nodes[k] = nodes[k - 1];
    }
    if (n > 2 && (kind == closed || (s.is_closed && kind > plain))) nodes[n - 1] = nodes[0];
    return nodes;
}

/// A chain with guide nodes: of a closed curve, of an open one, or of any.
inline node_list guided_chain(scene& s)
{
    auto const n = static_cast<unsigned>(s.points.size());
    bool const is_joined = s.g.chance(s.is_closed ? 0.9 : 0.1);
    bool const is_mixed = s.g.chance(0.15);
    s.is_smooth = s.is_smooth && n > 3 && !is_mixed && (s.is_closed || !is_joined);
    s.entries = n + (is_joined ? 3 : 2);
    node_list nodes(s.entries);
    for (unsigned k = 0; k < nodes.size(); ++k) {
        nodes[k] = is_joined ? (k + n - 1) % n : std::clamp(k, 1U, n) - 1;
        if (is_mixed && s.g.chance(0.1)) nodes[k] = k > 0 && s.g.chance(0.5) ? nodes[k - 1] : s.any_node();
    }
    return nodes;
}

inline node_list some(scene& s, std::size_t n, unsigned (*draw)(scene&))
{
    node_list numbers(n);
    for (unsigned& number : numbers) number = draw(s);
    return numbers;
}
inline node_list any_nodes(scene& s) { return some(s, s.entries, node); }
inline node_list few_nodes(scene& s) { return some(s, s.g.chance(0.4) ? s.g.below(7) : 0, node); }
inline node_list few_elements(scene& s) { return some(s, s.g.chance(0.4) ? s.g.below(7) : 0, element); }
/// As many as elements of `N` nodes take, or one more.
template <std::size_t N>
node_list row_of(scene& s)
{
    std::size_t const elements = s.g.below(30);
    return some(s, elements == 0 ? s.g.below(2) : elements * (N - 1) + 1 + s.g.below(8) / 7, node);
}

/// By line or at random; for some of the elements, or for more than there are.
inline node_list colors(scene& s)
{
    unsigned const top = s.g.chance(0.05) ? no_limit - 5 : 0;
    double const mixed = s.g.pick({0, 0.02, 1});
    std::size_t const n = s.elements.size();
    node_list values(s.g.chance(0.6) ? n : s.g.below(n + 3));
    for (std::size_t e = 0; e < values.size(); ++e) {
        values[e] = top + (s.g.chance(mixed) ? s.g.node(5) : s.elements[e % n][2] % 5);
        if (s.g.chance(0.1)) values[e] = no_limit;
    }
    return values;
}

/// Values that do not fall.
inline real_list params(scene& s)
{
    double const rate = s.g.pick({1, 1, 0.5, 0.1});
    double const spread = s.g.pick({0, 0.1, 1});
    double value = s.g.chance(0.5) ? 0 : s.g.between(-3, 3);
    real_list values(s.entries);
    for (double& param : values) {
        param = value;
        if (s.g.chance(rate)) value += 1 - spread * s.g.unit();
    }
    if (s.g.chance(0.01)) values[0] = -s.g.pick({1e308, largest, infinity});
    if (s.g.chance(0.01)) values[s.entries - 1] = s.g.pick({1e308, largest, infinity});
    s.given.assign(values.begin(), values.end());
    return values;
}

/// Ascending values from the first parameter to the last, at times beyond it; some are parameters.
inline real_list between(scene& s)
{
    double const reach = s.g.pick({1, 1, 1, 1, 1.2});
    real_list values(s.entries);
    for (double& param : values) {
        param = s.given[0] + reach * s.g.unit() * (s.given.back() - s.given[0]);
        if (std::isnan(param) || s.g.chance(0.3)) param = s.given[s.g.below(s.given.size())];
    }
    if (!s.g.chance(0.03)) std::sort(values.begin(), values.end());
    return values;
}

inline real_list sizes(scene& s)
{
    double const difference = s.g.pick({0, 0, 0, 1e-14, 1e-11, 1e-10, 1e-7, 1e-3, 0.008, 0.018, 0.04, 2, 5});
    double const growth = s.g.chance(0.7) ? 1 : s.g.between(0.8, 1.25);
    double const in_turns = s.is_in_step || s.g.chance(0.1) ? s.g.octaves(-2, 2) : 1;
    double const steps = s.g.pick({0, 0, 0, 0.1});
    double const base = s.target * s.g.octaves(-3, 3);
    double factor = 1;
    real_list values(s.entries + s.g.below(19) / 18);
    for (std::size_t k = 0; k < values.size(); ++k) {
        values[k] = base * factor * (k % 2 == 0 ? in_turns : 1);
        if (!s.is_in_step) values[k] *= 1 + difference * s.g.unit();
        if (s.g.chance(steps)) values[k] *= s.g.octaves(-4, 12);
        factor = factor > 0.05 && factor < 20 ? factor * growth : 1;
    }
    return values;
}

/// Sizes of which some are 0, negative or no numbers.
inline real_list signed_sizes(scene& s)
{
    double const rate = s.g.pick({0, 0, 0.1, 0.6, 1});
    auto values = sizes(s);
    for (double& size : values)
        if (s.g.chance(rate)) size *= s.g.pick({0, -1, -1, not_a_number});
    return values;
}

/// Isotropic tensors; tensors along the axes, or in any direction; tensors that are nearly equal to the one before,
/// or so thin along the line that rounding decides whether they are positive. Some are out of scale.
inline real_matrix tensors(scene& s)
{
    enum { isotropic, along_axes, turned, repeated, thin };
    std::size_t const kind = s.is_in_step ? std::size_t{thin} : s.g.below(4);
    int const aspect = kind == isotropic ? 1 : static_cast<int>(s.g.pick({1, 2, 4, 10, 17}));
    double const difference = s.g.pick({0, 1e-15, 1e-12, 1e-8, 1e-3});
    double const base = s.target * s.g.octaves(-2, 3);
    double const rate = s.g.chance(0.9) ? 0 : s.g.pick({0.2, 1});
    double const out_of_scale = s.g.pick({0, 1e-15, 1e-240, 1e-170, 1e-140, 1e-120, 1e100, 1e150});
    auto metrics = matrix_of(s.rows == 2 ? 3 : 6, s.entries + s.g.below(19) / 18, 0.0);
    for (std::size_t j = 0; j < metrics.cols(); ++j) {
        double const factor = s.g.chance(rate) ? out_of_scale : 1;
        auto const add = [&](scene::point const& v, double h) {
            for (std::size_t c = 0, at = 0; c < s.rows; ++c)
                for (std::size_t r = 0; r <= c; ++r, ++at) metrics(at, j) += factor / (h * h) * v[r] * v[c];
        };
        double const round = base * s.g.octaves(0, aspect);
        for (std::size_t k = 0; k < s.rows; ++k) {
            scene::point v{};
            v[k] = 1;
            add(v, round);
            if (kind >= turned) v = {s.g.between(-1, 1), s.g.between(-1, 1), s.g.between(-1, 1)};
            if (kind != isotropic && kind != thin) add(v, base * s.g.octaves(0, aspect));
        }
        double const part = (1 - 0x1p-52) / (round * round * static_cast<double>(s.rows));
        for (std::size_t r = 0; r < metrics.rows(); ++r) {
            if (kind == thin && j % 3 == 0) metrics(r, j) -= part;
            if (kind == repeated && j % 5 > 0)
                metrics(r, j) = metrics(r, j - 1) * (1 + difference * s.g.unit());
        }
    }
    return metrics;
}
/// Tensors, or a list of values.
inline real_matrix tensors_or_list(scene& s)
{
    return tensors(s).sub_matrix(0, 0, s.g.chance(0.9) ? 6 : 1, 999);
}
/// Tensors at some of the nodes.
inline real_matrix some_tensors(scene& s) { return tensors(s).sub_matrix(0, 0, 6, 1 + s.g.below(s.entries)); }

/// Elements of `N` nodes, at times of one more; of 1 to 5 nodes for an `N` of 0. Nodes after the second are any.
template <std::size_t N>
node_matrix connect(scene& s)
{
    auto nodes = matrix_of(N == 0 ? 1 + s.g.below(5) : N + s.g.below(19) / 18, s.elements.size(), 0U);
    for (std::size_t e = 0; e < nodes.cols(); ++e)
        for (std::size_t i = 0; i < nodes.rows(); ++i) nodes(i, e) = i < 2 ? s.elements[e][i] : s.any_node();
    return nodes;
}

/// The neighbours of elements: those that alone share a node with them.
inline node_matrix neighbors(scene& s)
{
    auto found = matrix_of(2, s.elements.size(), no_limit);
    std::vector<std::vector<unsigned>> around(s.points.size());
    for (unsigned k = 0; k < 2 * found.cols(); ++k) around[s.elements[k / 2][k % 2]].push_back(k / 2);
    for (unsigned k = 0; k < 2 * found.cols(); ++k) {
        auto const& both = around[s.elements[k / 2][k % 2]];
        if (both.size() == 2) found(1 - k % 2, k / 2) = both[both[0] == k / 2 ? 1 : 0];
    }
    return found;
}
