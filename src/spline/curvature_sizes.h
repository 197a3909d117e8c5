#pragma once

#include <cstddef>

#include <trelk/dense1D.h>

#include "metric/sizes.h"
#include "spline/spline_span.h"

namespace trelk::vornik1d {

/// The element sizes at the nodes of a chain of 4 or more that keep chords within a tolerance of the spline through
/// it, as `chordal_size` reads it: the size by the mean curvature of the spans on either side, weighted by their
/// chords. `largest` beside a span without curvature. Spans are added in order.
template <std::size_t N>
class curvature_sizes
{
public:
    explicit curvature_sizes(dense1D<double>& sizes) : sizes_(sizes) {}

    /// Begins with a chain of `nodes` nodes. False without storage.
    [[nodiscard]] bool begin(std::size_t nodes, double tolerance)
    {
        tolerance_ = tolerance;
        chord_before_ = 0;
        sizes_.clear();
        return sizes_.reserve(nodes, 2);
    }

    void add(spline_span<N> const& span)
    {
        double const size = chordal_size(span_mean_curvature(span), tolerance_);
        double const chords = span.chord + chord_before_;
        if (sizes_.empty()) {
            sizes_.push_back(size);
            sizes_.push_back(size);
        } else if (chords > 0 && size < largest && size_before_ < largest)
            sizes_.push_back((size * span.chord + size_before_ * chord_before_) / chords);
        else
            sizes_.push_back(largest);
        size_before_ = size;
        chord_before_ = span.chord;
    }

    void finish()
    {
        sizes_.push_back(size_before_);
        sizes_.push_back(size_before_);
    }

    /// Adds all spans of a chain. False without storage.
    [[nodiscard]] bool build(guided_chain<N> const& chain, double tolerance)
    {
        if (!begin(chain.count, tolerance)) return false;
        spline_spans<N> spans(chain);
        for (std::size_t k = 0; k < chain.spans(); ++k) add(spans.next());
        finish();
        return true;
    }

private:
    dense1D<double>& sizes_;
    double tolerance_ = 0;
    double size_before_ = 0;
    double chord_before_ = 0;
};

} // namespace trelk::vornik1d
