#include "ui/FontsAhead.h"
#include "ui/WindowTest.h"

#include <gtkmm/label.h>
#include <pango/pangocairo.h>

#include <utility>

namespace corvel {
namespace {

class FontsAheadTest : public WindowTest {
protected:
    static std::pair<int, int> sizeOf(const char* style) {
        Gtk::Label label("Zażółć gęślą jaźń, 0123 — ψ 语");
        label.add_css_class(style);
        int width = 0;
        int height = 0;
        int ignored = 0;
        label.measure(Gtk::Orientation::HORIZONTAL, -1, ignored, width, ignored, ignored);
        label.measure(Gtk::Orientation::VERTICAL, -1, ignored, height, ignored, ignored);
        return {width, height};
    }
};

TEST_F(FontsAheadTest, TextsStayAsTheyWere) {
    const auto body = sizeOf("body");
    const auto title = sizeOf("title-1");
    const auto* before = pango_cairo_font_map_get_default();
    {
        FontsAhead fonts(1);
        fonts.use();
    }
    EXPECT_NE(pango_cairo_font_map_get_default(), before);
    EXPECT_EQ(sizeOf("body"), body);
    EXPECT_EQ(sizeOf("title-1"), title);
}

TEST_F(FontsAheadTest, NobodyNeedUseThem) {
    const auto* before = pango_cairo_font_map_get_default();
    { const FontsAhead fonts(1.2); }
    EXPECT_EQ(pango_cairo_font_map_get_default(), before);
}

}  // namespace
}  // namespace corvel
