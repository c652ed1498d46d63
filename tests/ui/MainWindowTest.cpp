#include "library/Notifications.h"
#include "model/PersistenceController.h"
#include "support/TemporaryFolder.h"
#include "ui/MainWindow.h"
#include "ui/Resources.h"

#include <adwaita.h>
#include <gdkmm/clipboard.h>
#include <gdkmm/memorytexture.h>
#include <glibmm/main.h>
#include <gtest/gtest.h>
#include <gtkmm/application.h>
#include <gtkmm/textview.h>

#include <chrono>
#include <cmath>
#include <filesystem>
#include <fstream>
#include <memory>
#include <string>
#include <vector>

namespace corvel {
namespace {

constexpr std::chrono::seconds kPatience{10};

/// The one application of this process: its name on the bus is taken once.
Gtk::Application& application() {
    static const auto shared = [] {
        auto made =
            Gtk::Application::create("com.qno.corvel.test", Gio::Application::Flags::NON_UNIQUE);
        made->register_application();
        adw_init();
        registerResources();
        return made;
    }();
    return *shared.get();
}

/// One run of the program over a store: the window as a user has it, driven by its actions.
class Program {
public:
    explicit Program(const TemporaryFolder& folder)
        : m_controller(PersistenceController::Storage::onDisk, folder.path() / "store")
        , m_defaults(folder.path() / "preferences")
        , m_themes(m_defaults, folder.path() / "Themes", [] { return false; })
        , m_session(m_controller, m_defaults, m_themes, [this](CommandID id) {
            if (m_window) m_window->perform(id);
        }) {
        m_window = std::make_unique<MainWindow>(m_session, application());
        m_session.start();
        m_window->window().present();
        EXPECT_TRUE(becomes([this] { return m_window->window().get_mapped(); }));
    }
    Program(const Program&) = delete;
    Program& operator=(const Program&) = delete;
    ~Program() { EXPECT_TRUE(m_session.finish()); }

    Session& session() { return m_session; }
    MainWindow& window() { return *m_window; }

    void activate(const char* action) { m_window->window().activate_action(action, {}); }

    /// Runs the main loop until `condition` holds; false when it takes too long.
    template <typename Condition>
    static bool becomes(Condition condition) {
        const auto end = std::chrono::steady_clock::now() + kPatience;
        const auto context = Glib::MainContext::get_default();
        while (!condition()) {
            if (std::chrono::steady_clock::now() > end) return false;
            context->iteration(false);
        }
        return true;
    }

    /// Types into the editor as a user does, at the end of the text.
    void type(const std::string& text) {
        auto& view = m_window->note().editor().textView();
        view.get_buffer()->insert(view.get_buffer()->end(), text);
    }

    std::vector<std::string> titles() {
        std::vector<std::string> found;
        for (std::size_t i = 0; i < m_session.list.size(); ++i) {
            found.push_back(m_session.list.summaryAt(i)->title);
        }
        return found;
    }

    bool hasFocus(Gtk::Widget& pane) {
        auto* focus = m_window->window().get_focus();
        return focus != nullptr && focus->is_ancestor(pane);
    }

    void write(const std::string& text) {
        activate("win.new-note");
        type(text);
        EXPECT_TRUE(m_session.editor.save());
    }

private:
    PersistenceController m_controller;
    UserDefaults m_defaults;
    ThemeManager m_themes;
    Session m_session;
    std::unique_ptr<MainWindow> m_window;
};

using Titles = std::vector<std::string>;

TEST(MainWindow, KeepsNotesThatWereWrittenPinnedAndFiledOverARestart) {
    const TemporaryFolder folder;
    {
        Program run(folder);
        run.write("# Plan\n\nbody #work/plan");
        run.activate("win.toggle-pin");
        run.write("# Lektury\n\nLalka");
        const auto work = run.session().sidebar.createFolder("Work", std::nullopt);
        ASSERT_TRUE(work.has_value());
        run.session().list.addToFolder(run.window().list().view().selectedNotes(), work->id);
        EXPECT_EQ(run.titles(), (Titles{"Plan", "Lektury"}));
    }
    Program again(folder);
    EXPECT_TRUE(Program::becomes([&] {
        const auto* focus = again.window().window().get_focus();
        return focus != nullptr && focus->is_ancestor(again.window().list());
    }));
    EXPECT_EQ(again.titles(), (Titles{"Plan", "Lektury"}));
    ASSERT_TRUE(again.session().editor.note().has_value());
    EXPECT_EQ(again.session().editor.note()->title, "Lektury");
    ASSERT_EQ(again.session().sidebar.folders.size(), 1U);
    EXPECT_EQ(again.session().sidebar.folders.front().noteCount, 1);
    again.session().state.sidebarFilter.set(SidebarFilter::tag("work"));
    EXPECT_EQ(again.titles(), Titles{"Plan"});
}

double placeOf(Program& run) {
    const auto adjustment = run.window().note().editor().get_vadjustment();
    const double room = adjustment->get_upper() - adjustment->get_page_size();
    return room > 0 ? adjustment->get_value() / room : 0;
}

TEST(MainWindow, OpensTheLastNoteWhereItWasScrolledTo) {
    const TemporaryFolder folder;
    std::string text = "# Long";
    for (int i = 0; i < 400; ++i)
        text += "\n\nParagraph";
    double left = 0;
    {
        Program run(folder);
        run.write(text);
        const auto adjustment = run.window().note().editor().get_vadjustment();
        int moves = 0;
        EXPECT_TRUE(Program::becomes([&] {
            const double room = adjustment->get_upper() - adjustment->get_page_size();
            adjustment->set_value(room / 2 + ++moves % 2);
            return run.session().editor.scroll().scrollPercent() > 0.4;
        }));
        left = run.session().editor.scroll().scrollPercent();
        run.window().remember();
    }
    EXPECT_GT(left, 0.4);
    for (int start = 0; start < 2; ++start) {
        Program again(folder);
        EXPECT_TRUE(Program::becomes([&] { return std::abs(placeOf(again) - left) < 0.02; }));
        again.window().remember();
    }
}

TEST(MainWindow, SelectsTheNextNoteWhenOneGoesToTheTrashAndBringsItBack) {
    const TemporaryFolder folder;
    Program run(folder);
    run.write("# C");
    run.write("# B");
    run.write("# A");
    auto& state = run.session().state;
    state.selectedNoteID.set(run.session().list.summaryAt(1)->id);
    const auto trashed = *state.selectedNoteID.get();
    run.activate("win.move-to-trash");
    EXPECT_EQ(run.titles(), (Titles{"A", "C"}));
    ASSERT_TRUE(state.selectedNote.get().has_value());
    EXPECT_EQ(state.selectedNote.get()->title, "C");
    EXPECT_EQ(run.window().list().view().selectedNotes().size(), 1U);

    run.session().list.restoreFromTrash({trashed});
    EXPECT_EQ(run.session().list.size(), 3U);
    EXPECT_EQ(state.selectedNote.get()->title, "C") << "a note that returns takes nobody's place";
}

TEST(MainWindow, KeepsTheSelectionWhenTheSelectedNoteMoves) {
    const TemporaryFolder folder;
    Program run(folder);
    run.write("# Old");
    run.write("# New");
    auto& state = run.session().state;
    const auto old = run.session().list.summaryAt(1)->id;
    state.selectedNoteID.set(old);
    run.activate("win.toggle-pin");
    EXPECT_EQ(run.titles(), (Titles{"Old", "New"}));
    EXPECT_EQ(run.window().list().view().selectedNotes(), std::vector<Uuid>{old});
    EXPECT_EQ(state.selectedNoteID.get(), old);
}

TEST(MainWindow, LeavesANoteOpenThatAnEditTakesOffTheList) {
    const TemporaryFolder folder;
    Program run(folder);
    run.write("# Stays");
    run.write("# Tagged\n\n#tag");
    auto& state = run.session().state;
    const auto tagged = *state.selectedNoteID.get();
    state.sidebarFilter.set(SidebarFilter::tag("tag"));
    ASSERT_EQ(run.titles(), Titles{"Tagged"});
    auto note = *run.session().library.notes.fetchNote(tagged);
    note.content = "# Tagged\n\nno more";
    run.session().library.notes.update(note);
    EXPECT_EQ(run.session().list.size(), 0U);
    EXPECT_EQ(state.selectedNoteID.get(), tagged);
}

TEST(MainWindow, ShowsImportedNotesWhateverWasShownBefore) {
    const TemporaryFolder folder;
    const auto files = folder.path() / "files";
    std::filesystem::create_directories(files);
    std::ofstream(files / "a.md") << "# Imported\n\n#tag";
    std::ofstream(files / "b.md") << "# Another";
    Program run(folder);
    auto& state = run.session().state;
    state.sidebarFilter.set({SidebarFilter::Kind::trash, {}, {}});
    run.window().importPaths({files / "a.md", files / "b.md"});
    EXPECT_TRUE(run.becomes([&] { return run.session().list.size() == 2; }));
    EXPECT_EQ(state.sidebarFilter.get(), SidebarFilter{});
    ASSERT_TRUE(state.selectedNote.get().has_value());
    EXPECT_EQ(run.session().sidebar.tagTree.size(), 1U);
}

TEST(MainWindow, SearchesAgainAndComesBackToTheList) {
    const TemporaryFolder folder;
    Program run(folder);
    run.write("# Needle");
    run.write("# Straw");
    auto& state = run.session().state;
    auto& list = run.window().list();
    for (int again = 0; again < 2; ++again) {
        run.window().note().focusEditor();
        ASSERT_FALSE(run.hasFocus(list));
        run.activate("win.find-in-all-notes");
        EXPECT_TRUE(run.hasFocus(list)) << "also while the search is on";
    }
    state.searchQuery.set("need");
    ASSERT_TRUE(run.becomes([&] { return run.session().list.size() == 1; }));
    list.view().enter();
    EXPECT_TRUE(state.selectedNote.get().has_value());
    EXPECT_EQ(run.titles(), Titles{"Needle"});
}

TEST(MainWindow, TheFocusStaysOnAPaneWhenItsOwnNoLongerFits) {
    const TemporaryFolder folder;
    Program run(folder);
    run.write("# Note");
    auto& window = run.window();
    window.sidebar().focusList();
    ASSERT_TRUE(run.hasFocus(window.sidebar()));
    window.window().set_default_size(720, 480);
    EXPECT_TRUE(run.becomes([&] { return !window.sidebar().get_visible(); }));
    auto& left = window.list().get_visible() ? static_cast<Gtk::Widget&>(window.list())
                                             : static_cast<Gtk::Widget&>(window.note());
    EXPECT_TRUE(run.hasFocus(left));
}

TEST(MainWindow, GivesTheNameOfAFilterAllTheRoomBesideTheButtons) {
    const TemporaryFolder folder;
    Program run(folder);
    run.write("# Note\n\n#a-tag-with-quite-a-long-name");
    run.session().state.sidebarFilter.set(SidebarFilter::tag("a-tag-with-quite-a-long-name"));
    auto& bar = run.window().list().headerBar().widget();
    std::vector<std::pair<int, int>> used;
    const auto look = [&](auto& self, Gtk::Widget& widget) -> void {
        double x = 0;
        double y = 0;
        const bool isButton = dynamic_cast<Gtk::Button*>(&widget) != nullptr ||
                              dynamic_cast<Gtk::MenuButton*>(&widget) != nullptr;
        if ((isButton || widget.has_css_class("heading")) && widget.get_mapped() &&
            widget.translate_coordinates(bar, 0, 0, x, y))
            used.emplace_back(static_cast<int>(x), widget.get_width());
        if (isButton) return;
        for (auto* child = widget.get_first_child(); child != nullptr;
             child = child->get_next_sibling())
            self(self, *child);
    };
    EXPECT_TRUE(run.becomes([&] {
        used.clear();
        look(look, bar);
        return used.size() == 4 && used.back().second > 0;
    }));
    int free = bar.get_width();
    for (const auto& [x, width] : used)
        free -= width;
    constexpr int kGaps = 64;  // margins and what stands between them
    EXPECT_LT(free, kGaps);
}

TEST(MainWindow, OutlivesItsClosedWindow) {
    const TemporaryFolder folder;
    Program run(folder);
    run.write("# Kept");
    run.type(" text");
    run.window().window().close();
    EXPECT_TRUE(run.becomes([&] { return !run.window().window().get_mapped(); }));
    EXPECT_EQ(run.session().editor.saveState().kind, SaveState::Kind::saved);
}

TEST(MainWindow, RelabelsEverythingWhenTheLanguageChanges) {
    const TemporaryFolder folder;
    Program run(folder);
    run.session().preferences.setAppLanguage("en");
    EXPECT_EQ(run.window().list().sidebarButton().get_tooltip_text(), "Show Sidebar");
    run.session().preferences.setAppLanguage("pl");
    EXPECT_EQ(run.window().list().sidebarButton().get_tooltip_text(), "Pokaż panel boczny");
}

TEST(MainWindow, ShowsALongListAtOnceAndAllOfItSoonAfter) {
    constexpr guint kNotes = 600;
    const TemporaryFolder folder;
    {
        Program run(folder);
        auto& session = run.session();
        for (guint number = 0; number < kNotes; ++number) {
            Note note;
            note.id = Uuid::random();
            session.library.notes.createUnsaved(note);
        }
        session.library.controller.viewContext().save();
        session.list.reload();
        session.state.selectedNoteID.set(session.list.summaryAt(450)->id);
    }
    Program again(folder);
    auto& view = again.window().list().view();
    const auto rows = std::dynamic_pointer_cast<Gio::ListModel>(view.rows().get_model());
    ASSERT_TRUE(rows);
    const auto last = again.session().list.summaryAt(450)->id;
    EXPECT_EQ(view.selectedNotes(), std::vector<Uuid>{last}) << "however far down it stands";
    EXPECT_TRUE(again.becomes([&] { return rows->get_n_items() == kNotes; }));
    EXPECT_EQ(view.selectedNotes(), std::vector<Uuid>{last});

    again.session().state.sortOption.set(SortOption::title);
    again.session().state.sidebarFilter.set({SidebarFilter::Kind::unfiled, {}, {}});
    EXPECT_TRUE(again.becomes([&] { return rows->get_n_items() == kNotes; }));
    EXPECT_EQ(view.selectedNotes(), std::vector<Uuid>{last});
}

TEST(MainWindow, DisablesNoteCommandsWhileNoNoteIsSelected) {
    const TemporaryFolder folder;
    Program run(folder);
    auto* actions = dynamic_cast<Gio::ActionGroup*>(&run.window().window());
    ASSERT_NE(actions, nullptr);
    EXPECT_FALSE(actions->get_action_enabled("toggle-pin"));
    run.write("# One");
    EXPECT_TRUE(actions->get_action_enabled("toggle-pin"));
}

TEST(MainWindow, CommandsActOnAllSelectedNotes) {
    const TemporaryFolder folder;
    Program run(folder);
    for (const char* text : {"# D", "# C", "# B", "# A"})
        run.write(text);
    auto* actions = dynamic_cast<Gio::ActionGroup*>(&run.window().window());
    auto& state = run.session().state;
    auto& view = run.window().list().view();
    view.rows().get_model()->select_range(1, 2, true);
    EXPECT_EQ(state.selectedCount.get(), 2U);
    EXPECT_FALSE(state.selectedNoteID.get().has_value());
    EXPECT_TRUE(actions->get_action_enabled("export"));
    EXPECT_FALSE(actions->get_action_enabled("send-as-email")) << "one note only";

    run.activate("win.toggle-pin");
    EXPECT_EQ(run.titles(), (Titles{"B", "C", "A", "D"}));
    EXPECT_EQ(view.selectedNotes().size(), 2U) << "still the same ones";
    run.activate("win.move-to-trash");
    EXPECT_EQ(run.titles(), (Titles{"A", "D"}));
    EXPECT_EQ(state.selectedCount.get(), 1U);
    ASSERT_TRUE(state.selectedNote.get().has_value()) << "the next note takes their place";

    run.type(" edited");
    view.rows().get_model()->select_all();
    EXPECT_EQ(view.selectedNotes().size(), 2U) << "also the note that is saved by that";
    EXPECT_EQ(state.selectedCount.get(), 2U);
    EXPECT_TRUE(actions->get_action_enabled("move-to-trash"));
    view.rows().get_model()->unselect_all();
    EXPECT_FALSE(actions->get_action_enabled("move-to-trash"));
}

TEST(MainWindow, ExportsAnOpenNoteThatHasLeftTheListAndCanDoItAgain) {
    const TemporaryFolder folder;
    Program run(folder);
    run.write("# Tagged\n\n#tag");
    auto& state = run.session().state;
    const auto tagged = *state.selectedNoteID.get();
    state.sidebarFilter.set(SidebarFilter::tag("tag"));
    auto note = *run.session().library.notes.fetchNote(tagged);
    note.content = "no more";
    run.session().library.notes.update(note);
    ASSERT_EQ(run.session().list.size(), 0U);
    const auto& isPresented = state.isExportSheetPresented;
    for (int again = 0; again < 2; ++again) {
        run.activate("win.export");
        EXPECT_TRUE(isPresented.get());
        for (auto* window : Gtk::Window::list_toplevels()) {
            if (window->get_transient_for() == &run.window().window()) window->close();
        }
        ASSERT_TRUE(run.becomes([&] { return !isPresented.get(); })) << "no sheet came";
    }
}

TEST(MainWindow, AnImageIsPastedAsOneStepAndTextAsBefore) {
    const TemporaryFolder folder;
    Program run(folder);
    run.write("text ");
    auto& view = run.window().note().editor().textView();
    const auto text = [&] { return run.window().note().editor().text(); };
    const std::vector<guint8> pixels(std::size_t{8} * 8 * 4, 200);
    const auto bytes = Glib::Bytes::create(pixels.data(), pixels.size());
    const auto clipboard = view.get_clipboard();
    clipboard->set_texture(
        Gdk::MemoryTexture::create(8, 8, Gdk::MemoryTexture::Format::R8G8B8A8, bytes, 32));
    const auto paste = [&] { g_signal_emit_by_name(view.gobj(), "paste-clipboard"); };
    view.get_buffer()->place_cursor(view.get_buffer()->end());
    paste();
    ASSERT_TRUE(
        Program::becomes([&] { return text().starts_with("text ![obraz](attachment://"); }));
    const auto id = run.session().editor.note()->id;
    const auto kept = run.session().library.attachments.fetchAttachments(id);
    ASSERT_EQ(kept.size(), 1U);
    EXPECT_EQ(kept[0].mimeType, "image/png");
    view.get_buffer()->insert_interactive_at_cursor("more", true);
    view.get_buffer()->undo();
    EXPECT_TRUE(text().ends_with(kept[0].id.toString() + ")")) << text();
    view.get_buffer()->undo();
    EXPECT_EQ(text(), "text ");
    view.get_buffer()->redo();
    EXPECT_NE(text().find(kept[0].id.toString()), std::string::npos);
    clipboard->set_text("!");
    view.get_buffer()->place_cursor(view.get_buffer()->end());
    paste();
    EXPECT_TRUE(Program::becomes([&] { return text().ends_with(")!"); }));
}

// How many rows of the list lie in its window, wholly or in part.
std::size_t rowsInSight(Gtk::ListView& list, const Gtk::Widget& window) {
    std::size_t count = 0;
    for (auto* row = list.get_first_child(); row != nullptr; row = row->get_next_sibling()) {
        double x = 0;
        double y = 0;
        if (!row->get_child_visible() || !row->translate_coordinates(list, 0, 0, x, y)) continue;
        if (y + row->get_height() > 0 && y < window.get_height()) ++count;
    }
    return count;
}

TEST(MainWindow, FillsTheListAroundANoteFarDownThatAnEmptyLibraryGot) {
    const TemporaryFolder folder;
    Program run(folder);
    EXPECT_TRUE(Program::becomes([&] { return run.window().list().get_height() > 0; }));
    auto& library = run.session().library;
    Note note;
    ViewContext::Group group(library.controller.viewContext());
    for (int i = 0; i < 900; ++i) {
        note.id = Uuid::random();
        note.title = "Note " + std::to_string(i);
        note.modifiedAt = Date::fromSeconds(1'000'000 - i);
        library.notes.createUnsaved(note);
    }
    group.commit();
    run.session().notifications.post(notifications::folderDidChange);
    run.session().reveal(note.id);
    auto& view = run.window().list().view();
    EXPECT_TRUE(Program::becomes([&] { return rowsInSight(view.rows(), view) >= 5; }))
        << rowsInSight(view.rows(), view);
    EXPECT_EQ(view.selectedNotes(), std::vector{note.id});
}

}  // namespace
}  // namespace corvel
