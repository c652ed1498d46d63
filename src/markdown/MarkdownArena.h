#pragma once

#include <cmark-gfm.h>

#include <cstddef>
#include <memory>
#include <vector>

namespace corvel {

/// The memory of one Markdown tree: handed out by moving a pointer, given back all at once. Large
/// blocks come from malloc, so that a growing one is moved by the system and freed when outgrown.
///
/// The parser's allocator has no context argument: the newest arena serves it, and arenas end in
/// the reverse order of their making.
class MarkdownArena {
public:
    MarkdownArena();
    MarkdownArena(const MarkdownArena&) = delete;
    MarkdownArena& operator=(const MarkdownArena&) = delete;
    ~MarkdownArena();

    /// The allocator to give the parser while this arena is the newest.
    static cmark_mem* allocator();

private:
    struct Header;
    static void* allocateZeroed(std::size_t count, std::size_t size);
    static void* reallocate(void* block, std::size_t size);
    static void release(void* block);

    char* allocate(std::size_t size);
    char* allocateSmall(std::size_t size);
    char* allocateLarge(std::size_t size);
    char* resize(char* block, std::size_t size);
    void addSlab();

    std::vector<std::unique_ptr<char[]>> m_slabs;
    std::vector<Header*> m_large;
    char* m_next = nullptr;
    char* m_end = nullptr;
    MarkdownArena* m_outer;
};

}  // namespace corvel
