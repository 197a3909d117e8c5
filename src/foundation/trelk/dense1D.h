#pragma once

#include <algorithm>
#include <cassert>
#include <cstddef>
#include <type_traits>
#include <utility>

#include <trelk/vector_view.h>

namespace trelk {

template <class T, int Alignment>
class dense2D;

/// A list of numbers, as a view of shared storage.
///
/// Copies and sub-views share values: a change through one is seen by all, and the storage lives until the
/// last of them goes. `copy` makes values of one's own. A view that grows claims the values behind its end,
/// which another view of the same storage may be showing.
///
/// Nothing here throws. What needs storage returns false when there is none and leaves the view as it was;
/// a constructor then leaves it empty.
template <class T, int Alignment = 8>
class dense1D : public __vector_view<T, Alignment>
{
    using base = __vector_view<T, Alignment>;
    using base::offset_;
    using base::storage_;

public:
    using value_type = T; ///< Type of the values.

    /// Empty, without storage.
    dense1D() noexcept = default;

    /// n values, indeterminate.
    explicit dense1D(std::size_t n) noexcept { static_cast<void>(resize(n)); }

    /// n times `value`.
    dense1D(std::size_t n, T value) noexcept { static_cast<void>(resize(n, value)); }

    /// A view of the n values at `values`, without ownership: they must outlive every view of them. A view
    /// that grows past them moves to storage of its own. (A template, so that a 0 is a value, not a pointer.)
    template <class Pointer, class = std::enable_if_t<std::is_same_v<Pointer, T*>>>
    dense1D(std::size_t n, Pointer values) noexcept : base(values ? base::block::over(n, values) : nullptr, 0)
    {
        if (storage_) size_ = n;
    }

    /// @{
    /// Another view of the same values. What is moved from is empty.
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
    /// Entry i, i < size(): not tested in a release build.
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
    /// The values as a range, side by side.
    T* begin() noexcept { return base::first(); }
    T* end() noexcept { return base::first() + size_; }
    T const* begin() const noexcept { return base::first(); }
    T const* end() const noexcept { return base::first() + size_; }
    /// @}

    /// Empties the view; its storage stays for reuse.
    void clear() noexcept { size_ = 0; }

    /// Becomes a deep copy of `other`, in storage of its own.
    [[nodiscard]] bool copy(dense1D const& other) noexcept
    {
        dense1D fresh;
        if (!fresh.resize(other.size_)) return false;
        std::copy_n(other.begin(), other.size_, fresh.begin());
        swap(fresh);
        return true;
    }

    /// Makes room for n values, so that growing up to n cannot fail. Storage that has to grow grows to
    /// `growth` times its capacity if it can: 1 where the final size is known, 2 where values keep coming.
    [[nodiscard]] bool reserve(std::size_t n, unsigned growth = 1) noexcept
    {
        return base::fit(n, size_, growth);
    }

    /// Keeps the first n values; further ones are indeterminate.
    [[nodiscard]] bool resize(std::size_t n) noexcept
    {
        if (!reserve(n)) return false;
        size_ = n;
        return true;
    }

    /// Keeps the first n values; further ones are `value`.
    [[nodiscard]] bool resize(std::size_t n, T value) noexcept
    {
        std::size_t const old_size = size_;
        if (!resize(n)) return false;
        if (n > old_size) std::fill(begin() + old_size, end(), value);
        return true;
    }

    /// Appends `value`; false drops it.
    bool push_back(T value) noexcept
    {
        if (size_ == base::room() && !reserve(size_ + 1, 2)) return false;
        base::first()[size_++] = value;
        return true;
    }

    /// Appends `count` times `value`, all or none.
    [[nodiscard]] bool push_back_n(T value, std::size_t count) noexcept
    {
        if (count > SIZE_MAX - size_ || !reserve(size_ + count, 2)) return false;
        return resize(size_ + count, value);
    }

    /// A view of `count` values from `start` on, or of as many of them as there are.
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

private:
    template <class, int>
    friend class dense2D;

    dense1D(Ptr<typename base::block> storage, std::size_t offset, std::size_t size) noexcept
        : base(std::move(storage), offset), size_(size)
    {}

    std::size_t size_ = 0;
};

} // namespace trelk
