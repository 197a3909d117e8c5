#pragma once

#include <cstddef>

/// While one stands, storage is scarce: allocation number `first` is refused, alone or with all behind it, and
/// so is whatever goes beyond a budget that keeps executions short.
class scarce_storage
{
public:
    static constexpr std::size_t none = static_cast<std::size_t>(-1);

    scarce_storage(std::size_t first, bool all_behind);
    scarce_storage(scarce_storage const&) = delete;
    scarce_storage& operator=(scarce_storage const&) = delete;
    ~scarce_storage();
};
