#pragma once

#include <array>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

namespace corvel::text {

/// The search form of single code points. It is asked of ICU a page of 256 code points at a time,
/// when the first of a page is met, and kept: a text uses few pages.
class SearchFolding {
public:
    static SearchFolding& shared();

    /// The form of `character` in UTF-8; empty for a combining mark.
    std::string_view of(std::int32_t character) {
        const auto page = static_cast<std::uint32_t>(character) / kPageSize;
        if (!m_pages[page]) m_pages[page] = makePage(page);
        return m_pages[page]->of(static_cast<std::uint32_t>(character) % kPageSize);
    }

    /// The form of a character that takes two bytes, when it takes no more itself; else of size
    /// kLong.
    struct ShortForm {
        static constexpr std::uint8_t kLong = 0xFF;
        std::array<char, 2> bytes{};
        std::uint8_t size = 0;
    };
    const ShortForm& shortOf(std::uint32_t character) {
        auto& page = m_pages[character / kPageSize];
        if (!page) page = makePage(character / kPageSize);
        return page->shortForms[character % kPageSize];
    }

private:
    static constexpr std::uint32_t kPageSize = 256;
    static constexpr std::uint32_t kPageCount = 0x110000 / kPageSize;

    struct Page {
        std::array<std::uint16_t, kPageSize + 1> ends{};  ///< entry i is [ends[i], ends[i + 1])
        std::string bytes;
        std::array<ShortForm, kPageSize> shortForms{};

        std::string_view of(std::uint32_t index) const {
            return {bytes.data() + ends[index],
                    static_cast<std::size_t>(ends[index + 1] - ends[index])};
        }
    };

    static std::unique_ptr<Page> makePage(std::uint32_t number);
    static ShortForm shortened(std::string_view form);

    std::array<std::unique_ptr<Page>, kPageCount> m_pages;
};

}  // namespace corvel::text
