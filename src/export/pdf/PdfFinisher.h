#pragma once

#include "export/pdf/MarkFilter.h"
#include "export/pdf/PdfPhotos.h"
#include "export/pdf/Qpdf.h"
#include "themes/Color.h"

#include <filesystem>
#include <map>
#include <optional>
#include <string>
#include <vector>

namespace corvel {

/// What a finished document says of itself.
struct PdfDescription {
    std::string title;
    std::string language;        ///< "pl" or "en"
    std::optional<Color> paper;  ///< colour of the whole sheet; none leaves it white
    std::string creator = "qno Corvel";
};

/// Adds to a printed file what the web view does not draw: running title and numbers, links, an
/// outline, title and language. Throws ExportError when the file cannot be read.
class PdfFinisher {
public:
    explicit PdfFinisher(const std::filesystem::path& printed);

    int pageCount() const { return static_cast<int>(m_pages.size()); }
    /// Takes the marks' colours out of the pages and puts links and the outline in their places.
    void useMarks(const MarkColors& colors, const std::vector<PageMark>& marks);
    /// Lays the sheets of `overlay`, a PDF of as many pages, over the pages.
    void addRunningLines(const std::string& overlay, const std::optional<Color>& paper);
    void describe(const PdfDescription& description);
    /// Gives pictures that were JPEG files their form back; see PdfPhotos.h.
    void usePhotos(const std::vector<std::string>& photos) { restorePhotos(m_pdf, photos); }
    std::string bytes();

private:
    void addLink(const MarkPlace& place, const PageMark& mark);
    QPDFObjectHandle destination(const MarkPlace& place);
    MarkPlace top();
    QPDFObjectHandle destinationOf(const std::string& id);
    void addOutline(const std::vector<PageMark>& marks);

    QPDF m_pdf;
    std::vector<QPDFPageObjectHelper> m_pages;
    std::map<int, MarkPlace> m_firstPlaces;  // of each mark
    std::map<std::string, int> m_targets;    // marks by id
};

}  // namespace corvel
