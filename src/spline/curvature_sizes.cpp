#include "spline/curvature_sizes.h"

#include "metric/sizes.h"

namespace trelk::vornik1d {

template <std::size_t N>
bool curvature_sizes(guided_chain<N> const& bends, double tolerance, dense1D<double>& bend_sizes)
{
    bend_sizes.clear();
    if (!bend_sizes.reserve(bends.count, 2)) return false;

    double size_before = 0;
    double chord_before = 0;
    spline_spans<N> spans(bends);
    for (std::size_t k = 0; k < bends.spans(); ++k) {
        auto const span = spans.next();
        double const size = chordal_size(span_mean_curvature(span), tolerance);
        double const chords = span.chord + chord_before;
        if (k == 0) {
            bend_sizes.push_back(size);
            bend_sizes.push_back(size);
        } else if (chords > 0 && size < largest && size_before < largest)
            bend_sizes.push_back((size * span.chord + size_before * chord_before) / chords);
        else
            bend_sizes.push_back(largest);
        size_before = size;
        chord_before = span.chord;
    }
    bend_sizes.push_back(size_before);
    bend_sizes.push_back(size_before);
    return true;
}

template bool curvature_sizes(guided_chain<2> const&, double, dense1D<double>&);
template bool curvature_sizes(guided_chain<3> const&, double, dense1D<double>&);

} // namespace trelk::vornik1d
