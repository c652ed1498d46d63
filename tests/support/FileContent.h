#pragma once

#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

namespace corvel {

/// The bytes of a file; empty when it cannot be read.
inline std::string contentOf(const std::filesystem::path& file) {
    std::ifstream stream(file, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), {}};
}

}  // namespace corvel
