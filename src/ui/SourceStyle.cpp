#include "ui/SourceStyle.h"

#include "platform/Handle.h"
#include "platform/Log.h"
#include "themes/Color.h"

#include <glibmm/checksum.h>
#include <glibmm/fileutils.h>
#include <glibmm/miscutils.h>
#include <unistd.h>

#include <array>
#include <string_view>

namespace corvel::sourcestyle {

namespace {

constexpr const char* kLanguageID = "corvel-markdown";
constexpr const char* kSchema = "language2.rng";

// Line by line, so that one key in a long note is coloured at once. Only fences, comments and front
// matter span lines; front matter ends at the first line that is none.
constexpr std::string_view kLanguage = R"xml(<?xml version="1.0" encoding="UTF-8"?>
<language id="corvel-markdown" name="Markdown" version="2.0" hidden="true">
  <styles>
    <style id="heading" name="Heading"/>
    <style id="strong" name="Strong"/>
    <style id="emphasis" name="Emphasis"/>
    <style id="strong-emphasis" name="Strong emphasis"/>
    <style id="strike" name="Strikethrough"/>
    <style id="code" name="Code"/>
    <style id="quote" name="Quotation"/>
    <style id="link" name="Link"/>
    <style id="tag" name="Tag"/>
    <style id="task" name="Task"/>
    <style id="mark" name="Mark"/>
  </styles>
  <definitions>
    <context id="front-matter" style-ref="mark" first-line-only="true">
      <start>^---[ \t]*$</start>
      <end>^(---|\.\.\.)[ \t]*$|^(?![ \t#]|- |$|["'\w][^:]*:([ \t]|$)).*</end>
    </context>
    <context id="fence" style-ref="code">
      <start>^[ \t&gt;]*(?:(?:[-*+]|[0-9]{1,9}[.)])[ \t]+)?(`{3,}(?=[^`]*$)|~{3,}).*$</start>
      <end>^[ \t&gt;]*\%{1@start}[`~]*[ \t]*$</end>
    </context>
    <context id="comment" style-ref="mark"><start>^ {0,3}&lt;!--</start><end>--&gt;</end></context>
    <context id="heading" style-ref="heading" end-at-line-end="true">
      <start>^ {0,3}#{1,6}(?=[ \t]|$)</start>
      <include><context ref="inline"/></include>
    </context>
    <context id="quote" style-ref="quote" end-at-line-end="true">
      <start>^ {0,3}&gt;</start>
      <include><context ref="inline"/></include>
    </context>
    <context id="row" end-at-line-end="true">
      <start>^[ \t]*\|</start>
      <include>
        <context sub-pattern="0" where="start" style-ref="mark"/>
        <context id="pipe" style-ref="mark"><match>\|</match></context>
        <context ref="inline"/>
      </include>
    </context>
    <context id="dashes" style-ref="mark">
      <match>^[ \t]*\|?([ \t]*:?-{2,}:?[ \t]*\|)+([ \t]*:?-{2,}:?)?[ \t]*$</match>
    </context>
    <context id="rule" style-ref="mark"><match>^ {0,3}([-*_=][ \t]*){3,}$</match></context>
    <context id="task" style-ref="task">
      <match>^[ \t]*([-*+]|[0-9]{1,9}[.)])[ \t]+\[[ xX]\](?=[ \t]|$)</match>
    </context>
    <context id="list" style-ref="mark"><match>^[ \t]*([-*+]|[0-9]{1,9}[.)])(?=[ \t])</match></context>
    <context id="escape"><match>\\[!-/:-@\[-`{-~]</match></context>
    <context id="code" style-ref="code">
      <match>(?&lt;!`)(`[^`]+`|``.+?``)(?!`)</match>
    </context>
    <context id="link" style-ref="link">
      <match>!?\[[^\[\]]*\](\([^()]*(\([^()]*\)[^()]*)*\)|\[[^\[\]]*\])</match>
    </context>
    <context id="definition" style-ref="link"><match>^ {0,3}\[[^\[\]]+\]:.*$</match></context>
    <context id="address" style-ref="link">
      <match>&lt;[a-z]+:[^\s&lt;&gt;]+&gt;|https?://[^\s&lt;&gt;()]+</match>
    </context>
    <context id="html" style-ref="mark">
      <match>&lt;/?[A-Za-z][^&lt;&gt;]*&gt;|&lt;!--.*?--&gt;</match>
    </context>
    <context id="strong-emphasis" style-ref="strong-emphasis">
      <match>\*\*\*(?=\S)[^*]+\*\*\*|(?&lt;!\w)___(?=\S)[^_]+___(?!\w)</match>
    </context>
    <context id="strong" style-ref="strong">
      <match>\*\*(?=[^\s*])([^*]|\*(?!\*))+\*\*|(?&lt;!\w)__(?=[^\s_])([^_]|_(?!_))+__(?!\w)</match>
    </context>
    <context id="emphasis" style-ref="emphasis">
      <match>(?&lt;!\*)\*(?=[^\s*])[^*]+\*(?!\*)|(?&lt;![_\w])_(?=[^\s_])[^_]+_(?![_\w])</match>
    </context>
    <context id="strike" style-ref="strike"><match>~~(?=\S)[^~]+~~</match></context>
    <context id="tag" style-ref="tag">
      <match>(?&lt;![\w&amp;/#])#\p{L}[\p{L}\p{N}_/-]*</match>
    </context>
    <context id="inline">
      <include>
        <context ref="escape"/>
        <context ref="code"/>
        <context ref="link"/>
        <context ref="address"/>
        <context ref="html"/>
        <context ref="strong-emphasis"/>
        <context ref="strong"/>
        <context ref="emphasis"/>
        <context ref="strike"/>
        <context ref="tag"/>
      </include>
    </context>
    <context id="corvel-markdown">
      <include>
        <context ref="front-matter"/>
        <context ref="fence"/>
        <context ref="comment"/>
        <context ref="heading"/>
        <context ref="quote"/>
        <context ref="dashes"/>
        <context ref="row"/>
        <context ref="rule"/>
        <context ref="task"/>
        <context ref="list"/>
        <context ref="definition"/>
        <context ref="inline"/>
      </include>
    </context>
  </definitions>
</language>
)xml";

std::string cacheFolder() {
    return Glib::build_filename(Glib::get_user_cache_dir(), "qno Corvel", "editor");
}

bool holds(const std::string& path, std::string_view bytes) {
    char* content = nullptr;
    gsize size = 0;
    if (g_file_get_contents(path.c_str(), &content, &size, nullptr) == FALSE) return false;
    const Handle<char, g_free> held(content);
    return std::string_view(content, size) == bytes;
}

bool write(const std::string& name, std::string_view bytes) {
    const std::string folder = cacheFolder();
    if (holds(Glib::build_filename(folder, name), bytes)) return true;
    g_mkdir_with_parents(folder.c_str(), 0700);
    try {
        Glib::file_set_contents(Glib::build_filename(folder, name), std::string(bytes));
        return true;
    } catch (const Glib::Error& error) {
        logLine(std::string("The editor's colours cannot be written: ") + error.what());
        return false;
    }
}

/// The schema that a language file is checked by; empty when the library has moved it.
std::string systemSchema() {
    const auto* folders =
        gtk_source_language_manager_get_search_path(gtk_source_language_manager_get_default());
    for (; folders != nullptr && *folders != nullptr; ++folders) {
        auto path = Glib::build_filename(*folders, kSchema);
        if (Glib::file_test(path, Glib::FileTest::IS_REGULAR)) return path;
    }
    return {};
}

/// Whether the schema is to be found beside our language.
bool linkSchema() {
    const std::string link = Glib::build_filename(cacheFolder(), kSchema);
    if (Glib::file_test(link, Glib::FileTest::IS_REGULAR)) return true;
    const std::string schema = systemSchema();
    unlink(link.c_str());  // one that leads nowhere any more
    return !schema.empty() && symlink(schema.c_str(), link.c_str()) == 0;
}

GtkSourceLanguageManager* makeLanguages() {
    GtkSourceLanguageManager* manager = gtk_source_language_manager_new();
    const std::string folder = cacheFolder();
    const std::array<const char*, 2> alone{folder.c_str(), nullptr};
    // The library would read all of its 170 languages where its own folder is searched.
    if (linkSchema()) {
        gtk_source_language_manager_set_search_path(manager, alone.data());
    } else {
        gtk_source_language_manager_append_search_path(manager, folder.c_str());
    }
    return manager;
}

std::string styleLine(const char* name, const std::string& attributes) {
    return std::string("  <style name=\"corvel-markdown:") + name + "\" " + attributes + "/>\n";
}

std::string foreground(const std::string& color) {
    return "foreground=\"" + hexString(colorFromHex(color)) + "\"";
}

// Matches of a search and misspelled words, so that text on them stays readable in any theme.
std::string markStyles(const ThemeColors& colors) {
    const Color editor = colorFromHex(colors.editor);
    const bool isDark = contrast(editor, {1, 1, 1}) > contrast(editor, {});
    const Color match = mixed(colorFromHex("#F5C211"), editor, isDark ? 0.36 : 0.45);
    const Color current = mixed(colorFromHex("#FF8C00"), editor, isDark ? 0.5 : 0.7);
    const auto background = [&colors](const char* name, const Color& color) {
        return std::string("  <style name=\"") + name + "\" background=\"" + hexString(color) +
               "\" " + foreground(colors.editorText) + "/>\n";
    };
    return background("search-match", match) + background("search-current", current) +
           "  <style name=\"misspelled-word\" underline=\"error\" underline-color=\"" +
           (isDark ? "#FF7B63" : "#C01C28") + "\"/>\n";
}

void applyStyle(GtkTextTag* tag, GtkTextBuffer* buffer, const char* name) {
    auto* scheme = gtk_source_buffer_get_style_scheme(GTK_SOURCE_BUFFER(buffer));
    auto* style = scheme == nullptr ? nullptr : gtk_source_style_scheme_get_style(scheme, name);
    if (style != nullptr) gtk_source_style_apply(style, tag);
}

void schemeChanged(GtkSourceBuffer* buffer, GParamSpec*, gpointer tag) {
    char* style = nullptr;
    g_object_get(tag, "name", &style, nullptr);
    const Handle<char, g_free> owned(style);
    applyStyle(GTK_TEXT_TAG(tag), GTK_TEXT_BUFFER(buffer), style);
}

}  // namespace

GtkTextTag* tag(GtkTextBuffer* buffer, const char* style) {
    auto* table = gtk_text_buffer_get_tag_table(buffer);
    if (auto* known = gtk_text_tag_table_lookup(table, style)) return known;
    auto* made = gtk_text_buffer_create_tag(buffer, style, nullptr);
    applyStyle(made, buffer, style);
    g_signal_connect(buffer, "notify::style-scheme", G_CALLBACK(schemeChanged), made);
    return made;
}

GtkSourceLanguage* language() {
    static GtkSourceLanguageManager* const manager =
        write("corvel-markdown.lang", kLanguage) ? makeLanguages() : nullptr;
    if (manager == nullptr) return nullptr;
    return gtk_source_language_manager_get_language(manager, kLanguageID);
}

std::string schemeXml(const Theme& theme, const std::string& id) {
    const ThemeColors& colors = theme.colors;
    return "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<style-scheme id=\"" + id +
           "\" _name=\"Corvel\" version=\"1.0\">\n  <style name=\"text\" " +
           foreground(colors.editorText) + " background=\"" +
           hexString(colorFromHex(colors.editor)) + "\"/>\n  <style name=\"cursor\" " +
           foreground(colors.cursor) + "/>\n" + markStyles(colors) +
           styleLine("heading", foreground(colors.heading) + " bold=\"true\"") +
           styleLine("strong", "bold=\"true\"") + styleLine("emphasis", "italic=\"true\"") +
           styleLine("strong-emphasis", "bold=\"true\" italic=\"true\"") +
           styleLine("strike", "strikethrough=\"true\"") +
           styleLine("code", foreground(colors.codeForeground)) +
           styleLine("quote", foreground(colors.blockquoteText)) +
           styleLine("link", foreground(colors.link)) + styleLine("tag", foreground(colors.link)) +
           styleLine("task", foreground(colors.link) + " bold=\"true\"") +
           styleLine("mark", foreground(colors.blockquoteText)) + "</style-scheme>\n";
}

GtkSourceStyleScheme* scheme(const Theme& theme) {
    const std::string content = schemeXml(theme, "");
    const std::string id =
        "corvel-" +
        Glib::Checksum::compute_checksum(Glib::Checksum::Type::SHA256, content).substr(0, 16);
    auto* manager = gtk_source_style_scheme_manager_get_default();
    if (auto* known = gtk_source_style_scheme_manager_get_scheme(manager, id.c_str())) return known;
    if (!write(id + ".xml", schemeXml(theme, id))) return nullptr;
    gtk_source_style_scheme_manager_force_rescan(manager);
    return gtk_source_style_scheme_manager_get_scheme(manager, id.c_str());
}

void useOwnSchemesOnly() {
    const std::string folder = cacheFolder();
    const std::array<const char*, 2> path{folder.c_str(), nullptr};
    gtk_source_style_scheme_manager_set_search_path(gtk_source_style_scheme_manager_get_default(),
                                                    path.data());
}

}  // namespace corvel::sourcestyle
