#include "export/pdf/PdfOutline.h"

namespace corvel {

namespace {

/// An entry on the way from the root to the newest one.
struct Open {
    QPDFObjectHandle entry;
    QPDFObjectHandle last;  // child
    int level = 0;
    int count = 0;  // of descendants
};

QPDFObjectHandle entryFor(QPDF& pdf, const OutlineItem& item, const Open& parent) {
    auto entry = pdf.makeIndirectObject(QPDFObjectHandle::newDictionary());
    entry.replaceKey("/Title", QPDFObjectHandle::newUnicodeString(item.title));
    entry.replaceKey("/Dest", item.destination);
    entry.replaceKey("/Parent", parent.entry);
    return entry;
}

void append(Open& parent, QPDFObjectHandle& entry) {
    if (parent.last.isInitialized()) {
        parent.last.replaceKey("/Next", entry);
        entry.replaceKey("/Prev", parent.last);
    } else {
        parent.entry.replaceKey("/First", entry);
    }
    parent.entry.replaceKey("/Last", entry);
    parent.last = entry;
}

void close(std::vector<Open>& path) {
    Open done = path.back();
    path.pop_back();
    if (done.count > 0) done.entry.replaceKey("/Count", QPDFObjectHandle::newInteger(done.count));
    if (!path.empty()) path.back().count += done.count;
}

}  // namespace

void addOutline(QPDF& pdf, const std::vector<OutlineItem>& items) {
    if (items.empty()) return;
    auto root = pdf.makeIndirectObject(QPDFObjectHandle::newDictionary());
    root.replaceKey("/Type", QPDFObjectHandle::newName("/Outlines"));
    std::vector<Open> path{{root, {}, 0, 0}};
    for (const auto& item : items) {
        while (path.back().level >= item.level)
            close(path);
        auto entry = entryFor(pdf, item, path.back());
        append(path.back(), entry);
        ++path.back().count;
        path.push_back({entry, {}, item.level, 0});
    }
    while (!path.empty())
        close(path);
    pdf.getRoot().replaceKey("/Outlines", root);
    pdf.getRoot().replaceKey("/PageMode", QPDFObjectHandle::newName("/UseOutlines"));
}

}  // namespace corvel
