#pragma once

#include <array>
#include <string_view>

namespace corvel {

/// The formats in the order in which they are offered.
enum class ExportFormat { pdf, html, epub, txt };
inline constexpr std::array kExportFormats{ExportFormat::pdf, ExportFormat::html,
                                           ExportFormat::epub, ExportFormat::txt};

/// "PDF", "HTML", "EPUB" or "Plain Text".
constexpr std::string_view label(ExportFormat format) {
    constexpr std::array<std::string_view, 4> kLabels{"PDF", "HTML", "EPUB", "Plain Text"};
    return kLabels[static_cast<std::size_t>(format)];
}

/// Without the dot.
constexpr std::string_view fileExtension(ExportFormat format) {
    constexpr std::array<std::string_view, 4> kExtensions{"pdf", "html", "epub", "txt"};
    return kExtensions[static_cast<std::size_t>(format)];
}

enum class PageSize { a4, letter, a5 };
inline constexpr std::array kPageSizes{PageSize::a4, PageSize::letter, PageSize::a5};

/// How a page size is shown and what a style sheet calls it, and its size in points (1/72 inch).
struct PageDimensions {
    std::string_view name;
    int width;
    int height;
};

constexpr PageDimensions dimensions(PageSize size) {
    constexpr std::array<PageDimensions, 3> kDimensions{
        {{"A4", 595, 842}, {"Letter", 612, 792}, {"A5", 420, 595}}};
    return kDimensions[static_cast<std::size_t>(size)];
}

/// What the export sheet asks for, with the values it starts with.
struct ExportOptions {
    ExportFormat format = ExportFormat::pdf;
    PageSize pageSize = PageSize::a4;
    bool includeHeaderFooter = true;  ///< offered for PDF, which always prints them
    bool applyTheme = true;
    bool embedImages = true;  ///< HTML alone asks: books and pages always embed, text has no images

    bool operator==(const ExportOptions&) const = default;
};

}  // namespace corvel
