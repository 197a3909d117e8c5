#pragma once

#include <atomic>
#include <cstddef>

#include <trelk/export.h>

namespace trelk::sumvane {

/// Base of the memory blocks that views share. The count is atomic, so views of one block may be made and
/// dropped in different threads. The values are not guarded.
class TRELK_API ref_counted
{
public:
    ref_counted() noexcept;
    ref_counted(ref_counted const&) = delete;
    ref_counted& operator=(ref_counted const&) = delete;
    virtual ~ref_counted();

    void retain() noexcept { count_.fetch_add(1, std::memory_order_relaxed); }

    void release() noexcept
    {
        if (count_.fetch_sub(1, std::memory_order_acq_rel) == 1) __destroy();
    }

    std::size_t use_count() const noexcept { return count_.load(std::memory_order_acquire); }

    /// Called once, when the last reference goes.
    virtual void __destroy() noexcept;

private:
    std::atomic<std::size_t> count_{0};
};

} // namespace trelk::sumvane
