#include "themes/BuiltInThemes.h"
#include "themes/Color.h"
#include "themes/ScreenRules.h"
#include "ui/StyleSheet.h"

#include <gtest/gtest.h>
#include <gtkmm/cssprovider.h>
#include <gtkmm/init.h>

#include <string>
#include <string_view>

namespace corvel {
namespace {

constexpr double kReadable = 4.5;

/// What a style sheet says, found by its own words.
class Rules {
public:
    explicit Rules(const Theme& theme) : m_css("\n" + StyleSheet::css(theme, 1, 15)) {}

    Color color(const std::string& name) const {
        return colorFromHex(after("@define-color " + name + " "));
    }
    /// Of the rule that begins with these words.
    double opacity(const std::string& rule) const { return std::stod(after(rule, "opacity: ")); }
    double chipShade() const { return std::stod(after(".tag-chip {", "@accent_bg_color, ")); }
    double selectedChipShade() const {
        return std::stod(after("row:selected .tag-chip {", "alpha(black, "));
    }

private:
    std::string after(const std::string& start, const std::string& then = {}) const {
        const auto from = m_css.find("\n" + start);
        EXPECT_NE(from, std::string::npos) << start;
        if (from == std::string::npos) return "0";
        const auto at = m_css.find(then, from + 1 + start.size());
        EXPECT_LT(at, m_css.find('}', from)) << "no " << then << "in " << start;
        const auto begin = at + then.size();
        return m_css.substr(begin, m_css.find_first_of(";)", begin) - begin);
    }

    std::string m_css;
};

class Contrast : public testing::TestWithParam<const Theme*> {
protected:
    static void readable(const Color& text, const Color& ground, double opacity, const char* what) {
        EXPECT_GE(contrast(mixed(text, ground, opacity), ground), kReadable)
            << what << " in " << GetParam()->name;
    }

    Rules rules{*GetParam()};
};

TEST_P(Contrast, OfABoxInAPageIsEnoughToSeeIt) {
    constexpr double kVisible = 3;
    const std::string css = screenRules(*GetParam());
    const std::string_view property = "opacity: ";
    const auto at = css.find(property);
    ASSERT_NE(at, std::string::npos);
    const double opacity = std::stod(css.substr(at + property.size()));
    const auto& colors = GetParam()->colors;
    const Color page = colorFromHex(colors.background);
    for (const auto& text : {colors.foreground, colors.blockquoteText})
        EXPECT_GE(contrast(mixed(colorFromHex(text), page, opacity), page), kVisible) << text;
}

TEST_P(Contrast, OfEveryTextOnItsPaneIsEnough) {
    const Color text = rules.color("window_fg_color");
    const Color list = rules.color("corvel_list");
    const Color sidebar = rules.color("corvel_sidebar");
    const Color editor = rules.color("corvel_editor");
    const Color sidebarText = rules.color("corvel_sidebar_text");
    readable(sidebarText, sidebar, 1, "sidebar");
    readable(sidebarText, sidebar, rules.opacity(".count"), "count");
    readable(sidebarText, sidebar, rules.opacity(".section-heading"), "section heading");
    readable(rules.color("accent_color"), list, 1, "suggested answer of a dialog");
    readable(text, list, rules.opacity(".note-excerpt"), "excerpt");
    readable(text, list, rules.opacity(".note-date"), "date");
    readable(rules.color("corvel_editor_text"), editor, 1, "note");
    readable(rules.color("corvel_editor_text"), editor, rules.opacity(".note-status > *"),
             "status line");
    for (const Color& ground : {list, editor, rules.color("popover_bg_color")}) {
        readable(text, ground, rules.opacity(".dim-label"), "dimmed text");
    }
    // The toolkit draws an entry's ground with a tenth of the text's colour.
    readable(text, mixed(text, list, 0.1), rules.opacity("text > placeholder"), "placeholder");
}

TEST_P(Contrast, OfChipsAndSelectedRowsIsEnough) {
    const Color text = rules.color("window_fg_color");
    const Color accent = rules.color("accent_bg_color");
    const Color selectedText = rules.color("accent_fg_color");
    const Color chip = mixed(accent, rules.color("corvel_list"), rules.chipShade());
    readable(text, chip, 1, "chip");
    readable(selectedText, accent, 1, "selected row");
    readable(selectedText, accent, rules.opacity("row:selected .dim-label"),
             "second line of a selected row");
    readable(selectedText, mixed({}, accent, rules.selectedChipShade()), 1, "selected chip");
}

INSTANTIATE_TEST_SUITE_P(BuiltIn,
                         Contrast,
                         testing::Values(&themes::builtInLight(),
                                         &themes::builtInDark(),
                                         &themes::builtInSepia()),
                         [](const auto& theme) { return theme.param->name.substr(7); });

std::string parsingErrors(const Theme& theme) {
    gtk_init();
    Gtk::init_gtkmm_internals();
    std::string errors;
    const auto provider = Gtk::CssProvider::create();
    provider->signal_parsing_error().connect(
        [&](const auto&, const Glib::Error& error) { errors += error.what() + std::string("\n"); });
    provider->load_from_data(StyleSheet::css(theme, 1, 15));
    return errors;
}

TEST(StyleSheet, ValuesOfAThemeCannotBecomeRules) {
    Theme theme = themes::builtInLight();
    EXPECT_EQ(parsingErrors(theme), "");
    const std::string rule = "} window { opacity: 0 } a {";
    for (const std::string& hostile :
         {"\"; " + rule, "'; " + rule, "\\\"; " + rule, "Sans\n" + rule, rule, std::string("\\")}) {
        theme.typography.monoFontFamily = hostile;
        theme.colors.accent = theme.colors.sidebar = theme.colors.selection = hostile;
        EXPECT_EQ(parsingErrors(theme), "") << hostile;
        const std::string css = StyleSheet::css(theme, 1, 15);
        const auto at = css.find("window { opacity: 0 }");
        if (at == std::string::npos) continue;
        // It stands within one quoted name.
        const auto line = css.rfind("font-family: \"", at);
        ASSERT_NE(line, std::string::npos);
        EXPECT_LT(css.find("\", monospace", at), css.find('\n', at)) << hostile;
    }
}

}  // namespace
}  // namespace corvel
