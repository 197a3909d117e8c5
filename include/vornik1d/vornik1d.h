#pragma once

#include <trelk/dense1D.h>
#include <trelk/dense2D.h>
#include <trelk/vector_fixed.h>

/// Marks the functions that the shared library exports.
#define VORNIK1D_API __attribute__((visibility("default")))

/// @{
/// The version of this header; `version()` returns the version of the library.
#define VORNIK1D_VERSION_MAJOR 5
#define VORNIK1D_VERSION_MINOR 6
#define VORNIK1D_VERSION_PATCH 0
#define VORNIK1D_VERSION_TWEAK 0
/// @}

/// Line meshes: nodes in the plane or in space, joined by line elements whose lengths follow target sizes.
///
/// This program replaces two sides of a rectangle by elements of length about 2. The corner stays.
///
/// ```cpp
/// #include <cstdio>
/// #include <vornik1d/vornik1d.h>
///
/// int main()
/// {
///     trelk::dense2D<double> coords{{0, 0}, {10, 0}, {10, 6}}; // three nodes, one per brace
///     trelk::dense2D<unsigned> connect{{0, 1}, {1, 2}};        // two elements, by their end nodes
///     int const status = trelk::vornik1d::remesh_lines(coords, connect, 2.0);
///     for (auto const element : connect.columns())
///         for (unsigned const node : element) // prints its two ends
///             std::printf("%g %g\n", coords(0, node), coords(1, node));
///     return status; // 0 for success
/// }
/// ```
///
/// Functions come in the order in which people need them: remeshing, lines, straight lines, splines, metrics,
/// extrusion, measures, connectivity, parameters. Helpers are in `<vornik1d/helpers.h>`.
namespace trelk::vornik1d {

/// @defgroup conventions Conventions
/// What holds for all functions.
///
/// **Node, chain, element.** `coords` holds one node per column: 2 rows in the plane, 3 in space. A node
/// number is a column number. A *chain* is a list of node numbers in the order of travel, for example {4, 0,
/// 7}. Sizes and parameters of a chain have one value per chain entry: entry i of the list, not node number
/// indices[i]. A mesh `connect` has one element per column, with the numbers of its end nodes in rows 0 and
/// 1.
///
/// **Metric length** is length measured in target sizes. The target size varies linearly between two nodes: a
/// segment of length d between sizes h0 and h1 has metric length d * ln(h1/h0) / (h1 - h0). For example, a
/// segment of length 3 with size 0.5 at both ends has metric length 6. A line is cut into equal steps of
/// metric length, as near to 1 as a whole number of elements allows. The count changes from k to k + 1 at
/// metric length sqrt(k * (k + 1)); if an even number is asked for, from k to k + 2 at sqrt(k * (k + 2)).
/// Between two neighbouring entries, sizes may differ by a factor of up to 1e15. From about 1e16 the formula
/// gives infinity; then there are `max_elements` elements, and their places mean nothing.
///
/// **A metric tensor** M is a symmetric, positive definite matrix that asks for sizes by direction: a vector
/// d has metric length sqrt(d^T M d). For example, size 0.1 along x and 1 along y is M = diag(100, 1). A
/// tensor is a column: (m00, m01, m11) in the plane, (m00, m01, m11, m02, m12, m22) in space. Tensors are
/// computed from squares of squares of sizes, so sizes must lie between about 1e-18 and 1e18.
///
/// **Containers.** `dense1D` is a list, `dense2D` a matrix, `vector_fixed` a point or a vector. Copies are
/// views: after `b = a`, both show the same values. `b.copy(a)` makes values of its own.
///
/// **Status.** Functions return 0 for success, a negative position of the argument at fault (-1 for the
/// first), or `no_storage` if memory runs out. On a failure the arguments are unchanged, unless the function
/// says otherwise. `status_text` in `<vornik1d/helpers.h>` puts a status into words.
///
/// **Options.** Functions with many arguments also take a record of options, each with a default. These
/// overloads return the statuses of the fullest overload, whatever was left out. In C++20 a call can name the
/// options in place, in the order of the record: `{.min_elements = 3, .max_elements = 9}`.
///
/// **Safety.** Functions throw nothing and keep neither state nor references to arguments. No argument makes
/// them read or write outside the containers. Calls may run side by side unless one writes values that
/// another uses, also through a view.
///
/// **Aliasing.** An output may be the same object as an input or another output. An output that is emptied
/// first is then also empty as an input. An output may also be a view of the values of an input, provided
/// that no value you still need lies past the end of the output: a list that grows writes there.
/// @{

/// Status of a call that ran out of memory, or of 32-bit node numbers because sizes are far too small. The
/// two short overloads of `remesh_lines` return -196 and -195 instead.
constexpr int no_storage = -199;

/// A maximum number of elements that sets no limit.
constexpr unsigned no_limit = 4294967295;

/// Colour of an element that has none.
constexpr unsigned no_color = 4294967295;

/// @}
/// @defgroup tolerances The three meanings of a tolerance
/// How a mesh treats the bends of its line.
///
/// The sign of `deviation_tolerance` selects the meaning:
///
/// | | `mesh_line` | `mesh_spline` | `remesh_lines` |
/// | --- | --- | --- | --- |
/// | 0, NaN | the mesh may cut corners | sizes alone count | the mesh keeps all bends |
/// | positive | a distance from the chain | a distance from the curve | splines near their chains |
/// | negative | sizes bounded by curvature | sizes bounded by curvature | splines everywhere |
///
/// `mesh_line`:
///   - 0, NaN, plus or minus the largest double: no tolerance. Sizes alone count.
///   - positive: a length; the nodes of the chain stay nearer than this to the mesh. If an interior node of
///     the chain is at this distance or more from the mesh, the line is meshed again, with more elements or
///     in two parts that meet at that node. The distance is measured from the infinite line through the
///     element that covers the node's parameter value, so a spike along that line goes unseen. `force_even`
///     holds for the new mesh; `min_elements` and `max_elements` do not. A mesh that has `max_elements`
///     elements before this stage stays as it is. A part that does not come nearer with more elements is
///     split after a thousand trials, or once the trials have made ten million elements.
///   - negative: at curvature c the size h is at most the h with (h * c)^2 / 8 = -`deviation_tolerance`: the
///     sagitta of a chord (its height over the chord) relative to the radius. The bound is never below
///     `min_size`; sizes below `min_size` stay.
///
/// `mesh_spline`:
///   - 0, NaN, plus or minus the largest double: no tolerance, and two samples from each node to the next.
///   - positive: a length; elements stay within about this distance of the curve. At curvature c the size is
///     at most 2 sqrt(e (2 - e)) / c with e = c * `deviation_tolerance`. Bends tighter than the tolerance (e
///     of 1 or more) get no extra nodes.
///   - negative: the same with e = -`deviation_tolerance` at every curvature.
///
/// `remesh_lines`, for each chain:
///   - 0, NaN: `mesh_line` with a tolerance of 1e-12 times the chain's length, so a bent line gets no
///     coarser. A ring is the exception: it can collapse to a single element, see `loop_sizes`.
///   - positive: `mesh_spline`, if the spline stays within this length of the chain; otherwise `mesh_line`.
///     The mesh of a spline may stray farther than the tolerance if a bend is tighter than the tolerance.
///   - negative: `mesh_spline`, however far the spline strays from the chain.
///   - plus or minus the largest double: `mesh_spline` without a tolerance.

/// @defgroup remeshing Remeshing
/// Networks of lines.
/// @{

/// Options of `remesh_lines`. A list that is changed is given as a pointer.
struct remesh_options
{
    double deviation_tolerance = 0; ///< How bends are treated: see @ref tolerances.

    /// A larger change of direction is a corner; 0 to 90 degrees. Argument 9 in a status.
    double max_angle = 40;

    /// Growth of size per length, on splines only; 0 sets no limit. If it is positive, `sizes` hold at the
    /// nodes alone, and `default_size` between them: so a large value can give a coarser mesh than 0.
    /// Argument 11.
    double max_gradation = 0;

    /// Segments up to this length make no corners. It is also the least bound by curvature and by the lengths
    /// of chains. Argument 12.
    double min_size = 0;
    bool force_even = false;          ///< Asks for an even number of elements on each chain.
    unsigned min_elements = 1;        ///< Minimum number of elements on each chain, at least 1. Argument 13.
    unsigned max_elements = no_limit; ///< Maximum number of elements on each chain.

    dense1D<double> sizes{}; ///< Target sizes by node number; entries that are not positive are ignored.
    dense1D<unsigned> hard_nodes{};      ///< Nodes to cut at.
    dense1D<unsigned> hard_edges{};      ///< Columns of `connect` that stay as they are. Argument 7.
    dense1D<unsigned>* colors = nullptr; ///< In and out: a colour per element.

    /// Out: replaced by the nodes at which lines were cut and hard nodes that no line has, ascending.
    dense1D<unsigned>* break_nodes = nullptr;
};

/// Replaces a mesh of lines by one whose elements follow target sizes. What was joined stays joined.
///
/// The common case: `remesh_lines(coords, connect, 0.5)` cuts the lines at junctions and at corners of more
/// than 40 degrees, and meshes them with elements of length about 0.5 between the cuts. With options:
///
/// ```cpp
/// remesh_options options;
/// options.deviation_tolerance = 0.02; // a smooth curve, if it stays this near
/// options.colors = &colors;           // which road, border or beam each element belongs to
/// int status = remesh_lines(coords, connect, 0.5, options);
/// ```
///
/// The lines are cut into chains at *break nodes*: line ends, nodes of three or more elements, corners, nodes
/// where two elements end head to head, changes of colour, ends of hard edges, and hard nodes. Break nodes
/// keep their numbers and places. Each chain between them is meshed by `mesh_line` or `mesh_spline`, as
/// @ref tolerances says.
///
/// The target size at a node is the positive entry of `sizes` if there is one, otherwise `default_size`. At a
/// chain end, `default_size` is lowered to the length of the shortest chain that meets there, but not below
/// `min_size`.
///
/// @param[in,out] coords  d x n, d = 2 or 3: node positions, in length units of the model. New nodes are
///                 appended as columns. All old nodes stay, also those that the new mesh does not use.
/// @param[in,out] connect  an element per column, its end nodes in rows 0 and 1; further rows are ignored. It
///                 is replaced by a new matrix of 2 rows. Elements of one chain stand side by side in the
///                 order of travel.
/// @param default_size  target size at nodes without one of their own, in length units of the model:
///                 positive, or 0 if every node has a size of its own.
/// @param options  see `remesh_options`.
/// @retval 0    success, also for an empty `connect`, whatever the other arguments are (nothing changes then)
/// @retval -1   `coords` has neither 2 nor 3 rows
/// @retval -2   `connect` has 1 row, or an end node that is no column of `coords`
/// @retval -3   `default_size` is negative or NaN
/// @retval -7   an entry of `hard_edges` is no column of `connect`
/// @retval -9   `max_angle` is negative or NaN
/// @retval -11  `max_gradation` is negative or NaN
/// @retval -12  `min_size` is negative or NaN
/// @retval -13  `min_elements` is above `max_elements`
/// @retval -199 no memory, or more nodes than 32-bit numbers can name
///
/// Special cases:
///   - **A chain that cannot be meshed** returns the status of its mesher:
///     - -1: a spline through positions that are not finite, or of a length that is not
///     - -2: with tolerance 0, a chain of length 0 or NaN
///     - -3: a size that is 0 or not finite at one of its nodes, also at the ends of a chain of length 0
///       without `min_size`; with tolerance 0, a chain that is infinitely long before its last node
///     - -5: a `min_elements` of 0
///   - **A ring** without break nodes begins and ends at the first node of its lowest element, and that node
///     stays. A ring whose size is near its length or above becomes a single element from a node to itself:
///     `loop_sizes` in `<vornik1d/helpers.h>` prevents that.
///   - **Mixed directions** cut lines: elements of one line should run one after the other. Where two
///     elements end at one node, that node is a break node. Where two begin, the line is cut there too, and
///     perhaps once more, depending on the order of columns. `mesh_reorient` gives each line one direction.
///   - **Angles.** A change of direction by a right angle or more is always a corner. Above 90 degrees,
///     `max_angle` acts as its supplement, so 90 gives the fewest corners, and 180 makes every bend a corner.
///   - **Colours.** The list may be short or empty; `no_color` means none. Each chain gets the first colour
///     along it. A chain without colours gets a new one above all others, if any is left below `no_color`.
///   - **Hard nodes** above all nodes of `connect` are ignored.
///   - If `max_gradation` is positive, `default_size` means on splines what it means in `mesh_spline`.
///   - A lack of memory inside a placement may leave a chain coarser than its sizes ask for, with status 0.
///
/// Cost: linear in elements and node numbers, plus the cost of the meshers. Peak memory is at most about 1.6
/// times the old plus the new mesh, plus what the longest chain needs: its samples if it is meshed as a
/// spline, see `mesh_spline`. The number of allocations does not depend on the number of chains.
[[nodiscard]] inline int remesh_lines(dense2D<double>& coords, dense2D<unsigned>& connect,
    double default_size, remesh_options const& options = {}) noexcept;

/// The same with all arguments in a row; this is the fullest overload, whose statuses are listed above.
/// @param sizes       see `remesh_options`; may be short or empty.
/// @param[in,out] colors      see `remesh_options`; may be short or empty.
/// @param[in,out] hard_nodes  nodes to cut at; replaced by all break nodes, ascending.
/// @param hard_edges  see `remesh_options`; may be empty.
/// @param force_even, max_angle, deviation_tolerance, max_gradation, min_size, min_elements, max_elements see
///                 `remesh_options`.
[[nodiscard]] VORNIK1D_API int remesh_lines(dense2D<double>& coords, dense2D<unsigned>& connect,
    double default_size, dense1D<double> const& sizes, dense1D<unsigned>& colors,
    dense1D<unsigned>& hard_nodes, dense1D<unsigned> const& hard_edges, bool force_even, double max_angle,
    double deviation_tolerance, double max_gradation, double min_size, unsigned min_elements,
    unsigned max_elements) noexcept;

/// The same without sizes, hard nodes and hard edges.
///
/// @retval 0    success, also for an empty `connect`, whatever the other arguments are
/// @retval -1   `coords` has neither 2 nor 3 rows
/// @retval -2   `connect` has 1 row, or an end node that is no column of `coords`; also a `min_elements` of 0
/// @retval -3   `default_size` is negative or NaN
/// @retval -6   `max_angle` is negative or NaN
/// @retval -8   `max_gradation` is negative or NaN
/// @retval -9   `min_size` is negative or NaN
/// @retval -10  `min_elements` is above `max_elements`
/// @retval -196 no memory, or more nodes than 32-bit numbers can name
///
/// A chain that cannot be meshed returns the status of its mesher, as in the fullest overload.
[[nodiscard]] VORNIK1D_API int remesh_lines(dense2D<double>& coords, dense2D<unsigned>& connect,
    double default_size, dense1D<unsigned>& colors, bool force_even, double max_angle,
    double deviation_tolerance, double max_gradation, double min_size, unsigned min_elements,
    unsigned max_elements) noexcept;

/// The same without colours too.
///
/// @retval 0    success, also for an empty `connect`, whatever the other arguments are
/// @retval -1   `coords` has neither 2 nor 3 rows
/// @retval -2   `connect` has 1 row, or an end node that is no column of `coords`
/// @retval -3   `default_size` is negative or NaN
/// @retval -5   `max_angle` is negative or NaN; also a `min_elements` of 0
/// @retval -7   `max_gradation` is negative or NaN
/// @retval -8   `min_size` is negative or NaN
/// @retval -9   `min_elements` is above `max_elements`
/// @retval -195 no memory, or more nodes than 32-bit numbers can name
///
/// A chain that cannot be meshed returns the status of its mesher, as in the fullest overload.
[[nodiscard]] VORNIK1D_API int remesh_lines(dense2D<double>& coords, dense2D<unsigned>& connect,
    double default_size, bool force_even, double max_angle, double deviation_tolerance, double max_gradation,
    double min_size, unsigned min_elements, unsigned max_elements) noexcept;

/// @}
/// @defgroup line_meshing Lines
/// One polyline, from its first node to its last one.
/// @{

/// Options of `mesh_line`.
struct line_options
{
    double deviation_tolerance = 0; ///< How bends are treated: see @ref tolerances.
    double min_size = 0; ///< Least bound by curvature, for a negative tolerance; a negative one counts as 0.
    bool force_even = false;   ///< Asks for an even number of elements, even if it exceeds `max_elements`.
    unsigned min_elements = 1; ///< Minimum number of elements, at least 1. Argument 6 in a status.
    unsigned max_elements = no_limit; ///< Maximum number of elements before a positive tolerance adds more.

    /// A value per chain entry, non-decreasing. If empty, the chord length from 0 to 1. Argument 3.
    dense1D<double> params{};
    dense1D<double>* out_params = nullptr;  ///< Out: replaced by the parameter at each mesh node.
    dense1D<double>* out_sizes = nullptr;   ///< Out: the size at each mesh node is appended (sizes only).
    dense2D<double>* out_metrics = nullptr; ///< Out: the tensors are appended (tensors only). Argument 11.
};

/// Meshes a polyline by a target size at each of its nodes.
///
/// The common case:
///
/// ```cpp
/// dense2D<double> coords{{0, 0}, {10, 0}, {10, 6}};
/// dense1D<unsigned> nodes; // gets the mesh: 0, 3, 4, ..., 2
/// int status = mesh_line(coords, {0, 1, 2}, {1.0, 0.2, 1.0}, nodes);
/// ```
///
/// One size for the whole line is `dense1D<double>(chain.size(), 0.5)`. The mesh runs from the first to the
/// last entry of the chain. It does not use the interior nodes of the chain, unless a positive tolerance
/// keeps them. New nodes are placed on the chain, and then usually once more on the mesh of the first
/// placement. So they lie near the chain, but not always on it.
///
/// @param[in,out] coords  d x n, d = 2 or 3: node positions, in length units of the model. New nodes are
///                 appended as columns; old columns do not change.
/// @param indices  the chain, at least 2 column numbers of `coords`.
/// @param sizes    a target size per chain entry, positive and finite, in length units of the model; further
///                 values are ignored.
/// @param[out] out_indices  the mesh nodes are appended in the order of travel.
/// @param options  see `line_options`.
/// @retval 0    success
/// @retval -1   `coords` has neither 2 nor 3 rows
/// @retval -2   fewer than 2 chain entries, or one that is no column of `coords`; also a chain of length 0 or
///              NaN if `params` is empty
/// @retval -3   `params` does not have one value per chain entry, decreases, or contains a NaN
/// @retval -4   `sizes` has fewer values than the chain, or one that is not positive and finite; also, if
///              `params` is empty, a chain that is infinitely long before its last entry
/// @retval -6   `min_elements` is 0 or above `max_elements`
/// @retval -199 no memory, or more nodes than 32-bit numbers can name (then nothing is placed)
///
/// On a failure nothing has changed, except that `out_params` may be empty.
///
/// Special cases:
///   - **A closed chain**, whose first and last entries are one node, begins and ends there. Use 3 for
///     `min_elements`: a single element from a node to itself has no direction, so every deviation from it
///     counts as 0.
///   - `min_elements` elements, or a chain of 2 entries, take a single placement.
///   - Lists that are used for several lines: `out_indices`, `out_sizes` and `out_metrics` grow, `out_params`
///     is replaced. (`mesh_spline` appends to `out_params` too.)
///   - If sizes differ much between neighbours, each placement on the last mesh can lose elements, down to a
///     single one.
///   - If memory for the parameters and sizes of new nodes runs out, the result is 0, and the mesh may be
///     coarser than its sizes ask for, down to the chord from the first node to the last.
///
/// Cost: each placement is linear in chain plus mesh. There are usually two; another one follows as long as
/// the number of nodes falls. A positive tolerance repeats all this for each part that is meshed again. Peak
/// memory is about 1.3 times chain plus mesh. The number of allocations grows with the logarithm of their
/// sizes.
[[nodiscard]] inline int mesh_line(dense2D<double>& coords, dense1D<unsigned> const& indices,
    dense1D<double> const& sizes, dense1D<unsigned>& out_indices, line_options const& options = {}) noexcept;

/// Meshes a polyline by a metric tensor at each of its nodes.
///
/// Between two nodes, the size in the direction of the segment varies linearly, as with sizes. The tensors
/// are interpolated in their common basis, in which the sizes along its directions vary linearly. A positive
/// `deviation_tolerance` is a length of the model, not a metric length. A negative one bounds the sizes along
/// the axes of each tensor; the axes stay.
///
/// @param metrics  3 or 6 rows for 2 or 3 rows of `coords`: a tensor per chain entry, finite and positive
///                 definite; further columns are ignored.
/// @param coords, indices, out_indices, options  as above.
/// @retval 0    success
/// @retval -1   `coords` has neither 2 nor 3 rows
/// @retval -2   fewer than 2 chain entries, or one that is no column of `coords`; also a chain of length 0 or
///              NaN if `params` is empty
/// @retval -3   `params` does not have one value per chain entry, decreases, or contains a NaN
/// @retval -4   `metrics` has the wrong row count, fewer columns than the chain has entries, or a tensor that
///              is not finite and positive definite; also, if `params` is empty, a chain that is infinitely
///              long before its last entry
/// @retval -6   `min_elements` is 0 or above `max_elements`
/// @retval -11  `*options.out_metrics` is not empty and has the wrong row count
/// @retval -199 no memory, or more nodes than 32-bit numbers can name
///
/// If two neighbouring tensors cannot be reduced to a common basis, the line gets no new nodes. This happens
/// with tensors that are nearly singular, and with sizes outside about 1e-18 to 1e18.
[[nodiscard]] inline int mesh_line(dense2D<double>& coords, dense1D<unsigned> const& indices,
    dense2D<double> const& metrics, dense1D<unsigned>& out_indices,
    line_options const& options = {}) noexcept;

/// Meshes a polyline by sizes, with all arguments in a row; their meaning is as above.
/// @param[out] out_params  emptied before all checks, then replaced: the parameter at each mesh node, from
///                 the first to the last value of `params`.
/// @param[out] out_sizes   the size at each mesh node is appended.
/// @retval 0    success
/// @retval -1   `coords` has neither 2 nor 3 rows
/// @retval -2   fewer than 2 chain entries, or (tested last) one that is no column of `coords`
/// @retval -3   `params` does not have one value per chain entry, decreases, or contains a NaN
/// @retval -4   `sizes` has fewer values than the chain, or one that is not positive and finite
/// @retval -6   `min_elements` is 0 or above `max_elements`
/// @retval -199 no memory, or more nodes than 32-bit numbers can name
[[nodiscard]] VORNIK1D_API int mesh_line(dense2D<double>& coords, dense1D<unsigned> const& indices,
    dense1D<double> const& params, dense1D<double> const& sizes, bool force_even, unsigned min_elements,
    unsigned max_elements, double deviation_tolerance, double min_size, dense1D<unsigned>& out_indices,
    dense1D<double>& out_params, dense1D<double>& out_sizes) noexcept;

/// Meshes a polyline by sizes, with its chord length as parameter: 0 at the first entry, 1 at the last one.
///
/// @retval 0    success
/// @retval -1   `coords` has neither 2 nor 3 rows
/// @retval -2   fewer than 2 chain entries, one that is no column of `coords`, or a chain of length 0 or NaN
/// @retval -3   `sizes` has fewer values than the chain, or one that is not positive and finite; also a chain
///              that is infinitely long before its last entry
/// @retval -5   `min_elements` is 0 or above `max_elements`
/// @retval -199 no memory, or more nodes than 32-bit numbers can name
///
/// `out_params` is unchanged on -1 and -2, and if memory for the chain's own parameters runs out. Every other
/// failure leaves it empty.
[[nodiscard]] VORNIK1D_API int mesh_line(dense2D<double>& coords, dense1D<unsigned> const& indices,
    dense1D<double> const& sizes, bool force_even, unsigned min_elements, unsigned max_elements,
    double deviation_tolerance, double min_size, dense1D<unsigned>& out_indices, dense1D<double>& out_params,
    dense1D<double>& out_sizes) noexcept;

/// Meshes a polyline by tensors, with all arguments in a row; their meaning is as above.
///
/// @retval 0    success
/// @retval -1   `coords` has neither 2 nor 3 rows
/// @retval -2   fewer than 2 chain entries, or (tested last) one that is no column of `coords`
/// @retval -3   `params` does not have one value per chain entry, decreases, or contains a NaN
/// @retval -4   `metrics` has the wrong row count, fewer columns than the chain has entries, or a tensor that
///              is not finite and positive definite
/// @retval -6   `min_elements` is 0 or above `max_elements`
/// @retval -11  `out_metrics` is not empty and has the wrong row count
/// @retval -199 no memory, or more nodes than 32-bit numbers can name
[[nodiscard]] VORNIK1D_API int mesh_line(dense2D<double>& coords, dense1D<unsigned> const& indices,
    dense1D<double> const& params, dense2D<double> const& metrics, bool force_even, unsigned min_elements,
    unsigned max_elements, double deviation_tolerance, double min_size, dense1D<unsigned>& out_indices,
    dense1D<double>& out_params, dense2D<double>& out_metrics) noexcept;

/// Meshes a polyline by tensors, with its chord length as parameter: 0 at the first entry, 1 at the last one.
///
/// @retval 0    success
/// @retval -1   `coords` has neither 2 nor 3 rows
/// @retval -2   fewer than 2 chain entries, one that is no column of `coords`, or a chain of length 0 or NaN
/// @retval -3   `metrics` has the wrong row count, fewer columns than the chain has entries, or a tensor that
///              is not finite and positive definite; also a chain that is infinitely long before its last
///              entry
/// @retval -5   `min_elements` is 0 or above `max_elements`
/// @retval -10  `out_metrics` is not empty and has the wrong row count
/// @retval -199 no memory, or more nodes than 32-bit numbers can name
[[nodiscard]] VORNIK1D_API int mesh_line(dense2D<double>& coords, dense1D<unsigned> const& indices,
    dense2D<double> const& metrics, bool force_even, unsigned min_elements, unsigned max_elements,
    double deviation_tolerance, double min_size, dense1D<unsigned>& out_indices, dense1D<double>& out_params,
    dense2D<double>& out_metrics) noexcept;

/// @}
/// @defgroup straight_lines Straight lines
/// Segments, each meshed on its own, so that all nodes of the chain stay.
/// @{

/// Target sizes at the two ends of a segment, an arc or a path.
struct end_sizes
{
    double start;            ///< At its start, positive, in length units of the model.
    double end;              ///< At its end.
    bool force_even = false; ///< Asks for an even number of elements.
};

/// Meshes each segment of a polyline by the sizes at its ends.
///
/// The common case: `mesh_straight(coords, {0, 1, 2}, {1.0, 0.2, 1.0}, false, nodes)`.
///
/// @param[in,out] coords  d x n, d = 2 or 3: node positions. New nodes are appended as columns.
/// @param indices  the chain, at least 2 column numbers of `coords`, or none.
/// @param sizes    a target size per chain entry, positive and finite; further values are ignored.
/// @param force_even  asks for an even number of elements on each segment.
/// @param[out] out_indices  the mesh nodes are appended in the order of travel.
/// @retval 0    success, also for an empty chain, which changes nothing
/// @retval -1   `coords` has neither 2 nor 3 rows (tested last)
/// @retval -2   one chain entry, or one that is no column of `coords`
/// @retval -3   `sizes` has fewer values than the chain, or one that is not positive and finite
/// @retval -199 no memory, or more nodes than 32-bit numbers can name
///
/// On a failure nothing has changed. There is no maximum number of elements.
///
/// Cost: linear in chain plus mesh.
[[nodiscard]] VORNIK1D_API int mesh_straight(dense2D<double>& coords, dense1D<unsigned> const& indices,
    dense1D<double> const& sizes, bool force_even, dense1D<unsigned>& out_indices) noexcept;

/// Meshes each segment of a polyline by the metric tensors at its ends.
///
/// @param metrics  a tensor per chain entry, 3 or 6 rows for 2 or 3 rows of `coords`.
/// @param coords, indices, force_even, out_indices  as above.
/// @retval 0    success, also for an empty chain, which changes nothing
/// @retval -1   `coords` has neither 2 nor 3 rows (tested last)
/// @retval -2   one chain entry, or one that is no column of `coords`
/// @retval -3   `metrics` has the wrong row count, fewer columns than the chain has entries, or a tensor that
///              is not finite and positive definite
/// @retval -199 no memory, or more nodes than 32-bit numbers can name
[[nodiscard]] VORNIK1D_API int mesh_straight(dense2D<double>& coords, dense1D<unsigned> const& indices,
    dense2D<double> const& metrics, bool force_even, dense1D<unsigned>& out_indices) noexcept;

/// Meshes each segment of a polyline by one size: the length of the chain divided by `element_count`. Each
/// segment gets a whole number of elements, so their sum can differ from `element_count`.
///
/// @retval 0    success, also if `element_count` is 0, whatever the other arguments are
/// @retval -1   `coords` has neither 2 nor 3 rows (tested last)
/// @retval -2   fewer than 2 chain entries, or one that is no column of `coords`
/// @retval -3   the length of the chain is 0 or not finite
/// @retval -199 no memory, or more nodes than 32-bit numbers can name
[[nodiscard]] VORNIK1D_API int mesh_straight(dense2D<double>& coords, dense1D<unsigned> const& indices,
    unsigned element_count, bool force_even, dense1D<unsigned>& out_indices) noexcept;

/// Meshes the segment from `node_a` to `node_b` by the sizes at its ends: `mesh_straight(coords, 0, 1, {1.0,
/// 0.2}, nodes)`.
///
/// @retval 0    success
/// @retval -1   `coords` has neither 2 nor 3 rows (tested last)
/// @retval -2,-3 `node_a`, `node_b` is no column of `coords`
/// @retval -4,-5 `sizes.start`, `sizes.end` is not positive; an infinite one gives -3
/// @retval -199 no memory, or more nodes than 32-bit numbers can name
[[nodiscard]] inline int mesh_straight(dense2D<double>& coords, unsigned node_a, unsigned node_b,
    end_sizes const& sizes, dense1D<unsigned>& out_indices) noexcept;

/// The same with the sizes as arguments 4 and 5, and the same statuses.
[[nodiscard]] VORNIK1D_API int mesh_straight(dense2D<double>& coords, unsigned node_a, unsigned node_b,
    double size_a, double size_b, bool force_even, dense1D<unsigned>& out_indices) noexcept;

/// Cuts the segment from `node_a` to `node_b` into `element_count` equal elements.
///
/// @retval 0    success, also if `element_count` is 0, whatever the other arguments are
/// @retval -1   `coords` has neither 2 nor 3 rows (tested last)
/// @retval -2,-3 `node_a`, `node_b` is no column of `coords`; -3 also if the nodes are infinitely far apart
/// @retval -4   both nodes are at one place, or their distance is NaN
/// @retval -199 no memory, or more nodes than 32-bit numbers can name
[[nodiscard]] VORNIK1D_API int mesh_straight(dense2D<double>& coords, unsigned node_a, unsigned node_b,
    unsigned element_count, dense1D<unsigned>& out_indices) noexcept;

/// Cuts the segments from `node_a` to `node_b` and from `node_b` to `node_c` into about `element_count`
/// elements of one size.
///
/// @retval 0    success, also if `element_count` is 0, whatever the other arguments are
/// @retval -1   `coords` has neither 2 nor 3 rows (tested last)
/// @retval -2,-3,-4 `node_a`, `node_b`, `node_c` is no column of `coords`; -3 also if the length of the two
///              segments is 0 or not finite
/// @retval -199 no memory, or more nodes than 32-bit numbers can name
[[nodiscard]] VORNIK1D_API int mesh_straight(dense2D<double>& coords, unsigned node_a, unsigned node_b,
    unsigned node_c, unsigned element_count, dense1D<unsigned>& out_indices) noexcept;

/// @}
/// @defgroup splines Splines
/// Smooth curves through chains of nodes.
/// @{

/// Options of `mesh_spline`.
struct spline_options
{
    double deviation_tolerance = 0; ///< How curvature bounds the sizes: see @ref tolerances.
    double min_size = 0;       ///< Floor of the bound by curvature, twice the least sample step. Argument 8.
    double default_size = 0;   ///< With `max_gradation`: the size between the nodes of the curve.
    double max_gradation = 0;  ///< Growth of size per length; 0 sets no limit. See below.
    bool force_even = false;   ///< Asks for an even number of elements, even if it exceeds `max_elements`.
    unsigned min_elements = 1; ///< Minimum number of elements, at least 1. Argument 5 in a status.
    unsigned max_elements = no_limit; ///< Maximum number of elements.

    dense1D<double>* out_params = nullptr;  ///< Out: the parameter at each mesh node, 0 to 1, is appended.
    dense1D<double>* out_sizes = nullptr;   ///< Out: the size at each mesh node is appended (sizes only).
    dense2D<double>* out_metrics = nullptr; ///< Out: the tensors are appended (tensors only). Argument 13.
    double* deviation = nullptr;            ///< Out: how far the spline strays from the polyline.
};

/// Meshes the smooth curve through a chain of nodes by target sizes and by its curvature.
///
/// The common case, a closed airfoil within 0.001 of its curve; `with_guides` is in `<vornik1d/helpers.h>`:
///
/// ```cpp
/// spline_options options;
/// options.deviation_tolerance = 0.001;
/// options.max_gradation = 0.3;
/// int status = mesh_spline(
///     coords, with_guides(chain, true), with_guides(chain, sizes, true), nodes, options);
/// ```
///
/// With `max_gradation` g, neighbouring elements differ in length by a factor of about exp(g): 0.3 gives
/// about 1.35 to 1.4, and up to 1.5 if nodes are far apart at a tight bend. On a closed curve this does not
/// hold where its ends meet, and the factor there can be 4. Begin the chain where the curve is flat and
/// elements are long, or mesh twice: the second time with the smaller of the two end sizes of the first mesh
/// as the size at the first node.
///
/// The first and the last chain entry are *guide nodes*: they shape the tangents at the ends of the curve and
/// are not on it. The mesh runs from the second entry to the last but one. An open curve through a, b, ...,
/// y, z is the chain a, a, b, ..., y, z, z. A closed curve through a, b, ..., z and back to a is the chain z,
/// a, b, ..., z, a, b.
///
/// Sizes vary linearly between the nodes of the curve. Then three bounds apply: the curvature as @ref
/// tolerances says, the length of the curve, and `max_gradation`. New nodes lie on the chords of a polyline
/// of samples of the curve. The samples are ten times closer to the curve than `deviation_tolerance` asks of
/// the mesh.
///
/// @param[in,out] coords  d x n, d = 2 or 3: node positions, in length units of the model. New nodes are
///                 appended as columns; old columns do not change.
/// @param indices  the chain with its guide nodes, at least 4 column numbers of `coords`. A chain without
///                 guide nodes silently loses its first and last node.
/// @param sizes    a target size per chain entry, positive and finite, in length units of the model; those of
///                 the guide nodes have no effect, and further values are ignored.
/// @param[out] out_indices  the mesh nodes are appended in the order of travel.
/// @param options  see `spline_options`.
/// @retval 0    success
/// @retval -1   `coords` has neither 2 nor 3 rows; also, tested last, chain nodes whose positions are not
///              finite, or so far apart that the curve's length is not
/// @retval -2   fewer than 4 chain entries, or one that is no column of `coords`
/// @retval -3   `sizes` has fewer values than the chain, or one that is not positive and finite
/// @retval -5   `min_elements` is 0 or above `max_elements`
/// @retval -8   `min_size` is negative or NaN
/// @retval -199 no memory, or more samples or nodes than 32-bit numbers can name
///
/// On a failure nothing has changed, except that `deviation` is 0.
///
/// Special cases:
///   - `min_size` keeps the numbers of samples and elements within reason where the curve has a kink or the
///     tolerance is tiny. The number of samples has no other limit: at curvature c their step is near
///     sqrt(0.8 * tolerance / c), or sqrt(0.8 * -tolerance) / c for a negative tolerance, but at least half
///     of `min_size`. Curvature has no bound where nodes coincide or turn back; without `min_size` such a
///     curve can get `max_elements` elements. Sizes below `min_size` are not raised.
///   - `default_size` has an effect only if it and `max_gradation` are positive. It is then the size
///     everywhere except at the nodes of the curve, before the bounds.
///   - `max_gradation` has no effect from the largest double on.
///   - **Far nodes.** Curvature is averaged between two nodes at which the chain bends. If nodes are far
///     apart at a tight bend, the mesh strays farther than the tolerance, and the factor grows as the
///     tolerance falls: at the nose of an airfoil of 60 nodes and chord 1 it is about 2 for a tolerance of
///     1e-3 and 4 for 1e-4, with 240 nodes 1.2 and 1.6. Nodes closer together than 1e-12 length units do not
///     bend.
///   - `deviation` is the largest distance of a sample from the line through the ends of its span. It tells
///     how far the spline strays from the polyline through its nodes, not how far the mesh does. If
///     `deviation` is an entry of `coords` or of an output, which may move, it stays 0.
///   - If memory for the parameters and sizes of new nodes runs out, the result is 0 and the mesh is a single
///     element.
///
/// Cost and memory: linear in chain, samples and mesh.
[[nodiscard]] inline int mesh_spline(dense2D<double>& coords, dense1D<unsigned> const& indices,
    dense1D<double> const& sizes, dense1D<unsigned>& out_indices,
    spline_options const& options = {}) noexcept;

/// Meshes the smooth curve through a chain of nodes by metric tensors and by its curvature.
///
/// Curvature bounds the sizes of each tensor along its own axes. `default_size` stands for the isotropic
/// tensor of that size. Growth is limited in the metric: of two tensors at metric length l, measured in one
/// of them, the other is intersected with the first divided by (1 + `max_gradation` * l)^2 (homogeneous
/// growth; Alauzet, Size gradation control of anisotropic meshes, 2010).
///
/// @param metrics  3 or 6 rows for 2 or 3 rows of `coords`: a tensor per chain entry, finite and positive
///                 definite; further columns are ignored.
/// @param coords, indices, out_indices, options  as above.
/// @retval 0    success
/// @retval -1   `coords` has neither 2 nor 3 rows; also, tested last, chain nodes whose positions are not
///              finite, or so far apart that the curve's length is not
/// @retval -2   fewer than 4 chain entries, or one that is no column of `coords`
/// @retval -3   `metrics` has the wrong row count, fewer columns than the chain has entries, or a tensor that
///              is not finite and positive definite
/// @retval -5   `min_elements` is 0 or above `max_elements`
/// @retval -8   `min_size` is negative or NaN
/// @retval -13  `*options.out_metrics` is not empty and has the wrong row count
/// @retval -199 no memory, or more samples or nodes than 32-bit numbers can name
///
/// If a new node falls between tensors that cannot be reduced to a common basis, the curve becomes a single
/// element.
[[nodiscard]] inline int mesh_spline(dense2D<double>& coords, dense1D<unsigned> const& indices,
    dense2D<double> const& metrics, dense1D<unsigned>& out_indices,
    spline_options const& options = {}) noexcept;

/// Meshes a spline by sizes, with all arguments in a row. Meaning and statuses are as with options.
[[nodiscard]] VORNIK1D_API int mesh_spline(dense2D<double>& coords, dense1D<unsigned> const& indices,
    dense1D<double> const& sizes, bool force_even, unsigned min_elements, unsigned max_elements,
    double deviation_tolerance, double min_size, double default_size, double max_gradation,
    dense1D<unsigned>& out_indices, dense1D<double>& out_params, dense1D<double>& out_sizes,
    double& deviation) noexcept;

/// Meshes a spline by tensors, with all arguments in a row. Meaning and statuses are as with options.
[[nodiscard]] VORNIK1D_API int mesh_spline(dense2D<double>& coords, dense1D<unsigned> const& indices,
    dense2D<double> const& metrics, bool force_even, unsigned min_elements, unsigned max_elements,
    double deviation_tolerance, double min_size, double default_size, double max_gradation,
    dense1D<unsigned>& out_indices, dense1D<double>& out_params, dense2D<double>& out_metrics,
    double& deviation) noexcept;

/// Computes the point of a spline at a parameter value.
///
/// A spline is a chain of cubics: one *span* from each node to the next, built from its two nodes and one
/// guide node on either side. No system of equations is solved. Let u and v be the unit vectors along the
/// chords before and after a node, of lengths p and q. The tangent at the node has the direction of q u + p
/// v, the tangent of the circle through the three nodes, so the spline has no corner.
///
/// @param coords  2 or 3 rows, as many as `point` has: node positions.
/// @param i0, i3  the guide nodes before and after the span; i0 = i1 and i3 = i2 mean a free end.
/// @param i1, i2  the nodes from which and to which the span runs.
/// @param t       0 gives node i1 exactly, 1 gives node i2 up to rounding; other values extrapolate the
///                 cubic.
/// @param[out] point  the position; unchanged on a failure.
/// @retval 0    success
/// @retval -1   `coords` does not have as many rows as `point`
/// @retval -2,-3,-4,-5 i0, i1, i2, i3 is no column of `coords`
///
/// Special cases:
///   - If a neighbouring chord is at most 1 % as long as the span's own chord (length l), the tangent is l u
///     + v. This depends on the unit of length, and there may be a corner.
///   - A span has no tangent at an end that is its own guide node (by number, not by place), nor where the
///     tangent would point against the chord. It is quadratic then, or straight if it has no tangent at all.
///
/// Cost: constant, no allocation.
[[nodiscard]] VORNIK1D_API int spline_point(dense2D<double> const& coords, unsigned i0, unsigned i1,
    unsigned i2, unsigned i3, double t, vector_fixed<double, 2>& point) noexcept;
/// The same in space.
[[nodiscard]] VORNIK1D_API int spline_point(dense2D<double> const& coords, unsigned i0, unsigned i1,
    unsigned i2, unsigned i3, double t, vector_fixed<double, 3>& point) noexcept;

/// @}
/// @defgroup metrics Metrics
/// Sizes and tensors at new parameter values, and tensors from directions and elements.
///
/// The functions that generate tensors merge each one into the column of its node: the result is the
/// intersection, in which every vector is at least as long as in either tensor. If both tensors have
/// unlimited sizes, it is their sum. So calls can be chained, elements that meet at a node combine there, and
/// a column of zeros asks for nothing. A size or an element shorter than 1e-154 gives a tensor that is not
/// finite.
/// @{

/// Carries sizes from one list of parameters to another by linear interpolation.
///
/// @param params      at least 2 parameter values at which `sizes` are known, non-decreasing.
/// @param sizes       a value per entry of `params`. The result is 0 between two values of which one is not
///                 positive.
/// @param new_params  the parameter values wanted, non-decreasing, within the range of `params`.
/// @param[out] new_sizes  replaced by a value per entry of `new_params`; empty on a failure.
/// @retval 0    success, also for empty `new_params`, whatever the other arguments are
/// @retval -1   `params` has fewer than 2 values, decreases, or contains a NaN
/// @retval -2   `sizes` does not have as many values as `params`
/// @retval -3   `new_params` decreases, leaves the range of `params`, or contains a NaN
/// @retval -199 no memory
///
/// Cost: linear in old and new values.
[[nodiscard]] VORNIK1D_API int interpolate_metrics(dense1D<double> const& params,
    dense1D<double> const& sizes, dense1D<double> const& new_params, dense1D<double>& new_sizes) noexcept;

/// Carries metric tensors from one list of parameters to another.
///
/// Tensors are interpolated in their common basis, in which the sizes along its directions vary linearly. At
/// the given parameters they are returned bit for bit. If two neighbours cannot be reduced to a common basis,
/// a new column between them repeats the new column before it; the first new column gets zeros.
///
/// @param metrics  a tensor per column: 3 rows in the plane, 6 in space. 1 row is a list of values, and 0
///                 rows give 0 rows.
/// @param params, new_params  as above.
/// @param[out] new_metrics  replaced by a column per entry of `new_params`; empty on a failure.
/// @retval 0    success, also for empty `new_params`, whatever the other arguments are
/// @retval -1   `params` has fewer than 2 values, decreases, or contains a NaN
/// @retval -2   `metrics` does not have a column per entry of `params`, or has another row count
/// @retval -3   `new_params` decreases, leaves the range of `params`, or contains a NaN
/// @retval -199 no memory
[[nodiscard]] VORNIK1D_API int interpolate_metrics(dense1D<double> const& params,
    dense2D<double> const& metrics, dense1D<double> const& new_params, dense2D<double>& new_metrics) noexcept;

/// Generates tensors from a direction per node, in the plane.
///
/// @param directions   2 rows, a vector per node. Sizes hold for a vector of length 1; a vector of length L
///                 divides both sizes by L.
/// @param indices      the nodes to treat, column numbers of `directions`.
/// @param size_along, size_across  the sizes along the vector and across it, positive.
/// @param[in,out] metrics  a tensor per node, 3 rows, or empty. Columns up to the largest node are added.
/// @retval 0    success, also for empty `indices`, whatever the other arguments are
/// @retval -1   `directions` does not have 2 rows
/// @retval -2   an entry of `indices` is no column of `directions`
/// @retval -3,-4 `size_along`, `size_across` is not positive
/// @retval -5   `metrics` is not empty and does not have 3 rows
/// @retval -199 no memory
///
/// On a failure `metrics` is unchanged. Cost: linear in the nodes treated.
[[nodiscard]] VORNIK1D_API int metrics_gen_aniso2d(dense2D<double> const& directions,
    dense1D<unsigned> const& indices, double size_along, double size_across,
    dense2D<double>& metrics) noexcept;

/// Generates tensors from the elements of a line in the plane: at both ends of an element, the size along it
/// is its length.
///
/// @param coords       node positions, at least 2 rows; only the first 2 count.
/// @param connect      2 rows, an element per column. An element whose squared length is 0 or not finite is
///                 ignored.
/// @param normal_size  the size across the element, in length units of the model. A negative value is
///                 relative to the length of the element; 0 and NaN stand for that length.
/// @param[in,out] metrics  a tensor per node, 3 rows, or empty. Columns up to the largest node are added.
/// @retval 0    success, also for an empty `connect`, whatever the other arguments are
/// @retval -1   `coords` has fewer than 2 rows
/// @retval -2   `connect` does not have 2 rows, or has a node that is no column of `coords`
/// @retval -4   `metrics` is not empty and does not have 3 rows
/// @retval -199 no memory
///
/// On a failure `metrics` is unchanged. Cost: linear in elements.
[[nodiscard]] VORNIK1D_API int metrics_gen_aniso2d(dense2D<double> const& coords,
    dense2D<unsigned> const& connect, double normal_size, dense2D<double>& metrics) noexcept;

/// Generates tensors from the elements of a line in space, with one size in all directions across.
///
/// @param coords       node positions, at least 3 rows; only the first 3 count.
/// @param connect, normal_size  as in the plane.
/// @param[in,out] metrics  a tensor per node, 6 rows, or empty. Columns up to the largest node are added.
/// @retval 0    success, also for an empty `connect`, whatever the other arguments are
/// @retval -1   `coords` has fewer than 3 rows
/// @retval -2   `connect` does not have 2 rows, or has a node that is no column of `coords`
/// @retval -4   `metrics` is not empty and does not have 6 rows
/// @retval -199 no memory
///
/// On a failure `metrics` is unchanged. Cost: linear in elements.
[[nodiscard]] VORNIK1D_API int metrics_gen_aniso3d(dense2D<double> const& coords,
    dense2D<unsigned> const& connect, double normal_size, dense2D<double>& metrics) noexcept;

/// Generates tensors from the elements of a line in space, with two sizes across: `normal_size` in the plane
/// in which the line bends at the end of the element, `binormal_size` perpendicular to that plane.
///
/// If the line does not bend there, or if no element or more than one continues it, the larger size holds in
/// all directions across.
///
/// @param coords, connect, metrics  as for one size across.
/// @param normal_size, binormal_size  the two sizes; each is relative to the element if negative.
/// @retval 0    success, also for an empty `connect`, whatever the other arguments are
/// @retval -1   `coords` has fewer than 3 rows
/// @retval -2   `connect` does not have 2 rows, or has a node that is no column of `coords`
/// @retval -4   `metrics` is not empty and does not have 6 rows
/// @retval -199 no memory; new columns of zeros may have been added
[[nodiscard]] VORNIK1D_API int metrics_gen_aniso3d(dense2D<double> const& coords,
    dense2D<unsigned> const& connect, double normal_size, double binormal_size,
    dense2D<double>& metrics) noexcept;

/// @}
/// @defgroup extrusion Extrusion
/// Lines of new nodes along a vector, about a centre, or about an axis.
///
/// The common cases: `extrude_translate(coords, {0, 0}, {10, 0}, 20, nodes)` makes 20 equal steps, and
/// `extrude_translate(coords, {0, 0}, {10, 0}, {0.1, 1.0}, nodes)` makes steps that grow from 0.1 to 1.
///
/// A line starts at a node of `coords` (`start_node`), or at a point (`start_point`) that becomes a new node.
/// The number of steps is given, or follows from target sizes at the start and the end, in length units of
/// the model along the path. By sizes, steps have equal metric length, as near to 1 as a whole number allows.
///
/// Arguments:
///   - `coords`: in and out, as many rows as the points have; the new nodes are appended. It may be empty if
///     the line starts at a point.
///   - `vector`: the path of a translation.
///   - `center`: the centre of a rotation; in space, a point of its axis.
///   - `angle`: the angle of a rotation in the plane, in radians, counter-clockwise.
///   - `rotation`: the axis of a rotation in space; its length is the angle in radians, by the right-hand
///     rule.
///   - `element_count`: the number of steps. 0 does nothing, with one exception among the statuses.
///   - `sizes`, or `size_a` and `size_b`: the sizes at the start and the end, positive.
///   - `indices`: in and out; the nodes of the line are appended, the start first.
///
/// Statuses:
///   - 0: success
///   - -1: `coords` has another row count than the points
///   - -2: `start_node` is no column of `coords`
///   - -3: by sizes, the path has length 0, or the square of its length underflows
///   - -4, -5: `extrude_translate` by sizes: the size at the start, at the end, is not positive
///   - -5, -6: `extrude_rotate` by sizes: the size at the start, at the end, is not positive
///   - -5: `extrude_rotate` in space from a node by count: `element_count` is 0
///   - -199: no memory, or more nodes than 32-bit numbers can name
///
/// On a failure `coords` and `indices` are unchanged. A translation ends exactly at start plus `vector`. A
/// count of steps may have a path of length 0. A full turn ends at a new node at the place of the start. If
/// the square of the path's length overflows, sizes give -199; if that of `rotation` overflows, the new nodes
/// are NaN. There is no maximum number of steps. Cost: linear in the new nodes.
/// @{

/// From a new node along a vector, in equal steps.
[[nodiscard]] VORNIK1D_API int extrude_translate(dense2D<double>& coords,
    vector_fixed<double, 2> const& start_point, vector_fixed<double, 2> const& vector, unsigned element_count,
    dense1D<unsigned>& indices) noexcept;
/// The same in space.
[[nodiscard]] VORNIK1D_API int extrude_translate(dense2D<double>& coords,
    vector_fixed<double, 3> const& start_point, vector_fixed<double, 3> const& vector, unsigned element_count,
    dense1D<unsigned>& indices) noexcept;
/// From a new node along a vector, by sizes.
[[nodiscard]] VORNIK1D_API int extrude_translate(dense2D<double>& coords,
    vector_fixed<double, 2> const& start_point, vector_fixed<double, 2> const& vector, double size_a,
    double size_b, bool force_even, dense1D<unsigned>& indices) noexcept;
/// The same with a record of sizes.
[[nodiscard]] inline int extrude_translate(dense2D<double>& coords,
    vector_fixed<double, 2> const& start_point, vector_fixed<double, 2> const& vector, end_sizes const& sizes,
    dense1D<unsigned>& indices) noexcept;
/// The same in space.
[[nodiscard]] VORNIK1D_API int extrude_translate(dense2D<double>& coords,
    vector_fixed<double, 3> const& start_point, vector_fixed<double, 3> const& vector, double size_a,
    double size_b, bool force_even, dense1D<unsigned>& indices) noexcept;
/// The same with a record of sizes.
[[nodiscard]] inline int extrude_translate(dense2D<double>& coords,
    vector_fixed<double, 3> const& start_point, vector_fixed<double, 3> const& vector, end_sizes const& sizes,
    dense1D<unsigned>& indices) noexcept;
/// From a node along a vector, in equal steps.
[[nodiscard]] VORNIK1D_API int extrude_translate(dense2D<double>& coords, unsigned start_node,
    vector_fixed<double, 2> const& vector, unsigned element_count, dense1D<unsigned>& indices) noexcept;
/// The same in space.
[[nodiscard]] VORNIK1D_API int extrude_translate(dense2D<double>& coords, unsigned start_node,
    vector_fixed<double, 3> const& vector, unsigned element_count, dense1D<unsigned>& indices) noexcept;
/// From a node along a vector, by sizes.
[[nodiscard]] VORNIK1D_API int extrude_translate(dense2D<double>& coords, unsigned start_node,
    vector_fixed<double, 2> const& vector, double size_a, double size_b, bool force_even,
    dense1D<unsigned>& indices) noexcept;
/// The same with a record of sizes.
[[nodiscard]] inline int extrude_translate(dense2D<double>& coords, unsigned start_node,
    vector_fixed<double, 2> const& vector, end_sizes const& sizes, dense1D<unsigned>& indices) noexcept;
/// The same in space.
[[nodiscard]] VORNIK1D_API int extrude_translate(dense2D<double>& coords, unsigned start_node,
    vector_fixed<double, 3> const& vector, double size_a, double size_b, bool force_even,
    dense1D<unsigned>& indices) noexcept;
/// The same with a record of sizes.
[[nodiscard]] inline int extrude_translate(dense2D<double>& coords, unsigned start_node,
    vector_fixed<double, 3> const& vector, end_sizes const& sizes, dense1D<unsigned>& indices) noexcept;

/// From a new node about a centre, in equal steps.
[[nodiscard]] VORNIK1D_API int extrude_rotate(dense2D<double>& coords,
    vector_fixed<double, 2> const& start_point, vector_fixed<double, 2> const& center, double angle,
    unsigned element_count, dense1D<unsigned>& indices) noexcept;
/// From a new node about a centre, by sizes.
[[nodiscard]] VORNIK1D_API int extrude_rotate(dense2D<double>& coords,
    vector_fixed<double, 2> const& start_point, vector_fixed<double, 2> const& center, double angle,
    double size_a, double size_b, bool force_even, dense1D<unsigned>& indices) noexcept;
/// The same with a record of sizes.
[[nodiscard]] inline int extrude_rotate(dense2D<double>& coords, vector_fixed<double, 2> const& start_point,
    vector_fixed<double, 2> const& center, double angle, end_sizes const& sizes,
    dense1D<unsigned>& indices) noexcept;
/// From a node about a centre, in equal steps.
[[nodiscard]] VORNIK1D_API int extrude_rotate(dense2D<double>& coords, unsigned start_node,
    vector_fixed<double, 2> const& center, double angle, unsigned element_count,
    dense1D<unsigned>& indices) noexcept;
/// From a node about a centre, by sizes.
[[nodiscard]] VORNIK1D_API int extrude_rotate(dense2D<double>& coords, unsigned start_node,
    vector_fixed<double, 2> const& center, double angle, double size_a, double size_b, bool force_even,
    dense1D<unsigned>& indices) noexcept;
/// The same with a record of sizes.
[[nodiscard]] inline int extrude_rotate(dense2D<double>& coords, unsigned start_node,
    vector_fixed<double, 2> const& center, double angle, end_sizes const& sizes,
    dense1D<unsigned>& indices) noexcept;
/// From a new node about an axis, in equal steps.
[[nodiscard]] VORNIK1D_API int extrude_rotate(dense2D<double>& coords,
    vector_fixed<double, 3> const& start_point, vector_fixed<double, 3> const& center,
    vector_fixed<double, 3> const& rotation, unsigned element_count, dense1D<unsigned>& indices) noexcept;
/// From a new node about an axis, by sizes.
[[nodiscard]] VORNIK1D_API int extrude_rotate(dense2D<double>& coords,
    vector_fixed<double, 3> const& start_point, vector_fixed<double, 3> const& center,
    vector_fixed<double, 3> const& rotation, double size_a, double size_b, bool force_even,
    dense1D<unsigned>& indices) noexcept;
/// The same with a record of sizes.
[[nodiscard]] inline int extrude_rotate(dense2D<double>& coords, vector_fixed<double, 3> const& start_point,
    vector_fixed<double, 3> const& center, vector_fixed<double, 3> const& rotation, end_sizes const& sizes,
    dense1D<unsigned>& indices) noexcept;
/// From a node about an axis, in equal steps. This one alone returns -5 for an `element_count` of 0.
[[nodiscard]] VORNIK1D_API int extrude_rotate(dense2D<double>& coords, unsigned start_node,
    vector_fixed<double, 3> const& center, vector_fixed<double, 3> const& rotation, unsigned element_count,
    dense1D<unsigned>& indices) noexcept;
/// From a node about an axis, by sizes.
[[nodiscard]] VORNIK1D_API int extrude_rotate(dense2D<double>& coords, unsigned start_node,
    vector_fixed<double, 3> const& center, vector_fixed<double, 3> const& rotation, double size_a,
    double size_b, bool force_even, dense1D<unsigned>& indices) noexcept;
/// The same with a record of sizes.
[[nodiscard]] inline int extrude_rotate(dense2D<double>& coords, unsigned start_node,
    vector_fixed<double, 3> const& center, vector_fixed<double, 3> const& rotation, end_sizes const& sizes,
    dense1D<unsigned>& indices) noexcept;

/// @}
/// @defgroup measures Measures
/// Lengths, curvatures and normals, and nodes that are moved onto a line.
/// @{

/// Computes the length of a chain.
///
/// @param coords   d x n, d = 2 or 3: node positions, in length units of the model.
/// @param indices  the chain, at least 2 column numbers of `coords`.
/// @param[out] result  the sum of the segment lengths, same unit; on -2 the sum up to the first bad entry.
/// @retval 0    success
/// @retval -1   `coords` has neither 2 nor 3 rows
/// @retval -2   fewer than 2 entries, or one that is no column
///
/// Cost: one pass, no allocation.
[[nodiscard]] VORNIK1D_API int length(
    dense2D<double> const& coords, dense1D<unsigned> const& indices, double& result) noexcept;

/// Computes the length of a mesh of lines: the sum of the distances between the end nodes of its elements.
///
/// @param coords   d x n, d = 2 or 3: node positions, in length units of the model.
/// @param connect  an element per column, its end nodes in rows 0 and 1; it may be empty.
/// @param[out] result  the length, same unit; 0 on a failure.
/// @retval 0    success
/// @retval -1   `coords` has neither 2 nor 3 rows
/// @retval -2   `connect` has 1 row, or an end node that is no column
[[nodiscard]] VORNIK1D_API int length(
    dense2D<double> const& coords, dense2D<unsigned> const& connect, double& result) noexcept;

/// Computes the curvature of a chain at each of its entries: the change of the unit tangent, divided by the
/// mean length of the two segments that meet there.
///
/// @param coords   d x n, d = 2 or 3: node positions, in length units of the model.
/// @param indices  the chain, column numbers of `coords`.
/// @param[out] result  replaced by a value per chain entry, in 1/length; empty on a failure.
/// @retval 0    success, also for an empty chain, whatever `coords` is
/// @retval -1   `coords` has neither 2 nor 3 rows
/// @retval -2   an entry of `indices` is no column of `coords`
/// @retval -199 no memory
///
/// Special cases:
///   - The two end entries get the values of their neighbours, also in a closed chain.
///   - The curvature is 0 next to a segment of length 0, and in a chain of fewer than 3 entries.
///
/// Cost: one pass.
[[nodiscard]] VORNIK1D_API int curvatures(
    dense2D<double> const& coords, dense1D<unsigned> const& indices, dense1D<double>& result) noexcept;

/// Computes the curvature at the nodes of a curve from its tangents there.
///
/// An element between the tangents T and U, at parameters that differ by du, has the curvature 4 |S x D| /
/// (|S|^3 du) with S = T + U and D = U - T. A node gets the mean of its elements, weighted by du.
///
/// @param params    a parameter value per node.
/// @param connect   an element per column, its end nodes in rows 0 and 1.
/// @param tangents  2 or 3 rows, a column per node: the derivative of the curve by the parameter.
/// @param[out] result  replaced by a value per node, in 1/length, 0 for nodes without elements; empty on a
///                 failure, but a zero per node if only the memory for weights is missing.
/// @retval 0    success, also for an empty `connect`, for which `result` is empty
/// @retval -2   `connect` has 1 row, or an end node for which `params` has no value
/// @retval -3   `tangents` has neither 2 nor 3 rows, or not a column per value of `params`
/// @retval -199 no memory
///
/// Special cases:
///   - An element whose tangents are opposite is ignored.
///   - If du is 0 for all elements of a node, the node gets the sum of 4 |S x D| / |S|^3.
///
/// Cost: linear in nodes and elements.
[[nodiscard]] VORNIK1D_API int parametric_curvatures(dense1D<double> const& params,
    dense2D<unsigned> const& connect, dense2D<double> const& tangents, dense1D<double>& result) noexcept;

/// Computes normals at the nodes of a line in the plane: the mean of the unit normals of the elements at each
/// node. The normal of an element points to the left of its direction.
///
/// @param coords       2 rows, a node per column.
/// @param connect      an element per column, its end nodes in rows 0 and 1.
/// @param exponent     the weight of an element of length L is L to this power: 0 gives the plain mean.
/// @param unit_length  whether the means are scaled to length 1; a mean of length 0 stays.
/// @param[out] result  replaced: 2 rows, a vector per node; empty on a failure.
/// @retval 0    success, also without nodes or elements, for which `result` is empty
/// @retval -1   `coords` does not have 2 rows
/// @retval -2   `connect` has 1 row, or an end node that is no column of `coords`
/// @retval -199 no memory
///
/// Special cases:
///   - An exponent that is NaN, or at least the largest double, selects the longest element of a node; minus
///     the largest double or less selects the shortest one. If lengths are equal, the first element counts.
///   - An element whose squared length is 0 is ignored. A node without other elements gets 0.
///
/// Cost: linear in nodes and elements.
[[nodiscard]] VORNIK1D_API int normals(dense2D<double> const& coords, dense2D<unsigned> const& connect,
    double exponent, bool unit_length, dense2D<double>& result) noexcept;

/// Moves nodes onto a parametrised polyline, by linear interpolation between the chain entries around their
/// parameter values.
///
/// @param[in,out] coords  node positions, any number of rows.
/// @param indices      the chain, column numbers of `coords`.
/// @param params       a parameter value per chain entry, non-decreasing.
/// @param new_indices  the nodes to move, column numbers of `coords`.
/// @param new_params   a parameter value per node to move, non-decreasing.
/// @retval 0    success
/// @retval -2   `params` and `indices` differ in size
/// @retval -3   `params` decreases, or contains a NaN among several values
/// @retval -4   `new_params` and `new_indices` differ in size
/// @retval -5   `new_params` decreases
///
/// Special cases:
///   - A value at or below the first one of the chain gives the chain's first node, a value above the last
///     one gives the last node. Of equal chain parameters the first counts.
///   - Nodes are moved one after the other in the matrix from which the chain is read. A moved node that is
///     also a chain entry changes the polyline for the nodes after it.
///   - A node number that is no column of `coords` is ignored, and an empty chain moves nothing; both return
///     0.
///
/// Cost: linear in chain and nodes, no allocation.
[[nodiscard]] VORNIK1D_API int interpolate_coordinates(dense2D<double>& coords,
    dense1D<unsigned> const& indices, dense1D<double> const& params, dense1D<unsigned> const& new_indices,
    dense1D<double> const& new_params) noexcept;

/// @}
/// @defgroup connectivity Connectivity
/// Elements from lists of nodes, their order, and their direction.
///
/// Elements are columns of node numbers: the two end nodes first, in rows 0 and 1, then the interior nodes in
/// order from the first end to the second. No two elements share interior nodes. Cost: linear in elements.
/// @{

/// Appends elements of two nodes along a list of nodes. Each element begins where the one before ends.
///
/// The common case makes elements of a mesh: `indices_to_connectE2(out_indices, connect)`.
///
/// @param indices  the nodes in order along the line: none, or at least 2.
/// @param[in,out] connect  the elements are appended; it is empty or has 2 rows.
/// @retval 0    success
/// @retval -1   there is 1 node
/// @retval -2   `connect` has another row count
/// @retval -199 no memory
///
/// On a failure `connect` is unchanged.
[[nodiscard]] VORNIK1D_API int indices_to_connectE2(
    dense1D<unsigned> const& indices, dense2D<unsigned>& connect) noexcept;
/// The same for elements of three nodes: `indices` is empty or has 3, 5, 7, ... nodes, otherwise -1;
/// `connect` is empty or has 3 rows, otherwise -2.
[[nodiscard]] VORNIK1D_API int indices_to_connectE3(
    dense1D<unsigned> const& indices, dense2D<unsigned>& connect) noexcept;
/// The same for elements of four nodes: `indices` is empty or has 4, 7, 10, ... nodes, otherwise -1;
/// `connect` is empty or has 4 rows, otherwise -2.
[[nodiscard]] VORNIK1D_API int indices_to_connectE4(
    dense1D<unsigned> const& indices, dense2D<unsigned>& connect) noexcept;

/// Appends two elements of two nodes for each element of three, in the order of travel.
///
/// @param connect_in   3 rows, or empty.
/// @param[in,out] connect_out  0 or 2 rows; the elements are appended.
/// @retval 0    success, also for an empty `connect_in`
/// @retval -1   `connect_in` does not have 3 rows
/// @retval -2   `connect_out` has neither 0 nor 2 rows, even if it is empty
/// @retval -199 no memory
///
/// On a failure `connect_out` is unchanged.
[[nodiscard]] VORNIK1D_API int split_into_linear(
    dense2D<unsigned> const& connect_in, dense2D<unsigned>& connect_out) noexcept;

/// Cuts elements down to their two end nodes. Interior nodes stay in the coordinates without an element.
///
/// @retval 0    success, also for an empty `connect`
/// @retval -1   `connect` has fewer than 3 rows
[[nodiscard]] VORNIK1D_API int convert_into_linear(dense2D<unsigned>& connect) noexcept;

/// Gives each element interior nodes at equal distances on the straight line between its end nodes.
///
/// @param[in,out] coords  1 to 3 rows, a node per column; the new nodes are appended, element after element.
/// @param connect_in   an element per column, its end nodes in rows 0 and 1; further rows are ignored.
/// @param extra_nodes  interior nodes per element: 1 for quadratic, 2 for cubic elements.
/// @param[out] connect_out  emptied, then replaced: `extra_nodes` + 2 rows, a column per element.
/// @retval 0    success, also without elements or extra nodes, for which `connect_out` stays empty
/// @retval -1   `coords` has another row count, tested before `connect_out` is emptied
/// @retval -2   `connect_in` has 1 row, or an end node that is no column of `coords`
/// @retval -199 no memory, or more nodes than 32-bit numbers can name
///
/// On a failure `coords` is unchanged.
[[nodiscard]] VORNIK1D_API int convert_into_high_order(dense2D<double>& coords,
    dense2D<unsigned> const& connect_in, unsigned extra_nodes, dense2D<unsigned>& connect_out) noexcept;

/// The same in place: `connect` has `extra_nodes` + 2 rows afterwards. It is unchanged on a failure, and if
/// `extra_nodes` is 0.
///
/// @retval 0    success
/// @retval -1   `coords` has neither 1, 2 nor 3 rows
/// @retval -2   `connect` has 1 row, or an end node that is no column of `coords`
/// @retval -199 no memory, or more nodes than 32-bit numbers can name
[[nodiscard]] VORNIK1D_API int convert_into_high_order(
    dense2D<double>& coords, dense2D<unsigned>& connect, unsigned extra_nodes) noexcept;
/// The same with 1 extra node, in the middle of each element, and the same statuses.
[[nodiscard]] VORNIK1D_API int convert_into_quadratic(
    dense2D<double>& coords, dense2D<unsigned>& connect) noexcept;
/// The same with 2 extra nodes, at the thirds of each element, and the same statuses.
[[nodiscard]] VORNIK1D_API int convert_into_cubic(
    dense2D<double>& coords, dense2D<unsigned>& connect) noexcept;

/// Turns all elements round: reverses the order of their nodes.
///
/// It is meant for elements of two nodes. Others lose the order in which the end nodes come first. A matrix
/// of fewer than 2 rows stays as it is. Cost: linear in elements.
/// @return 0.
VORNIK1D_API int flip(dense2D<unsigned>& connect) noexcept;

/// Gives the elements of a line one direction: each then starts where the one before ends.
///
/// The common case; `neighbors_of` is in `<vornik1d/helpers.h>`:
///
/// ```cpp
/// dense2D<unsigned> neighbors = neighbors_of(connect);
/// int turned = mesh_reorient(connect, neighbors, 0, 1);
/// ```
///
/// @param[in,out] connect    an element of two nodes per column, in rows 0 and 1.
/// @param[in,out] neighbors  as many rows and columns as `connect`: row i of column e is the element that
///                 meets e at the node opposite local node i, so row 0 at its second node, row 1 at its
///                 first. A number that is no column means no neighbour. It is kept in step with `connect`.
/// @param start            the element that keeps its direction.
/// @param all_components   0: only the component that contains `start` is treated. Otherwise each other
///                 component that has an element after `start` is treated too, and is oriented like the first
///                 of them.
/// @return the number of turns, in which an element of a branching line can count more than once; 0 without
///         columns, whatever the other arguments are
/// @retval -1   `connect` has fewer than 2 rows, or a node 4294967295
/// @retval -2   `neighbors` has another shape, or names a neighbour that does not have the node in question;
///              turns made before that are kept
/// @retval -3   `start` is no column
/// @retval -199 no memory
///
/// Cost: linear in elements.
[[nodiscard]] VORNIK1D_API int mesh_reorient(
    dense2D<unsigned>& connect, dense2D<unsigned>& neighbors, unsigned start, int all_components) noexcept;

/// @}
/// @defgroup parameters Parameters
/// Lines on the parameter axis.
/// @{

/// Options of `subdivide`.
struct subdivide_options
{
    bool round_up = false;            ///< Asks for elements that are not longer than their sizes.
    bool force_even = false;          ///< Asks for an even number of elements.
    unsigned min_elements = 1;        ///< Minimum number of elements, at least 1. Argument 6 in a status.
    unsigned max_elements = no_limit; ///< Maximum; `round_up` may exceed it by one, `force_even` by one more.
};

/// Meshes a line on the parameter axis: `mesh_line` in one dimension, by sizes alone.
///
/// @param[in,out] params  the parameter value of each point; the new points are appended.
/// @param[in,out] sizes   the target size of each point, in units of the parameter, as many as `params`; the
///                 sizes of the new points are appended.
/// @param indices     the chain, at least 2 entries of `params`; values may rise and fall along it.
/// @param[out] new_indices  the points of the mesh are appended: the chain's first one, the new ones, its
///                 last.
/// @param options     see `subdivide_options`.
/// @retval 0    success
/// @retval -2   fewer than 2 chain entries, or one that is no entry of `params`; tested last, `sizes` is
///              shorter than `params`
/// @retval -6   `min_elements` is 0 or above `max_elements`
/// @retval -199 no memory, or more points than 32-bit numbers can name
///
/// On a failure nothing has changed.
///
/// Special cases:
///   - Sizes of opposite sign have no metric length: there are `min_elements` elements, which may have length
///     0.
///   - If memory for the new points alone runs out, the result is 0 and the mesh is a single element. This
///     can happen with sizes that are far too small; `max_elements` protects from it.
///
/// Cost: linear in chain plus mesh.
[[nodiscard]] inline int subdivide(dense1D<double>& params, dense1D<double>& sizes,
    dense1D<unsigned> const& indices, dense1D<unsigned>& new_indices,
    subdivide_options const& options = {}) noexcept;

/// The same with all arguments in a row.
[[nodiscard]] VORNIK1D_API int subdivide(dense1D<double>& params, dense1D<double>& sizes,
    dense1D<unsigned> const& indices, bool round_up, bool force_even, unsigned min_elements,
    unsigned max_elements, dense1D<unsigned>& new_indices) noexcept;

/// Sorts parameter values, and nodes along with them, in place: by parameter, and nodes of equal parameter by
/// number. NaNs come last, also by number.
///
/// @retval 0    success
/// @retval -1   `params` and `indices` differ in size
/// @retval -199 no memory. On a failure both are unchanged
///
/// Cost: n log n for n nodes.
[[nodiscard]] VORNIK1D_API int sort(dense1D<double>& params, dense1D<unsigned>& indices) noexcept;

/// @}

/// The version of the library: "5.6.0.0".
[[nodiscard]] VORNIK1D_API char const* version() noexcept;

} // namespace trelk::vornik1d

#include <vornik1d/option_overloads.h>
