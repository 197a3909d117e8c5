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

/// Storage of at least `bytes` bytes, aligned for every scalar type; null when there is none.
TRELK_API void* __vector_num_alloc(std::size_t bytes) noexcept;

/// Storage of at least `bytes` bytes that begins with what `pointer` held, which came from here and is given
/// back; null, with `pointer` as it was, when there is none. Large storage moves without being copied.
TRELK_API void* __vector_num_realloc(void* pointer, std::size_t bytes) noexcept;

/// Gives back what `__vector_num_alloc` returned; null is allowed.
TRELK_API void __vector_num_free(void* pointer) noexcept;

/// The storage block that views share: a data pointer and a capacity in values. It grows and never shrinks,
/// so a view that once fitted always fits. Values behind the views' ends are indeterminate.
template <class T, int Alignment = 8>
class vector_num final : public sumvane::ref_counted
{
    static_assert(std::is_trivially_copyable_v<T>, "values are moved as bytes");
    static_assert(Alignment <= alignof(std::max_align_t) && alignof(T) <= alignof(std::max_align_t));

public:
    /// An empty block that owns what it will hold; null when there is no storage for it.
    [[nodiscard]] static vector_num* create() noexcept { return new (std::nothrow) vector_num(); }

    /// A block over n values of somebody else, who keeps them alive; null when there is no storage for it.
    /// Should it have to grow, it moves to storage of its own and leaves the foreign values behind.
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

    /// Makes room for `needed` values, keeping the first `keep`. A block that must grow grows to at least
    /// `factor` times its capacity. Where storage does not allow that, a factor above 1 becomes 5/4, then 17/16,
    /// so that near a limit of memory too a list does not move with every value; then just what is needed is
    /// asked for. False when storage cannot be had; the block is then as it was.
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

// Made once, in the shared library, for the two value types that its functions take.
extern template class TRELK_API vector_num<double>;
extern template class TRELK_API vector_num<unsigned>;

} // namespace trelk
