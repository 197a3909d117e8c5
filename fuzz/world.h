#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <tuple>
#include <vector>

#include <fuzzer/FuzzedDataProvider.h>

#include <vornik1d/vornik1d.h>

/// What one execution works on: a few containers of each kind, some of which share storage, and the stream of
/// bytes that decides what happens to them.
class world
{
public:
    using reals = trelk::dense1D<double>;
    using numbers = trelk::dense1D<unsigned>;
    using matrix = trelk::dense2D<double>;
    using elements = trelk::dense2D<unsigned>;

    world(std::uint8_t const* bytes, std::size_t count) : stream_(bytes, count) {}

    bool goes_on() { return stream_.remaining_bytes() > 0; }

    /// @name Draws
    /// @{
    std::size_t up_to(std::size_t largest) { return stream_.ConsumeIntegralInRange<std::size_t>(0, largest); }
    bool flag() { return stream_.ConsumeBool(); }
    bool is_rare(std::size_t one_in) { return up_to(one_in - 1) + 1 == one_in; }
    template <class T>
    T any();           // a hostile value now and then
    double ordinary(); // within -8 and 8
    double size();     // positive
    /// @}

    /// Begins a call. Its containers are fitted to each other, or taken as they are; each is an object and a
    /// storage block of its own, just as large as its values, or any that there is.
    void begin_call();

    /// A container for the next argument.
    template <class T>
    T& pick();

    /// Writes hostile values into containers, so that what was fitted is wrong in a place.
    void poke();

    /// Gives a container another size, other values, or storage that it shares with another one or with the
    /// caller.
    void reshape();

    /// Cuts containers that have grown, so that executions stay short.
    void cut();

    bool is_fitting() const { return is_fitting_; }

    /// Nodes that the last list of positions or parameters has now.
    std::size_t node_count() const;
    std::size_t element_count() const { return elements_ ? elements_->cols() : 0; }

    /// @name Fitters: each makes a container go with those that were picked before it in this call
    /// @{
    template <class T>
    void as_it_is(T&)
    {}
    template <std::size_t... Rows>
    void points(matrix& target)
    {
        make_points(target, {Rows...});
    }
    void tangents(matrix& target);     // one per entry
    void tensors(matrix& target);      // one per entry
    void more_tensors(matrix& target); // none, or as many rows as a tensor
    template <std::size_t Rows>
    void none_or_rows(matrix& target)
    {
        if (is_fitting_ && target.rows() != Rows) target.clear();
    }
    template <std::size_t Rows>
    void none_or_elements(elements& target)
    {
        if (is_fitting_ && target.rows() != Rows) target.clear();
    }
    template <std::size_t Rows>
    void elements_of(elements& target)
    {
        make_elements(target, Rows);
    }
    void neighbors(elements& target);
    void chain(numbers& target) { make_chain(target, 2); }
    void spline_chain(numbers& target) { make_chain(target, 4); }
    template <std::size_t Nodes>
    void chain_of_elements(numbers& target) // each begins where the one before ends
    {
        make_chain(target, Nodes);
        if (is_fitting_) static_cast<void>(target.resize(target.size() - (target.size() - 1) % (Nodes - 1)));
    }
    void labels(numbers& target) const; // one per entry
    void element_numbers(numbers& target) const;
    void values(reals& target); // these count as nodes
    void knots(reals& target);  // these ascend, and say how many entries there are
    void wanted(reals& target); // these ascend within the knots
    void params(reals& target); // one per entry, ascending
    void sizes(reals& target);  // one per entry, positive
    void sizes_of_nodes(reals& target);
    /// @}

private:
    template <class T>
    using slots = std::array<T, 4>;

    template <class T>
    slots<T>& slots_of();
    template <class T>
    void reshape_one(slots<T>& all);
    template <class T>
    void fill(T& target);
    template <class T>
    T* foreign(std::size_t count);

    std::size_t length();
    void make_points(matrix& target, std::vector<std::size_t> const& rows);
    void make_chain(numbers& target, std::size_t fewest);
    void make_elements(elements& target, std::size_t rows);
    void make_ascending(reals& target, double from, double to);

    FuzzedDataProvider stream_;
    std::tuple<std::vector<std::unique_ptr<double[]>>, std::vector<std::unique_ptr<unsigned[]>>> callers_;
    std::tuple<slots<reals>, slots<numbers>, slots<matrix>, slots<elements>> containers_;

    bool is_fitting_ = false;
    bool is_mixed_ = false;
    std::array<std::size_t, 4> next_{};
    std::size_t entries_ = 0;
    matrix const* points_ = nullptr;
    reals const* values_ = nullptr;
    reals const* knots_ = nullptr;
    elements const* elements_ = nullptr;
};

template <>
double world::any<double>();
template <>
unsigned world::any<unsigned>();
