#pragma once

#include <cstddef>
#include <functional>
#include <utility>

#include <trelk/Ptr.h>
#include <trelk/vector_num.h>

namespace trelk {

/// What one- and two-dimensional views have in common: a reference to a memory block and the place of the
/// view's first value in it. Invariant: the view's values lie within the block's capacity.
template <class T, int Alignment>
class __vector_view
{
public:
    /// How many values fit, from the view's first one on, before the memory block must grow.
    std::size_t room() const noexcept { return storage_ ? storage_->capacity() - offset_ : 0; }

    /// Whether `value` lies in the memory block. If it does, references to it end when the block grows.
    bool holds(T const& value) const noexcept
    {
        if (!storage_) return false;
        T const* const begin = storage_->data();
        return !std::less<>()(&value, begin) && std::less<>()(&value, begin + storage_->capacity());
    }

    /// The first value; null without a memory block.
    T* data() noexcept { return first(); }
    /// The first value; null without a memory block.
    T const* data() const noexcept { return first(); }

    /// @cond inside
protected:
    using block = vector_num<T, Alignment>;

    __vector_view() noexcept = default;
    __vector_view(Ptr<block> storage, std::size_t offset) noexcept
        : storage_(std::move(storage)), offset_(offset)
    {}

    /// Makes room for `needed` values from the view's first one on, of which `used` are in use. If other views
    /// share the memory block, all its values are kept for them.
    bool fit(std::size_t needed, std::size_t used, unsigned growth) noexcept
    {
        if (needed <= room()) return true;
        if (needed > SIZE_MAX - offset_) return false;
        if (!storage_) {
            Ptr<block> fresh = block::create();
            if (!fresh || !fresh->__grow(needed, 0, growth)) return false;
            storage_ = std::move(fresh), offset_ = 0;
            return true;
        }
        std::size_t const keep = storage_->use_count() == 1 ? offset_ + used : storage_->capacity();
        return storage_->__grow(offset_ + needed, keep, growth);
    }

    T* first() const noexcept { return storage_ ? storage_->data() + offset_ : nullptr; }

    Ptr<block> storage_;
    std::size_t offset_ = 0;
    /// @endcond
};

} // namespace trelk
