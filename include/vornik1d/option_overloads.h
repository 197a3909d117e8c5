#pragma once

// The bodies of the overloads that take records of options or sizes. `vornik1d.h` includes this file and
// documents them.

#include <initializer_list>
#include <type_traits>

#include <vornik1d/vornik1d.h>

namespace trelk::vornik1d {

/// @cond inside
namespace options_detail {

template <class T>
using if_real = std::enable_if_t<std::is_floating_point_v<T>>;

/// The list that an option points to, or an empty list of its own if it points to none.
template <class List>
class list_or_own
{
public:
    explicit list_or_own(List* given) noexcept : given_(given) {}
    operator List&() noexcept { return given_ ? *given_ : own_; }

private:
    List* given_;
    List own_{};
};

/// Meshes by sizes or by tensors, with parameters or by chord length.
template <class Targets>
int mesh_line(dense2D<double>& coords, dense1D<unsigned> const& indices, Targets const& targets,
    dense1D<unsigned>& out_indices, line_options const& options, Targets* out_targets) noexcept
{
    list_or_own<dense1D<double>> out_params(options.out_params);
    list_or_own<Targets> new_targets(out_targets);
    if (!options.params.empty())
        return vornik1d::mesh_line(coords, indices, options.params, targets, options.force_even,
            options.min_elements, options.max_elements, options.deviation_tolerance, options.min_size,
            out_indices, out_params, new_targets);

    int const status = vornik1d::mesh_line(coords, indices, targets, options.force_even, options.min_elements,
        options.max_elements, options.deviation_tolerance, options.min_size, out_indices, out_params,
        new_targets);
    return status <= -3 && status != no_storage ? status - 1 : status; // `params` is argument 3
}

/// Meshes a spline by sizes or by tensors.
template <class Targets>
int mesh_spline(dense2D<double>& coords, dense1D<unsigned> const& indices, Targets const& targets,
    dense1D<unsigned>& out_indices, spline_options const& options, Targets* out_targets) noexcept
{
    list_or_own<dense1D<double>> out_params(options.out_params);
    list_or_own<Targets> new_targets(out_targets);
    double unused = 0;
    return vornik1d::mesh_spline(coords, indices, targets, options.force_even, options.min_elements,
        options.max_elements, options.deviation_tolerance, options.min_size, options.default_size,
        options.max_gradation, out_indices, out_params, new_targets,
        options.deviation ? *options.deviation : unused);
}

} // namespace options_detail
/// @endcond

inline int remesh_lines(dense2D<double>& coords, dense2D<unsigned>& connect, double default_size,
    remesh_options const& options) noexcept
{
    options_detail::list_or_own<dense1D<unsigned>> colors(options.colors);
    dense1D<unsigned> break_nodes; // hard nodes at first
    bool const is_empty = connect.empty();
    if (!is_empty && !break_nodes.copy(options.hard_nodes)) return no_storage;

    int const status = remesh_lines(coords, connect, default_size, options.sizes, colors, break_nodes,
        options.hard_edges, options.force_even, options.max_angle, options.deviation_tolerance,
        options.max_gradation, options.min_size, options.min_elements, options.max_elements);
    if (status == 0 && options.break_nodes) *options.break_nodes = break_nodes;
    return status;
}

inline int mesh_line(dense2D<double>& coords, dense1D<unsigned> const& indices, dense1D<double> const& sizes,
    dense1D<unsigned>& out_indices, line_options const& options) noexcept
{
    return options_detail::mesh_line(coords, indices, sizes, out_indices, options, options.out_sizes);
}

inline int mesh_line(dense2D<double>& coords, dense1D<unsigned> const& indices,
    dense2D<double> const& metrics, dense1D<unsigned>& out_indices, line_options const& options) noexcept
{
    return options_detail::mesh_line(coords, indices, metrics, out_indices, options, options.out_metrics);
}

/// @cond inside
// A braced pair of whole numbers could also mean a matrix of that shape.
[[nodiscard]] inline int mesh_line(dense2D<double>& coords, dense1D<unsigned> const& indices,
    std::initializer_list<double> sizes, dense1D<unsigned>& out_indices,
    line_options const& options = {}) noexcept
{
    dense1D<double> const list(sizes);
    if (list.size() != sizes.size()) return no_storage;
    return mesh_line(coords, indices, list, out_indices, options);
}

[[nodiscard]] inline int mesh_straight(dense2D<double>& coords, dense1D<unsigned> const& indices,
    std::initializer_list<double> sizes, bool force_even, dense1D<unsigned>& out_indices) noexcept
{
    dense1D<double> const list(sizes);
    if (list.size() != sizes.size()) return no_storage;
    return mesh_straight(coords, indices, list, force_even, out_indices);
}
/// @endcond

inline int mesh_straight(dense2D<double>& coords, unsigned node_a, unsigned node_b, end_sizes const& sizes,
    dense1D<unsigned>& out_indices) noexcept
{
    return mesh_straight(coords, node_a, node_b, sizes.start, sizes.end, sizes.force_even, out_indices);
}

inline int mesh_spline(dense2D<double>& coords, dense1D<unsigned> const& indices,
    dense1D<double> const& sizes, dense1D<unsigned>& out_indices, spline_options const& options) noexcept
{
    return options_detail::mesh_spline(coords, indices, sizes, out_indices, options, options.out_sizes);
}

inline int mesh_spline(dense2D<double>& coords, dense1D<unsigned> const& indices,
    dense2D<double> const& metrics, dense1D<unsigned>& out_indices, spline_options const& options) noexcept
{
    return options_detail::mesh_spline(coords, indices, metrics, out_indices, options, options.out_metrics);
}

inline int extrude_translate(dense2D<double>& coords, vector_fixed<double, 2> const& start_point,
    vector_fixed<double, 2> const& vector, end_sizes const& sizes, dense1D<unsigned>& indices) noexcept
{
    return extrude_translate(coords, start_point, vector, sizes.start, sizes.end, sizes.force_even, indices);
}

inline int extrude_translate(dense2D<double>& coords, vector_fixed<double, 3> const& start_point,
    vector_fixed<double, 3> const& vector, end_sizes const& sizes, dense1D<unsigned>& indices) noexcept
{
    return extrude_translate(coords, start_point, vector, sizes.start, sizes.end, sizes.force_even, indices);
}

inline int extrude_translate(dense2D<double>& coords, unsigned start_node,
    vector_fixed<double, 2> const& vector, end_sizes const& sizes, dense1D<unsigned>& indices) noexcept
{
    return extrude_translate(coords, start_node, vector, sizes.start, sizes.end, sizes.force_even, indices);
}

inline int extrude_translate(dense2D<double>& coords, unsigned start_node,
    vector_fixed<double, 3> const& vector, end_sizes const& sizes, dense1D<unsigned>& indices) noexcept
{
    return extrude_translate(coords, start_node, vector, sizes.start, sizes.end, sizes.force_even, indices);
}

inline int extrude_rotate(dense2D<double>& coords, vector_fixed<double, 2> const& start_point,
    vector_fixed<double, 2> const& center, double angle, end_sizes const& sizes,
    dense1D<unsigned>& indices) noexcept
{
    return extrude_rotate(
        coords, start_point, center, angle, sizes.start, sizes.end, sizes.force_even, indices);
}

inline int extrude_rotate(dense2D<double>& coords, unsigned start_node, vector_fixed<double, 2> const& center,
    double angle, end_sizes const& sizes, dense1D<unsigned>& indices) noexcept
{
    return extrude_rotate(
        coords, start_node, center, angle, sizes.start, sizes.end, sizes.force_even, indices);
}

inline int extrude_rotate(dense2D<double>& coords, vector_fixed<double, 3> const& start_point,
    vector_fixed<double, 3> const& center, vector_fixed<double, 3> const& rotation, end_sizes const& sizes,
    dense1D<unsigned>& indices) noexcept
{
    return extrude_rotate(
        coords, start_point, center, rotation, sizes.start, sizes.end, sizes.force_even, indices);
}

inline int extrude_rotate(dense2D<double>& coords, unsigned start_node, vector_fixed<double, 3> const& center,
    vector_fixed<double, 3> const& rotation, end_sizes const& sizes, dense1D<unsigned>& indices) noexcept
{
    return extrude_rotate(
        coords, start_node, center, rotation, sizes.start, sizes.end, sizes.force_even, indices);
}

inline int subdivide(dense1D<double>& params, dense1D<double>& sizes, dense1D<unsigned> const& indices,
    dense1D<unsigned>& new_indices, subdivide_options const& options) noexcept
{
    return subdivide(params, sizes, indices, options.round_up, options.force_even, options.min_elements,
        options.max_elements, new_indices);
}

/// @cond inside
// A number of elements is a whole number. A size in its place does not compile: use `end_sizes`, or a list.
template <class Size, class = options_detail::if_real<Size>>
int mesh_straight(dense2D<double>&, dense1D<unsigned> const&, Size, bool, dense1D<unsigned>&) = delete;
template <class Size, class = options_detail::if_real<Size>>
int mesh_straight(dense2D<double>&, unsigned, unsigned, Size, dense1D<unsigned>&) = delete;
template <class Size, class = options_detail::if_real<Size>>
int mesh_straight(dense2D<double>&, unsigned, unsigned, unsigned, Size, dense1D<unsigned>&) = delete;
template <class Size, class = options_detail::if_real<Size>>
int extrude_translate(dense2D<double>&, vector_fixed<double, 2> const&, vector_fixed<double, 2> const&, Size,
    dense1D<unsigned>&) = delete;
template <class Size, class = options_detail::if_real<Size>>
int extrude_rotate(dense2D<double>&, vector_fixed<double, 2> const&, vector_fixed<double, 2> const&, double,
    Size, dense1D<unsigned>&) = delete;
template <class Size, class = options_detail::if_real<Size>>
int extrude_translate(dense2D<double>&, vector_fixed<double, 3> const&, vector_fixed<double, 3> const&, Size,
    dense1D<unsigned>&) = delete;
template <class Size, class = options_detail::if_real<Size>>
int extrude_rotate(dense2D<double>&, vector_fixed<double, 3> const&, vector_fixed<double, 3> const&,
    vector_fixed<double, 3> const&, Size, dense1D<unsigned>&) = delete;
template <class Size, class = options_detail::if_real<Size>>
int extrude_translate(
    dense2D<double>&, unsigned, vector_fixed<double, 2> const&, Size, dense1D<unsigned>&) = delete;
template <class Size, class = options_detail::if_real<Size>>
int extrude_rotate(
    dense2D<double>&, unsigned, vector_fixed<double, 2> const&, double, Size, dense1D<unsigned>&) = delete;
template <class Size, class = options_detail::if_real<Size>>
int extrude_translate(
    dense2D<double>&, unsigned, vector_fixed<double, 3> const&, Size, dense1D<unsigned>&) = delete;
template <class Size, class = options_detail::if_real<Size>>
int extrude_rotate(dense2D<double>&, unsigned, vector_fixed<double, 3> const&, vector_fixed<double, 3> const&,
    Size, dense1D<unsigned>&) = delete;
/// @endcond

} // namespace trelk::vornik1d
