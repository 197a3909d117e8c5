#pragma once

#include <cstddef>

#include <trelk/dense1D.h>

namespace trelk::vornik1d {

/// A bit for each element, initially clear.
class element_flags
{
public:
    [[nodiscard]] bool init(std::size_t count) noexcept { return words_.resize(count / 32 + 1, 0); }
    bool test(std::size_t e) const noexcept { return (words_[e / 32] >> e % 32 & 1U) != 0; }
    void set(std::size_t e) noexcept { words_[e / 32] |= 1U << e % 32; }

private:
    dense1D<unsigned> words_;
};

} // namespace trelk::vornik1d
