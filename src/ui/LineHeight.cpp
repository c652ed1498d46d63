#include "ui/LineHeight.h"

#include "platform/Handle.h"

#include <pango/pangocairo.h>
#include <pangomm/context.h>

#include <vector>

namespace corvel {

namespace {

struct Known {
    Handle<PangoFontDescription, pango_font_description_free> font;
    double resolution;
    int height;
};

/// Fonts are few (four in a row of the list); the oldest goes when there are more.
constexpr std::size_t kMostKnown = 16;

int measured(PangoContext* context) {
    const Handle<PangoFontMetrics, pango_font_metrics_unref> metrics(
        pango_context_get_metrics(context, nullptr, nullptr));
    return PANGO_PIXELS_CEIL(pango_font_metrics_get_ascent(metrics.get()) +
                             pango_font_metrics_get_descent(metrics.get()));
}

}  // namespace

int lineHeight(Gtk::Label& label) {
    static std::vector<Known> fonts;
    PangoContext* context = label.get_pango_context()->gobj();
    const PangoFontDescription* font = pango_context_get_font_description(context);
    const double resolution = pango_cairo_context_get_resolution(context);
    for (const auto& known : fonts) {
        if (known.resolution == resolution &&
            pango_font_description_equal(known.font.get(), font) != FALSE) {
            return known.height;
        }
    }
    if (fonts.size() == kMostKnown) fonts.erase(fonts.begin());
    fonts.push_back({Handle<PangoFontDescription, pango_font_description_free>(
                         pango_font_description_copy(font)),
                     resolution, measured(context)});
    return fonts.back().height;
}

}  // namespace corvel
