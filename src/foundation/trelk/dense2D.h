#pragma once

#include <algorithm>
#include <cassert>
#include <cstddef>
#include <cstdint>
#include <utility>

#include <trelk/dense1D.h>
#include <trelk/vector_view.h>

namespace trelk {

/// A matrix of numbers, one thing per column, as a view of shared storage. Entry (i, j) stands `ld()` * j + i
/// values behind the first one, so columns are contiguous.
///
/// Views share values as those of `dense1D` do, and fail as they do. A matrix whose row count rises above its
/// leading dimension moves to storage of its own.
template <class T, int Alignment = 8>
class dense2D : public __vector_view<T, Alignment>
{
    using base = __vector_view<T, Alignment>;
    using base::offset_;
    using base::storage_;

public:
    using value_type = T; ///< Type of the values.

    /// Empty, without storage.
    dense2D() noexcept = default;

    /// A view of rows * cols values at `values`, column by column, without ownership.
    dense2D(std::size_t rows, std::size_t cols, T* values) noexcept
    {
        std::size_t needed = 0;
        if (!values || !extent(rows, cols, rows, needed)) return;
        storage_ = base::block::over(needed, values);
        if (storage_) rows_ = rows, cols_ = cols, ld_ = rows;
    }

    /// @{
    /// Another view of the same values. What is moved from is empty.
    dense2D(dense2D const&) noexcept = default;
    dense2D(dense2D&& other) noexcept : dense2D() { swap(other); }
    dense2D& operator=(dense2D const& other) noexcept
    {
        dense2D view(other);
        swap(view);
        return *this;
    }
    dense2D& operator=(dense2D&& other) noexcept
    {
        dense2D view(std::move(other));
        swap(view);
        return *this;
    }
    ~dense2D() = default;
    /// @}

    /// Number of rows.
    std::size_t rows() const noexcept { return rows_; }
    /// Number of columns.
    std::size_t cols() const noexcept { return cols_; }
    /// Leading dimension: the distance in values from a column to the next.
    std::size_t ld() const noexcept { return ld_; }
    /// Whether there are no entries.
    bool empty() const noexcept { return rows_ == 0 || cols_ == 0; }

    /// @{
    /// Entry (i, j), i < rows(), j < cols(): not tested in a release build.
    T& operator()(std::size_t i, std::size_t j) noexcept
    {
        assert(i < rows_ && j < cols_);
        return col(j)[i];
    }
    T const& operator()(std::size_t i, std::size_t j) const noexcept
    {
        assert(i < rows_ && j < cols_);
        return col(j)[i];
    }
    /// @}

    /// @{
    /// The rows() values of column j.
    T* col(std::size_t j) noexcept { return base::first() + j * ld_; }
    T const* col(std::size_t j) const noexcept { return base::first() + j * ld_; }
    /// @}

    /// Empties the view; its storage stays for reuse.
    void clear() noexcept { rows_ = cols_ = ld_ = 0; }

    /// Becomes a deep copy of `other`, packed, in storage of its own.
    [[nodiscard]] bool copy(dense2D const& other) noexcept
    {
        dense2D fresh;
        if (!fresh.resize(other.rows_, other.cols_)) return false;
        fresh.take_values_of(other);
        swap(fresh);
        return true;
    }

    /// Becomes another view of the values of `other`.
    void shallow_copy(dense2D const& other) noexcept { *this = other; }

    /// Makes room for `cols` columns of `rows` rows, so that growing up to that cannot fail. `growth` as in
    /// `dense1D::reserve`.
    [[nodiscard]] bool reserve(std::size_t rows, std::size_t cols, unsigned growth = 1) noexcept
    {
        if (!empty() && rows > ld_) return widen(rows, std::max(cols, cols_), growth);

        std::size_t needed = 0;
        std::size_t used = 0;
        return extent(rows, cols, empty() ? rows : ld_, needed) && extent(rows_, cols_, ld_, used) &&
               base::fit(needed, used, growth);
    }

    /// Keeps the leading rows and columns; new entries are indeterminate.
    [[nodiscard]] bool resize(std::size_t rows, std::size_t cols) noexcept
    {
        if (!reserve(rows, cols)) return false;
        if (empty()) ld_ = rows;
        rows_ = rows, cols_ = cols;
        return true;
    }

    /// Keeps the leading rows and columns; new entries are `value`.
    [[nodiscard]] bool resize(std::size_t rows, std::size_t cols, T value) noexcept
    {
        std::size_t const old_rows = rows_;
        std::size_t const old_cols = cols_;
        if (!resize(rows, cols)) return false;
        if (empty()) return true; // without rows there may be any number of columns
        for (std::size_t j = 0; j < cols; ++j) {
            std::size_t const kept = j < old_cols ? std::min(old_rows, rows) : 0;
            std::fill(col(j) + kept, col(j) + rows, value);
        }
        return true;
    }

    /// A view of a block of the matrix, or of as much of it as there is.
    dense2D sub_matrix(
        std::size_t first_row, std::size_t first_col, std::size_t rows, std::size_t cols) const noexcept
    {
        dense2D part;
        if (first_row >= rows_ || first_col >= cols_) return part;
        part.storage_ = storage_;
        part.offset_ = offset_ + first_col * ld_ + first_row;
        part.rows_ = std::min(rows, rows_ - first_row);
        part.cols_ = std::min(cols, cols_ - first_col);
        part.ld_ = ld_;
        return part;
    }

    /// All entries, column by column: a view where they stand side by side, else a packed copy (empty when
    /// there is no storage for it).
    dense1D<T, Alignment> as_vector() const noexcept
    {
        if (empty()) return {};
        if (ld_ == rows_ || cols_ == 1) return dense1D<T, Alignment>(storage_, offset_, rows_ * cols_);
        dense2D packed;
        if (!packed.copy(*this)) return {};
        return dense1D<T, Alignment>(packed.storage_, packed.offset_, rows_ * cols_);
    }

    /// Exchanges the two views; values stay where they are.
    void swap(dense2D& other) noexcept
    {
        std::swap(storage_, other.storage_);
        std::swap(offset_, other.offset_);
        std::swap(rows_, other.rows_);
        std::swap(cols_, other.cols_);
        std::swap(ld_, other.ld_);
    }

private:
    /// Values from the first entry to the last one; false when a size type cannot hold that.
    static bool extent(std::size_t rows, std::size_t cols, std::size_t ld, std::size_t& values) noexcept
    {
        if (rows == 0 || cols == 0) {
            values = 0;
            return true;
        }
        bool const is_small = (ld | cols) <= UINT32_MAX; // the product needs no test, which is a division
        if (!is_small && ld > (SIZE_MAX - rows) / cols) return false;
        values = ld * (cols - 1) + rows;
        return true;
    }

    /// Moves the entries to storage whose leading dimension is `ld`, with room for `cols` columns.
    bool widen(std::size_t ld, std::size_t cols, unsigned growth) noexcept
    {
        dense2D wide;
        std::size_t needed = 0;
        if (!extent(ld, cols, ld, needed) || !wide.fit(needed, 0, growth)) return false;
        wide.rows_ = rows_, wide.cols_ = cols_, wide.ld_ = ld;
        wide.take_values_of(*this);
        swap(wide);
        return true;
    }

    void take_values_of(dense2D const& other) noexcept
    {
        if (empty()) return;
        for (std::size_t j = 0; j < cols_; ++j) std::copy_n(other.col(j), rows_, col(j));
    }

    std::size_t rows_ = 0;
    std::size_t cols_ = 0;
    std::size_t ld_ = 0;
};

} // namespace trelk
