#pragma once

#include <cstddef>
#include <functional>
#include <string_view>

namespace corvel {

/// Folds one more value into a hash.
template <typename T>
void hashCombine(std::size_t& seed, const T& value) {
    seed ^= std::hash<T>{}(value) + 0x9E3779B97F4A7C15ULL + (seed << 6) + (seed >> 2);
}

}  // namespace corvel
