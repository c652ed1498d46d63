#include "export/EPUBExporter.h"

#include "export/ExportFileName.h"
#include "export/epub/BookArchive.h"
#include "export/epub/ChapterMarkup.h"
#include "export/epub/XmlText.h"
#include "platform/Text.h"
#include "themes/ThemeStylesheet.h"

#include <utility>

namespace corvel {

namespace {

std::string titleOf(const Note& note) {
    std::string title = withoutForbiddenCharacters(text::repaired(note.title));
    const bool isBlank = title.find_first_not_of(" \t\r\n") == std::string::npos;
    return isBlank ? kUntitledExport : title;
}

}  // namespace

std::string EPUBExporter::book(const Note& note,
                               const std::string& html,
                               std::string_view stylesheet) {
    ChapterMarkup markup = chapterMarkup(html);
    const BookRecord record{note.id.toString(), titleOf(note), note.modifiedAt,
                            std::move(markup.contents)};
    const std::string package = bookparts::package(record);
    const std::string ncx = bookparts::ncx(record);
    const std::string navigation = bookparts::navigation(record);
    const std::string chapter = bookparts::chapter(markup.body);
    return bookArchive({{"mimetype", bookparts::mimetype()},
                        {"META-INF/container.xml", bookparts::container()},
                        {"OEBPS/content.opf", package},
                        {"OEBPS/toc.ncx", ncx},
                        {"OEBPS/nav.xhtml", navigation},
                        {"OEBPS/chapter1.xhtml", chapter},
                        {"OEBPS/styles/style.css", stylesheet}});
}

void EPUBExporter::exportNote(const Note& note,
                              const ExportOptions& options,
                              const Theme& theme,
                              const Glib::RefPtr<Gio::Cancellable>& cancellable,
                              Done done) {
    std::string stylesheet =
        options.applyTheme ? generateCSS(theme) : std::string(bookparts::plainStylesheet());
    m_body.render(note, NoteBody::Images::allEmbedded, cancellable,
                  [note, stylesheet = std::move(stylesheet),
                   done = std::move(done)](std::variant<std::string, ExportError> body) {
                      if (const auto* error = std::get_if<ExportError>(&body)) return done(*error);
                      try {
                          done(book(note, std::get<std::string>(body), stylesheet));
                      } catch (const ExportError& error) {
                          done(error);
                      }
                  });
}

}  // namespace corvel
