#include "networks.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <fstream>
#include <map>
#include <numbers>
#include <random>
#include <utility>
#include <vector>

#include <nlohmann/json.hpp>

namespace {

using point = std::array<double, 2>;

network to_network(std::vector<point>& nodes, std::vector<std::array<unsigned, 2>>& elements, double size)
{
    network result;
    if (!result.coords.copy(trelk::dense2D<double>(2, nodes.size(), nodes.front().data())) ||
        !result.connect.copy(trelk::dense2D<unsigned>(2, elements.size(), elements.front().data())))
        std::abort();
    result.size = size;
    return result;
}

class coast
{
public:
    explicit coast(std::size_t elements) : most_(elements)
    {
        nodes_.reserve(elements + elements / 4), elements_.reserve(elements);
        while (left() > 0) {
            std::size_t const count = std::min(draw_count(), left());
            if (count < least_count || draw() > islands)
                add_open_line(count);
            else
                add_island(count);
        }
    }

    network finish() { return to_network(nodes_, elements_, target_size); }

private:
    static constexpr double element_length = 0.02; // degrees
    static constexpr double target_size = 0.06;
    static constexpr std::size_t least_count = 4;
    static constexpr std::size_t largest_count = 4000; // of elements of a line, but at most a tenth of all
    static constexpr double exponent = 0.8;
    static constexpr double islands = 0.75;
    static constexpr double least_roughness = 0.05; // the largest offset of a midpoint, over the chord
    static constexpr double largest_roughness = 0.3;
    static constexpr double unevenness = 0.2; // the largest offset along the chord, over the chord
    static constexpr double growth = 1.04;    // of a line's length, each time that its elements are halved
    static constexpr std::size_t least_divided = 40;

    std::size_t left() const { return most_ - elements_.size(); }

    /// From 0 to 1; the distributions of the standard library differ from one to the next.
    double draw() { return static_cast<double>(random_() >> 11) * 0x1p-53; }

    std::size_t draw_count()
    {
        double const longest =
            static_cast<double>(std::min(largest_count, most_ / 10)) / static_cast<double>(least_count);
        double const rest = std::pow(longest, -exponent);
        double const factor = std::pow(rest + (1 - rest) * draw(), -1 / exponent);
        return static_cast<std::size_t>(static_cast<double>(least_count) * factor);
    }

    /// Length from end to end of a line that gets `count` elements.
    static double span(std::size_t count)
    {
        auto const n = static_cast<double>(count);
        return n * element_length * std::pow(growth, -std::log2(n));
    }

    unsigned add_node(point const& p)
    {
        nodes_.push_back(p);
        return static_cast<unsigned>(nodes_.size() - 1);
    }

    point draw_place() { return {360 * draw() - 180, 130 * draw() - 60}; }

    /// The points between the ends of a line, by midpoint displacement. There are smooth lines and rough ones.
    void displace(std::vector<point>& line)
    {
        double const roughness = least_roughness + (largest_roughness - least_roughness) * draw();
        pieces_.assign(1, {0, line.size() - 1});
        while (!pieces_.empty()) {
            auto const [first, last] = pieces_.back();
            pieces_.pop_back();
            if (last - first < 2) continue;

            std::size_t const middle = first + (last - first) / 2;
            double const share = static_cast<double>(middle - first) / static_cast<double>(last - first);
            double const t = share + unevenness * (2 * draw() - 1);
            auto const [ax, ay] = line[first];
            double const dx = line[last][0] - ax;
            double const dy = line[last][1] - ay;
            double const offset = roughness * (2 * draw() - 1);
            line[middle] = {ax + t * dx - offset * dy, ay + t * dy + offset * dx};
            pieces_.push_back({middle, last});
            pieces_.push_back({first, middle});
        }
    }

    /// A rough line between two nodes; returns its nodes.
    std::vector<unsigned> connect(unsigned from, unsigned to, std::size_t count)
    {
        std::vector<point> line(count + 1);
        line.front() = nodes_[from], line.back() = nodes_[to];
        displace(line);
        std::vector<unsigned> numbers{from};
        for (std::size_t i = 1; i < count; ++i) numbers.push_back(add_node(line[i]));
        numbers.push_back(to);
        for (std::size_t i = 0; i < count; ++i) elements_.push_back({numbers[i], numbers[i + 1]});
        return numbers;
    }

    void add_open_line(std::size_t count)
    {
        auto const [x, y] = draw_place();
        double const turn = 2 * std::numbers::pi * draw();
        double const length = span(count);
        unsigned const start = add_node({x, y});
        unsigned const end = add_node({x + length * std::cos(turn), y + length * std::sin(turn)});
        connect(start, end, count);
    }

    void add_island(std::size_t count)
    {
        constexpr std::size_t corners = least_count;
        auto const [x, y] = draw_place();
        double const side = span(count / corners);
        std::array<unsigned, corners + 1> ends{};
        double const turn = 2 * std::numbers::pi * draw();
        for (std::size_t k = 0; k < corners; ++k) {
            double const angle = turn + 2 * std::numbers::pi * static_cast<double>(k) / corners;
            double const radius = side * std::numbers::sqrt2 / 2 * (0.7 + 0.6 * draw());
            ends[k] = add_node({x + radius * std::cos(angle), y + radius * std::sin(angle)});
        }
        ends[corners] = ends[0];

        std::array<std::vector<unsigned>, corners> sides;
        for (std::size_t k = 0; k < corners; ++k) {
            std::size_t const first = count * k / corners;
            sides[k] = connect(ends[k], ends[k + 1], count * (k + 1) / corners - first);
        }
        if (count >= least_divided && draw() < 0.5) divide(sides);
    }

    /// A border from one coast to the other, and another one from its middle to a third coast.
    template <std::size_t Corners>
    void divide(std::array<std::vector<unsigned>, Corners> const& sides)
    {
        auto const middle = [](std::vector<unsigned> const& line) { return line[line.size() / 2]; };
        std::size_t const count = std::min(sides[0].size(), left());
        if (count < 2) return;

        auto const border = connect(middle(sides[0]), middle(sides[2]), count);
        std::size_t const half = std::min(count / 2, left());
        if (half > 0) connect(middle(border), middle(sides[1]), half);
    }

    std::size_t most_;
    std::mt19937_64 random_{20240229};
    std::vector<std::array<std::size_t, 2>> pieces_; // that `displace` has still to divide
    std::vector<point> nodes_;
    std::vector<std::array<unsigned, 2>> elements_;
};

} // namespace

network make_coast(std::size_t elements) { return coast(elements).finish(); }

network read_borders()
{
    constexpr double target_size = 0.4; // some 40 km
    std::ifstream file(VORNIK1D_DATA "/europe-borders.geojson");
    auto const collection = nlohmann::json::parse(file);
    std::map<point, unsigned> numbers;
    std::vector<point> nodes;
    std::vector<std::array<unsigned, 2>> elements;
    for (auto const& feature : collection.at("features")) {
        auto const positions = feature.at("geometry").at("coordinates").get<std::vector<point>>();
        std::vector<unsigned> line;
        for (point const& p : positions) {
            auto const [entry, is_new] = numbers.try_emplace(p, static_cast<unsigned>(nodes.size()));
            if (is_new) nodes.push_back(p);
            line.push_back(entry->second);
        }
        for (std::size_t i = 0; i + 1 < line.size(); ++i) elements.push_back({line[i], line[i + 1]});
    }
    return to_network(nodes, elements, target_size);
}
