// What a piece of a reply costs the main loop, in a short reply and in a long one; how long the
// loop is busy at a time while 10,000 pieces come in a second; and what comparing two texts takes.
// The web view is one that answers at once: its work is done in another process. Ratios count.
#include "app/assistant/MessageFeed.h"
#include "app/editing/TextDifference.h"

#include <glibmm/init.h>
#include <glibmm/main.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <random>
#include <string>
#include <vector>

namespace corvel {
namespace {

using Clock = std::chrono::steady_clock;

double microsecondsSince(Clock::time_point start) {
    return std::chrono::duration<double, std::micro>(Clock::now() - start).count();
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
        Glib::signal_idle().connect_once([done = std::move(done)] { done(std::nullopt); });
    }
    void terminate() override {}
    void setScrollHandler(std::function<void(double)>) override {}
    sigc::signal<void()>& signalLoaded() override { return m_loaded; }
    sigc::signal<void(const std::string&)>& signalLinkActivated() override { return m_link; }
    sigc::signal<void()>& signalFailed() override { return m_failed; }

private:
    sigc::signal<void()> m_loaded;
    sigc::signal<void(const std::string&)> m_link;
    sigc::signal<void()> m_failed;
};

/// A reply of paragraphs that is `size` bytes long already.
class Reply {
public:
    explicit Reply(std::size_t size) {
        m_messages.resize(1);
        m_messages[0].role = AIMessage::Role::assistant;
        m_messages[0].isStreaming = true;
        m_feed.show("", {});
        while (m_messages[0].content.size() < size)
            add();
        turn(300);
    }
    void add() {
        const std::string piece = ++m_count % 40 == 0 ? "end.\n\n" : "a word ";
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
            const auto begun = Clock::now();
            if (!context->iteration(false)) continue;
            busy += microsecondsSince(begun);
            longest = std::max(longest, microsecondsSince(begun));
        }
        return {longest, busy};
    }

private:
    std::vector<AIMessage> m_messages;
    QuickView m_view;
    MessageFeed m_feed{m_view, [this]() -> const std::vector<AIMessage>& { return m_messages; },
                       true};
    int m_count = 0;
};

/// Microseconds of a piece with all that follows from it, when 1,000 come in a second.
double pieceCost(std::size_t size) {
    Reply reply(size);
    std::vector<double> costs;
    for (int round = 0; round < 15; ++round) {
        const auto start = Clock::now();
        for (int i = 0; i < 50; ++i)
            reply.add();
        const double adding = microsecondsSince(start);
        costs.push_back((adding + reply.turn(50).second) / 50);
    }
    return median(costs);
}

void flood(std::size_t size) {
    Reply reply(size);
    double longest = 0;
    for (int frame = 0; frame < 300; ++frame) {
        const auto start = Clock::now();
        for (int i = 0; i < 100; ++i)
            reply.add();
        longest = std::max(longest, microsecondsSince(start));
        longest = std::max(longest, reply.turn(10).first);
    }
    std::printf("10,000 pieces a second for 3 s behind %4zu KB: longest slice %6.2f ms\n",
                size / 1024, longest / 1000);
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
    const double small = pieceCost(1024);
    for (const std::size_t size :
         {std::size_t{1024}, std::size_t{100 * 1024}, std::size_t{1024 * 1024}}) {
        const double cost = size == 1024 ? small : pieceCost(size);
        std::printf("a piece behind %4zu KB: %6.2f us, %4.2f times that behind 1 KB\n", size / 1024,
                    cost, cost / small);
    }
    flood(1024);
    flood(100 * 1024);
    compareAll();
    return 0;
}
