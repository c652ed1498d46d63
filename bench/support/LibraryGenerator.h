#pragma once

#include "model/Note.h"

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

namespace corvel {

class PersistenceController;

/// Made-up libraries that look like a person's: Polish and English notes, most around 2 KB, some of
/// 100 KB, a few of 1 MB, with tags, folders and dates spread over ten years. Everything follows
/// from the seed and a note's number, so a note is the same in every library.
class LibraryGenerator {
public:
    static constexpr std::uint32_t kDefaultSeed = 20240517;
    static constexpr std::size_t kTagCount = 200;
    static constexpr std::size_t kFolderCount = 60;

    explicit LibraryGenerator(std::uint32_t seed = kDefaultSeed);

    /// Note `number`, without folders: their ids come with the store.
    Note generateNote(std::size_t number) const;
    /// A text of about `size` bytes, the same for the same number.
    std::string generateText(std::size_t number, std::size_t size) const;
    const std::vector<std::string>& tagPaths() const { return m_tagPaths; }

    /// Adds the folders and notes 0 to `count` - 1, saved in batches. Throws StoreError.
    void fillStore(PersistenceController& controller, std::size_t count) const;

    /// A folder with a filled store of `count` notes, made on first use and kept for later runs
    /// under CORVEL_BENCH_CACHE or build/bench-cache. Not to be written to: see `copyStore`.
    std::filesystem::path cachedStore(std::size_t count) const;
    /// A copy of the cached store in `folder`.
    void copyStore(std::size_t count, const std::filesystem::path& folder) const;

private:
    std::uint32_t m_seed;
    std::vector<std::string> m_tagPaths;
};

}  // namespace corvel
