#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <new>
#include <type_traits>
#include <utility>

#include <trelk/export.h>
#include <trelk/ref_counted.h>

namespace trelk {

/// Allocates at least `bytes` bytes, aligned for every scalar type. Null if memory runs out.
TRELK_API void* __vector_num_alloc(std::size_t bytes) noexcept;

/// Resizes an allocation of `__vector_num_alloc` to at least `bytes` bytes and keeps its contents. Null if
/// memory runs out; the allocation is then as it was. Large allocations can move without a copy.
TRELK_API void* __vector_num_realloc(void* pointer, std::size_t bytes) noexcept;

/// Frees an allocation of these two functions; null is allowed.
TRELK_API void __vector_num_free(void* pointer) noexcept;

/// The memory block that views share: a data pointer and a capacity in values. It never shrinks, so a view
/// that has fitted once always fits. Values after the ends of the views are indeterminate.
template <class T, int Alignment = 8>
class vector_num final : public sumvane::ref_counted
{
    static_assert(std::is_trivially_copyable_v<T>, "values are moved as bytes");
    static_assert(Alignment <= alignof(std::max_align_t) && alignof(T) <= alignof(std::max_align_t));

public:
    /// An empty block that owns its values. Null if memory runs out.
    [[nodiscard]] static vector_num* create() noexcept { return new (std::nothrow) vector_num(); }

    /// A block over n values that the caller owns and keeps alive. Null if memory runs out. If the block must
    /// grow, it moves to memory of its own; the caller's values stay as they are.
    [[nodiscard]] static vector_num* over(std::size_t n, T* data) noexcept
    {
        auto* block = create();
        if (block) block->data_ = data, block->capacity_ = n, block->owned_ = false;
        return block;
    }

    ~vector_num() override
    {
        if (owned_) __vector_num_free(data_);
    }

    T* data() const noexcept { return data_; }
    std::size_t capacity() const noexcept { return capacity_; }

    /// Makes room for `needed` values and keeps the first `keep`. A block that must grow becomes at least
    /// `factor` times as large. If memory does not suffice and `factor` is above 1, it tries 5/4, then 17/16,
    /// and at last exactly `needed`. So a list does not move with every new value, even near a memory limit.
    /// False if all attempts fail; the block is then as it was.
    [[nodiscard]] bool __grow(std::size_t needed, std::size_t keep, unsigned factor) noexcept
    {
        if (needed <= capacity_) return true;
        if (needed > most_values) return false;

        if (factor > 1) {
            bool const can_multiply = capacity_ <= most_values / factor;
            std::size_t const steps[] = {
                can_multiply ? capacity_ * factor : 0, capacity_ + capacity_ / 4, capacity_ + capacity_ / 16};
            for (std::size_t const generous : steps)
                if (generous > needed && generous <= most_values && move_to(generous, keep)) return true;
        }
        return move_to(needed, keep);
    }

private:
    static constexpr std::size_t most_values = static_cast<std::size_t>(PTRDIFF_MAX) / sizeof(T);

    vector_num() noexcept = default;

    bool move_to(std::size_t capacity, std::size_t keep) noexcept
    {
        keep = std::min(keep, capacity_);
        bool const can_stay = owned_ && keep > 0;
        auto* const data = static_cast<T*>(can_stay ? __vector_num_realloc(data_, capacity * sizeof(T))
                                                    : __vector_num_alloc(capacity * sizeof(T)));
        if (!data) return false;

        if (!can_stay) {
            if (keep > 0) std::memcpy(data, data_, keep * sizeof(T));
            if (owned_) __vector_num_free(data_);
        }
        data_ = data, capacity_ = capacity, owned_ = true;
        return true;
    }

    T* data_ = nullptr;
    std::size_t capacity_ = 0;
    bool owned_ = true;
};

// Instantiated once, in the shared library, for the value types of its functions.
extern template class TRELK_API vector_num<double>;
extern template class TRELK_API vector_num<unsigned>;

} // namespace trelk
