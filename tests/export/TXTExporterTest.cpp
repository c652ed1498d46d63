#include "export/TXTExporter.h"
#include "support/MainLoop.h"
#include "themes/BuiltInThemes.h"

#include <gtest/gtest.h>

#include <optional>

namespace corvel {
namespace {

std::string exported(const std::string& content, const ExportOptions& options) {
    const MarkdownParserService parser;
    TXTExporter exporter{NoteBody(parser, nullptr, GuardedRenderer())};
    Note note;
    note.title = "Not in the file";
    note.content = content;
    std::optional<ExportOutcome> outcome;
    exporter.exportNote(note, options, themes::builtInLight(), Gio::Cancellable::create(),
                        [&](ExportOutcome result) { outcome = std::move(result); });
    EXPECT_TRUE(turnUntil([&] { return outcome.has_value(); }));
    return std::get<std::string>(*outcome);
}

TEST(TXTExporter, WritesTheTextAloneWhateverTheOptions) {
    const std::string text = exported("# Head\n\n- [x] **done**\n- [ ] [open](https://x.y)\n", {});
    EXPECT_EQ(text, "Head\n\n[x] done\n[ ] open\n");
    EXPECT_EQ(text, exported("# Head\n\n- [x] **done**\n- [ ] [open](https://x.y)\n",
                             {.applyTheme = false, .embedImages = false}));
    EXPECT_EQ(exported("", {}), "");
}

}  // namespace
}  // namespace corvel
