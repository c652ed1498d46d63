#include "export/pdf/PdfFinisher.h"

#include "export/ExportError.h"
#include "export/OutsideLink.h"
#include "export/pdf/PdfOutline.h"
#include "export/pdf/Qpdf.h"
#include "platform/Handle.h"

#include <glib.h>

#include <array>

namespace corvel {

namespace {

using Object = QPDFObjectHandle;

std::string number(double value) {
    std::array<char, G_ASCII_DTOSTR_BUF_SIZE> text{};
    return g_ascii_formatd(text.data(), text.size(), "%.3f", value);
}

Object text(const std::string& utf8) {
    return Object::newUnicodeString(utf8);
}

/// Addresses are ASCII in a PDF.
std::string asciiOf(const std::string& address) {
    const Handle<gchar, g_free> escaped(
        g_uri_escape_string(address.c_str(), "%:/?#[]@!$&'()*+,;=", FALSE));
    return escaped.get();
}

std::string decoded(const std::string& fragment) {
    const Handle<gchar, g_free> plain(g_uri_unescape_string(fragment.c_str(), nullptr));
    return plain ? plain.get() : fragment;
}

Object::Rectangle within(const Object::Rectangle& area, const Object::Rectangle& sheet) {
    return {std::max(area.llx, sheet.llx), std::max(area.lly, sheet.lly),
            std::min(area.urx, sheet.urx), std::min(area.ury, sheet.ury)};
}

[[noreturn]] void fail(const std::exception& error) {
    throw ExportError(ExportError::Kind::platformFailed, error.what());
}

}  // namespace

PdfFinisher::PdfFinisher(const std::filesystem::path& printed) {
    try {
        m_pdf.setSuppressWarnings(true);
        m_pdf.processFile(printed.c_str());
        m_pages = QPDFPageDocumentHelper(m_pdf).getAllPages();
    } catch (const std::exception& error) {
        fail(error);
    }
}

void PdfFinisher::useMarks(const MarkColors& colors, const std::vector<PageMark>& marks) {
    std::vector<MarkPlace> places;
    MarkFilter filter(colors, static_cast<int>(marks.size()), places);
    for (int page = 0; page < pageCount(); ++page) {
        auto object = m_pages[static_cast<std::size_t>(page)].getObjectHandle();
        filter.filterPage(object, page);
    }
    for (auto& place : places) {
        auto& page = m_pages[static_cast<std::size_t>(place.page)];
        place.area = within(place.area, page.getMediaBox().getArrayAsRectangle());
        m_firstPlaces.try_emplace(place.mark, place);
    }
    for (int mark = 0; mark < static_cast<int>(marks.size()); ++mark) {
        const auto& id = marks[static_cast<std::size_t>(mark)].id;
        if (!id.empty() && m_firstPlaces.contains(mark)) m_targets.try_emplace(id, mark);
    }
    for (const auto& place : places) {
        addLink(place, marks[static_cast<std::size_t>(place.mark)]);
    }
    addOutline(marks);
}

void PdfFinisher::addLink(const MarkPlace& place, const PageMark& mark) {
    if (mark.href.empty() || place.area.urx <= place.area.llx || place.area.ury <= place.area.lly) {
        return;
    }
    auto annotation = Object::parse("<</Type /Annot /Subtype /Link /Border [0 0 0] /F 4>>");
    annotation.replaceKey("/Rect", Object::newFromRectangle(place.area));
    if (mark.href.starts_with('#')) {
        const auto target = destinationOf(decoded(mark.href.substr(1)));
        if (!target.isInitialized()) return;
        annotation.replaceKey("/Dest", target);
    } else {
        const auto address = outsideLink(mark.href);
        if (!address) return;
        auto action = Object::parse("<</Type /Action /S /URI>>");
        action.replaceKey("/URI", Object::newString(asciiOf(*address)));
        annotation.replaceKey("/A", action);
    }
    auto page = m_pages[static_cast<std::size_t>(place.page)].getObjectHandle();
    if (!page.getKey("/Annots").isArray()) page.replaceKey("/Annots", Object::newArray());
    page.getKey("/Annots").appendItem(m_pdf.makeIndirectObject(annotation));
}

QPDFObjectHandle PdfFinisher::destinationOf(const std::string& id) {
    const auto target = m_targets.find(id);
    if (target != m_targets.end()) return destination(m_firstPlaces.at(target->second));
    const bool isTop = id.empty() || id == "top";  // as in every browser
    return isTop ? destination(top()) : Object();
}

MarkPlace PdfFinisher::top() {
    return {0, 0, m_pages.front().getMediaBox().getArrayAsRectangle()};
}

QPDFObjectHandle PdfFinisher::destination(const MarkPlace& place) {
    auto target = Object::newArray();
    target.appendItem(m_pages[static_cast<std::size_t>(place.page)].getObjectHandle());
    target.appendItem(Object::newName("/XYZ"));
    target.appendItem(Object::newReal(place.area.llx, 2));
    target.appendItem(Object::newReal(place.area.ury, 2));
    target.appendItem(Object::newNull());
    return target;
}

void PdfFinisher::addOutline(const std::vector<PageMark>& marks) {
    std::vector<OutlineItem> items;
    for (int mark = 0; mark < static_cast<int>(marks.size()); ++mark) {
        const auto& heading = marks[static_cast<std::size_t>(mark)];
        const auto place = m_firstPlaces.find(mark);
        if (heading.level < 1 || heading.text.empty() || place == m_firstPlaces.end()) continue;
        items.push_back({heading.text, heading.level, destination(place->second)});
    }
    corvel::addOutline(m_pdf, items);
}

void PdfFinisher::addRunningLines(const std::string& overlay, const std::optional<Color>& paper) {
    QPDF lines;
    lines.setImmediateCopyFrom(true);  // it goes before the file is written
    lines.processMemoryFile("running lines", overlay.data(), overlay.size());
    auto sheets = QPDFPageDocumentHelper(lines).getAllPages();
    for (std::size_t i = 0; i < m_pages.size() && i < sheets.size(); ++i) {
        auto& page = m_pages[i];
        const auto form = m_pdf.copyForeignObject(sheets[i].getFormXObjectForPage());
        auto resources = page.getAttribute("/Resources", true);
        if (!resources.getKey("/XObject").isDictionary()) {
            resources.replaceKey("/XObject", Object::newDictionary());
        }
        resources.getKey("/XObject").replaceKey("/CorvelRunning", form);
        std::string before = "q\n";
        if (paper) {
            const auto sheet = page.getMediaBox().getArrayAsRectangle();
            before = number(paper->red) + " " + number(paper->green) + " " + number(paper->blue) +
                     " rg 0 0 " + number(sheet.urx) + " " + number(sheet.ury) + " re f\nq\n";
        }
        page.addPageContents(m_pdf.newStream(before), true);
        page.addPageContents(m_pdf.newStream("\nQ\nq /CorvelRunning Do Q\n"), false);
    }
}

void PdfFinisher::describe(const PdfDescription& description) {
    auto root = m_pdf.getRoot();
    root.replaceKey("/Lang", text(description.language));
    root.replaceKey("/ViewerPreferences", Object::parse("<</DisplayDocTitle true>>"));
    auto info = m_pdf.getTrailer().getKey("/Info");
    if (!info.isDictionary()) {
        info = m_pdf.makeIndirectObject(Object::newDictionary());
        m_pdf.getTrailer().replaceKey("/Info", info);
    }
    info.replaceKey("/Title", text(description.title));
    info.replaceKey("/Creator", text(description.creator));
}

std::string PdfFinisher::bytes() {
    try {
        QPDFWriter writer(m_pdf);
        writer.setOutputMemory();
        writer.setObjectStreamMode(qpdf_o_generate);
        writer.write();
        const auto buffer = writer.getBufferSharedPointer();
        return {reinterpret_cast<const char*>(buffer->getBuffer()), buffer->getSize()};
    } catch (const std::exception& error) {
        fail(error);
    }
}

}  // namespace corvel
