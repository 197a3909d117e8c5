#pragma once

#include <cstddef>

#include <trelk/dense1D.h>

#include "special_values.h"
#include "spline/spline_span.h"

namespace trelk::vornik1d {

/// Computes element sizes at the nodes of a spline, guide nodes included, that keep chords within a
/// tolerance, as `chordal_size` defines it. Spans are added in order.
///
/// The size at a node is the mean of the sizes of the two spans that meet there, weighted by their chords. A
/// span's size follows from its mean curvature. The size is `largest` if that of one span is.
template <std::size_t N>
class curvature_sizes
{
public:
    explicit curvature_sizes(dense1D<double>& sizes) : sizes_(sizes) {}

    /// Starts a chain of `nodes` nodes. False if memory runs out.
    [[nodiscard]] bool begin(std::size_t nodes, double tolerance)
    {
        tolerance_ = tolerance;
        chord_before_ = 0;
        count_ = 0;
        return sizes_.reserve(nodes, 2) && sizes_.resize(nodes);
    }

    void add(spline_span<N> const& span)
    {
        double const size = chordal_size(span_mean_curvature(span), tolerance_);
        double const chords = span.chord + chord_before_;
        bool const has_mean = chords > 0 && size < largest && size_before_ < largest;
        if (count_ == 0) {
            sizes_[count_++] = size;
            sizes_[count_++] = size;
        } else
            sizes_[count_++] =
                has_mean ? (size * span.chord + size_before_ * chord_before_) / chords : largest;
        size_before_ = size;
        chord_before_ = span.chord;
    }

    /// Sets the last two sizes, after the last span.
    void finish()
    {
        sizes_[count_++] = size_before_;
        sizes_[count_++] = size_before_;
    }

    /// Adds all spans of a chain. False if memory runs out.
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
    std::size_t count_ = 0; // of the sizes set so far
    double tolerance_ = 0;
    double size_before_ = 0;
    double chord_before_ = 0;
};

} // namespace trelk::vornik1d
