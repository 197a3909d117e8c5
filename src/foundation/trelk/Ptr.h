#pragma once

#include <utility>

namespace trelk {

/// Holds one reference to an X, which derives from `sumvane::ref_counted`, or none.
template <class X>
class Ptr
{
public:
    Ptr() noexcept = default;
    Ptr(X* object) noexcept : object_(object)
    {
        if (object_) object_->retain();
    }
    Ptr(Ptr const& other) noexcept : Ptr(other.object_) {}
    Ptr(Ptr&& other) noexcept : object_(std::exchange(other.object_, nullptr)) {}
    ~Ptr()
    {
        if (object_) object_->release();
    }

    /// Takes the new reference before it drops the old one, so self-assignment is safe.
    Ptr& operator=(Ptr other) noexcept
    {
        std::swap(object_, other.object_);
        return *this;
    }

    X* get() const noexcept { return object_; }
    X* operator->() const noexcept { return object_; }
    X& operator*() const noexcept { return *object_; }
    explicit operator bool() const noexcept { return object_ != nullptr; }

private:
    X* object_ = nullptr;
};

} // namespace trelk
