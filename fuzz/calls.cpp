#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string_view>
#include <tuple>
#include <type_traits>
#include <utility>
#include <vector>

#include "storage.h"
#include "world.h"

// Calls any functions of the public header one after the other with any arguments, and holds each call to
// what the header says of statuses, of arguments after a failure, and of results that others rely on.
// With VORNIK1D_FUZZ_TRACE in the environment it prints the calls.

using namespace trelk;

namespace {

bool const is_traced = std::getenv("VORNIK1D_FUZZ_TRACE") != nullptr;

void demand(bool holds, std::string_view function, char const* what)
{
    if (holds) return;
    std::fprintf(stderr, "%.*s: %s\n", int(function.size()), function.data(), what);
    std::abort();
}

/// What a call does to a container.
enum class effect {
    nothing,
    growth,      // what it held stays
    replacement, // not on a failure
    loss,        // replacement, which a failure may leave empty
    padding,     // replacement; without storage what it held stays, with more behind it perhaps
    any
};

// What an argument is: how it is drawn, and what a call does to it.

template <class T>
T fitted_by(void (world::*fitter)(T&));
template <class T>
T fitted_by(void (world::*fitter)(T&) const);

template <auto Fit, effect Effect>
struct container
{
    using type = decltype(fitted_by(Fit));

    static constexpr effect change = Effect;
    static constexpr bool names_nodes = false; // what is new in it are numbers of nodes
    static constexpr bool is_mesh = false;     // it gets as much as other parts of the mesh

    static type& draw(world& from)
    {
        type& picked = from.pick<type>();
        (from.*Fit)(picked);
        return picked;
    }
};

template <class T, effect Effect>
using any_one = container<&world::as_it_is<T>, Effect>;

using fixed_coords = container<&world::points<2, 3>, effect::nothing>;
using plane = container<&world::points<2>, effect::nothing>;
using space = container<&world::points<3>, effect::nothing>;
using coords = container<&world::points<2, 3>, effect::growth>;
using coords_of_any_rows = container<&world::points<1, 2, 3>, effect::growth>;
using moved_coords = container<&world::points<2, 3>, effect::replacement>;
template <std::size_t N>
using coords_of = container<&world::points<N>, effect::growth>;

using chain = container<&world::chain, effect::nothing>;
using spline_chain = container<&world::spline_chain, effect::nothing>;
template <std::size_t N>
using chain_of_elements = container<&world::chain_of_elements<N>, effect::nothing>;
using params = container<&world::params, effect::nothing>;
using sizes = container<&world::sizes, effect::nothing>;
using tensors = container<&world::tensors, effect::nothing>;
using knots = container<&world::knots, effect::nothing>;
using wanted = container<&world::wanted, effect::nothing>;
using new_values = any_one<world::reals, effect::loss>;
using new_columns = any_one<world::matrix, effect::loss>;
using merged2d = container<&world::none_or_rows<3>, effect::replacement>;
using merged3d = container<&world::none_or_rows<6>, effect::replacement>;
using padded_merged3d = container<&world::none_or_rows<6>, effect::padding>;

struct new_nodes : any_one<world::numbers, effect::growth>
{
    static constexpr bool names_nodes = true;
};
struct mesh_nodes : new_nodes
{
    static constexpr bool is_mesh = true;
};
struct mesh_params : any_one<world::reals, effect::loss>
{
    static constexpr bool is_mesh = true;
};
struct more_mesh_params : any_one<world::reals, effect::growth>
{
    static constexpr bool is_mesh = true;
};
using mesh_sizes = more_mesh_params;
struct mesh_tensors : container<&world::more_tensors, effect::growth>
{
    static constexpr bool is_mesh = true;
};

template <std::size_t N>
using elements = container<&world::elements_of<N>, effect::nothing>;
using changed_elements = container<&world::elements_of<2>, effect::any>;
using cut_elements = container<&world::elements_of<3>, effect::replacement>;
template <std::size_t N>
using more_elements = container<&world::none_or_elements<N>, effect::growth>;
using neighbors = container<&world::neighbors, effect::any>;
using tangents = container<&world::tangents, effect::nothing>;
struct raised_elements : container<&world::elements_of<2>, effect::replacement>
{
    static constexpr bool names_nodes = true;
};
struct new_elements : any_one<world::elements, effect::loss>
{
    static constexpr bool names_nodes = true;
};
struct network : raised_elements
{
    static constexpr bool is_mesh = true;
};
struct colors : any_one<world::numbers, effect::replacement>
{
    static constexpr bool is_mesh = true;
};
struct hard_nodes : any_one<world::numbers, effect::replacement>
{
    static constexpr bool names_nodes = true;
};
using hard_edges = container<&world::element_numbers, effect::nothing>;
using sizes_of_nodes = container<&world::sizes_of_nodes, effect::nothing>;

using sorted_params = container<&world::values, effect::replacement>;
using sorted_nodes = container<&world::labels, effect::replacement>;
using points_on_axis = container<&world::values, effect::growth>;
using sizes_on_axis = container<&world::sizes, effect::growth>;

struct number
{
    static unsigned draw(world& from) { return from.any<unsigned>(); }
};
struct node
{
    static unsigned draw(world& from)
    {
        std::size_t const count = from.node_count();
        return from.is_fitting() && count > 0 && !from.is_rare(8)
                   ? static_cast<unsigned>(from.up_to(std::min<std::size_t>(count, 256) - 1))
                   : from.any<unsigned>();
    }
};
struct element
{
    static unsigned draw(world& from)
    {
        return from.is_fitting() && from.element_count() > 0
                   ? static_cast<unsigned>(from.up_to(std::min<std::size_t>(from.element_count(), 256) - 1))
                   : from.any<unsigned>();
    }
};
struct fewest
{
    static unsigned draw(world& from)
    {
        return from.is_fitting() ? 1 + static_cast<unsigned>(from.up_to(3)) : from.any<unsigned>();
    }
};
struct most
{
    static unsigned draw(world& from) { return from.is_rare(2) ? 4294967295 : from.any<unsigned>(); }
};
struct flag
{
    static bool draw(world& from) { return from.flag(); }
};
struct option
{
    static int draw(world& from) { return static_cast<int>(from.up_to(2)) - 1; }
};
struct real
{
    static double draw(world& from) { return from.any<double>(); }
};
struct size
{
    static double draw(world& from) { return from.is_fitting() ? from.size() : from.any<double>(); }
};
struct least // at least 0
{
    static double draw(world& from)
    {
        double const value = from.any<double>();
        return from.is_fitting() && !(value >= 0) ? 0 : value;
    }
};
template <std::size_t N>
struct vector
{
    static vector_fixed<double, N> draw(world& from)
    {
        vector_fixed<double, N> result{};
        for (double& value : result.values) value = from.any<double>();
        return result;
    }
};

/// A number that a call writes; it may be an entry of a container.
struct result
{
    static double& draw(world& from)
    {
        static double apart;
        if (!from.is_rare(16)) return apart = 7;
        auto& list = from.pick<world::reals>();
        return list.empty() ? apart : list[from.up_to(list.size() - 1)];
    }
};

// Containers as plain values.

template <class T>
constexpr std::size_t count_of(dense1D<T> const& list)
{
    return list.size();
}
template <class T>
constexpr std::size_t count_of(dense2D<T> const& matrix)
{
    return matrix.empty() ? 0 : matrix.cols();
}

template <class T>
struct values_of
{
    explicit values_of(T const& /*unused*/) {}
};

template <class T>
struct values_of<dense1D<T>>
{
    std::size_t rows = 1, cols = 0;
    std::vector<T> values;

    explicit values_of(dense1D<T> const& list)
        : cols(list.size()), values(list.begin(), list.begin() + list.size())
    {}
};

template <class T>
struct values_of<dense2D<T>>
{
    std::size_t rows = 0, cols = 0;
    std::vector<T> values;

    explicit values_of(dense2D<T> const& matrix) : rows(matrix.rows()), cols(matrix.cols())
    {
        if (matrix.empty()) return;
        for (std::size_t j = 0; j < cols; ++j)
            values.insert(values.end(), matrix.col(j), matrix.col(j) + rows);
    }
};

/// Bit for bit the same, in `now` perhaps with more columns.
template <class T>
bool is_part_of(values_of<T> const& before, values_of<T> const& now)
{
    if (before.values.empty()) return true;
    return now.rows == before.rows && now.values.size() >= before.values.size() &&
           std::memcmp(
               before.values.data(), now.values.data(), before.values.size() * sizeof before.values[0]) == 0;
}

template <class T>
bool is_same(values_of<T> const& before, values_of<T> const& now)
{
    return before.rows == now.rows && before.cols == now.cols && is_part_of(before, now);
}

// The bytes that an argument may write, and the object itself.
struct extent
{
    void const* object = nullptr;
    char const* begin = nullptr;
    char const* end = nullptr;

    bool meets(extent const& other) const
    {
        return object && other.object && (object == other.object || (begin < other.end && other.begin < end));
    }
};

template <class T>
extent extent_of(dense1D<T> const& list)
{
    auto const* const begin = reinterpret_cast<char const*>(list.data());
    return {&list, begin, begin + list.room() * sizeof(T)};
}
template <class T>
extent extent_of(dense2D<T> const& matrix)
{
    auto const* const begin = reinterpret_cast<char const*>(matrix.data());
    return {&matrix, begin, begin + matrix.room() * sizeof(T)};
}
extent extent_of(double const& value)
{
    auto const* const begin = reinterpret_cast<char const*>(&value);
    return {&value, begin, begin + sizeof value};
}
template <class T>
extent extent_of(T const& /*unused*/)
{
    return {};
}

template <class... Arguments>
bool are_apart(Arguments const&... arguments)
{
    std::vector<extent> const extents{extent_of(arguments)...};
    for (auto first = extents.begin(); first != extents.end(); ++first)
        if (std::any_of(first + 1, extents.end(), [&](extent const& other) { return first->meets(other); }))
            return false;
    return true;
}

// Traces.

void print(double value) { std::fprintf(stderr, " %.17g", value); }
void print(unsigned value) { std::fprintf(stderr, " %u", value); }
void print(int value) { std::fprintf(stderr, " %d", value); }
void print(bool value) { std::fputs(value ? " true" : " false", stderr); }
template <std::size_t N>
void print(vector_fixed<double, N> const& vector)
{
    for (double const value : vector.values) print(value);
}
template <class T>
void print(T const& container)
{
    values_of<T> const shown(container);
    std::fprintf(stderr, " [%zu x %zu:", shown.rows, shown.cols);
    for (auto const value : shown.values) print(value);
    std::fputs("]", stderr);
}
template <class... Arguments>
void print_call(char const* name, Arguments const&... arguments)
{
    std::fputs(name, stderr);
    ((std::fputs("\n   ", stderr), print(arguments)), ...);
    std::fputs("\n", stderr);
}

// Checks.

template <class Role>
concept is_container = requires
{
    Role::change;
};

template <class Role, class Argument>
void check_failure(
    std::string_view name, int status, values_of<Argument> const& before, Argument const& argument)
{
    if constexpr (is_container<Role>) {
        values_of<Argument> const now(argument);
        bool const may_be_empty = Role::change == effect::loss && count_of(argument) == 0;
        bool const is_padded =
            Role::change == effect::padding && status == vornik1d::no_storage && is_part_of(before, now);
        demand(Role::change == effect::any || may_be_empty || is_padded || is_same(before, now), name,
            "a failure has changed an argument");
    }
}

// Adds the length of what is new in a part of the mesh to `mesh_counts`.
template <class Role, class Argument>
void check_success(std::string_view name, std::size_t nodes, values_of<Argument> const& before,
    Argument const& argument, std::vector<std::size_t>& mesh_counts)
{
    if constexpr (is_container<Role>) {
        values_of<Argument> const now(argument);
        if constexpr (Role::change == effect::nothing)
            demand(is_same(before, now), name, "an input has changed");
        if constexpr (Role::change == effect::growth)
            demand(is_part_of(before, now), name, "old values have changed");
        std::size_t const kept = Role::change == effect::growth ? before.values.size() : 0;
        if constexpr (Role::names_nodes)
            if (!is_same(before, now))
                demand(std::all_of(now.values.begin() + std::ptrdiff_t(kept), now.values.end(),
                           [nodes](unsigned node) { return node < nodes; }),
                    name, "a new node number is no node");
        if constexpr (Role::is_mesh)
            mesh_counts.push_back(count_of(argument) - kept / std::max<std::size_t>(before.rows, 1));
    }
}

bool is_possible(int status, std::string_view name, int arguments)
{
    constexpr int most_arguments_of_remesh_lines = 14;
    int const no_storage = name == "remesh_lines"
                               ? vornik1d::no_storage + most_arguments_of_remesh_lines - arguments
                               : vornik1d::no_storage;
    return status == no_storage || (status >= -arguments && (status <= 0 || name == "mesh_reorient"));
}

/// Draws arguments, one by one, and calls.
template <class... Roles, class Function>
void drive(world& from, char const* name, Function function)
{
    from.begin_call();
    std::tuple<decltype(Roles::draw(from))...> arguments{Roles::draw(from)...};
    from.poke();
    bool const is_scarce = from.is_rare(8);
    std::size_t const refused = is_scarce ? from.up_to(255) : scarce_storage::none;
    bool const all_behind = is_scarce && from.flag();

    std::apply(
        [&](auto&... argument) {
            if (is_traced) print_call(name, argument...);
            bool const apart = are_apart(argument...);
            std::tuple<values_of<std::remove_reference_t<decltype(argument)>>...> const before(
                values_of<std::remove_reference_t<decltype(argument)>>{argument}...);
            int const status = [&] {
                scarce_storage const scarce(refused, all_behind);
                return function(argument...);
            }();
            if (is_traced) std::fprintf(stderr, " -> %d\n", status);
            demand(is_possible(status, name, sizeof...(Roles)), name, "impossible status");
            if (!apart) return;

            if (status < 0) {
                std::apply(
                    [&](auto const&... old) { (check_failure<Roles>(name, status, old, argument), ...); },
                    before);
                return;
            }
            std::vector<std::size_t> mesh_counts;
            std::apply(
                [&](auto const&... old) {
                    (check_success<Roles>(name, from.node_count(), old, argument, mesh_counts), ...);
                },
                before);
            bool const is_empty_network = std::string_view(name) == "remesh_lines" && mesh_counts[0] == 0;
            demand(is_empty_network || std::adjacent_find(mesh_counts.begin(), mesh_counts.end(),
                                           std::not_equal_to<>()) == mesh_counts.end(),
                name, "the parts of the mesh have different lengths");
        },
        arguments);
    from.cut();
}

#define CALL(name, ...)                                                                                      \
    [](world& from) {                                                                                        \
        drive<__VA_ARGS__>(from, #name, [](auto&... arguments) { return vornik1d::name(arguments...); });    \
    }

void (*const calls[])(world&) = {
    CALL(mesh_line, coords, chain, params, sizes, flag, fewest, most, real, least, mesh_nodes, mesh_params,
        mesh_sizes),
    CALL(mesh_line, coords, chain, sizes, flag, fewest, most, real, least, mesh_nodes, mesh_params,
        mesh_sizes),
    CALL(mesh_line, coords, chain, params, tensors, flag, fewest, most, real, least, mesh_nodes, mesh_params,
        mesh_tensors),
    CALL(mesh_line, coords, chain, tensors, flag, fewest, most, real, least, mesh_nodes, mesh_params,
        mesh_tensors),

    CALL(mesh_straight, coords, chain, sizes, flag, new_nodes),
    CALL(mesh_straight, coords, chain, tensors, flag, new_nodes),
    CALL(mesh_straight, coords, chain, number, flag, new_nodes),
    CALL(mesh_straight, coords, node, node, size, size, flag, new_nodes),
    CALL(mesh_straight, coords, node, node, number, new_nodes),
    CALL(mesh_straight, coords, node, node, node, number, new_nodes),

    CALL(spline_point, plane, node, node, node, node, real, vector<2>),
    CALL(spline_point, space, node, node, node, node, real, vector<3>),
    CALL(mesh_spline, coords, spline_chain, sizes, flag, fewest, most, real, least, real, real, mesh_nodes,
        more_mesh_params, mesh_sizes, result),
    CALL(mesh_spline, coords, spline_chain, tensors, flag, fewest, most, real, least, real, real, mesh_nodes,
        more_mesh_params, mesh_tensors, result),

    CALL(interpolate_metrics, knots, sizes, wanted, new_values),
    CALL(interpolate_metrics, knots, tensors, wanted, new_columns),
    CALL(metrics_gen_aniso2d, plane, chain, size, size, merged2d),
    CALL(metrics_gen_aniso2d, fixed_coords, elements<2>, real, merged2d),
    CALL(metrics_gen_aniso3d, space, elements<2>, real, merged3d),
    CALL(metrics_gen_aniso3d, space, elements<2>, real, real, padded_merged3d),

    CALL(curvatures, fixed_coords, chain, new_values),
    CALL(interpolate_coordinates, moved_coords, chain, params, chain, params),
    CALL(length, fixed_coords, chain, result),
    CALL(length, fixed_coords, elements<2>, result),
    CALL(parametric_curvatures, knots, elements<2>, tangents, any_one<world::reals, effect::any>),
    CALL(normals, plane, elements<2>, real, flag, new_columns),

    CALL(indices_to_connectE2, chain, more_elements<2>),
    CALL(indices_to_connectE3, chain_of_elements<3>, more_elements<3>),
    CALL(indices_to_connectE4, chain_of_elements<4>, more_elements<4>),
    CALL(split_into_linear, elements<3>, more_elements<2>),
    CALL(convert_into_linear, cut_elements),
    CALL(convert_into_high_order, coords_of_any_rows, elements<2>, number, new_elements),
    CALL(convert_into_high_order, coords_of_any_rows, raised_elements, number),
    CALL(convert_into_quadratic, coords_of_any_rows, raised_elements),
    CALL(convert_into_cubic, coords_of_any_rows, raised_elements),

    CALL(flip, changed_elements),
    CALL(mesh_reorient, changed_elements, neighbors, element, option),

    CALL(extrude_translate, coords_of<2>, vector<2>, vector<2>, number, new_nodes),
    CALL(extrude_translate, coords_of<2>, vector<2>, vector<2>, size, size, flag, new_nodes),
    CALL(extrude_translate, coords_of<2>, node, vector<2>, number, new_nodes),
    CALL(extrude_translate, coords_of<2>, node, vector<2>, size, size, flag, new_nodes),
    CALL(extrude_translate, coords_of<3>, vector<3>, vector<3>, number, new_nodes),
    CALL(extrude_translate, coords_of<3>, vector<3>, vector<3>, size, size, flag, new_nodes),
    CALL(extrude_translate, coords_of<3>, node, vector<3>, number, new_nodes),
    CALL(extrude_translate, coords_of<3>, node, vector<3>, size, size, flag, new_nodes),
    CALL(extrude_rotate, coords_of<2>, vector<2>, vector<2>, real, number, new_nodes),
    CALL(extrude_rotate, coords_of<2>, vector<2>, vector<2>, real, size, size, flag, new_nodes),
    CALL(extrude_rotate, coords_of<2>, node, vector<2>, real, number, new_nodes),
    CALL(extrude_rotate, coords_of<2>, node, vector<2>, real, size, size, flag, new_nodes),
    CALL(extrude_rotate, coords_of<3>, vector<3>, vector<3>, vector<3>, number, new_nodes),
    CALL(extrude_rotate, coords_of<3>, vector<3>, vector<3>, vector<3>, size, size, flag, new_nodes),
    CALL(extrude_rotate, coords_of<3>, node, vector<3>, vector<3>, number, new_nodes),
    CALL(extrude_rotate, coords_of<3>, node, vector<3>, vector<3>, size, size, flag, new_nodes),

    CALL(remesh_lines, coords, network, least, sizes_of_nodes, colors, hard_nodes, hard_edges, flag, least,
        real, least, least, fewest, most),
    CALL(remesh_lines, coords, network, least, colors, flag, least, real, least, least, fewest, most),
    CALL(remesh_lines, coords, network, least, flag, least, real, least, least, fewest, most),

    CALL(sort, sorted_params, sorted_nodes),
    CALL(subdivide, points_on_axis, sizes_on_axis, chain, flag, flag, fewest, most, new_nodes),

    [](world& /*unused*/) { demand(std::strlen(vornik1d::version()) > 0, "version", "it tells none"); },
};
#undef CALL

static_assert(std::size(calls) == 59);

} // namespace

// Freed storage is kept from reuse for some executions, and stacks are short: that is faster.
extern "C" char const* __asan_default_options() { return "quarantine_size_mb=16:malloc_context_size=5"; }

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* bytes, std::size_t count)
{
    constexpr std::size_t most_steps = 40;

    world here(bytes, count);
    for (std::size_t step = 0; step < most_steps && here.goes_on(); ++step) {
        std::size_t const choice = here.up_to(std::size(calls) + std::size(calls) / 3);
        if (choice < std::size(calls))
            calls[choice](here);
        else
            here.reshape();
    }
    return 0;
}
