#include "ui/FontsAhead.h"

#include <gtk/gtk.h>
#include <pango/pangocairo.h>

#include <array>
#include <cmath>

namespace corvel {

namespace {

/// The letters that most titles are made of.
constexpr const char* kLetters =
    "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789.,:;-+()#'\"/ ąćęłńóśźżŁŚŻ…";
constexpr double kPointsAnInch = 72;

/// A share of the window's font size, as in the style sheet, or points where libadwaita says so.
struct Kind {
    double share;
    double points;
    PangoWeight weight;
};
constexpr std::array kKinds{Kind{1, 0, PANGO_WEIGHT_NORMAL},    Kind{1, 0, PANGO_WEIGHT_BOLD},
                            Kind{0.92, 0, PANGO_WEIGHT_NORMAL}, Kind{0.82, 0, PANGO_WEIGHT_NORMAL},
                            Kind{0.82, 0, PANGO_WEIGHT_BOLD},   Kind{1.5, 0, PANGO_WEIGHT_BOLD},
                            Kind{0, 9, PANGO_WEIGHT_NORMAL},    Kind{0, 11, PANGO_WEIGHT_BOLD}};

double resolution() {
    int dpi = 0;
    g_object_get(gtk_settings_get_default(), "gtk-xft-dpi", &dpi, nullptr);
    constexpr double kUsual = 96;
    return dpi > 0 ? dpi / 1024.0 : kUsual;
}

double usualPoints() {
    char* name = nullptr;
    g_object_get(gtk_settings_get_default(), "gtk-font-name", &name, nullptr);
    const Handle<char, g_free> held(name);
    const Handle<PangoFontDescription, pango_font_description_free> font(
        pango_font_description_from_string(name));
    return pango_font_description_get_size(font.get()) / static_cast<double>(PANGO_SCALE);
}

/// What the toolkit makes for a text of its own: fonts are the same only with the same options.
GObjectHandle<PangoContext> sampleContext() {
    auto* label = GTK_WIDGET(g_object_ref_sink(gtk_label_new(nullptr)));
    GObjectHandle<PangoContext> context(gtk_widget_create_pango_context(label));
    g_object_unref(label);
    return context;
}

// Measured and drawn: the one loads a letter's width, the other its shape, if it is in the picture.
void load(PangoContext* context, const PangoFontDescription* font) {
    const Handle<PangoFontMetrics, pango_font_metrics_unref> metrics(
        pango_context_get_metrics(context, font, nullptr));
    const GObjectHandle<PangoLayout> layout(pango_layout_new(context));
    pango_layout_set_font_description(layout.get(), font);
    pango_layout_set_text(layout.get(), kLetters, -1);
    int width = 0;
    int height = 0;
    pango_layout_get_pixel_size(layout.get(), &width, &height);
    const Handle<cairo_surface_t, cairo_surface_destroy> surface(
        cairo_image_surface_create(CAIRO_FORMAT_A8, width, height));
    const Handle<cairo_t, cairo_destroy> cairo(cairo_create(surface.get()));
    pango_cairo_show_layout(cairo.get(), layout.get());
}

}  // namespace

FontsAhead::FontsAhead(double scale) : m_fonts(pango_cairo_font_map_new()) {
    const auto sample = sampleContext();
    m_context.reset(pango_font_map_create_context(m_fonts.get()));
    auto* context = m_context.get();
    pango_cairo_context_set_resolution(context, pango_cairo_context_get_resolution(sample.get()));
    pango_cairo_context_set_font_options(context,
                                         pango_cairo_context_get_font_options(sample.get()));
    pango_context_set_language(context, pango_context_get_language(sample.get()));
    pango_context_set_round_glyph_positions(context,
                                            pango_context_get_round_glyph_positions(sample.get()));
    const double perPoint = resolution() / kPointsAnInch;
    const double usual = usualPoints() * perPoint * scale;
    for (const auto& kind : kKinds) {
        const double size = kind.share > 0 ? usual * kind.share : kind.points * perPoint;
        auto* font = pango_font_description_copy(pango_context_get_font_description(sample.get()));
        pango_font_description_set_absolute_size(font, std::round(size * PANGO_SCALE));
        pango_font_description_set_weight(font, kind.weight);
        m_kinds.emplace_back(font);
    }
    m_thread = std::thread([this] {
        for (const auto& kind : m_kinds)
            load(m_context.get(), kind.get());
    });
}

FontsAhead::~FontsAhead() {
    if (m_thread.joinable()) m_thread.join();
}

void FontsAhead::use() {
    m_thread.join();
    pango_cairo_font_map_set_default(PANGO_CAIRO_FONT_MAP(m_fonts.get()));
}

}  // namespace corvel
