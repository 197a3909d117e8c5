#pragma once

#include <algorithm>
#include <cassert>
#include <cstddef>
#include <initializer_list>
#include <iterator>
#include <type_traits>
#include <utility>

#include <trelk/vector_view.h>

namespace trelk {

template <class T, int Alignment = 8>
class dense2D;

/// @cond inside
namespace trelk_detail {

template <class Range>
using value_of = std::remove_cv_t<std::remove_pointer_t<decltype(std::data(std::declval<Range const&>()))>>;

/// Whether a class has contiguous values and their count; arrays have.
template <class Range>
using if_contiguous = std::void_t<value_of<Range>, decltype(std::size(std::declval<Range const&>()))>;

} // namespace trelk_detail
/// @endcond

/// A list of numbers, which may share its values with other lists.
///
/// What views share:
///   - `b = a`, `dense1D b(a)` and `sub_vector` make views: they show the same values, not copies of them.
///   - A value that changes through one view changes in all. The values live until their last view is gone.
///   - Each view has its own size. A view that grows writes to the entries after its end, and another view may
///     be showing the same entries. Growing can move the values; then pointers are invalid, but views are not.
///   - `copy` makes values of its own. So do the constructors, except the two that say "view".
///
/// Nothing here throws. If memory runs out, an operation returns false and leaves the list as it was; a
/// constructor makes an empty list.
template <class T, int Alignment = 8>
class dense1D : public __vector_view<T, Alignment>
{
    using base = __vector_view<T, Alignment>;
    using base::offset_;
    using base::storage_;

public:
    using value_type = T; ///< Type of the values.

    /// Empty.
    dense1D() noexcept = default;

    /// n zeros.
    explicit dense1D(std::size_t n) noexcept : dense1D(n, T()) {}

    /// n times `value`. With braces instead, `dense1D<unsigned>{5, 7}` is the list of 5 and 7.
    dense1D(std::size_t n, T value) noexcept { static_cast<void>(resize(n, value)); }

    /// The values between the braces: `dense1D<unsigned> chain{0, 1, 2}`.
    dense1D(std::initializer_list<T> values) noexcept { take(values.begin(), values.size()); }

    /// A copy of the values of a `std::vector`, `std::array`, `std::span`, C array, or any other contiguous
    /// range of T.
    template <class Range, class = trelk_detail::if_contiguous<Range>,
        class = std::enable_if_t<!std::is_base_of_v<dense1D, Range>>>
    explicit dense1D(Range const& range) noexcept
    {
        static_assert(std::is_same_v<trelk_detail::value_of<Range>, T>,
            "a dense1D is copied from a range of its own value type");
        take(std::data(range), std::size(range));
    }

    /// A view of the n values at `values`, which the caller keeps alive as long as any view of them. A view
    /// that grows past them moves to memory of its own.
    template <class Pointer, class = std::enable_if_t<std::is_pointer_v<Pointer>>>
    dense1D(std::size_t n, Pointer values) noexcept
    {
        static_assert(
            std::is_same_v<Pointer, T*>, "a dense1D views values of its own type that are not const: T*");
        if (!values) return;
        storage_ = base::block::over(n, values);
        if (storage_) size_ = n;
    }

    /// @{
    /// A view of the same values. The source of a move is empty afterwards.
    dense1D(dense1D const&) noexcept = default;
    dense1D(dense1D&& other) noexcept : dense1D() { swap(other); }
    dense1D& operator=(dense1D const& other) noexcept
    {
        dense1D view(other);
        swap(view);
        return *this;
    }
    dense1D& operator=(dense1D&& other) noexcept
    {
        dense1D view(std::move(other));
        swap(view);
        return *this;
    }
    ~dense1D() = default;
    /// @}

    /// Number of values.
    std::size_t size() const noexcept { return size_; }
    /// Whether there are none.
    bool empty() const noexcept { return size_ == 0; }

    /// @{
    /// Entry i, which must be below size(); only debug builds test it.
    T& operator[](std::size_t i) noexcept
    {
        assert(i < size_);
        return base::first()[i];
    }
    T const& operator[](std::size_t i) const noexcept
    {
        assert(i < size_);
        return base::first()[i];
    }
    /// @}

    /// @{
    /// The first and the last value of a list that is not empty; only debug builds test it.
    T& front() noexcept { return (*this)[0]; }
    T& back() noexcept { return (*this)[size_ - 1]; }
    T const& front() const noexcept { return (*this)[0]; }
    T const& back() const noexcept { return (*this)[size_ - 1]; }
    /// @}

    /// @{
    /// The values, contiguous in memory.
    T* begin() noexcept { return base::first(); }
    T* end() noexcept { return base::first() + size_; }
    T const* begin() const noexcept { return base::first(); }
    T const* end() const noexcept { return base::first() + size_; }
    /// @}

    /// Empties the view and keeps its memory for reuse.
    void clear() noexcept { size_ = 0; }

    /// Becomes a copy of `other`, with values of its own.
    [[nodiscard]] bool copy(dense1D const& other) noexcept
    {
        dense1D fresh;
        if (!fresh.resize(other.size_)) return false;
        std::copy_n(other.begin(), other.size_, fresh.begin());
        swap(fresh);
        return true;
    }

    /// Makes room for n values, so that growing up to n cannot fail. If memory must grow, it grows to `growth`
    /// times its capacity if possible: pass 1 if n is the final size, 2 if values keep coming.
    [[nodiscard]] bool reserve(std::size_t n, unsigned growth = 1) noexcept
    {
        return base::fit(n, size_, growth);
    }

    /// Keeps the first n values; new ones are indeterminate.
    [[nodiscard]] bool resize(std::size_t n) noexcept
    {
        if (!reserve(n)) return false;
        size_ = n;
        return true;
    }

    /// Keeps the first n values; new ones are `value`.
    [[nodiscard]] bool resize(std::size_t n, T value) noexcept
    {
        std::size_t const old_size = size_;
        if (!resize(n)) return false;
        if (n > old_size) std::fill(begin() + old_size, end(), value);
        return true;
    }

    /// Appends `value`, or returns false if memory runs out.
    bool push_back(T value) noexcept
    {
        if (size_ == base::room() && !reserve(size_ + 1, 2)) return false;
        base::first()[size_++] = value;
        return true;
    }

    /// Appends `value` `count` times, or nothing.
    [[nodiscard]] bool push_back_n(T value, std::size_t count) noexcept
    {
        if (count > SIZE_MAX - size_ || !reserve(size_ + count, 2)) return false;
        return resize(size_ + count, value);
    }

    /// A view of the `count` values from `start` on, or of those that exist.
    dense1D sub_vector(std::size_t start, std::size_t count) const noexcept
    {
        start = std::min(start, size_);
        return dense1D(storage_, offset_ + start, std::min(count, size_ - start));
    }

    /// Exchanges the two views; values stay where they are.
    void swap(dense1D& other) noexcept
    {
        std::swap(storage_, other.storage_);
        std::swap(offset_, other.offset_);
        std::swap(size_, other.size_);
    }

    /// Whether both have the same values in the same order.
    friend bool operator==(dense1D const& a, dense1D const& b) noexcept
    {
        return std::equal(a.begin(), a.end(), b.begin(), b.end());
    }
    /// The opposite.
    friend bool operator!=(dense1D const& a, dense1D const& b) noexcept { return !(a == b); }

private:
    template <class, int>
    friend class dense2D;

    dense1D(Ptr<typename base::block> storage, std::size_t offset, std::size_t size) noexcept
        : base(std::move(storage), offset), size_(size)
    {}

    void take(T const* values, std::size_t n) noexcept
    {
        if (resize(n)) std::copy_n(values, n, begin());
    }

    std::size_t size_ = 0;
};

} // namespace trelk
