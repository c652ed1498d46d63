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

// Line by line, so that one key in a long note is coloured at once. Only fences span lines.
constexpr std::string_view kLanguage = R"xml(<?xml version="1.0" encoding="UTF-8"?>
<language id="corvel-markdown" name="Markdown" version="2.0" hidden="true">
  <styles>
    <style id="heading" name="Heading"/>
    <style id="strong" name="Strong"/>
    <style id="emphasis" name="Emphasis"/>
    <style id="strike" name="Strikethrough"/>
    <style id="code" name="Code"/>
    <style id="quote" name="Quotation"/>
    <style id="link" name="Link"/>
    <style id="tag" name="Tag"/>
    <style id="mark" name="Mark"/>
  </styles>
  <definitions>
    <context id="fence" style-ref="code" class="no-spell-check">
      <start>^ {0,3}(`{3,}|~{3,}).*$</start>
      <end>^ {0,3}\%{1@start}[`~]*[ \t]*$</end>
    </context>
    <context id="heading" style-ref="heading"><match>^ {0,3}#{1,6}([ \t].*)?$</match></context>
    <context id="quote" style-ref="quote"><match>^ {0,3}&gt;.*$</match></context>
    <context id="rule" style-ref="mark"><match>^ {0,3}([-*_][ \t]*){3,}$</match></context>
    <context id="list" style-ref="mark"><match>^[ \t]*([-*+]|[0-9]{1,9}[.)])(?=[ \t])</match></context>
    <context id="code" style-ref="code" class="no-spell-check">
      <match>(?&lt;!`)(`[^`]+`|``.+?``)(?!`)</match>
    </context>
    <context id="link" style-ref="link" class="no-spell-check">
      <match>!?\[[^\[\]]*\]\([^()]*\)</match>
    </context>
    <context id="address" style-ref="link" class="no-spell-check">
      <match>https?://[^\s&lt;&gt;()]+</match>
    </context>
    <context id="strong" style-ref="strong"><match>\*\*(?=\S)[^*]+\*\*|__(?=\S)[^_]+__</match></context>
    <context id="emphasis" style-ref="emphasis">
      <match>(?&lt;![*\w])\*(?=[^\s*])[^*]+\*(?![*\w])|(?&lt;![_\w])_(?=[^\s_])[^_]+_(?![_\w])</match>
    </context>
    <context id="strike" style-ref="strike"><match>~~[^~]+~~</match></context>
    <context id="tag" style-ref="tag" class="no-spell-check">
      <match>(?&lt;![\w&amp;/#])#\p{L}[\p{L}\p{N}_/-]*</match>
    </context>
    <context id="corvel-markdown">
      <include>
        <context ref="fence"/>
        <context ref="heading"/>
        <context ref="quote"/>
        <context ref="rule"/>
        <context ref="list"/>
        <context ref="code"/>
        <context ref="link"/>
        <context ref="address"/>
        <context ref="strong"/>
        <context ref="emphasis"/>
        <context ref="strike"/>
        <context ref="tag"/>
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

}  // namespace

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
           foreground(colors.cursor) + "/>\n" +
           styleLine("heading", foreground(colors.heading) + " bold=\"true\"") +
           styleLine("strong", "bold=\"true\"") + styleLine("emphasis", "italic=\"true\"") +
           styleLine("strike", "strikethrough=\"true\"") +
           styleLine("code", foreground(colors.codeForeground)) +
           styleLine("quote", foreground(colors.blockquoteText)) +
           styleLine("link", foreground(colors.link)) + styleLine("tag", foreground(colors.link)) +
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
