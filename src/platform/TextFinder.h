#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace corvel {

/// Finds one text in many megabytes of others. Looks for the two rarest bytes of what is sought, at
/// their distance, a vector at a time, then for a third; a long text is left to the C library,
/// which is linear.
class TextFinder {
public:
    explicit TextFinder(std::string sought);

    const std::string& sought() const { return m_sought; }
    /// The first place at or after `from`, or npos. An empty text is found everywhere.
    std::size_t findIn(std::string_view text, std::size_t from = 0) const;

private:
    using Scan = const char* (*)(const TextFinder& finder, const char* from, const char* end);

    void chooseBytes();
    bool isAt(const char* place) const;
    static const char* scanNarrow(const TextFinder& finder, const char* from, const char* end);
    static const char* scanWide(const TextFinder& finder, const char* from, const char* end);
    static Scan bestScan();

    std::string m_sought;
    std::size_t m_first = 0;  // offsets of the bytes
    std::size_t m_second = 0;
    std::size_t m_third = 0;
    Scan m_scan = nullptr;
};

}  // namespace corvel
