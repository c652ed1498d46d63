#include "support/BenchFolder.h"

#include <cstdlib>
#include <stdexcept>
#include <string>
#include <system_error>

namespace corvel {

BenchFolder::BenchFolder() {
    const std::filesystem::path parent = CORVEL_BENCH_CACHE;
    std::filesystem::create_directories(parent);
    std::string pattern = (parent / "run-XXXXXX").string();
    if (mkdtemp(pattern.data()) == nullptr) throw std::runtime_error("no folder: " + pattern);
    m_path = pattern;
}

BenchFolder::~BenchFolder() {
    std::error_code ignored;
    std::filesystem::remove_all(m_path, ignored);
}

}  // namespace corvel
