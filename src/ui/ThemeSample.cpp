#include "ui/ThemeSample.h"

#include "app/texts/ThemeTexts.h"
#include "themes/Color.h"
#include "ui/FontFamily.h"

#include <pangomm/fontdescription.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <string>
#include <utility>

namespace corvel {

namespace {

// The picture is drawn in units of this size and scaled to the widget.
constexpr double kWidth = 224;
constexpr double kHeight = 140;
constexpr double kSidebar = 62;
constexpr double kPageLeft = kSidebar + 14;
constexpr double kTextSize = 11;

using Context = Cairo::RefPtr<Cairo::Context>;

void setColor(const Context& cairo, const std::string& text, double opacity = 1) {
    const Color color = colorFromHex(text);
    cairo->set_source_rgba(color.red, color.green, color.blue, color.alpha * opacity);
}

void fillRectangle(const Context& cairo, double x, double y, double width, double height) {
    cairo->rectangle(x, y, width, height);
    cairo->fill();
}

void fillRounded(const Context& cairo, double x, double y, double width, double height, double by) {
    constexpr double kQuarter = M_PI / 2;
    cairo->begin_new_sub_path();
    cairo->arc(x + width - by, y + by, by, -kQuarter, 0);
    cairo->arc(x + width - by, y + height - by, by, 0, kQuarter);
    cairo->arc(x + by, y + height - by, by, kQuarter, 2 * kQuarter);
    cairo->arc(x + by, y + by, by, 2 * kQuarter, 3 * kQuarter);
    cairo->close_path();
    cairo->fill();
}

}  // namespace

struct ThemeSample::Run {
    std::string text;
    std::string color;
    double x;
    double y;  ///< of the top
    std::string family;
    double size = kTextSize;
    bool isBold = false;
};

ThemeSample::ThemeSample(Theme theme, const Localisation& texts)
    : m_theme(std::move(theme)), m_texts(texts) {
    set_content_width(static_cast<int>(kWidth));
    set_content_height(static_cast<int>(kHeight));
    set_draw_func([this](const Context& cairo, int width, int height) {
        cairo->scale(width / kWidth, height / kHeight);
        draw(cairo);
    });
}

void ThemeSample::show(const Theme& theme) {
    m_theme = theme;
    queue_draw();
}

void ThemeSample::draw(const Context& cairo) const {
    setColor(cairo, m_theme.colors.background);
    cairo->paint();
    drawSidebar(cairo);
    drawPage(cairo);
}

void ThemeSample::drawSidebar(const Context& cairo) const {
    const ThemeColors& colors = m_theme.colors;
    setColor(cairo, colors.sidebar);
    fillRectangle(cairo, 0, 0, kSidebar, kHeight);
    setColor(cairo, colors.accent);
    fillRounded(cairo, 6, 28, kSidebar - 12, 16, 4);
    constexpr std::array kLines{std::pair{15.0, 30.0}, std::pair{34.0, 26.0}, std::pair{53.0, 36.0},
                                std::pair{69.0, 22.0}, std::pair{85.0, 32.0}};
    for (const auto& [top, width] : kLines) {
        const bool isSelected = top == 34.0;
        setColor(cairo, isSelected ? colors.background : colors.sidebarText, isSelected ? 1 : 0.7);
        fillRounded(cairo, 12, top, width, 4, 2);
    }
}

void ThemeSample::drawPage(const Context& cairo) const {
    const ThemeColors& colors = m_theme.colors;
    const std::string family = fontFamily(m_theme.typography.fontFamily);
    drawText(cairo,
             {m_texts(texts::sampleHeading), colors.heading, kPageLeft, 12, family, 17, true});
    setColor(cairo, colors.codeBackground);
    fillRectangle(cairo, kPageLeft, 37, kWidth - kPageLeft - 14, 1);

    const Run text{m_texts(texts::sampleText), colors.foreground, kPageLeft, 46, family};
    drawText(cairo, text);
    const double afterText = kPageLeft + widthOf(cairo, text) + 4;
    drawText(cairo, {m_texts(texts::sampleLink), colors.link, afterText, 46, family});

    const double afterCode = kPageLeft + drawCode(cairo, kPageLeft, 67) + 8;
    const Run selected{m_texts(texts::sampleSelection), colors.foreground, afterCode, 68, family};
    setColor(cairo, colors.selection);
    fillRectangle(cairo, afterCode, 67, widthOf(cairo, selected), 16);
    drawText(cairo, selected);

    setColor(cairo, colors.blockquoteBorder);
    fillRectangle(cairo, kPageLeft, 95, 3, 18);
    drawText(cairo,
             {m_texts(texts::sampleQuote), colors.blockquoteText, kPageLeft + 11, 97, family});
    setColor(cairo, colors.foreground, 0.55);
    fillRounded(cairo, kPageLeft, 122, 92, 4, 2);
}

double ThemeSample::drawCode(const Context& cairo, double x, double y) const {
    constexpr double kInset = 5;
    const Run run{m_texts(texts::sampleCode), m_theme.colors.codeForeground, x + kInset, y + 1,
                  fontFamily(m_theme.typography.monoFontFamily) + ", monospace"};
    const double width = widthOf(cairo, run) + 2 * kInset;
    setColor(cairo, m_theme.colors.codeBackground);
    fillRounded(cairo, x, y - 1, width, 19, 4);
    drawText(cairo, run);
    return width;
}

Glib::RefPtr<Pango::Layout> ThemeSample::layoutOf(const Context& cairo, const Run& run) {
    auto layout = Pango::Layout::create(cairo);
    Pango::FontDescription font;
    font.set_family(run.family);
    font.set_absolute_size(run.size * PANGO_SCALE);
    if (run.isBold) font.set_weight(Pango::Weight::BOLD);
    layout->set_font_description(font);
    layout->set_text(run.text);
    return layout;
}

double ThemeSample::widthOf(const Context& cairo, const Run& run) {
    int width = 0;
    int height = 0;
    layoutOf(cairo, run)->get_pixel_size(width, height);
    return width;
}

void ThemeSample::drawText(const Context& cairo, const Run& run) {
    setColor(cairo, run.color);
    cairo->move_to(run.x, run.y);
    layoutOf(cairo, run)->show_in_cairo_context(cairo);
}

}  // namespace corvel
