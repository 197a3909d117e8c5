#include "targets.h"

#include "shapes.h"

real_list draw_sizes(generator& g, std::size_t n, double scale)
{
    constexpr double differences[] = {1e-14, 1e-11, 1e-10, 1e-7, 1e-3, 0.008, 0.018, 0.04};
    real_list sizes(n, scale * g.octaves(-3, 3));
    std::size_t const kind = g.below(5);
    double const difference = g.pick(differences);
    double const growth = g.between(0.8, 1.25);
    double factor = 1;
    for (double& size : sizes) {
        if (kind == 1) size *= g.octaves(-2, 2);
        if (kind == 2) size *= factor;
        if (kind == 3) size *= 1 + difference * g.unit();
        if (kind == 4 && g.chance(0.1)) size *= g.octaves(-4, 12);
        factor *= growth;
        if (!(factor > 0.05 && factor < 20)) factor = 1;
    }
    return sizes;
}

namespace {

/// Turns the tensor about axis `axis`: M becomes R M R^T.
void turn_tensor(double (&m)[3][3], std::size_t axis, heading const& by)
{
    std::size_t const i = (axis + 1) % 3;
    std::size_t const j = (axis + 2) % 3;
    for (auto& row : m) {
        double const before = row[i];
        row[i] = before * by.x - row[j] * by.y;
        row[j] = before * by.y + row[j] * by.x;
    }
    for (std::size_t k = 0; k < 3; ++k) {
        double const before = m[i][k];
        m[i][k] = before * by.x - m[j][k] * by.y;
        m[j][k] = before * by.y + m[j][k] * by.x;
    }
}

} // namespace

real_matrix draw_tensors(generator& g, std::size_t rows, std::size_t n, double scale)
{
    constexpr int aspects[] = {1, 2, 4, 10, 17};
    constexpr double differences[] = {0, 1e-15, 1e-12, 1e-8, 1e-3};
    auto metrics = matrix_of(rows, n, 1.0);
    if (rows != 3 && rows != 6) return metrics;

    std::size_t const kind = g.below(4); // isotropic, along the axes, turned, nearly equal to the one before
    int const aspect = g.pick(aspects);
    double const difference = g.pick(differences);
    double const base = scale * g.octaves(-2, 3);
    for (std::size_t j = 0; j < n; ++j) {
        if (kind == 3 && j > 0 && g.chance(0.8)) {
            for (std::size_t r = 0; r < rows; ++r)
                metrics(r, j) = metrics(r, j - 1) * (1 + difference * g.unit());
            continue;
        }
        double m[3][3] = {};
        double size = base * g.between(0.5, 1.5);
        for (std::size_t i = 0; i < 3; ++i) {
            m[i][i] = 1 / (size * size);
            if (kind > 0) size = base * g.octaves(0, aspect);
        }
        for (std::size_t axis = rows == 3 ? 2 : 0; kind > 1 && axis < 3; ++axis) {
            heading by;
            by.turn(g.between(-1, 1));
            turn_tensor(m, axis, by);
        }
        double* entry = metrics.col(j);
        for (std::size_t c = 0; c < (rows == 3 ? 2U : 3U); ++c)
            for (std::size_t r = 0; r <= c; ++r) *entry++ = m[r][c];
    }
    return metrics;
}

real_list draw_params(generator& g, std::size_t n)
{
    real_list params(n);
    std::size_t const kind = g.below(5);
    double value = g.chance(0.5) ? 0 : g.between(-3, 3);
    for (double& param : params) {
        param = value;
        if (kind == 0) value += 1;
        if (kind == 1) value += g.unit();
        if (kind == 2) value += g.chance(0.5) ? 0 : g.unit();
        if (kind == 3) value += g.chance(0.9) ? 0 : 1;
        if (kind == 4) value += g.between(0.9, 1.1);
    }
    return params;
}

node_list draw_chain(generator& g, std::size_t nodes, std::size_t n)
{
    node_list chain(n);
    std::size_t const kind = g.below(12);
    for (std::size_t k = 0; k < n; ++k)
        chain[k] = kind == 0 ? g.node(nodes) : static_cast<unsigned>((kind == 1 ? n - 1 - k : k) % nodes);
    if (n > 2 && kind == 2) chain[n - 1] = chain[0];
    for (std::size_t k = 1; k < n && kind == 3; ++k)
        if (g.chance(0.1)) chain[k] = chain[k - 1];
    return chain;
}

element_limits draw_limits(generator& g)
{
    element_limits limits{g.chance(0.3), 1, no_limit};
    if (g.chance(0.3)) limits.min_elements = 1 + g.node(30);
    if (g.chance(0.3)) limits.max_elements = limits.min_elements + g.node(60);
    if (g.chance(0.01)) limits.min_elements = limits.max_elements = g.node(2);
    if (g.chance(0.01)) limits.max_elements = limits.min_elements - 1;
    return limits;
}

double draw_tolerance(generator& g, double scale)
{
    constexpr double odd[] = {largest_double, -largest_double, not_a_number, -1, -2, -0.0};
    double const kind = g.unit();
    if (kind < 0.2) return 0;
    if (kind < 0.5) return -g.octaves(-14, -1);
    if (kind < 0.9) return scale * g.octaves(-12, 2);
    return g.pick(odd);
}
