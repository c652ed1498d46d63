#include "platform/BreakRules.h"
#include "platform/Text.h"

#include <unicode/brkiter.h>
#include <unicode/ubrk.h>

#include <cstddef>
#include <string_view>
#include <vector>

namespace corvel::text {

namespace {

/// The bytes of the character at `at` when it neither joins another such character nor is joined by
/// one: ASCII without CR, Latin up to U+02FF, dashes, quotes and dots. Else 0.
std::size_t plainCharacterAt(std::string_view text, std::size_t at) {
    const auto byte = [&](std::size_t offset) {
        return at + offset < text.size() ? static_cast<unsigned char>(text[at + offset]) : 0U;
    };
    const auto isContinuation = [&](std::size_t offset) { return (byte(offset) & 0xC0U) == 0x80U; };
    const unsigned first = byte(0);
    if (first < 0x80U) return first == '\r' ? 0 : 1;
    if (first >= 0xC2U && first <= 0xCBU) return isContinuation(1) ? 2 : 0;
    // U+2010 to U+2027
    if (first == 0xE2U && byte(1) == 0x80U && byte(2) >= 0x90U && byte(2) <= 0xA7U) return 3;
    return 0;
}

}  // namespace

std::vector<std::size_t> wordBreaks(std::string_view text) {
    static BreakRules words(icu::BreakIterator::createWordInstance);
    auto& iterator = words.over(text);
    std::vector<std::size_t> ends;
    for (auto end = iterator.next(); end != icu::BreakIterator::DONE; end = iterator.next())
        ends.push_back(static_cast<std::size_t>(end));
    return ends;
}

std::string_view prefixByGraphemes(std::string_view text, std::size_t count) {
    std::size_t plain = 0;
    std::size_t counted = 0;
    for (; counted < count && plain < text.size(); ++counted) {
        const std::size_t size = plainCharacterAt(text, plain);
        const std::size_t next = plain + size;
        if (size == 0 || (next < text.size() && plainCharacterAt(text, next) == 0)) break;
        plain = next;
    }
    if (counted == count || plain == text.size()) return text.substr(0, plain);
    static BreakRules characters(icu::BreakIterator::createCharacterInstance);
    auto& iterator = characters.over(text.substr(plain));
    std::int32_t end = 0;
    for (; counted < count; ++counted) {
        const std::int32_t next = iterator.next();
        if (next == icu::BreakIterator::DONE) return text;
        end = next;
    }
    return text.substr(0, plain + static_cast<std::size_t>(end));
}

}  // namespace corvel::text
