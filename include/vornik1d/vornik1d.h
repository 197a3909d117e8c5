#pragma once

#include <trelk/dense1D.h>
#include <trelk/dense2D.h>
#include <trelk/vector_fixed.h>

/// Marks the functions that the shared library exports.
#define VORNIK1D_API __attribute__((visibility("default")))

/// Line meshes: nodes in the plane or in space, joined by line elements that follow target sizes.
///
/// Containers. Matrices hold one thing per column. `coords` holds the positions of nodes, one node per
/// column, 2 rows in the plane, 3 in space; a node number is a column number. A chain is a list of node
/// numbers in the order of travel; sizes and parameters that go with it have one value per chain entry
/// (entry i of the list, not node number indices[i]). Copies of containers are views of the same values;
/// `copy` gives values of one's own.
///
/// Metric length is length in units of the local target size, which runs linearly between two nodes: a
/// segment of length d between sizes h0 and h1 has metric length d * ln(h1/h0) / (h1 - h0). A line is cut
/// into equal steps of metric length, as near to 1 as a whole number of elements allows: the boundary between
/// k and k + 1 elements is at metric length sqrt(k * (k + 1)), and where an even number is asked for, that
/// between k and k + 2 is at sqrt(k * (k + 2)).
///
/// Status. Functions return 0 for success, minus the position of the argument at fault, or `no_storage`. On a
/// failure the arguments are as they were, except outputs documented as emptied.
///
/// Functions throw nothing, keep no state and no reference to an argument. Calls may run side by side if none
/// writes values that another one uses. No argument makes them read or write outside the containers.
///
/// An output may be one object with an input or another output: one that is emptied first is then empty as an
/// input too. It may also be a view of the same values, provided that no value you still need lies past its end:
/// a list that grows writes there, and a list that is emptied first writes over what it held.
namespace trelk::vornik1d {

/// Status of a call for which storage is not available.
constexpr int no_storage = -199;

/// @defgroup line_meshing Line meshing
/// One line, from its first node to its last one.
/// @{

/// Meshes a polyline by target sizes given at its nodes.
///
/// The mesh runs from the first to the last entry of the chain. The chain's interior nodes do not belong to
/// it, unless a positive `deviation_tolerance` pins them. New nodes are placed on the chain, and then usually
/// once more, on the chords between these: so they lie near the chain and need not lie on it. A chain of 2
/// entries and a mesh of `min_elements` take one placement.
///
/// A chain whose first and last entries are one node is meshed like any other: the mesh begins and ends at
/// that node. Give it `min_elements` 3. A single element from a node to itself has no direction, so every
/// deviation from it counts as 0, and the line is left as that element.
///
/// `deviation_tolerance` selects one of three ways to treat the chain's bends:
///
///   - negative: sizes are first bounded by the chain's curvature. At curvature c the bound h obeys
///     (h * c)^2 / 8 = -`deviation_tolerance`: a chord's sagitta relative to the radius of curvature. The
///     bound is `min_size` where it would be less; sizes below `min_size` are not raised.
///   - 0, NaN, plus or minus the largest double: sizes alone count, and the mesh may cut corners.
///   - positive: where an interior node of the chain lies at this distance or farther from the mesh (in
///     length units of the model), the line is meshed anew, with more elements or in two parts that meet at
///     that node. Distance is measured from the infinite line through the element that covers the node's
///     parameter value, so a spike along that line goes unseen. `min_elements` and `max_elements` do not bind
///     the new mesh, `force_even` does. A mesh that has `max_elements` elements or more before this stage is
///     left as it is. A part that more elements do not bring nearer is split after a thousand trials, or
///     after fewer when such trials have made ten million elements along the line.
///
/// @param[in,out] coords  d x n, d = 2 or 3: node positions, in length units of the model. New nodes are
///                 appended as columns; the old ones stay as they are.
/// @param indices  the chain, at least 2 column numbers of `coords`.
/// @param params   a parameter value per chain entry, non-decreasing.
/// @param sizes    a target size per chain entry, positive and finite, in length units of the model; further
///                 values are ignored.
/// @param force_even  asks for an even number of elements. It wins over `max_elements`, which an odd count
///                 may thus pass by one.
/// @param min_elements  minimum number of elements, at least 1.
/// @param max_elements  maximum number of elements, at least `min_elements`; 4294967295 sets no limit. It
///                 protects the caller's memory from sizes that are far too small; under a positive tolerance
///                 only as far as the first mesh goes, since parts that are meshed anew have no limit.
/// @param deviation_tolerance  see above.
/// @param min_size  floor of the bound on sizes by curvature; used only with a negative tolerance.
/// @param[out] out_indices  the mesh's nodes in the order of travel are appended.
/// @param[out] out_params   is emptied before all checks, then replaced: the parameter value at each mesh
///                 node, from the first to the last value of `params`.
/// @param[out] out_sizes    the target size at each mesh node is appended.
/// @return 0;
///         -1: `coords` has neither 2 nor 3 rows;
///         -2: fewer than 2 chain entries, or one that is no column of `coords` (tested last);
///         -3: `params` does not have one value per chain entry, or decreases, or holds a NaN;
///         -4: `sizes` has fewer values than the chain, or one that is not positive and finite;
///         -6: `min_elements` is 0 or above `max_elements`;
///         -199: no storage, or more nodes than 32-bit numbers can name.
///
/// A count of new nodes that, with the columns of `coords`, 32-bit numbers cannot name gives -199 before anything
/// is placed. A lack of memory for the parameters and sizes of new nodes is not reported: the result is 0, and
/// the mesh may be coarser than its sizes ask for, down to the chord from the first node to the last.
///
/// Cost: linear in chain plus mesh for each placement. There are usually two placements; there is one more as long as the number of nodes falls, as it can
/// many times over for targets that differ widely from entry to entry. Under a positive tolerance, all that
/// again for each part that is meshed anew. Peak memory is about 1.3 times chain plus mesh, and the number of
/// allocations grows with the logarithm of their sizes.
[[nodiscard]] VORNIK1D_API int mesh_line(dense2D<double>& coords, dense1D<unsigned> const& indices,
    dense1D<double> const& params, dense1D<double> const& sizes, bool force_even, unsigned min_elements,
    unsigned max_elements, double deviation_tolerance, double min_size, dense1D<unsigned>& out_indices,
    dense1D<double>& out_params, dense1D<double>& out_sizes) noexcept;

/// Meshes a polyline as above, with its normalised chord length for parameter: 0 at the first entry, 1 at the
/// last one.
///
/// @return 0;
///         -1: `coords` has neither 2 nor 3 rows;
///         -2: fewer than 2 chain entries, one that is no column of `coords`, or a chain of length 0 or NaN;
///         -3: `sizes` has fewer values than the chain, or one that is not positive and finite; also a chain
///         that is infinitely long before its last entry, which leaves no parameters for it;
///         -5: `min_elements` is 0 or above `max_elements`;
///         -199: no storage, or more nodes than 32-bit numbers can name.
///
/// `out_params` is as it was on -1 and -2, and where storage for the parameters themselves is not available;
/// every other failure leaves it empty.
[[nodiscard]] VORNIK1D_API int mesh_line(dense2D<double>& coords, dense1D<unsigned> const& indices,
    dense1D<double> const& sizes, bool force_even, unsigned min_elements, unsigned max_elements,
    double deviation_tolerance, double min_size, dense1D<unsigned>& out_indices, dense1D<double>& out_params,
    dense1D<double>& out_sizes) noexcept;

/// Meshes a polyline as above, with metric tensors given at its nodes instead of sizes.
///
/// A tensor M measures a vector d as sqrt(d^T M d), so an element is as long as it should be where that is 1.
/// It is packed by columns of its upper triangle: (m00, m01, m11) in the plane, (m00, m01, m11, m02, m12,
/// m22) in space. Between two nodes the size in the direction of the segment runs linearly, as with sizes;
/// the tensors are interpolated in their common basis, in which the sizes along its directions run linearly.
///
/// A positive `deviation_tolerance` is a length of the model, not one in the metric. A negative one bounds
/// the sizes along the axes of each tensor; the axes stay.
///
/// @param metrics  3 or 6 rows for 2 or 3 rows of `coords`: a tensor per chain entry, finite and positive
///                 definite; further columns are ignored.
/// @param[out] out_metrics  the tensor at each mesh node is appended as a column.
/// @return as above, with
///         -4: `metrics` has too few columns, or a tensor that is not finite and positive definite, or the
///         wrong row count;
///         -11: `out_metrics` is not empty and has the wrong row count.
/// The other arguments are as above. A line with tensors that cannot be reduced to a common basis is left
/// without new nodes: tensors that are all but singular, or with sizes outside about 1e-18 to 1e18, since
/// squares of squares of them are formed.
[[nodiscard]] VORNIK1D_API int mesh_line(dense2D<double>& coords, dense1D<unsigned> const& indices,
    dense1D<double> const& params, dense2D<double> const& metrics, bool force_even, unsigned min_elements,
    unsigned max_elements, double deviation_tolerance, double min_size, dense1D<unsigned>& out_indices,
    dense1D<double>& out_params, dense2D<double>& out_metrics) noexcept;

/// Meshes a polyline by tensors, with its normalised chord length for parameter.
///
/// @return as the overload with sizes: -3 for `metrics`, -5 for the element limits, -10 for `out_metrics`.
[[nodiscard]] VORNIK1D_API int mesh_line(dense2D<double>& coords, dense1D<unsigned> const& indices,
    dense2D<double> const& metrics, bool force_even, unsigned min_elements, unsigned max_elements,
    double deviation_tolerance, double min_size, dense1D<unsigned>& out_indices, dense1D<double>& out_params,
    dense2D<double>& out_metrics) noexcept;

/// @}
/// @defgroup straight_lines Straight lines
/// Segments, each meshed on its own.
/// @{

/// Meshes each segment of a polyline on its own by the sizes at its ends, so that all chain nodes stay.
///
/// @param[in,out] coords  d x n, d = 2 or 3: node positions. New nodes are appended as columns.
/// @param indices  the chain, at least 2 column numbers of `coords`, or none.
/// @param sizes    a target size per chain entry, positive and finite; further values are ignored.
/// @param force_even  asks for an even number of elements on each segment.
/// @param[out] out_indices  the mesh's nodes in the order of travel are appended.
/// @return 0, also for an empty chain, which changes nothing;
///         -1: `coords` has neither 2 nor 3 rows (tested last);
///         -2: one chain entry, or one that is no column of `coords`;
///         -3: `sizes` has fewer values than the chain, or one that is not positive and finite;
///         -199: no storage, or more nodes than 32-bit numbers can name.
/// On a failure `coords` and `out_indices` are as they were.
///
/// Cost: linear in chain plus mesh.
[[nodiscard]] VORNIK1D_API int mesh_straight(dense2D<double>& coords, dense1D<unsigned> const& indices,
    dense1D<double> const& sizes, bool force_even, dense1D<unsigned>& out_indices) noexcept;

/// The same by metric tensors, one column per chain entry, 3 or 6 rows for 2 or 3 rows of `coords`; -3 is
/// also their wrong row count.
[[nodiscard]] VORNIK1D_API int mesh_straight(dense2D<double>& coords, dense1D<unsigned> const& indices,
    dense2D<double> const& metrics, bool force_even, dense1D<unsigned>& out_indices) noexcept;

/// The same by one size for all segments: the length of the chain over `element_count`. Each segment is cut
/// into a whole number of elements of about that size, so their sum can differ from `element_count`.
///
/// @return 0, also for an `element_count` of 0, whatever the rest is; -2: fewer than 2 chain entries, or a
///         bad one; -3: a chain of length 0; otherwise as above.
[[nodiscard]] VORNIK1D_API int mesh_straight(dense2D<double>& coords, dense1D<unsigned> const& indices,
    unsigned element_count, bool force_even, dense1D<unsigned>& out_indices) noexcept;

/// Meshes the segment from `node_a` to `node_b` by the sizes at its ends.
///
/// @return 0; -2, -3: `node_a`, `node_b` is no column of `coords`; -4, -5: `size_a`, `size_b` is not
///         positive, -3 also if one is infinite; otherwise as the first overload.
[[nodiscard]] VORNIK1D_API int mesh_straight(dense2D<double>& coords, unsigned node_a, unsigned node_b,
    double size_a, double size_b, bool force_even, dense1D<unsigned>& out_indices) noexcept;

/// Cuts the segment from `node_a` to `node_b` into `element_count` equal elements.
///
/// @return 0, also for an `element_count` of 0, whatever the rest is; -2, -3: `node_a`, `node_b` is no column
///         of `coords`; -4: they are at one place; otherwise as the first overload.
[[nodiscard]] VORNIK1D_API int mesh_straight(dense2D<double>& coords, unsigned node_a, unsigned node_b,
    unsigned element_count, dense1D<unsigned>& out_indices) noexcept;

/// Cuts the two segments from `node_a` over `node_b` to `node_c` into about `element_count` elements of one
/// size.
///
/// @return as above; -4: `node_c` is no column of `coords`; -3 also for three nodes at one place.
[[nodiscard]] VORNIK1D_API int mesh_straight(dense2D<double>& coords, unsigned node_a, unsigned node_b,
    unsigned node_c, unsigned element_count, dense1D<unsigned>& out_indices) noexcept;

/// @}
/// @defgroup splines Splines
/// Smooth curves through chains of nodes.
/// @{

/// Point of a spline at a parameter value.
///
/// The spline is a chain of cubics, one span from each node to the next, each built from its two nodes and
/// one guide node on either side; no system of equations is solved. The tangent at a node has the direction
/// of q u + p v, where u and v are the unit vectors along the chords before and behind it, p and q the
/// lengths of these, which is that of the circle through the three nodes; so the spline turns without a
/// corner. Beside a chord at most a hundredth as long as its own, of length l, a span takes the direction of
/// l u + v instead: that depends on units, and there may be a corner. A span has no tangent at an end that is
/// its own guide node, by number and not by place, nor where the tangent would point against the chord; it is
/// quadratic then, or straight without both.
///
/// @param coords  2 or 3 rows, as many as `point` has: node positions.
/// @param i0, i3  the guide nodes before and behind the span; i0 = i1 and i3 = i2 declare a free end.
/// @param i1, i2  the nodes from which and to which the span runs.
/// @param t       0 gives node i1 exactly, 1 node i2 but for rounding; what is outside extrapolates the
///                 cubic.
/// @param[out] point  the position; as it was on a failure.
/// @return 0; -1: `coords` has another row count than `point`; -2, -3, -4, -5: i0, i1, i2, i3 is no column of
///         `coords`.
///
/// Cost: constant, no allocation.
[[nodiscard]] VORNIK1D_API int spline_point(dense2D<double> const& coords, unsigned i0, unsigned i1,
    unsigned i2, unsigned i3, double t, vector_fixed<double, 2>& point) noexcept;
/// The same in space.
[[nodiscard]] VORNIK1D_API int spline_point(dense2D<double> const& coords, unsigned i0, unsigned i1,
    unsigned i2, unsigned i3, double t, vector_fixed<double, 3>& point) noexcept;

/// Meshes the spline through a chain of nodes by target sizes given at these, bounded by the curvature of the
/// spline and by a limit on their growth.
///
/// The first and the last chain entry are guide nodes: they shape the tangents at the curve's ends and are
/// not on it. An open curve through the nodes a, b, ..., y, z is the chain a, a, b, ..., y, z, z; a closed
/// one through a, b, ..., z and back to a is the chain z, a, b, ..., z, a, b. The mesh runs from the second
/// to the last but one entry and holds no other chain node.
///
/// New nodes do not lie on the spline but on chords of a polyline of samples of it, ten times closer to it
/// than `deviation_tolerance` asks of the mesh. That tolerance selects how curvature bounds the sizes:
///
///   - positive: an element's chord is to stay within this distance (in length units of the model) of the
///     curve. At curvature c the bound is 2 sqrt(e (2 - e)) / c with e = c * `deviation_tolerance`; where e
///     is 1 or more there is none.
///   - negative: the same with e = -`deviation_tolerance` at every curvature: the distance relative to the
///     radius of curvature.
///   - 0, NaN, plus or minus the largest double: no bound, and two samples per span.
///
/// The curvature is its mean between two nodes at which the chain bends, so where it peaks between nodes that
/// are far apart, the mesh strays farther: up to about twice the tolerance at the nose of an airfoil of 61
/// nodes, 1.2 times with 241. Nodes closer together than 1e-12 length units of the model do not bend. Sizes
/// are also bounded by the length of the curve; they run linearly between samples.
///
/// @param[in,out] coords  d x n, d = 2 or 3: node positions, in length units of the model. New nodes are
///                 appended as columns; the old ones stay as they are.
/// @param indices  the chain with its guide nodes, at least 4 column numbers of `coords`.
/// @param sizes    a target size per chain entry, positive and finite, in length units of the model; those of
///                 the guide nodes have no effect, and further values are ignored.
/// @param force_even, min_elements, max_elements  as in `mesh_line`.
/// @param deviation_tolerance  see above.
/// @param min_size  floor of the bound by curvature, at least 0; sizes below it are not raised. Half of it is
///                 also the least step of samples, but for one between any two nodes; so it is what keeps
///                 their number, which has no other limit, and that of the elements within reason where the
///                 curve has a kink or the tolerance is tiny. Samples along a span take its length over the
///                 step, which at curvature c is near sqrt(0.8 * tolerance / c), or sqrt(0.8 * -tolerance) /
///                 c for a negative one. Curvature has no bound where nodes are at one place or turn back on
///                 themselves; without `min_size` such a curve can get `max_elements` elements.
/// @param default_size  if this and `max_gradation` are positive: the size everywhere but at the curve nodes,
///                 before bounds. Otherwise sizes run linearly from node to node.
/// @param max_gradation  if positive and below the largest double: sizes grow along the curve by no more than
///                 this per length; not across the joint of a closed one.
/// @param[out] out_indices  the mesh's nodes in the order of travel are appended.
/// @param[out] out_params   the parameter of each mesh node is appended: from 0 to 1, near the normalised
///                 chord length along the chain.
/// @param[out] out_sizes    the target size at each mesh node is appended, after bounds.
/// @param[out] deviation    the largest distance of a sample from the line through the ends of its span,
///                 which tells how far the spline strays from the polyline through its nodes, not how far the
///                 mesh does; 0 on a failure. If it is an entry of `coords` or of an output, which may move,
///                 it stays 0.
/// @return 0;
///         -1: `coords` has neither 2 nor 3 rows; also, tested last, chain nodes whose positions are not
///         finite, or so far apart that the curve's length is not;
///         -2: fewer than 4 chain entries, or one that is no column of `coords`;
///         -3: `sizes` has fewer values than the chain, or one that is not positive and finite;
///         -5: `min_elements` is 0 or above `max_elements`;
///         -8: `min_size` is negative or NaN;
///         -199: no storage, or more samples or nodes than 32-bit numbers can name.
/// On a failure all arguments but `deviation` are as they were. A lack of memory for the parameters and sizes of
/// new nodes is not reported: the mesh is a single element then.
///
/// Cost and memory: linear in chain, samples and mesh.
[[nodiscard]] VORNIK1D_API int mesh_spline(dense2D<double>& coords, dense1D<unsigned> const& indices,
    dense1D<double> const& sizes, bool force_even, unsigned min_elements, unsigned max_elements,
    double deviation_tolerance, double min_size, double default_size, double max_gradation,
    dense1D<unsigned>& out_indices, dense1D<double>& out_params, dense1D<double>& out_sizes,
    double& deviation) noexcept;

/// Meshes a spline as above, with metric tensors given at its nodes instead of sizes.
///
/// Curvature bounds the sizes of each tensor along its own axes, and `default_size` stands for the isotropic
/// tensor of that size. Growth is limited in the metric: of two tensors at a distance l in one of them the
/// other is intersected with that one divided by (1 + `max_gradation` * l)^2: homogeneous growth as in
/// Alauzet, Size gradation control of anisotropic meshes, 2010.
///
/// @param metrics  3 or 6 rows for 2 or 3 rows of `coords`: a tensor per chain entry, finite and positive
///                 definite, packed as in `mesh_line`; further columns are ignored.
/// @param[out] out_metrics  the tensor at each mesh node is appended as a column.
/// @return as above, with
///         -3: `metrics` has too few columns, or a tensor that is not finite and positive definite, or the
///         wrong row count;
///         -13: `out_metrics` is not empty and has the wrong row count.
/// A curve on which a new node falls between tensors that cannot be reduced to a common basis becomes a
/// single element.
[[nodiscard]] VORNIK1D_API int mesh_spline(dense2D<double>& coords, dense1D<unsigned> const& indices,
    dense2D<double> const& metrics, bool force_even, unsigned min_elements, unsigned max_elements,
    double deviation_tolerance, double min_size, double default_size, double max_gradation,
    dense1D<unsigned>& out_indices, dense1D<double>& out_params, dense2D<double>& out_metrics,
    double& deviation) noexcept;

/// @}
/// @defgroup metric_interpolation Metric interpolation
/// Sizes and tensors at new parameter values.
/// @{

/// Carries values from one non-decreasing list of parameters to another by linear interpolation.
///
/// @param params      at least 2 parameter values at which `sizes` are known, non-decreasing.
/// @param sizes       a value per entry of `params`. Between two values that are not both positive stands 0.
/// @param new_params  the parameter values wanted, non-decreasing, within the range of `params`.
/// @param[out] new_sizes  is replaced: a value per entry of `new_params`; empty on a failure.
/// @return 0, also for empty `new_params`, whatever the rest is;
///         -1: `params` has fewer than 2 values, or decreases;
///         -2: `sizes` does not have as many values as `params`;
///         -3: `new_params` decreases, or leaves the range of `params`;
///         -199: no storage.
///
/// Cost: linear in old and new values.
[[nodiscard]] VORNIK1D_API int interpolate_metrics(dense1D<double> const& params,
    dense1D<double> const& sizes, dense1D<double> const& new_params, dense1D<double>& new_sizes) noexcept;

/// The same for metric tensors, one per column: 3 rows in the plane, 6 in space; 1 row is a list of values,
/// and 0 rows give 0 rows.
///
/// Tensors are interpolated in their common basis, in which the sizes along its directions run linearly; at
/// the parameters given they come out bit for bit. Where a pair cannot be reduced, the tensor of the entry
/// before is repeated, or zeros for the first entry.
///
/// @return as above; -2 also when `metrics` has another row count.
[[nodiscard]] VORNIK1D_API int interpolate_metrics(dense1D<double> const& params,
    dense2D<double> const& metrics, dense1D<double> const& new_params, dense2D<double>& new_metrics) noexcept;

/// @}
/// @defgroup metric_generation Metric generation
/// Each tensor is merged into the column of its node: there stands the intersection then, in which every
/// vector is at least as long as in either; of two tensors with unlimited sizes, their sum. So calls can be
/// chained, and elements that meet at a node combine there; a column of zeros asks for nothing. A size or an
/// element so short, below 1e-154, that the inverse of its square is no finite number gives a tensor that is
/// not finite either, and so is what it is merged into.
/// Cost: linear in elements or in the nodes treated.
/// @{

/// Tensors from a direction per node, in the plane.
///
/// @param directions   2 rows, a vector per node. The sizes are those for a vector of length 1; a longer one
///                 makes both smaller by its length.
/// @param indices      the nodes to treat, column numbers of `directions`.
/// @param size_along, size_across  the sizes along the vector and across it, positive.
/// @param[in,out] metrics  a tensor per node, 3 rows, or empty. Columns up to the largest node are added.
/// @return 0, also for empty `indices`, whatever the rest is;
///         -1: `directions` does not have 2 rows;
///         -2: an entry of `indices` is no column of `directions`;
///         -3, -4: `size_along`, `size_across` is not positive;
///         -5: `metrics` is not empty and does not have 3 rows;
///         -199: no storage.
/// On a failure `metrics` is as it was.
[[nodiscard]] VORNIK1D_API int metrics_gen_aniso2d(dense2D<double> const& directions,
    dense1D<unsigned> const& indices, double size_along, double size_across,
    dense2D<double>& metrics) noexcept;

/// Tensors from the elements of a line in the plane: at both ends of each, the size along it is its length.
/// An element whose squared length is 0 or not finite changes nothing.
///
/// @param coords       node positions, at least 2 rows; only the first 2 count.
/// @param connect      2 rows, an element per column.
/// @param normal_size  the size across: in length units of the model, or if negative, relative to the
///                 element's length; that length if it is 0 or NaN.
/// @param[in,out] metrics  a tensor per node, 3 rows, or empty. Columns up to the largest node are added.
/// @return 0, also for an empty `connect`, whatever the rest is;
///         -1: `coords` has fewer than 2 rows;
///         -2: `connect` does not have 2 rows, or has a node that is no column of `coords`;
///         -4: `metrics` is not empty and does not have 3 rows;
///         -199: no storage.
/// On a failure `metrics` is as it was.
[[nodiscard]] VORNIK1D_API int metrics_gen_aniso2d(dense2D<double> const& coords,
    dense2D<unsigned> const& connect, double normal_size, dense2D<double>& metrics) noexcept;

/// The same in space: `coords` has at least 3 rows, of which 3 count, and `metrics` has 6. `normal_size` is
/// the size in all directions across.
[[nodiscard]] VORNIK1D_API int metrics_gen_aniso3d(dense2D<double> const& coords,
    dense2D<unsigned> const& connect, double normal_size, dense2D<double>& metrics) noexcept;

/// The same in space with two sizes across, each as `normal_size` above: one in the plane in which the line
/// bends at the element's end, one perpendicular to it. Where it does not bend, or where no element or more
/// than one goes on, the larger one holds in all directions across.
///
/// @return as above, also -4 for `metrics`; after a -199 new columns of zeros may have been added.
[[nodiscard]] VORNIK1D_API int metrics_gen_aniso3d(dense2D<double> const& coords,
    dense2D<unsigned> const& connect, double normal_size, double binormal_size,
    dense2D<double>& metrics) noexcept;

/// @}
/// @defgroup chains Chain operations
/// What is known along a chain, and nodes that are moved onto one.
/// @{

/// Discrete curvature of a chain at each of its entries: the change of the unit tangent, divided by the mean
/// length of the two segments that meet there.
///
/// The two end entries take the values of their neighbours, also in a closed chain. Beside a segment of
/// length 0, and in a chain of fewer than 3 entries, the curvature is 0.
///
/// @param coords   d x n, d = 2 or 3: node positions, in length units of the model.
/// @param indices  the chain, column numbers of `coords`.
/// @param[out] result  is replaced: a value per chain entry, in 1/length; empty on failure.
/// @return 0, also for an empty chain, whatever `coords` is;
///         -1: `coords` has neither 2 nor 3 rows;
///         -2: an entry of `indices` is no column of `coords`;
///         -199: no storage.
///
/// One pass.
[[nodiscard]] VORNIK1D_API int curvatures(
    dense2D<double> const& coords, dense1D<unsigned> const& indices, dense1D<double>& result) noexcept;

/// Moves nodes onto a parametrised polyline, by linear interpolation between the chain entries around their
/// parameter values.
///
/// A value at or below the first one of the chain gives the chain's first node, one above the last one its
/// last node; of equal chain parameters the first counts. The nodes are moved one after the other in the
/// matrix that the chain is read from: one that is a chain entry too changes the polyline for those behind
/// it.
///
/// @param[in,out] coords  node positions, any number of rows.
/// @param indices      the chain, column numbers of `coords`.
/// @param params       a parameter value per chain entry, non-decreasing.
/// @param new_indices  the nodes to move, column numbers of `coords`.
/// @param new_params   a parameter value per node to move, non-decreasing.
/// @return 0;
///         -2: `params` and `indices` differ in size;
///         -3: `params` decreases, or holds a NaN among several values;
///         -4: `new_params` and `new_indices` differ in size;
///         -5: `new_params` decreases.
///
/// A node number that is no column of `coords` is passed over, and an empty chain moves nothing; both give 0.
///
/// Cost: linear in chain and nodes. No allocation.
[[nodiscard]] VORNIK1D_API int interpolate_coordinates(dense2D<double>& coords,
    dense1D<unsigned> const& indices, dense1D<double> const& params, dense1D<unsigned> const& new_indices,
    dense1D<double> const& new_params) noexcept;

/// @}
/// @defgroup measures Measures
/// Lengths, curvatures and normals.
/// @{

/// Length of a chain.
///
/// @param coords   d x n, d = 2 or 3: node positions, in length units of the model.
/// @param indices  the chain, at least 2 column numbers of `coords`.
/// @param[out] result  the sum of the segment lengths, same unit; the sum up to the first bad entry on -2.
/// @return 0; -1: `coords` has neither 2 nor 3 rows; -2: fewer than 2 entries, or one out of range.
///
/// One pass, no allocation.
[[nodiscard]] VORNIK1D_API int length(
    dense2D<double> const& coords, dense1D<unsigned> const& indices, double& result) noexcept;

/// Length of a mesh of lines: the sum of the distances between the end nodes of its elements.
///
/// @param connect  an element per column, its end nodes in rows 0 and 1; it may be empty.
/// @param[out] result  0 on a failure.
/// @return 0; -1: as above; -2: `connect` has 1 row, or an end node out of range.
[[nodiscard]] VORNIK1D_API int length(
    dense2D<double> const& coords, dense2D<unsigned> const& connect, double& result) noexcept;

/// Curvature at the nodes of a curve from its tangents there.
///
/// An element between the tangents T and U, at parameters that differ by du, has the curvature 4 |S x D| /
/// (|S|^3 du) with S = T + U, D = U - T; a node has the mean of its elements, weighted by du. An element
/// whose tangents are opposite counts nothing; where du is 0 for all elements of a node, it has the sum of 4
/// |S x D| / |S|^3.
///
/// @param params    a parameter value per node.
/// @param connect   an element per column, its end nodes in rows 0 and 1.
/// @param tangents  2 or 3 rows, a column per node: the derivative of the curve by the parameter.
/// @param[out] result  is replaced: a value per node, in 1/length, 0 for nodes without elements; empty on a
///                  failure, but a zero per node if only storage for weights is missing.
/// @return 0, also for an empty `connect`, whatever the rest is;
///         -2: `connect` has 1 row, or an end node for which `params` has no value;
///         -3: `tangents` has neither 2 nor 3 rows, or not a column per value of `params`;
///         -199: no storage.
///
/// Linear in nodes and elements.
[[nodiscard]] VORNIK1D_API int parametric_curvatures(dense1D<double> const& params,
    dense2D<unsigned> const& connect, dense2D<double> const& tangents, dense1D<double>& result) noexcept;

/// Normals at the nodes of a line in the plane: the mean of the unit normals of its elements at each node. An
/// element's normal is to the left of its direction.
///
/// @param coords       2 rows, a node per column.
/// @param connect      an element per column, its end nodes in rows 0 and 1.
/// @param exponent     the weight of an element of length L is L to this power: 0 gives the plain mean. From
///                 the largest double on, and for a NaN, a node has the normal of its longest element, from
///                 minus the largest double down that of its shortest one; of equals the first.
/// @param unit_length  whether means are brought to length 1; one of length 0 stays.
/// @param[out] result  is replaced: 2 rows, a vector per node; 0 for nodes without elements, and beside those
///                 whose squared length is 0; empty on a failure.
/// @return 0, also without nodes or elements, for which `result` is empty;
///         -1: `coords` does not have 2 rows;
///         -2: `connect` has 1 row, or an end node that is no column of `coords`;
///         -199: no storage.
///
/// Linear in nodes and elements.
[[nodiscard]] VORNIK1D_API int normals(dense2D<double> const& coords, dense2D<unsigned> const& connect,
    double exponent, bool unit_length, dense2D<double>& result) noexcept;

/// @}
/// @defgroup connectivity Connectivity
/// Elements are columns of node numbers: the two end nodes first, in rows 0 and 1, then the interior nodes in
/// order from the first end to the second. No element shares its interior nodes with another one. Cost:
/// linear in elements.
/// @{

/// Appends elements of two nodes along a list of nodes, each beginning where the one before ends.
///
/// @param indices  the nodes in order along the line: none, or at least 2.
/// @param[in,out] connect  the elements are appended; it is empty or has as many rows as elements have nodes.
/// @return 0; -1: another number of nodes; -2: `connect` has another row count; -199: no storage.
/// On a failure `connect` is as it was.
[[nodiscard]] VORNIK1D_API int indices_to_connectE2(
    dense1D<unsigned> const& indices, dense2D<unsigned>& connect) noexcept;
/// The same for elements of three nodes: `indices` is empty, or has an odd number of 3 or more.
[[nodiscard]] VORNIK1D_API int indices_to_connectE3(
    dense1D<unsigned> const& indices, dense2D<unsigned>& connect) noexcept;
/// The same for elements of four nodes: `indices` is empty, or has 4, 7, 10, ...
[[nodiscard]] VORNIK1D_API int indices_to_connectE4(
    dense1D<unsigned> const& indices, dense2D<unsigned>& connect) noexcept;

/// Appends two elements of two nodes for each element of three, in the order of travel.
///
/// @param connect_in   3 rows, or empty.
/// @param[in,out] connect_out  0 or 2 rows; the elements are appended.
/// @return 0, also for an empty `connect_in`; -1: `connect_in` does not have 3 rows; -2: `connect_out` has
///         neither 0 nor 2 rows, even if it is empty; -199: no storage.
/// On a failure `connect_out` is as it was.
[[nodiscard]] VORNIK1D_API int split_into_linear(
    dense2D<unsigned> const& connect_in, dense2D<unsigned>& connect_out) noexcept;

/// Cuts elements down to their two end nodes. Interior nodes stay in the coordinates, and no element has
/// them.
///
/// @return 0, also for an empty `connect`; -1: `connect` has fewer than 3 rows.
[[nodiscard]] VORNIK1D_API int convert_into_linear(dense2D<unsigned>& connect) noexcept;

/// Gives each element interior nodes at equal distances on the straight line between its end nodes.
///
/// @param[in,out] coords  1 to 3 rows, a node per column; the new nodes are appended, element after element.
/// @param connect_in   an element per column, its end nodes in rows 0 and 1; further rows are ignored.
/// @param extra_nodes  interior nodes per element: 1 for quadratic, 2 for cubic elements.
/// @param[out] connect_out  is emptied, then replaced: `extra_nodes` + 2 rows, a column per element.
/// @return 0, also without elements or extra nodes, for which `connect_out` stays empty;
///         -1: `coords` has another row count, tested before `connect_out` is emptied;
///         -2: `connect_in` has 1 row, or an end node that is no column of `coords`;
///         -199: no storage, or more nodes than 32-bit numbers can name.
/// On a failure `coords` is as it was.
[[nodiscard]] VORNIK1D_API int convert_into_high_order(dense2D<double>& coords,
    dense2D<unsigned> const& connect_in, unsigned extra_nodes, dense2D<unsigned>& connect_out) noexcept;

/// The same in place: `connect` has `extra_nodes` + 2 rows then, and is as it was on a failure and for an
/// `extra_nodes` of 0.
[[nodiscard]] VORNIK1D_API int convert_into_high_order(
    dense2D<double>& coords, dense2D<unsigned>& connect, unsigned extra_nodes) noexcept;
/// The same with 1 extra node, in the middle of each element.
[[nodiscard]] VORNIK1D_API int convert_into_quadratic(
    dense2D<double>& coords, dense2D<unsigned>& connect) noexcept;
/// The same with 2 extra nodes, at the thirds of each element.
[[nodiscard]] VORNIK1D_API int convert_into_cubic(
    dense2D<double>& coords, dense2D<unsigned>& connect) noexcept;

/// @}
/// @defgroup orientation Orientation
/// The direction of elements.
/// @{

/// Turns all elements round: reverses the order of their nodes. Meant for elements of two nodes; others lose
/// the order in which the end nodes come first. Fewer than 2 rows stay as they are. Returns 0. Linear in
/// elements.
VORNIK1D_API int flip(dense2D<unsigned>& connect) noexcept;

/// Orients the elements of a line so that each starts where the one before ends, as one of them does.
///
/// @param[in,out] connect    an element of two nodes per column, in rows 0 and 1.
/// @param[in,out] neighbors  as many rows and columns as `connect`: row i of column e is the element that
///                 meets e at the node opposite local node i, so row 0 at its second node, row 1 at its
///                 first. What is no column is no neighbour. Kept in step with `connect`.
/// @param start            the element that is not turned.
/// @param all_components   0: only the part of the mesh that holds `start` is treated; otherwise also each
///                 part that has an element behind `start`, as the first of these is.
/// @return the number of turns, in which an element of a branching line can count more than once; 0 without
///         columns, whatever the rest is;
///         -1: `connect` has fewer than 2 rows, or a node 4294967295;
///         -2: `neighbors` has another shape, or names a neighbour that does not have the node in question;
///         turns made before that are kept;
///         -3: `start` is no column;
///         -199: no storage.
///
/// Linear in elements.
[[nodiscard]] VORNIK1D_API int mesh_reorient(
    dense2D<unsigned>& connect, dense2D<unsigned>& neighbors, unsigned start, int all_components) noexcept;

/// @}
/// @defgroup extrusion Extrusion
/// A line of new nodes is drawn by a node that is moved: along a vector, or about a centre or an axis. It
/// starts at a node of `coords`, or at a point that becomes a new node in front of the others. Its step count
/// is given, or found from target sizes at its start and its end, in length units of the model along the
/// path: then steps are of equal metric length, as in `mesh_line`, and as near to 1 as a whole number allows,
/// or an even one under `force_even`. Cost: linear in the new nodes.
///
/// @param[in,out] coords   as many rows as the points have; the new nodes are appended. It may be empty where
///                 the line starts at a point.
/// @param start_node, start_point  where the line starts.
/// @param vector           the path of the translation.
/// @param center           the centre of the rotation, or in space a point of its axis.
/// @param angle            the turn in radians, counter-clockwise.
/// @param rotation         a vector along the axis, whose length is the turn in radians, by the right-hand
///                 rule.
/// @param element_count    the number of steps; 0 does nothing.
/// @param size_a, size_b   the sizes at the start and the end, positive.
/// @param[in,out] indices  the nodes of the line are appended, its start first.
/// @return 0;
///         -1: `coords` has another row count;
///         -2: `start_node` is no column of `coords`;
///         -3: the path has length 0 (with sizes), as one may have whose square underflows;
///         -4, -5 for a translation, -5, -6 for a rotation: `size_a`, `size_b` is not positive;
///         -199: no storage, or more nodes than 32-bit numbers can name.
/// On a failure `coords` and `indices` are as they were. A translation ends exactly at the start plus
/// `vector`. A count of steps may have a path of length 0, and a full turn ends at a new node at the place of
/// the start. Where the square of the path's length overflows, sizes give no number of steps (-199); where
/// that of `rotation` does, the new nodes are NaN.
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
/// The same in space.
[[nodiscard]] VORNIK1D_API int extrude_translate(dense2D<double>& coords,
    vector_fixed<double, 3> const& start_point, vector_fixed<double, 3> const& vector, double size_a,
    double size_b, bool force_even, dense1D<unsigned>& indices) noexcept;
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
/// The same in space.
[[nodiscard]] VORNIK1D_API int extrude_translate(dense2D<double>& coords, unsigned start_node,
    vector_fixed<double, 3> const& vector, double size_a, double size_b, bool force_even,
    dense1D<unsigned>& indices) noexcept;

/// From a new node about a centre, in equal steps.
[[nodiscard]] VORNIK1D_API int extrude_rotate(dense2D<double>& coords,
    vector_fixed<double, 2> const& start_point, vector_fixed<double, 2> const& center, double angle,
    unsigned element_count, dense1D<unsigned>& indices) noexcept;
/// From a new node about a centre, by sizes.
[[nodiscard]] VORNIK1D_API int extrude_rotate(dense2D<double>& coords,
    vector_fixed<double, 2> const& start_point, vector_fixed<double, 2> const& center, double angle,
    double size_a, double size_b, bool force_even, dense1D<unsigned>& indices) noexcept;
/// From a node about a centre, in equal steps.
[[nodiscard]] VORNIK1D_API int extrude_rotate(dense2D<double>& coords, unsigned start_node,
    vector_fixed<double, 2> const& center, double angle, unsigned element_count,
    dense1D<unsigned>& indices) noexcept;
/// From a node about a centre, by sizes.
[[nodiscard]] VORNIK1D_API int extrude_rotate(dense2D<double>& coords, unsigned start_node,
    vector_fixed<double, 2> const& center, double angle, double size_a, double size_b, bool force_even,
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
/// From a node about an axis, in equal steps. This one alone returns -5 for an `element_count` of 0.
[[nodiscard]] VORNIK1D_API int extrude_rotate(dense2D<double>& coords, unsigned start_node,
    vector_fixed<double, 3> const& center, vector_fixed<double, 3> const& rotation, unsigned element_count,
    dense1D<unsigned>& indices) noexcept;
/// From a node about an axis, by sizes.
[[nodiscard]] VORNIK1D_API int extrude_rotate(dense2D<double>& coords, unsigned start_node,
    vector_fixed<double, 3> const& center, vector_fixed<double, 3> const& rotation, double size_a,
    double size_b, bool force_even, dense1D<unsigned>& indices) noexcept;

/// @}
/// @defgroup remeshing Remeshing
/// Networks of lines.
/// @{

/// Replaces a mesh of lines by one whose elements follow target sizes.
///
/// The lines are cut into chains at break nodes: where lines end or three or more elements meet, at corners,
/// where elements of opposed directions meet head to head, where colours change, at the ends of hard edges
/// and at hard nodes. The ends of a chain keep their numbers and places, so that what was joined stays
/// joined; each chain is meshed anew between them. A closed loop without break nodes begins and ends at the
/// first node of its lowest element, which stays too. Where two elements begin at one node the line is cut
/// too, though that is no break node; a run that begins there is taken up from its lowest element, so it may
/// be cut once more, depending on the order of columns. `mesh_reorient` gives lines one direction.
///
/// A chain is meshed by `mesh_spline` or by `mesh_line`, as `deviation_tolerance` says:
///
///   - 0, or NaN: by `mesh_line`, which is held to the chain's nodes to 1e-12 of its length; so a bent line
///     gets no coarser.
///   - positive: by `mesh_spline`, bounded by curvature for this distance, if that curve strays no farther
///     than that from the chain; else by `mesh_line` with this tolerance. Where the curve's radius is below
///     it, no nodes are asked for, so the mesh of a spline may stray farther.
///   - negative: by `mesh_spline`, whatever its deviation.
///
/// The size at a node is `default_size`, at an end of chains no more than the shortest of them is long (or
/// `min_size`, if that is more); a positive entry of `sizes` overrides both.
///
/// @param[in,out] coords  d x n, d = 2 or 3: node positions, in length units of the model. New nodes are
///                 appended as columns; the old ones stay, also those that the new mesh does not have.
/// @param[in,out] connect  an element per column, its end nodes in rows 0 and 1; further rows are ignored. It
///                 is replaced, by a matrix of 2 rows in storage of its own: elements of one chain stand side
///                 by side in the order of travel.
/// @param default_size  target size at nodes without one of their own, at least 0, in length units of the
///                 model.
/// @param sizes    target sizes by node number; may be short or empty. Entries that are not positive do not
///                 count.
/// @param[in,out] colors  a colour per element; may be short or empty, and 4294967295 stands for none. It is
///                 replaced: each chain has the first colour along it, or a new one above all others, as far
///                 as there are any below 4294967295.
/// @param[in,out] hard_nodes  nodes to cut at; those that are above all nodes of `connect` are ignored. It is
///                 replaced by all break nodes, ascending.
/// @param hard_edges  elements, by their columns, that pass into the new mesh as they are.
/// @param force_even  asks for an even number of elements on each chain.
/// @param max_angle   the largest change of direction in degrees that is no corner, at least 0; a change by
///                 more than a right angle always is one, and from 90 degrees on the angle acts as its
///                 supplement.
/// @param deviation_tolerance  see above.
/// @param max_gradation  growth of size per length on splines, at least 0; 0 sets no limit. Where it is
///                 positive, `default_size` has on splines the part that it has in `mesh_spline`.
/// @param min_size  segments not longer than this make no corners; a floor to the bound of sizes by curvature
///                 and by the lengths of chains. At least 0.
/// @param min_elements, max_elements  limits for each chain, as in `mesh_line`.
/// @return 0, also for an empty `connect`, whatever the rest is;
///         -1: `coords` has neither 2 nor 3 rows;
///         -2: `connect` has 1 row, or an end node that is no column of `coords`;
///         -3: `default_size` is negative or NaN;
///         -7: an entry of `hard_edges` is no column of `connect`;
///         -9, -11, -12: `max_angle`, `max_gradation`, `min_size` is negative or NaN;
///         -13: `min_elements` is above `max_elements`;
///         -199: no storage, or more nodes than 32-bit numbers can name;
///         or that of the mesher that failed on a chain, which may be one of these: -1 or -2 for positions
///         that are not finite, -2 also for a chain of length 0 under a `deviation_tolerance` of 0, -3 for a
///         size that is 0 or not finite at one of its nodes (also at the ends of a chain of length 0 without
///         `min_size`), -5 for a `min_elements` of 0.
/// On a failure all arguments are as they were.
///
/// Cost: linear in elements and node numbers, plus that of the meshers. Peak memory is about 1.6 times old plus
/// new mesh, and what the longest chain needs: its samples, if it is meshed as a spline, which `min_size`
/// bounds, see `mesh_spline`. The number of allocations does not depend on that of chains.
[[nodiscard]] VORNIK1D_API int remesh_lines(dense2D<double>& coords, dense2D<unsigned>& connect,
    double default_size, dense1D<double> const& sizes, dense1D<unsigned>& colors,
    dense1D<unsigned>& hard_nodes, dense1D<unsigned> const& hard_edges, bool force_even, double max_angle,
    double deviation_tolerance, double max_gradation, double min_size, unsigned min_elements,
    unsigned max_elements) noexcept;

/// The same without sizes, hard nodes and hard edges. Every status below -4 is greater by 3: -196 is a lack
/// of storage, -2 may also be a `min_elements` of 0.
[[nodiscard]] VORNIK1D_API int remesh_lines(dense2D<double>& coords, dense2D<unsigned>& connect,
    double default_size, dense1D<unsigned>& colors, bool force_even, double max_angle,
    double deviation_tolerance, double max_gradation, double min_size, unsigned min_elements,
    unsigned max_elements) noexcept;

/// The same without colours too. Every status below -7 is greater by 4: -195 is a lack of storage.
[[nodiscard]] VORNIK1D_API int remesh_lines(dense2D<double>& coords, dense2D<unsigned>& connect,
    double default_size, bool force_even, double max_angle, double deviation_tolerance, double max_gradation,
    double min_size, unsigned min_elements, unsigned max_elements) noexcept;

/// @}
/// @defgroup parameters Parameters
/// Lines on the parameter axis.
/// @{

/// Sorts parameter values, and nodes along with them, in place: by parameter, and nodes of equal parameter by
/// number. NaNs go last, by number too.
///
/// @return 0; -1: `params` and `indices` differ in size; -199: no storage. On a failure both are as they
///         were.
///
/// Cost: n log n for n nodes.
[[nodiscard]] VORNIK1D_API int sort(dense1D<double>& params, dense1D<unsigned>& indices) noexcept;

/// Meshes a line that lives on the parameter axis: `mesh_line` in one dimension, along the sizes alone.
///
/// @param[in,out] params  the parameter value of each point; the new points are appended.
/// @param[in,out] sizes   the target size of each point, in units of the parameter, as many as `params`;
///                 those of the new points are appended. Sizes of opposite sign measure nothing: then there
///                 are `min_elements` elements, which may be of length 0.
/// @param indices     the chain, at least 2 entries of `params`; values may rise and fall along it.
/// @param round_up    asks for elements that are not longer than their sizes.
/// @param force_even, min_elements, max_elements  as in `mesh_line`; `round_up` may pass `max_elements` by
///                 one, and `force_even` by one more.
/// @param[out] new_indices  the points of the mesh are appended: the chain's first one, the new ones, its
///                 last.
/// @return 0;
///         -2: fewer than 2 chain entries, or one that is no entry of `params`; tested last, `sizes` is
///         shorter than `params`;
///         -6: `min_elements` is 0 or above `max_elements`;
///         -199: no storage, or more points than 32-bit numbers can name.
/// On a failure all is as it was. A lack of storage for the new points alone leaves a single element, also
/// where they are too many to be numbered: `max_elements` is what guards against sizes that are far too
/// small.
///
/// Cost: linear in chain plus mesh.
[[nodiscard]] VORNIK1D_API int subdivide(dense1D<double>& params, dense1D<double>& sizes,
    dense1D<unsigned> const& indices, bool round_up, bool force_even, unsigned min_elements,
    unsigned max_elements, dense1D<unsigned>& new_indices) noexcept;

/// @}

/// The library's version: "5.6.0.0".
[[nodiscard]] VORNIK1D_API char const* version() noexcept;

} // namespace trelk::vornik1d
