// Types into a note of a given size in the real window and tells how long the main loop is busy:
// with each key, and in the pauses between.
//
// usage: TypingWindow [BYTES [lines | line | quotes]]      needs a display (xvfb-run -a
// dbus-run-session --)

#include "model/PersistenceController.h"
#include "platform/MainThread.h"
#include "support/TextGenerator.h"
#include "themes/ThemeManager.h"
#include "ui/MainWindow.h"
#include "ui/Resources.h"

#include <adwaita.h>
#include <glibmm/init.h>
#include <glibmm/main.h>
#include <gtkmm/application.h>
#include <gtkmm/textview.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <filesystem>
#include <memory>
#include <string>
#include <vector>

namespace {

using namespace corvel;

constexpr int kKeys = 200;
constexpr int kKeysBetweenPauses = 20;
constexpr std::chrono::milliseconds kBetweenKeys{80};
constexpr std::chrono::milliseconds kPause{2500};
constexpr std::chrono::seconds kSettling{8};

double threadMilliseconds() {
    timespec time{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
    return static_cast<double>(time.tv_sec) * 1e3 + static_cast<double>(time.tv_nsec) / 1e6;
}

/// How long the loop worked between two waits for something to happen.
struct Busy {
    double since = 0;
    double longest = 0;
    double total = 0;

    void start() { since = threadMilliseconds(); }
    void stop() {
        const double ms = threadMilliseconds() - since;
        longest = std::max(longest, ms);
        total += ms;
    }
    void reset() { longest = total = 0; }
};

Busy busy;

int poll(GPollFD* fds, guint count, int timeout) {
    busy.stop();
    const int result = g_poll(fds, count, timeout);
    busy.start();
    return result;
}

void runFor(std::chrono::milliseconds time) {
    bool isOver = false;
    Glib::signal_timeout().connect_once([&] { isOver = true; },
                                        static_cast<unsigned>(time.count()));
    while (!isOver)
        g_main_context_iteration(nullptr, TRUE);
}

std::string noteOf(std::size_t bytes, const std::string& kind) {
    if (kind == "line") {
        std::string text;
        while (text.size() < bytes)
            text += "słowo word (x) ";
        return text;
    }
    if (kind == "quotes") return std::string(bytes, '>') + " deep\n";
    const std::vector<std::string> tags{"work/plan", "dom"};
    TextGenerator generator(7, TextGenerator::Language::polish, tags);
    return generator.note("Długa notatka", bytes);
}

Gtk::TextView* editorIn(Gtk::Widget& widget) {
    if (auto* view = dynamic_cast<Gtk::TextView*>(&widget)) return view;
    for (auto* child = widget.get_first_child(); child != nullptr;
         child = child->get_next_sibling()) {
        if (auto* view = editorIn(*child)) return view;
    }
    return nullptr;
}

double percentile(std::vector<double> values, double share) {
    std::ranges::sort(values);
    return values[static_cast<std::size_t>(share * static_cast<double>(values.size() - 1))];
}

void print(const char* what, const std::vector<double>& values) {
    std::printf("%-34s median %7.2f  p95 %7.2f  longest %7.2f ms\n", what, percentile(values, 0.5),
                percentile(values, 0.95), percentile(values, 1));
}

// As an input method commits a character.
void typeKey(GtkTextBuffer* buffer, int number) {
    constexpr const char* kKeysTyped = "to jest (tekst) ";
    const char key = kKeysTyped[static_cast<std::size_t>(number) % 16];
    gtk_text_buffer_begin_user_action(buffer);
    gtk_text_buffer_insert_interactive_at_cursor(buffer, &key, 1, TRUE);
    gtk_text_buffer_end_user_action(buffer);
}

void measure(Gtk::TextView& view) {
    auto* buffer = gtk_text_view_get_buffer(view.gobj());
    GtkTextIter middle;
    gtk_text_buffer_get_iter_at_offset(buffer, &middle, gtk_text_buffer_get_char_count(buffer) / 2);
    gtk_text_iter_forward_to_line_end(&middle);
    gtk_text_buffer_place_cursor(buffer, &middle);
    gtk_text_view_scroll_to_mark(view.gobj(), gtk_text_buffer_get_insert(buffer), 0, TRUE, 0, 0.5);
    busy.reset();
    runFor(kSettling);
    std::printf("%-34s longest %7.2f ms\n", "after going to its middle", busy.longest);
    std::vector<double> keys;
    std::vector<double> totals;
    std::vector<double> pauses;
    for (int key = 0; key < kKeys; ++key) {
        busy.reset();
        busy.start();
        typeKey(buffer, key);
        busy.stop();
        busy.start();
        runFor(kBetweenKeys);
        keys.push_back(busy.longest);
        totals.push_back(busy.total);
        if (key % kKeysBetweenPauses != kKeysBetweenPauses - 1) continue;
        busy.reset();
        runFor(kPause);
        pauses.push_back(busy.longest);
    }
    print("longest work at a key", keys);
    print("all work until the next key", totals);
    print("longest work in a pause", pauses);
}

}  // namespace

int main(int argc, char** argv) {
    const std::size_t bytes = argc > 1 ? std::strtoul(argv[1], nullptr, 10) : 1'000'000;
    const std::string kind = argc > 2 ? argv[2] : "lines";
    const auto folder =
        std::filesystem::temp_directory_path() / ("typing-" + std::to_string(getpid()));
    // Without a graphics card the GL renderer would measure drawing in software by threads of its
    // own.
    setenv("GSK_RENDERER", "cairo", 1);
    setenv("XDG_CACHE_HOME", folder.c_str(), 1);
    setenv("XDG_CONFIG_HOME", folder.c_str(), 1);
    Glib::init();
    claimMainThread();
    const auto application =
        Gtk::Application::create("com.qno.corvel.typing", Gio::Application::Flags::NON_UNIQUE);
    application->register_application();
    adw_init();
    registerResources();
    g_main_context_set_poll_func(nullptr, poll);
    {
        PersistenceController controller(PersistenceController::Storage::onDisk, folder / "store");
        UserDefaults defaults(folder / "preferences");
        std::unique_ptr<MainWindow> window;
        ThemeManager themes(defaults, folder / "Themes", [] { return false; });
        Session session(controller, defaults, themes, [&](CommandID id) { window->perform(id); });
        Note note;
        note.id = Uuid::random();
        note.createdAt = note.modifiedAt = Date::now();
        note.title = "Długa notatka";
        note.content = noteOf(bytes, kind);
        session.library.notes.create(note);
        window = std::make_unique<MainWindow>(session, *application.get());
        session.start();
        window->window().present();
        busy.reset();
        runFor(kSettling);
        std::printf("%zu bytes of %s\n%-34s longest %7.2f ms\n", bytes, kind.c_str(), "opening",
                    busy.longest);
        measure(*editorIn(window->note()));
        session.finish();
    }
    std::filesystem::remove_all(folder);
}
