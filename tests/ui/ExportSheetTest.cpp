#include "ui/ExportSheet.h"
#include "ui/WindowTest.h"

namespace corvel {
namespace {

class ExportSheetTest : public WindowTest {
protected:
    std::vector<Gtk::Window*> sheets() {
        auto windows = Gtk::Window::list_toplevels();
        std::erase_if(windows,
                      [&](auto* window) { return window->get_transient_for() != &parent; });
        return windows;
    }
};

// As by Escape and the window's own button, one right after the other.
TEST_F(ExportSheetTest, ClosedTwiceItGoesOnce) {
    Toasts toasts;
    Note note;
    note.id = Uuid::random();
    session.library.notes.create(note);
    const auto noExporter = [](ExportFormat) { return std::unique_ptr<Exporter>(); };
    ExportSheet::show(parent, session, toasts, noExporter, {note.id});
    ASSERT_EQ(sheets().size(), 1U);
    auto* sheet = sheets().front();
    sheet->close();
    sheet->close();
    EXPECT_TRUE(turnUntil([&] { return sheets().empty(); }));
}

}  // namespace
}  // namespace corvel
