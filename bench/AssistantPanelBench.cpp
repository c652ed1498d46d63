// What a piece of a reply costs the main loop, in a short reply and in a long one; how long the
// loop is busy at a time while 10,000 pieces come in a second; and what comparing two texts takes.
// The web view is one that answers at once: its work is done in another process. Times are those of
// this thread alone, as the machine may be shared; ratios count.
#include "app/assistant/MessageFeed.h"
#include "app/editing/TextDifference.h"

#include <glibmm/init.h>
#include <glibmm/main.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <ctime>
#include <random>
#include <string>
#include <vector>

namespace corvel {
namespace {

using Clock = std::chrono::steady_clock;

double microsecondsSince(Clock::time_point start) {
    return std::chrono::duration<double, std::micro>(Clock::now() - start).count();
}

/// Of this thread's own time, in microseconds.
double ownTime() {
    timespec now{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &now);
    return 1e6 * static_cast<double>(now.tv_sec) + 1e-3 * static_cast<double>(now.tv_nsec);
}

double median(std::vector<double> times) {
    std::ranges::sort(times);
    return times[times.size() / 2];
}

class QuickView : public WebView {
public:
    void loadPage(const std::string&) override {
        Glib::signal_idle().connect_once([this] { m_loaded.emit(); });
    }
    void evaluate(const std::string&, Evaluated done) override {
        ++scripts;
        Glib::signal_idle().connect_once([done = std::move(done)] { done(std::nullopt); });
    }
    void terminate() override {}
    void setScrollHandler(std::function<void(double)>) override {}
    sigc::signal<void()>& signalLoaded() override { return m_loaded; }
    sigc::signal<void(const std::string&)>& signalLinkActivated() override { return m_link; }
    sigc::signal<void()>& signalFailed() override { return m_failed; }

    int scripts = 0;

private:
    sigc::signal<void()> m_loaded;
    sigc::signal<void(const std::string&)> m_link;
    sigc::signal<void()> m_failed;
};

/// A reply that is `size` bytes long already, all of them shown.
class Reply {
public:
    enum class Shape { paragraphs, oneParagraph };

    Reply(std::size_t size, Shape shape) : m_shape(shape) {
        m_messages.resize(1);
        m_messages[0].role = AIMessage::Role::assistant;
        m_messages[0].isStreaming = true;
        m_feed.show("", {});
        while (m_messages[0].content.size() < size)
            add();
        for (int before = -1; before != m_view.scripts;) {
            before = m_view.scripts;
            turn(200);
        }
    }
    void add() {
        const bool ends = ++m_count % 40 == 0 && m_shape == Shape::paragraphs;
        const std::string piece = ends ? "end.\n\n" : "a word ";
        m_messages[0].content += piece;
        m_feed.append(piece);
    }
    /// Turns the loop; the time of its longest turn in microseconds, and of all of them.
    std::pair<double, double> turn(int milliseconds) {
        const auto context = Glib::MainContext::get_default();
        const auto start = Clock::now();
        double longest = 0;
        double busy = 0;
        while (microsecondsSince(start) < milliseconds * 1000.0) {
            const double begun = ownTime();
            if (!context->iteration(false)) continue;
            busy += ownTime() - begun;
            longest = std::max(longest, ownTime() - begun);
        }
        return {longest, busy};
    }

    /// The longest turn of the loop when the reply ends.
    double end() {
        m_messages[0].isStreaming = false;
        const double begun = ownTime();
        m_feed.sync();
        const double syncing = ownTime() - begun;
        return std::max(syncing, turn(1000).first);
    }

private:
    Shape m_shape;
    std::vector<AIMessage> m_messages;
    QuickView m_view;
    MessageFeed m_feed{m_view, [this]() -> const std::vector<AIMessage>& { return m_messages; },
                       true};
    int m_count = 0;
};

/// Microseconds of a piece with all that follows from it, when 1,000 come in a second.
double pieceCost(std::size_t size, Reply::Shape shape) {
    Reply reply(size, shape);
    std::vector<double> costs;
    for (int round = 0; round < 15; ++round) {
        const double start = ownTime();
        for (int i = 0; i < 50; ++i)
            reply.add();
        const double adding = ownTime() - start;
        costs.push_back((adding + reply.turn(50).second) / 50);
    }
    return median(costs);
}

const char* nameOf(Reply::Shape shape) {
    return shape == Reply::Shape::paragraphs ? "" : " in one paragraph";
}

void flood(std::size_t size, Reply::Shape shape) {
    Reply reply(size, shape);
    double longest = 0;
    for (int frame = 0; frame < 300; ++frame) {
        const double start = ownTime();
        for (int i = 0; i < 100; ++i)
            reply.add();
        longest = std::max(longest, ownTime() - start);
        longest = std::max(longest, reply.turn(10).first);
    }
    std::printf("10,000 pieces a second for 3 s behind %4zu KB%s: longest slice %6.2f ms, ",
                size / 1024, nameOf(shape), longest / 1000);
    std::printf("at the end %6.2f ms\n", reply.end() / 1000);
}

void compare(const char* name, const std::string& before, const std::string& after) {
    std::vector<double> times;
    for (int round = 0; round < 7; ++round) {
        const auto start = Clock::now();
        const auto runs = editing::differencesOf(before, after);
        times.push_back(microsecondsSince(start) + (runs.empty() ? 0.001 : 0));
    }
    std::printf("comparing %-28s %7.2f ms\n", name, median(times) / 1000);
}

void compareAll() {
    std::mt19937 random(5);
    const auto text = [&random](std::size_t lines) {
        std::string made;
        for (std::size_t line = 0; line < lines; ++line) {
            for (int word = 0; word < 11; ++word)
                made += "word" + std::to_string(random() % 5000) + " ";
            made += '\n';
        }
        return made;
    };
    const auto large = text(10'000);
    auto edited = large;
    for (std::size_t at = 5000; at < edited.size(); at += 50'000)
        edited.replace(at, 5, "other words");
    compare("1 MB, 20 places changed", large, edited);
    compare("1 MB with another 1 MB", large, text(10'000));
    compare("100 KB with another 100 KB", text(1000), text(1000));
}

}  // namespace
}  // namespace corvel

int main() {
    Glib::init();
    using namespace corvel;
    constexpr std::size_t kKilobyte = 1024;
    constexpr auto kParagraphs = Reply::Shape::paragraphs;
    constexpr auto kOneParagraph = Reply::Shape::oneParagraph;
    const double small = pieceCost(kKilobyte, kParagraphs);
    const auto show = [small](std::size_t size, Reply::Shape shape) {
        const double cost = pieceCost(size, shape);
        std::printf("a piece behind %4zu KB%s: %6.2f us, %4.2f times that behind 1 KB\n",
                    size / kKilobyte, nameOf(shape), cost, cost / small);
    };
    for (const std::size_t size : {1, 100, 1000})
        show(size * kKilobyte, kParagraphs);
    for (const std::size_t size : {100, 1000})
        show(size * kKilobyte, kOneParagraph);
    for (const std::size_t size : {1, 100, 1000})
        flood(size * kKilobyte, kParagraphs);
    flood(900 * kKilobyte, kOneParagraph);
    compareAll();
    return 0;
}
