#include "export/pdf/MarkFilter.h"

#include "export/pdf/ContentReader.h"
#include "export/pdf/Qpdf.h"

namespace corvel {

namespace {

// Forms in forms: groups of transparency. Nobody nests them deeper.
constexpr int kDeepest = 16;

}  // namespace

void MarkFilter::filterPage(QPDFObjectHandle page, int number) {
    m_page = number;
    QPDFPageObjectHelper helper(page);
    helper.coalesceContentStreams();
    filterStream(page.getKey("/Contents"), helper.getAttribute("/Resources", false), {}, 0);
}

void MarkFilter::filterStream(QPDFObjectHandle stream,
                              QPDFObjectHandle resources,
                              const QPDFMatrix& matrix,
                              int depth) {
    if (!stream.isStream() || depth > kDeepest) return;
    ContentReader reader(m_colors, m_markCount, matrix);
    const auto data = stream.getStreamData(qpdf_dl_generalized);
    const std::string_view content(reinterpret_cast<const char*>(data->getBuffer()),
                                   data->getSize());
    const std::string filtered = reader.filter(content);
    if (!reader.shapes().empty()) {
        stream.replaceStreamData(filtered, QPDFObjectHandle::newNull(),
                                 QPDFObjectHandle::newNull());
    }
    for (const auto& shape : reader.shapes()) {
        m_places.push_back({shape.mark, m_page, shape.area});
    }
    auto forms = resources.isDictionary() ? resources.getKey("/XObject") : resources;
    for (const auto& drawn : reader.forms()) {
        auto form = forms.isDictionary() ? forms.getKey(drawn.name) : QPDFObjectHandle::newNull();
        if (!form.isFormXObject()) continue;
        auto dictionary = form.getDict();
        QPDFMatrix inner = drawn.matrix;
        if (dictionary.getKey("/Matrix").isMatrix()) {
            inner.concat(QPDFMatrix(dictionary.getKey("/Matrix").getArrayAsMatrix()));
        }
        filterStream(form, dictionary.getKey("/Resources"), inner, depth + 1);
    }
}

}  // namespace corvel
