#include "markdown/MarkdownArena.h"

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <cstring>

namespace corvel {

struct MarkdownArena::Header {
    std::size_t size;        // of the block that follows
    std::size_t largeIndex;  // place among the large blocks, or kSmall
};

namespace {

constexpr std::size_t kSmall = SIZE_MAX;
constexpr std::size_t kAlignment = 16;
constexpr std::size_t kSlabSize = std::size_t{512} * 1024;
constexpr std::size_t kLargeFrom = std::size_t{64} * 1024;
constexpr std::size_t kBlockLimit = std::size_t{1} << 40U;

MarkdownArena* newestArena = nullptr;
constexpr std::size_t kMostSpareSlabs = 16;

using Slab = std::unique_ptr<char[]>;

// Kept from one document to the next: fresh slabs cost page faults on every keystroke, more than
// the parsing itself.
std::vector<Slab>& spareSlabs() {
    static std::vector<Slab> slabs;
    return slabs;
}

Slab takeSlab() {
    auto& spare = spareSlabs();
    if (spare.empty()) return Slab(new (std::nothrow) char[kSlabSize]);
    Slab slab = std::move(spare.back());
    spare.pop_back();
    return slab;
}

std::size_t aligned(std::size_t size) {
    return (size + kAlignment - 1) & ~(kAlignment - 1);
}

}  // namespace

MarkdownArena::MarkdownArena() : m_outer(newestArena) {
    newestArena = this;
}

MarkdownArena::~MarkdownArena() {
    for (Header* block : m_large)
        std::free(block);
    auto& spare = spareSlabs();
    while (!m_slabs.empty() && spare.size() < kMostSpareSlabs) {
        spare.push_back(std::move(m_slabs.back()));
        m_slabs.pop_back();
    }
    newestArena = m_outer;
}

cmark_mem* MarkdownArena::allocator() {
    static cmark_mem functions = {allocateZeroed, reallocate, release};
    return &functions;
}

// The parser cannot be left by an exception and does not check for null: out of memory ends here.
void* MarkdownArena::allocateZeroed(std::size_t count, std::size_t size) {
    if (size != 0 && count > kBlockLimit / size) std::abort();
    char* block = newestArena->allocate(count * size);
    std::memset(block, 0, count * size);
    return block;
}

void* MarkdownArena::reallocate(void* block, std::size_t size) {
    if (size > kBlockLimit) std::abort();
    if (block == nullptr) return newestArena->allocate(size);
    return newestArena->resize(static_cast<char*>(block), size);
}

void MarkdownArena::release(void* block) {
    if (block == nullptr) return;
    Header* header = static_cast<Header*>(block) - 1;
    if (header->largeIndex == kSmall) return;
    auto& large = newestArena->m_large;
    large.back()->largeIndex = header->largeIndex;
    large[header->largeIndex] = large.back();
    large.pop_back();
    std::free(header);
}

char* MarkdownArena::allocate(std::size_t size) {
    return size < kLargeFrom ? allocateSmall(size) : allocateLarge(size);
}

char* MarkdownArena::allocateSmall(std::size_t size) {
    const std::size_t needed = sizeof(Header) + aligned(size);
    if (static_cast<std::size_t>(m_end - m_next) < needed) addSlab();
    auto* header = new (m_next) Header{size, kSmall};
    m_next += needed;
    return reinterpret_cast<char*>(header + 1);
}

char* MarkdownArena::allocateLarge(std::size_t size) {
    auto* header = static_cast<Header*>(std::malloc(sizeof(Header) + size));
    if (header == nullptr) std::abort();
    *header = {size, m_large.size()};
    m_large.push_back(header);
    return reinterpret_cast<char*>(header + 1);
}

char* MarkdownArena::resize(char* block, std::size_t size) {
    Header* header = reinterpret_cast<Header*>(block) - 1;
    if (header->largeIndex != kSmall) {
        auto* moved = static_cast<Header*>(std::realloc(header, sizeof(Header) + size));
        if (moved == nullptr) std::abort();
        moved->size = size;
        m_large[moved->largeIndex] = moved;
        return reinterpret_cast<char*>(moved + 1);
    }
    if (size <= aligned(header->size)) {
        header->size = std::max(header->size, size);
        return block;
    }
    const std::size_t oldSize = header->size;
    // The newest block grows where it stands.
    if (block + aligned(oldSize) == m_next && size < kLargeFrom &&
        aligned(size) <= static_cast<std::size_t>(m_end - block)) {
        header->size = size;
        m_next = block + aligned(size);
        return block;
    }
    char* moved = allocate(size);
    std::memcpy(moved, block, oldSize);
    return moved;
}

// A small block is always shorter than a slab.
void MarkdownArena::addSlab() {
    auto slab = takeSlab();
    if (!slab) std::abort();
    m_next = slab.get();
    m_end = m_next + kSlabSize;
    m_slabs.push_back(std::move(slab));
}

}  // namespace corvel
