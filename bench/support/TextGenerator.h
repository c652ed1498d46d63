#pragma once

#include <cstddef>
#include <cstdint>
#include <random>
#include <string>
#include <string_view>
#include <vector>

namespace corvel {

/// Writes Markdown from word lists: headings, paragraphs with marks and links, lists, code. Uses
/// the engine's raw numbers only, so that every standard library gives the same text.
class TextGenerator {
public:
    enum class Language { polish, english };

    /// `tagPaths` must outlive the generator.
    TextGenerator(std::uint64_t seed, Language language, const std::vector<std::string>& tagPaths);

    std::string title();
    /// About `size` bytes, never less, that begin with a heading of `title`.
    std::string note(const std::string& title, std::size_t size);
    /// A number below `end`.
    std::size_t below(std::size_t end) { return static_cast<std::size_t>(m_engine() % end); }

private:
    std::string_view word();
    std::string sentence();
    std::string paragraph();
    std::string list();
    std::string code();
    std::string block();

    std::mt19937_64 m_engine;
    Language m_language;
    const std::vector<std::string>& m_tagPaths;
};

}  // namespace corvel
