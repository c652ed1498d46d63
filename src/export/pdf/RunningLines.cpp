#include "export/pdf/RunningLines.h"

#include "platform/Handle.h"

#include <cairo-pdf.h>
#include <pango/pangocairo.h>

namespace corvel {

namespace {

using Surface = Handle<cairo_surface_t, cairo_surface_destroy>;
using Context = Handle<cairo_t, cairo_destroy>;
using Font = Handle<PangoFontDescription, pango_font_description_free>;

constexpr double kFontSize = 7.5;  // points: 10 CSS pixels
constexpr double kGrey = 0x88 / 255.0;

cairo_status_t append(void* text, const unsigned char* data, unsigned int length) {
    static_cast<std::string*>(text)->append(reinterpret_cast<const char*>(data), length);
    return CAIRO_STATUS_SUCCESS;
}

GObjectHandle<PangoLayout> makeLayout(cairo_t* context, const PaperSize& paper) {
    GObjectHandle<PangoLayout> layout(pango_cairo_create_layout(context));
    const Font font(pango_font_description_from_string("Sans"));
    pango_font_description_set_absolute_size(font.get(), kFontSize * PANGO_SCALE);
    pango_layout_set_font_description(layout.get(), font.get());
    pango_layout_set_width(layout.get(),
                           static_cast<int>((paper.width - 2 * paper.margin) * PANGO_SCALE));
    pango_layout_set_alignment(layout.get(), PANGO_ALIGN_CENTER);
    pango_layout_set_ellipsize(layout.get(), PANGO_ELLIPSIZE_END);
    pango_layout_set_single_paragraph_mode(layout.get(), TRUE);
    return layout;
}

/// Centred in the margin that begins at `top`.
void draw(cairo_t* context, PangoLayout* layout, const PaperSize& paper, double top) {
    int height = 0;
    pango_layout_get_size(layout, nullptr, &height);
    const double free = paper.margin - static_cast<double>(height) / PANGO_SCALE;
    cairo_move_to(context, paper.margin, top + free / 2);
    pango_cairo_show_layout(context, layout);
}

}  // namespace

std::string runningLines(int pages, const PaperSize& paper, const std::string& header) {
    std::string bytes;
    const Surface surface(
        cairo_pdf_surface_create_for_stream(append, &bytes, paper.width, paper.height));
    {
        const Context context(cairo_create(surface.get()));
        cairo_set_source_rgb(context.get(), kGrey, kGrey, kGrey);
        const auto title = makeLayout(context.get(), paper);
        pango_layout_set_text(title.get(), header.data(), static_cast<int>(header.size()));
        const auto number = makeLayout(context.get(), paper);
        for (int page = 1; page <= pages; ++page) {
            draw(context.get(), title.get(), paper, 0);
            pango_layout_set_text(number.get(), std::to_string(page).c_str(), -1);
            draw(context.get(), number.get(), paper, paper.height - paper.margin);
            cairo_show_page(context.get());
        }
    }
    cairo_surface_finish(surface.get());
    return bytes;
}

}  // namespace corvel
