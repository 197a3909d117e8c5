#include "world.h"

#include <algorithm>
#include <bit>

#include <vornik/toolkit.h>

namespace {

constexpr std::size_t most_values = 48;

template <class T>
void cut(trelk::dense1D<T>& c)
{
    if (c.size() > most_values) c = c.sub_vector(0, most_values);
}

template <class T>
void cut(trelk::dense2D<T>& c)
{
    if (c.cols() <= most_values) return;
    if (c.rows() == 0)
        c.clear();
    else
        c = c.sub_matrix(0, 0, c.rows(), most_values);
}

void put(double value, std::vector<std::uint64_t>& bits)
{
    bits.push_back(std::bit_cast<std::uint64_t>(value));
}
void put(unsigned value, std::vector<std::uint64_t>& bits) { bits.push_back(value); }

template <class T>
void put_all(trelk::dense1D<T> const& c, std::vector<std::uint64_t>& bits)
{
    bits.push_back(c.size());
    for (T const value : c) put(value, bits);
}

template <class T>
void put_all(trelk::dense2D<T> const& c, std::vector<std::uint64_t>& bits)
{
    bits.insert(bits.end(), {c.rows(), c.cols()});
    if (c.empty()) return;
    for (std::size_t j = 0; j < c.cols(); ++j)
        for (std::size_t i = 0; i < c.rows(); ++i) put(c(i, j), bits);
}

/// A view, a shorter view or a copy of one container in place of another.
template <class T, std::size_t n>
void exchange(std::array<trelk::dense1D<T>, n>& all, stream& in)
{
    auto& from = all[in.below(n)];
    auto& to = all[in.below(n)];
    if (in.flag())
        to = from.sub_vector(in.below(4), in.below(most_values));
    else if (!to.copy(from))
        to.clear();
}

template <class T, std::size_t n>
void exchange(std::array<trelk::dense2D<T>, n>& all, stream& in)
{
    auto& from = all[in.below(n)];
    auto& to = all[in.below(n)];
    if (in.flag())
        to = from.sub_matrix(in.below(3), in.below(3), in.below(8), in.below(most_values));
    else if (!to.copy(from))
        to.clear();
}

/// A view of values that no container owns.
template <class T, std::size_t n, std::size_t m>
void show(std::array<T, 16>& values, std::array<trelk::dense1D<T>, n>& lines,
    std::array<trelk::dense2D<T>, m>& grids, stream& in)
{
    if (in.flag())
        lines[in.below(n)] = trelk::dense1D<T>(in.below(17), values.data());
    else
        grids[in.below(m)] = trelk::dense2D<T>(2 + in.below(2), in.below(6), values.data());
}

/// A shape of its own, with hostile values here and there.
template <class T, std::size_t n, class Value>
void spoil(std::array<trelk::dense1D<T>, n>& all, stream& in, Value value)
{
    auto& c = all[in.below(n)];
    if (in.rarely(4)) static_cast<void>(c.resize(in.below(8), value()));
    if (!c.empty()) c[in.below(c.size())] = value();
}

template <class T, std::size_t n, class Value>
void spoil(std::array<trelk::dense2D<T>, n>& all, stream& in, Value value)
{
    auto& c = all[in.below(n)];
    if (in.rarely(4)) static_cast<void>(c.resize(in.below(8), in.below(8), value()));
    if (!c.empty()) c(in.below(c.rows()), in.below(c.cols())) = value();
}

} // namespace

void world::prepare(stream& in)
{
    std::size_t const n = 1 + in.below(10);
    std::size_t const dimension = in.flag() ? 2 : 3;
    bool const is_closed = in.rarely(3);
    *this = {};
    auto& nodes = matrices[coords];
    double const step = in.rarely(8) ? in.real() : 0.5;
    static_cast<void>(nodes.resize(dimension, n, 0.0) && matrices[directions].resize(dimension, n, 0.0));
    for (std::size_t j = 0; j < n; ++j)
        for (std::size_t i = 0; i < dimension; ++i) {
            nodes(i, j) = i == 0 ? double(j) * step : in.size();
            matrices[directions](i, j) = in.real();
        }
    for (std::size_t j = 0; j < n + (is_closed ? 1 : 0); ++j) {
        node_lists[chain].push_back(unsigned(j % n));
        real_lists[params].push_back(double(j));
        real_lists[sizes].push_back(in.size());
        real_lists[new_params].push_back(double(j) * 0.75);
    }
    for (int k = 0; k < 4; ++k) {
        node_lists[colors].push_back(in.node(6));
        node_lists[hard_nodes].push_back(in.node(n));
        node_lists[hard_edges].push_back(in.node(n));
    }
    node_lists[hard_nodes] = node_lists[hard_nodes].sub_vector(0, in.below(5));
    node_lists[hard_edges] = node_lists[hard_edges].sub_vector(0, in.below(3));
    auto const to_tensors =
        dimension == 2 ? trelk::vornik::metrics_iso_to_aniso2d : trelk::vornik::metrics_iso_to_aniso3d;
    static_cast<void>(to_tensors(real_lists[sizes], matrices[metrics]));
    if (!matrices[metrics].empty() && in.flag()) matrices[metrics](0, 0) *= 1.0 + in.size();

    static_cast<void>(trelk::vornik1d::indices_to_connectE2(node_lists[chain], meshes[line]));
    for (std::size_t e = 0; e < meshes[line].cols(); ++e) {
        if (in.rarely(4)) std::swap(meshes[line](0, e), meshes[line](1, e));
        if (in.rarely(6)) meshes[line](1, e) = in.node(n);
    }
    constexpr auto edge = trelk::vornik::element_type::edge;
    static_cast<void>(trelk::vornik::get_neighbors(meshes[line], edge, false, meshes[neighbors]));
}

void world::disturb(stream& in)
{
    auto const real = [&] { return in.real(); };
    auto const node = [&] { return in.node(matrices[coords].cols()); };
    switch (in.below(10)) {
    case 0:
        exchange(real_lists, in);
        break;
    case 1:
        exchange(node_lists, in);
        break;
    case 2:
        exchange(matrices, in);
        break;
    case 3:
        exchange(meshes, in);
        break;
    case 8:
        show(own_values_, real_lists, matrices, in);
        break;
    case 9:
        show(own_nodes_, node_lists, meshes, in);
        break;
    case 4:
        spoil(real_lists, in, real);
        break;
    case 5:
        spoil(node_lists, in, node);
        break;
    case 6:
        spoil(matrices, in, real);
        break;
    default:
        spoil(meshes, in, node);
    }
}

void world::trim()
{
    for_each(*this, [](auto& c) { cut(c); });
}

bool world::is_entangled() const
{
    bool result = false;
    auto const check = [&](auto const& a, auto const& b) {
        result = result || (a.data() != nullptr && b.holds(*a.data()));
    };
    auto const check_kind = [&](auto const& lines, auto const& grids) {
        for (auto const& a : lines) {
            for (auto const& b : lines)
                if (&a != &b) check(a, b);
            for (auto const& b : grids) check(a, b);
        }
        for (auto const& a : grids)
            for (auto const& b : grids)
                if (&a != &b) check(a, b);
    };
    check_kind(real_lists, matrices);
    check_kind(node_lists, meshes);
    return result;
}

world::snapshot world::take(std::vector<void const*> const& left_out) const
{
    snapshot result;
    for_each(*this, [&](auto const& c) {
        result.emplace_back();
        if (std::find(left_out.begin(), left_out.end(), &c) == left_out.end()) put_all(c, result.back());
    });
    return result;
}
