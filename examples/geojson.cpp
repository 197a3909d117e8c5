#include "geojson.h"

#include <array>
#include <cmath>
#include <cstddef>
#include <exception>
#include <fstream>
#include <new>
#include <numbers>
#include <stdexcept>
#include <string>

#include <nlohmann/json.hpp>

namespace {

line_mesh to_line_mesh(nlohmann::json const& collection)
{
    line_mesh result;
    std::vector<std::array<double, 2>> nodes;
    for (auto const& feature : collection.at("features")) {
        auto const& geometry = feature.at("geometry");
        if (geometry.at("type") != "LineString") throw std::runtime_error("a geometry is not a LineString");

        auto const positions = geometry.at("coordinates").get<std::vector<std::array<double, 2>>>();
        if (positions.size() < 2) throw std::runtime_error("a LineString has fewer than two positions");

        bool const closed = positions.front() == positions.back();
        auto const first = static_cast<unsigned>(nodes.size());
        nodes.insert(nodes.end(), positions.begin(), positions.end() - (closed ? 1 : 0));

        auto& added = result.lines.emplace_back();
        auto const properties = feature.find("properties");
        if (properties != feature.end() && properties->is_object())
            added.between = properties->value("between", std::vector<std::string>());

        auto& chain = added.nodes;
        if (!chain.reserve(positions.size())) throw std::bad_alloc();
        for (unsigned node = first; node < nodes.size(); ++node) chain.push_back(node);
        if (closed) chain.push_back(first);
    }

    if (result.lines.empty()) throw std::runtime_error("holds no lines");

    if (!result.coords.resize(2, nodes.size())) throw std::bad_alloc();
    for (std::size_t j = 0; j < nodes.size(); ++j) {
        result.coords(0, j) = nodes[j][0];
        result.coords(1, j) = nodes[j][1];
    }
    return result;
}

} // namespace

line_mesh read_geojson(std::filesystem::path const& path)
{
    std::ifstream file(path);
    if (!file) throw std::runtime_error(path.string() + ": cannot be opened");
    try {
        return to_line_mesh(nlohmann::json::parse(file));
    } catch (std::exception const& error) {
        throw std::runtime_error(path.string() + ": " + error.what());
    }
}

// John P. Snyder, Map Projections: A Working Manual, U.S. Geological Survey Professional Paper 1395, 1987,
// equations (22-4), (22-5), (25-2) and (5-3), for the sphere. The angle from the centre is taken from its
// sine as well as from the cosine of (5-3), which alone says little near the centre.
point project(point const& position, point const& centre)
{
    constexpr double earth_radius = 6371.0;
    constexpr double degree = std::numbers::pi / 180.0;

    double const phi = position.y * degree;
    double const phi_1 = centre.y * degree;
    double const lambda = (position.x - centre.x) * degree;

    double const x = std::cos(phi) * std::sin(lambda);
    double const y = std::cos(phi_1) * std::sin(phi) - std::sin(phi_1) * std::cos(phi) * std::cos(lambda);
    double const cosine =
        std::sin(phi_1) * std::sin(phi) + std::cos(phi_1) * std::cos(phi) * std::cos(lambda);
    double const sine = std::hypot(x, y);
    double const scale = earth_radius * (sine > 0.0 ? std::atan2(sine, cosine) / sine : 1.0);
    return {scale * x, scale * y};
}
