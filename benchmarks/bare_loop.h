#pragma once

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <memory>
#include <vector>

/// The floor that the library is measured against: placing nodes by sizes along a polyline, in plain arrays,
/// with the library's arithmetic operation for operation, and nothing else. No node numbers, no limits, no
/// special cases: sizes are positive, segments longer than 0, and there are at least two elements.
namespace bare {

template <std::size_t N>
struct line
{
    std::vector<std::array<double, N>> points;
    std::vector<double> sizes;
    std::vector<double> params;

    std::size_t size() const { return sizes.size(); }
    void resize(std::size_t n) { points.resize(n), sizes.resize(n), params.resize(n); }
};

/// What the loop makes: arrays of just the right size, into which nothing is written but the results.
template <std::size_t N>
struct nodes
{
    explicit nodes(std::size_t n)
        : count(n), points(std::make_unique_for_overwrite<std::array<double, N>[]>(n)),
          sizes(std::make_unique_for_overwrite<double[]>(n)),
          params(std::make_unique_for_overwrite<double[]>(n))
    {}

    std::size_t count;
    std::unique_ptr<std::array<double, N>[]> points;
    std::unique_ptr<double[]> sizes;
    std::unique_ptr<double[]> params;
};

inline double mean_inverse_size(double h0, double h1)
{
    double const hi = std::max(h0, h1);
    double const r = 1 / hi;
    double const x = (std::min(h0, h1) - hi) * r;
    if (x < -0.01) return r * (std::log1p(x) / x);
    if (!(x < -1e-12)) return r;
    double const xx = x * x;
    return r * (((1.0 / 5 - x / 6) * xx + (1.0 / 3 - x / 4)) * xx + (1 - x / 2));
}

/// Sets `cum` to the metric length from the first point to each point; returns the last of them.
template <std::size_t N>
double cumulate(line<N> const& chain, double* cum)
{
    double length = 0;
    cum[0] = 0;
    for (std::size_t s = 0; s + 1 < chain.size(); ++s) {
        double square = 0;
        for (std::size_t r = 0; r < N; ++r) {
            double const d = chain.points[s + 1][r] - chain.points[s][r];
            square += d * d;
        }
        length += std::sqrt(square) * mean_inverse_size(chain.sizes[s], chain.sizes[s + 1]);
        cum[s + 1] = length;
    }
    return length;
}

/// The new nodes between the ends of `chain`.
template <std::size_t N>
nodes<N> place(line<N> const& chain)
{
    auto const cum = std::make_unique_for_overwrite<double[]>(chain.size());
    double const length = cumulate(chain, cum.get());
    auto elements = static_cast<std::size_t>(length);
    if (length * length >= static_cast<double>(elements * (elements + 1))) ++elements;
    double const step = length / static_cast<double>(elements);
    std::size_t const count = elements - 1;
    nodes<N> placed(count);

    double target = step;
    for (std::size_t s = 0, k = 0; k < count; ++s) {
        if (cum[s + 1] < target) continue;

        double const h0 = chain.sizes[s];
        double const h_step = chain.sizes[s + 1] - h0;
        double const param0 = chain.params[s];
        double const param_step = chain.params[s + 1] - param0;
        std::array<double, N> const a = chain.points[s];
        std::array<double, N> d;
        for (std::size_t r = 0; r < N; ++r) d[r] = chain.points[s + 1][r] - a[r];

        bool const mirrored = h_step > 0;
        double const hi = mirrored ? chain.sizes[s + 1] : h0;
        double const x = ((mirrored ? h0 : chain.sizes[s + 1]) - hi) / hi;
        double const log_ratio = x < -0.01 ? std::log1p(x) : 0;

        for (; target <= cum[s + 1] && k < count; target = static_cast<double>(++k + 1) * step) {
            double const t = (target - cum[s]) / (cum[s + 1] - cum[s]);
            double u = t;
            if (h_step != 0 && t != 1) {
                double const v = mirrored ? 1 - t : t;
                u = v;
                if (x < -0.01)
                    u = std::expm1(log_ratio * v) / x;
                else if (x < -1e-12)
                    u = v * (1 + (v - 1) * x / 2 + (v - 2) * (v - 1) * (x * x) / 6 +
                                (v - 3) * (v - 2) * (v - 1) * (x * x * x) / 24);
                u = std::clamp(mirrored ? 1 - u : u, 0.0, 1.0);
            }
            placed.sizes[k] = h_step * u + h0;
            placed.params[k] = param_step * u + param0;
            for (std::size_t r = 0; r < N; ++r) placed.points[k][r] = d[r] * u + a[r];
        }
    }
    return placed;
}

} // namespace bare
