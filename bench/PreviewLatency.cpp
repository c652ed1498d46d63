#include "markdown/MarkdownParserService.h"
#include "markdown/PreviewCoordinator.h"
#include "markdown/PreviewPage.h"
#include "platform/gtk/WebRoom.h"
#include "support/TextGenerator.h"
#include "themes/BuiltInThemes.h"
#include "themes/ThemeStylesheet.h"

#include <adwaita.h>
#include <glibmm/main.h>
#include <gtkmm/box.h>
#include <gtkmm/init.h>
#include <gtkmm/window.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <functional>
#include <memory>
#include <string>
#include <vector>

// The live preview in a real web view, until the page is laid out: a one-character edit of a long
// note beside the push of its whole body, and a change of theme beside loading the page anew. Both
// sides by turns, medians. Needs a display and a session bus.

namespace corvel {
namespace {

constexpr auto kPatience = std::chrono::seconds(60);

/// Adds the layout to every script, so that an answer means a page that could be painted.
class LaidOutView : public WebView {
public:
    explicit LaidOutView(WebKitView& view) : m_view(view) {}
    void loadPage(const std::string& html) override { m_view.loadPage(html); }
    void evaluate(const std::string& script, Evaluated done) override {
        m_view.evaluate(script + "\ndocument.body.offsetHeight;", std::move(done));
    }
    void terminate() override { m_view.terminate(); }
    void setScrollHandler(std::function<void(double)> handler) override {
        m_view.setScrollHandler(std::move(handler));
    }
    sigc::signal<void()>& signalLoaded() override { return m_view.signalLoaded(); }
    sigc::signal<void(const std::string&)>& signalLinkActivated() override {
        return m_view.signalLinkActivated();
    }
    sigc::signal<void()>& signalFailed() override { return m_view.signalFailed(); }

private:
    WebKitView& m_view;
};

struct Page {
    explicit Page(WebRoom& room) : view(room.makeView(PreviewPage::scriptHash())) {
        view->widget().set_size_request(600, 800);
        coordinator->signalShown().connect([this] { isShown = true; });
        view->signalLoaded().connect([this] { isLoaded = true; });
    }

    std::unique_ptr<WebKitView> view;
    LaidOutView laidOut{*view};
    std::shared_ptr<PreviewCoordinator> coordinator =
        PreviewCoordinator::create(laidOut, kPatience);
    bool isShown = false;
    bool isLoaded = false;
};

void turnUntil(const bool& isDone) {
    while (!isDone)
        Glib::MainContext::get_default()->iteration(true);
}

double millisecondsOf(const std::function<void()>& work) {
    const auto start = std::chrono::steady_clock::now();
    work();
    return std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - start)
        .count();
}

double medianOf(std::vector<double> values) {
    const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
    std::nth_element(values.begin(), middle, values.end());
    return *middle;
}

void compare(const char* name,
             int rounds,
             const std::function<void()>& ours,
             const std::function<void()>& base) {
    std::vector<double> oursTimes;
    std::vector<double> baseTimes;
    for (int round = 0; round <= rounds; ++round) {
        const double time = millisecondsOf(ours);
        const double baseTime = millisecondsOf(base);
        if (round == 0) continue;  // warms both up
        oursTimes.push_back(time);
        baseTimes.push_back(baseTime);
    }
    const double median = medianOf(oursTimes);
    const double baseMedian = medianOf(baseTimes);
    std::printf("%-28s %8.1f ms %8.1f ms   ratio %.3f\n", name, median, baseMedian,
                median / baseMedian);
}

class Bench {
public:
    Bench() {
        m_box.append(m_page.view->widget());
        m_box.append(m_plain.view->widget());
        m_window.set_child(m_box);
        m_window.present();
    }
    ~Bench() {
        m_box.remove(m_page.view->widget());
        m_box.remove(m_plain.view->widget());
    }

    void edit(const char* name, std::size_t size) {
        const std::vector<std::string> tags{"a/b"};
        TextGenerator generator(7, TextGenerator::Language::polish, tags);
        std::string text = generator.note("Long", size);
        std::size_t place = text.size() / 2;
        while (text[place] < 'a' || text[place] > 'z')
            ++place;
        const MarkdownParserService parser;
        const auto body = [&] {
            return parser.postProcessImages(MarkdownParserService::renderBody(text));
        };
        show(m_light, body());
        compare(
            name, 21,
            [&] {
                text[place] = text[place] == 'x' ? 'y' : 'x';
                show(m_light, MarkdownParserService::markRemoteImages(body()));
            },
            [&] {
                bool isDone = false;
                m_page.laidOut.evaluate(PreviewPage::updateScript(body()),
                                        [&](const auto&) { isDone = true; });
                turnUntil(isDone);
            });
        bool isDark = false;
        const std::string whole = body();
        compare(
            "  another theme", 9, [&] { show((isDark = !isDark) ? m_dark : m_light, whole); },
            [&] {
                m_plain.isLoaded = false;
                m_plain.laidOut.loadPage(PreviewPage::html(isDark ? m_dark : m_light, whole));
                turnUntil(m_plain.isLoaded);
                bool isDone = false;
                m_plain.laidOut.evaluate("1", [&](const auto&) { isDone = true; });
                turnUntil(isDone);
            });
    }

private:
    void show(const std::string& css, const std::string& body) {
        m_page.isShown = false;
        m_page.coordinator->show(css, body);
        turnUntil(m_page.isShown);
    }

    const std::string m_light = generateCSS(themes::builtInLight());
    const std::string m_dark = generateCSS(themes::builtInDark());
    WebRoom m_room;
    Page m_page{m_room};
    Page m_plain{m_room};
    Gtk::Box m_box;
    Gtk::Window m_window;
};

}  // namespace
}  // namespace corvel

int main() {
    gtk_init();
    Gtk::init_gtkmm_internals();
    std::printf("%-28s %11s %11s\n", "", "ours", "base");
    corvel::Bench bench;
    bench.edit("edit of 100 KB", std::size_t{100} << 10U);
    bench.edit("edit of 1 MB", std::size_t{1} << 20U);
}
