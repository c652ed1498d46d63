#include "model/SampleNotes.h"

#include "model/SyncStatus.h"

namespace corvel {

namespace {

constexpr const char* kWelcome =
    "# Welcome to qno Corvel\n"
    "\n"
    "This is your first note. Start writing in **Markdown**!\n"
    "\n"
    "## Features\n"
    "- Live preview\n"
    "- #tags support\n"
    "- Export to PDF, HTML, EPUB, TXT\n"
    "- Beautiful themes\n"
    "\n"
    "## Getting Started\n"
    "Create a new note with `Cmd+N` and start typing.\n"
    "\n"
    "- [ ] Try creating a note\n"
    "- [ ] Explore the sidebar\n"
    "- [ ] Switch themes\n"
    "- [x] Open qno Corvel";

constexpr const char* kCheatsheet =
    "# Markdown Cheatsheet\n"
    "\n"
    "## Text Formatting\n"
    "**Bold text** and *italic text* and ~~strikethrough~~.\n"
    "\n"
    "## Lists\n"
    "1. First item\n"
    "2. Second item\n"
    "3. Third item\n"
    "\n"
    "## Code\n"
    "```swift\n"
    "let greeting = \"Hello, World!\"\n"
    "print(greeting)\n"
    "```\n"
    "\n"
    "## Links\n"
    "[qno Corvel](https://example.com)\n"
    "\n"
    "## Blockquote\n"
    "> This is a blockquote\n"
    "> with multiple lines.\n"
    "\n"
    "#reference #markdown/cheatsheet";

struct Sample {
    const char* title;
    const char* content;
    int secondsSinceCreation;
    int secondsSinceModification;
    bool isPinned;
    int wordCount;
};
constexpr Sample kSamples[] = {
    {"Welcome to qno Corvel", kWelcome, 0, 0, true, 45},
    {"Markdown Cheatsheet", kCheatsheet, 3600, 1800, false, 38},
};

void insert(Database& database, const Sample& sample, int sortOrder, const Uuid& id, Date now) {
    database
        .query(
            "INSERT INTO note(id, title, createdAt, modifiedAt, isPinned, wordCount, syncStatus,"
            " sortOrder) VALUES(?,?,?,?,?,?,?,?)")
        .bind(id, sample.title, now.plusSeconds(-sample.secondsSinceCreation),
              now.plusSeconds(-sample.secondsSinceModification), sample.isPinned, sample.wordCount,
              static_cast<int>(SyncStatus::synced), sortOrder)
        .run();
    database.query("INSERT INTO noteContent(notePk, content) VALUES(?,?)")
        .bind(database.lastInsertedRow(), sample.content)
        .run();
}

}  // namespace

void seedSampleNotes(ViewContext& context) {
    const Date now = Date::now();
    int sortOrder = 0;
    for (const Sample& sample : kSamples) {
        context.apply([&sample, sortOrder, id = Uuid::random(), now](Database& database) {
            insert(database, sample, sortOrder, id, now);
        });
        ++sortOrder;
    }
}

}  // namespace corvel
