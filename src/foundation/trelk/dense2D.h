#pragma once

#include <algorithm>
#include <cassert>
#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <iterator>
#include <type_traits>
#include <utility>

#include <trelk/dense1D.h>
#include <trelk/vector_view.h>

namespace trelk {

/// One column of a matrix: a range of its values, valid until the matrix grows.
template <class T>
struct matrix_column
{
    T* first;         ///< The value in row 0.
    std::size_t rows; ///< Number of values.

    T* data() const noexcept { return first; }         ///< The value in row 0.
    T* begin() const noexcept { return first; }        ///< The value in row 0.
    T* end() const noexcept { return first + rows; }   ///< After the last value.
    std::size_t size() const noexcept { return rows; } ///< Number of values.
    /// The value in row i, which must be below `rows`; only debug builds test it.
    T& operator[](std::size_t i) const noexcept
    {
        assert(i < rows);
        return first[i];
    }
};

/// The columns of a matrix, as a range of `matrix_column`. It keeps the values of a temporary matrix alive.
template <class T>
class matrix_columns
{
public:
    /// Steps from column to column.
    class iterator
    {
    public:
        using value_type = matrix_column<T>;               ///< A column.
        using reference = value_type;                      ///< A column, by value.
        using pointer = void;                              ///< None.
        using difference_type = std::ptrdiff_t;            ///< Difference of two positions.
        using iterator_category = std::input_iterator_tag; ///< Since columns come by value.

        /// @{
        /// The usual operations of an iterator.
        iterator() noexcept = default;
        value_type operator*() const noexcept { return {base_ + at_ * ld_, rows_}; }
        iterator& operator++() noexcept { return ++at_, *this; }
        iterator operator++(int) noexcept
        {
            iterator const before = *this;
            ++at_;
            return before;
        }
        bool operator==(iterator const& other) const noexcept { return at_ == other.at_; }
        bool operator!=(iterator const& other) const noexcept { return at_ != other.at_; }
        /// @}

    private:
        friend class matrix_columns;
        iterator(T* base, std::size_t rows, std::size_t ld, std::size_t at) noexcept
            : base_(base), rows_(rows), ld_(ld), at_(at)
        {}

        T* base_ = nullptr;
        std::size_t rows_ = 0;
        std::size_t ld_ = 0;
        std::size_t at_ = 0;
    };

    /// `cols` columns of `rows` rows from `base` on, `ld` values from one to the next.
    matrix_columns(
        T* base, std::size_t rows, std::size_t cols, std::size_t ld, Ptr<sumvane::ref_counted> owner) noexcept
        : begin_(base, rows, ld, 0), end_(base, rows, ld, cols), owner_(std::move(owner))
    {}

    std::size_t size() const noexcept { return end_.at_; } ///< Number of columns.
    iterator begin() const noexcept { return begin_; }     ///< The first column.
    iterator end() const noexcept { return end_; }         ///< After the last column.

private:
    iterator begin_;
    iterator end_;
    Ptr<sumvane::ref_counted> owner_;
};

/// A matrix of numbers, one thing per column, which may share its values with other matrices.
///
/// What views share:
///   - `b = a`, `dense2D b(a)`, `sub_matrix` and `shallow_copy` make views: they show the same values.
///   - A value that changes through one view changes in all. The values live until their last view is gone.
///   - Each view has its own rows and columns. A view that grows writes to the entries after its end, and
///     another view may be showing the same entries. If its rows no longer fit, it moves to memory of its own.
///   - `copy` makes values of its own. So do the constructors, except the two that say "view".
///
/// Entry (i, j) is `ld()` * j + i values after the first one, so each column is contiguous. Nothing here
/// throws. If memory runs out, operations and constructors behave as those of `dense1D`.
template <class T, int Alignment>
class dense2D : public __vector_view<T, Alignment>
{
    using base = __vector_view<T, Alignment>;
    using base::offset_;
    using base::storage_;

public:
    using value_type = T; ///< Type of the values.

    /// Empty.
    dense2D() noexcept = default;

    /// `rows` x `cols` zeros. A matrix by its columns has two levels of braces, see below.
    template <class Rows, class Cols,
        class = std::enable_if_t<std::is_integral_v<Rows> && std::is_integral_v<Cols>>>
    explicit dense2D(Rows rows, Cols cols) noexcept
    {
        static_cast<void>(resize(static_cast<std::size_t>(rows), static_cast<std::size_t>(cols), T()));
    }

    /// A matrix by its columns: `dense2D<double> coords{{0, 0}, {10, 0}, {10, 6}}` has 2 rows and 3 columns.
    /// Columns of different lengths make an empty matrix.
    dense2D(std::initializer_list<std::initializer_list<T>> columns) noexcept
    {
        std::size_t const rows = columns.size() > 0 ? columns.begin()->size() : 0;
        for (auto const& column : columns)
            if (column.size() != rows) return;
        if (!resize(rows, columns.size()) || rows == 0) return;
        std::size_t j = 0;
        for (auto const& column : columns) std::copy_n(column.begin(), rows, col(j++));
    }

    /// A copy of the values of a contiguous range (`std::vector`, `std::array`, ...), column by column. Empty
    /// unless the range has rows * cols values.
    template <class Range, class = std::enable_if_t<std::is_class_v<Range>>,
        class = trelk_detail::if_contiguous<Range>>
    dense2D(std::size_t rows, std::size_t cols, Range const& range) noexcept
    {
        static_assert(std::is_same_v<trelk_detail::value_of<Range>, T>,
            "a dense2D is copied from a range of its own value type");
        std::size_t needed = 0;
        if (!extent(rows, cols, rows, needed) || std::size(range) != needed) return;
        if (resize(rows, cols)) std::copy_n(std::data(range), needed, base::first());
    }

    /// A view of the rows * cols values at `values`, column by column, which the caller keeps alive as long as
    /// any view of them.
    template <class Pointer, class = std::enable_if_t<std::is_pointer_v<Pointer>>>
    dense2D(std::size_t rows, std::size_t cols, Pointer values) noexcept
    {
        static_assert(
            std::is_same_v<Pointer, T*>, "a dense2D views values of its own type that are not const: T*");
        std::size_t needed = 0;
        if (!values || !extent(rows, cols, rows, needed)) return;
        storage_ = base::block::over(needed, values);
        if (storage_) rows_ = rows, cols_ = cols, ld_ = rows;
    }

    /// @{
    /// A view of the same values. The source of a move is empty afterwards.
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
    /// Leading dimension: the distance in values from one column to the next.
    std::size_t ld() const noexcept { return ld_; }
    /// Whether there are no entries.
    bool empty() const noexcept { return rows_ == 0 || cols_ == 0; }

    /// @{
    /// Entry (i, j) with i < rows() and j < cols(); only debug builds test it.
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

    /// @{
    /// The columns as a range: `for (auto point : coords.columns()) use(point[0], point[1]);`
    matrix_columns<T> columns() noexcept { return {base::first(), rows_, cols_, ld_, storage_.get()}; }
    matrix_columns<T const> columns() const noexcept
    {
        return {base::first(), rows_, cols_, ld_, storage_.get()};
    }
    /// @}

    /// Empties the view and keeps its memory for reuse.
    void clear() noexcept { rows_ = cols_ = ld_ = 0; }

    /// Becomes a copy of `other`, with values of its own and `ld()` equal to `rows()`.
    [[nodiscard]] bool copy(dense2D const& other) noexcept
    {
        dense2D fresh;
        if (!fresh.resize(other.rows_, other.cols_)) return false;
        fresh.take_values_of(other);
        swap(fresh);
        return true;
    }

    /// Becomes a view of the values of `other`, as `*this = other` does.
    void shallow_copy(dense2D const& other) noexcept { *this = other; }

    /// Makes room for `cols` columns of `rows` rows, so that growing up to that cannot fail. `growth` is as in
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

    /// A view of a block of the matrix, or of the part of the block that exists.
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

    /// All entries, column by column: a view if they are contiguous, otherwise a copy (empty if memory runs
    /// out).
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

    /// Whether both have the same shape and the same entries.
    friend bool operator==(dense2D const& a, dense2D const& b) noexcept
    {
        if (a.rows_ != b.rows_ || a.cols_ != b.cols_) return false;
        if (a.empty()) return true;
        for (std::size_t j = 0; j < a.cols_; ++j)
            if (!std::equal(a.col(j), a.col(j) + a.rows_, b.col(j))) return false;
        return true;
    }
    /// The opposite.
    friend bool operator!=(dense2D const& a, dense2D const& b) noexcept { return !(a == b); }

private:
    /// The number of values from the first entry to the last; false if it overflows.
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

    /// Moves the entries to memory with leading dimension `ld` and room for `cols` columns.
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
