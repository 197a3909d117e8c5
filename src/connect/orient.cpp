#include <vornik1d/vornik1d.h>

#include <algorithm>
#include <limits>

#include <vornik/toolkit.h>

#include "arrays/element_flags.h"
#include "front_door.h"

namespace trelk::vornik1d {

namespace {

/// Gives the elements of each connected part of a mesh one direction, breadth first.
class orientation_walk
{
public:
    orientation_walk(dense2D<unsigned>& connect, dense2D<unsigned>& neighbors)
        : connect_(connect), neighbors_(neighbors)
    {}

    [[nodiscard]] bool init()
    {
        // Each visited element queues at most two neighbours; one more entry is for the first element.
        return visited_.init(connect_.cols()) && queue_.reserve(2 * connect_.cols() + 1);
    }

    bool is_visited(std::size_t e) const { return visited_.test(e); }
    std::size_t flips() const { return flips_; }

    /// Orients the part of the mesh that contains element `first` like this element. False if an element and
    /// its neighbour share no node on that side.
    [[nodiscard]] bool run(std::size_t first)
    {
        queue_.clear();
        queue_.push_back(static_cast<unsigned>(first));
        std::size_t front = 0;
        while (front < queue_.size()) { // the queue grows in the loop
            unsigned const e = queue_[front++];
            if (visited_.test(e)) continue;
            visited_.set(e);
            if (!orient_neighbor(e, 0) || !orient_neighbor(e, 1)) return false;
        }
        return true;
    }

private:
    /// Orients the neighbour on a side of element e: on side 0, at the second node, it must start there; on
    /// side 1, at the first node, it must end there.
    bool orient_neighbor(unsigned e, std::size_t side)
    {
        unsigned const f = neighbors_(side, e);
        if (f >= connect_.cols() || visited_.test(f)) return true;

        unsigned const joint = connect_(1 - side, e);
        bool const starts_there = connect_(0, f) == joint;
        if (!starts_there && connect_(1, f) != joint) return false;
        if (starts_there != (side == 0)) {
            std::swap(connect_(0, f), connect_(1, f));
            std::swap(neighbors_(0, f), neighbors_(1, f));
            ++flips_;
        }
        queue_.push_back(f);
        return true;
    }

    dense2D<unsigned>& connect_;
    dense2D<unsigned>& neighbors_;
    element_flags visited_;
    dense1D<unsigned> queue_;
    std::size_t flips_ = 0;
};

} // namespace

int flip(dense2D<unsigned>& connect) noexcept
{
    if (connect.rows() < 2) return 0;
    for (std::size_t e = 0; e < connect.cols(); ++e)
        std::reverse(connect.col(e), connect.col(e) + connect.rows());
    return 0;
}

int mesh_reorient(
    dense2D<unsigned>& connect, dense2D<unsigned>& neighbors, unsigned start, int all_components) noexcept
{
    std::size_t const n = connect.cols();
    if (n == 0) return 0;
    if (connect.rows() < 2 || !vornik::check_IDs(connect, vornik::element_type::edge, vornik::none))
        return bad_argument(1);
    if (neighbors.rows() != connect.rows() || neighbors.cols() != n) return bad_argument(2);
    if (start >= n) return bad_argument(3);

    orientation_walk walk(connect, neighbors);
    if (!walk.init()) return no_storage;
    std::size_t const end = all_components != 0 ? n : std::size_t{start} + 1;
    for (std::size_t e = start; e < end; ++e)
        if (!walk.is_visited(e) && !walk.run(e)) return bad_argument(2);
    constexpr std::size_t most = std::numeric_limits<int>::max();
    return static_cast<int>(std::min(walk.flips(), most));
}

} // namespace trelk::vornik1d
