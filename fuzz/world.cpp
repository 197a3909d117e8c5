#include "world.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <iterator>
#include <limits>
#include <numeric>
#include <type_traits>

#include <vornik/toolkit.h>

using namespace trelk;

namespace {

using limits = std::numeric_limits<double>;

constexpr std::size_t most_entries = 48; // of a list, and columns of a matrix

constexpr double hostile_reals[] = {0.0, -0.0, limits::quiet_NaN(), limits::infinity(), -limits::infinity(),
    limits::max(), -limits::max(), limits::denorm_min(), limits::min(), -limits::min(), 1e300, -1e300, 1e-300,
    1e154, 1e-154, 1e18, 1e-18, 4294967296.0, 9007199254740993.0, 1e-12, 0.01, -0.01, 0.1, -0.1, 1e-3, -1e-3,
    1.0, -1.0, 90.0, 30.0, 45.0, 180.0, 1e6, 6.283185307179586};

constexpr unsigned hostile_numbers[] = {4294967295, 4294967294, 2147483648, 2147483647, 65536, 1000};

template <class T>
constexpr bool is_list = std::is_same_v<T, dense1D<double>> || std::is_same_v<T, dense1D<unsigned>>;

template <class T>
bool shape(T& target, std::size_t rows, std::size_t cols)
{
    if constexpr (is_list<T>)
        return target.resize(cols);
    else
        return target.resize(rows, cols);
}

bool is_ascending(dense1D<double> const& values)
{
    return std::is_sorted(values.begin(), values.end()) &&
           std::none_of(values.begin(), values.end(), [](double value) { return std::isnan(value); });
}

} // namespace

template <>
double world::any<double>()
{
    auto const byte = stream_.ConsumeIntegral<std::uint8_t>();
    if (byte < std::size(hostile_reals)) return hostile_reals[byte];
    if (byte > 250) {
        auto const bits = stream_.ConsumeIntegral<std::uint64_t>();
        double value = 0;
        std::memcpy(&value, &bits, sizeof value);
        return value;
    }
    return (byte - 144) / 16.0;
}

template <>
unsigned world::any<unsigned>()
{
    auto const byte = stream_.ConsumeIntegral<std::uint8_t>();
    if (byte < 240) return byte % 24;
    std::size_t const which = byte - 240U;
    return which < std::size(hostile_numbers) ? hostile_numbers[which] : stream_.ConsumeIntegral<unsigned>();
}

double world::ordinary() { return (stream_.ConsumeIntegral<std::uint8_t>() - 128) / 16.0; }

double world::size() { return stream_.PickValueInArray({1.0, 0.5, 0.25, 2.0, 0.3, 0.125, 4.0, 1000.0}); }

std::size_t world::length() { return 2 + up_to(is_rare(16) ? 40 : 13); }

void world::begin_call()
{
    is_fitting_ = !is_rare(4);
    is_mixed_ = is_rare(4);
    for (std::size_t& next : next_) next = is_mixed_ ? 0 : up_to(3);
    entries_ = 0;
    points_ = nullptr, values_ = nullptr, knots_ = nullptr, elements_ = nullptr;
}

std::size_t world::node_count() const { return points_ ? points_->cols() : values_ ? values_->size() : 0; }

template <class T>
world::slots<T>& world::slots_of()
{
    return std::get<slots<T>>(containers_);
}

template <class T>
T& world::pick()
{
    constexpr std::size_t kind = is_list<T> ? std::is_same_v<typename T::value_type, double>
                                            : 2 + std::is_same_v<typename T::value_type, double>;
    T& picked = slots_of<T>()[is_mixed_ ? up_to(3) : next_[kind]++ % 4];
    if (!is_mixed_) static_cast<void>(picked.copy(picked));
    return picked;
}

template dense1D<double>& world::pick();
template dense1D<unsigned>& world::pick();
template dense2D<double>& world::pick();
template dense2D<unsigned>& world::pick();

template <class T>
void world::fill(T& target)
{
    if constexpr (is_list<T>)
        for (auto& value : target) value = any<typename T::value_type>();
    else if (!target.empty())
        for (std::size_t j = 0; j < target.cols(); ++j)
            std::generate_n(target.col(j), target.rows(), [&] { return any<typename T::value_type>(); });
}

void world::poke()
{
    auto const poke_one = [this](auto& all) {
        auto& target = all[up_to(3)];
        using T = typename std::remove_reference_t<decltype(target)>::value_type;
        if (target.empty()) return;
        if constexpr (is_list<std::remove_reference_t<decltype(target)>>)
            target[up_to(target.size() - 1)] = any<T>();
        else
            target(up_to(target.rows() - 1), up_to(target.cols() - 1)) = any<T>();
    };
    for (std::size_t left = is_rare(3) ? 1 + up_to(2) : 0; left > 0; --left) switch (up_to(3)) {
        case 0:
            poke_one(slots_of<reals>());
            break;
        case 1:
            poke_one(slots_of<numbers>());
            break;
        case 2:
            poke_one(slots_of<matrix>());
            break;
        default:
            poke_one(slots_of<elements>());
        }
}

template <class T>
T* world::foreign(std::size_t count)
{
    auto& arrays = std::get<std::vector<std::unique_ptr<T[]>>>(callers_);
    arrays.push_back(std::make_unique<T[]>(count));
    return arrays.back().get();
}

template <class T>
void world::reshape_one(slots<T>& all)
{
    using value = typename T::value_type;
    T& target = all[up_to(3)];
    T& other = all[up_to(3)];
    switch (up_to(7)) {
    case 0:
        target = other;
        break;
    case 1:
        if constexpr (is_list<T>)
            target = other.sub_vector(up_to(7), up_to(15));
        else
            target = other.sub_matrix(up_to(3), up_to(7), up_to(7), up_to(15));
        break;
    case 2: // two views of an array of the caller's
        if constexpr (is_list<T>) {
            auto const n = std::min<std::size_t>(other.size(), most_entries);
            auto* const values = foreign<value>(n);
            std::copy_n(other.begin(), n, values);
            target = T(n, values);
            other = T(n - n / 2, values + n / 2);
        } else {
            std::size_t const cols = other.empty() ? 0 : std::min(other.cols(), most_entries);
            auto* const values = foreign<value>(other.rows() * cols);
            for (std::size_t j = 0; j < cols; ++j)
                std::copy_n(other.col(j), other.rows(), values + j * other.rows());
            target = T(other.rows(), cols, values);
            other = T(other.rows(), cols - cols / 2, values + cols / 2 * other.rows());
        }
        break;
    case 3: { // any shape; a matrix without rows may have any number of columns
        static constexpr std::size_t odd_rows[] = {2, 3, 0, 1, 4, 6, 7, 0};
        std::size_t const rows = odd_rows[up_to(7)];
        std::size_t const cols = !is_list<T> && rows == 0 && flag() ? 5000000000 : up_to(15);
        target = T();
        if (shape(target, rows, cols)) fill(target);
        break;
    }
    case 4:
        fill(target);
        break;
    case 5:
        target.clear();
        break;
    case 6: // cut short, with what is behind still there
        if constexpr (is_list<T>)
            static_cast<void>(target.resize(std::min(target.size(), up_to(7))));
        else
            static_cast<void>(target.resize(target.rows(), std::min(target.cols(), up_to(7))));
        break;
    default:
        if constexpr (is_list<T>)
            target = std::get<slots<dense2D<value>>>(containers_)[up_to(3)].as_vector();
        else if (!target.empty())
            static_cast<void>(target.reserve(target.rows() + up_to(1), target.cols() + up_to(31)));
    }
}

void world::reshape()
{
    switch (up_to(3)) {
    case 0:
        reshape_one(slots_of<reals>());
        break;
    case 1:
        reshape_one(slots_of<numbers>());
        break;
    case 2:
        reshape_one(slots_of<matrix>());
        break;
    default:
        reshape_one(slots_of<elements>());
    }
}

void world::cut()
{
    std::apply(
        [](auto&... kinds) {
            auto const cut_one = [](auto& target) {
                if constexpr (is_list<std::remove_reference_t<decltype(target)>>)
                    static_cast<void>(target.resize(std::min(target.size(), most_entries)));
                else if (!target.empty())
                    static_cast<void>(target.resize(
                        std::min<std::size_t>(target.rows(), 8), std::min(target.cols(), most_entries)));
            };
            (std::for_each(kinds.begin(), kinds.end(), cut_one), ...);
        },
        containers_);
}

void world::make_points(matrix& target, std::vector<std::size_t> const& rows)
{
    points_ = &target;
    if (!is_fitting_) return;
    bool const fits = !target.empty() && std::count(rows.begin(), rows.end(), target.rows()) > 0;
    if (fits && !is_rare(8)) return;

    target = matrix();
    static_cast<void>(target.resize(rows[up_to(rows.size() - 1)], length()));
    std::size_t const form = up_to(4);
    double const step = ordinary();
    double const height = ordinary();
    for (std::size_t j = 0; j < target.cols(); ++j) {
        auto const k = static_cast<double>(j);
        double const forms[][3] = {{step * k, height * double(j % 2), height * double(j % 3)},
            {height * std::cos(step * k), height * std::sin(step * k), step * k}, {step * k, height * k, k},
            {step, height, 1}};
        for (std::size_t i = 0; i < target.rows(); ++i)
            target(i, j) = form == 4 || i > 2 ? ordinary() : forms[form][i];
    }
}

void world::tangents(matrix& target)
{
    if (!is_fitting_ || target.empty()) make_points(target, {2, 3});
    if (is_fitting_) static_cast<void>(target.resize(2 + up_to(1), entries_, 0.5));
}

void world::tensors(matrix& target)
{
    if (!is_fitting_) return;
    std::size_t const dims = points_ ? points_->rows() : 2 + up_to(1);
    std::size_t const rows = dims == 2 ? 3 : 6;
    if (target.rows() == rows && target.cols() >= entries_ && vornik::are_valid_metrics(target)) return;

    target = matrix();
    static_cast<void>(target.resize(rows, entries_, 0.0));
    for (std::size_t j = 0; j < target.cols(); ++j) {
        double const targets[] = {std::pow(size(), -2), std::pow(size(), -2), std::pow(size(), -2)};
        double const tilt = ordinary() / 16 * std::min({targets[0], targets[1], targets[2]});
        double const packed[] = {targets[0], tilt, targets[1], tilt, -tilt, targets[2]};
        std::copy_n(packed, rows, target.col(j));
    }
}

void world::more_tensors(matrix& target)
{
    if (is_fitting_ && points_ && target.rows() != (points_->rows() == 2 ? 3 : 6)) target.clear();
}

void world::make_elements(elements& target, std::size_t rows)
{
    elements_ = &target;
    if (!is_fitting_) return;
    auto const nodes = static_cast<unsigned>(std::max<std::size_t>(node_count(), 1));
    bool const fits = target.rows() == rows && target.cols() > 0 &&
                      vornik::check_IDs(target, vornik::element_type::edge, nodes);
    if (fits && !is_rare(8)) return;

    target = elements();
    static_cast<void>(target.resize(rows, length()));
    bool const is_line = !is_rare(3);
    auto const begin = static_cast<unsigned>(up_to(nodes - 1));
    for (std::size_t j = 0; j < target.cols(); ++j)
        for (std::size_t i = 0; i < rows; ++i)
            target(i, j) = is_line ? (begin + static_cast<unsigned>(i + j)) % nodes
                                   : static_cast<unsigned>(up_to(nodes - 1));
}

void world::neighbors(elements& target)
{
    if (is_fitting_ && elements_)
        static_cast<void>(vornik::get_neighbors(*elements_, vornik::element_type::edge, false, target));
}

void world::make_chain(numbers& target, std::size_t fewest)
{
    if (is_fitting_) {
        auto const nodes = static_cast<unsigned>(std::max<std::size_t>(node_count(), 1));
        bool const fits = target.size() >= fewest && vornik::check_IDs(target, nodes);
        if (!fits || is_rare(8)) {
            target = numbers();
            static_cast<void>(target.resize(std::max(fewest, length())));
            std::size_t const form = up_to(3); // along the nodes, once round, with guide nodes, anyhow
            auto const begin = static_cast<unsigned>(up_to(nodes - 1));
            for (std::size_t k = 0; k < target.size(); ++k)
                target[k] = form == 3 ? static_cast<unsigned>(up_to(nodes - 1))
                                      : (begin + static_cast<unsigned>(k)) % nodes;
            std::size_t const last = target.size() - 1;
            if (form == 1) target[last] = target[0];
            if (form == 2) target[0] = target[1], target[last] = target[last - 1];
        }
    }
    entries_ = target.size();
}

void world::labels(numbers& target) const
{
    if (is_fitting_) static_cast<void>(target.resize(entries_, 1));
}

void world::element_numbers(numbers& target) const
{
    auto const count = static_cast<unsigned>(element_count());
    if (is_fitting_ && !vornik::check_IDs(target, count))
        for (unsigned& number : target) number = count > 0 ? number % count : 0;
}

void world::make_ascending(reals& target, double from, double to)
{
    for (double& value : target) value = from + (to - from) * static_cast<double>(up_to(16)) / 16;
    std::sort(target.begin(), target.end());
}

void world::values(reals& target)
{
    values_ = &target;
    entries_ = target.size();
    if (!is_fitting_ || target.size() > 1) return;
    target = reals(length());
    for (double& value : target) value = ordinary();
    entries_ = target.size();
}

void world::knots(reals& target)
{
    knots_ = &target;
    values_ = &target;
    if (is_fitting_ && (target.size() < 2 || !is_ascending(target))) {
        target = reals(length());
        make_ascending(target, -1, 3);
    }
    entries_ = target.size();
}

void world::wanted(reals& target)
{
    if (!is_fitting_ || knots_->empty()) return;
    double const from = (*knots_)[0];
    double const to = (*knots_)[knots_->size() - 1];
    if (target.empty() || !is_ascending(target) || !(target[0] >= from) || !(*(target.end() - 1) <= to)) {
        target = reals(length());
        make_ascending(target, from, to);
    }
}

void world::params(reals& target)
{
    if (!is_fitting_ || (target.size() == entries_ && is_ascending(target))) return;
    target = reals(entries_);
    if (is_rare(3))
        make_ascending(target, 0, 1);
    else
        std::iota(target.begin(), target.end(), 0.0);
}

void world::sizes(reals& target)
{
    if (!is_fitting_) return;
    std::size_t const old_size = target.size();
    static_cast<void>(target.resize(entries_));
    for (std::size_t k = 0; k < target.size(); ++k)
        if (k >= old_size || !(target[k] > 0 && target[k] <= limits::max())) target[k] = size();
}

void world::sizes_of_nodes(reals& target)
{
    if (!is_fitting_ || flag()) return;
    entries_ = node_count();
    sizes(target);
}
