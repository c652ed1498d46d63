#include "app/assistant/MessageFeed.h"
#include "support/MainLoop.h"

#include <glibmm/main.h>
#include <gmock/gmock.h>

#include <algorithm>
#include <deque>

namespace corvel {
namespace {

using testing::HasSubstr;

/// Answers each script on the loop and keeps it.
class AnsweringView : public WebView {
public:
    void loadPage(const std::string&) override {
        ++loads;
        Glib::signal_idle().connect_once([this] { m_loaded.emit(); });
    }
    void evaluate(const std::string& script, Evaluated done) override {
        EXPECT_NE(script, "") << "work for nothing";
        scripts.push_back(script);
        const std::optional<std::string> error =
            failures > 0 ? std::optional<std::string>("no") : std::nullopt;
        if (failures > 0) --failures;
        Glib::signal_idle().connect_once([done = std::move(done), error] { done(error); });
    }
    void terminate() override {}
    void setScrollHandler(std::function<void(double)>) override {}
    sigc::signal<void()>& signalLoaded() override { return m_loaded; }
    sigc::signal<void(const std::string&)>& signalLinkActivated() override { return m_link; }
    sigc::signal<void()>& signalFailed() override { return m_failed; }

    std::string joined() const {
        std::string all;
        for (const auto& script : scripts)
            all += script + "\n";
        return all;
    }

    std::vector<std::string> scripts;
    int loads = 0;
    int failures = 0;

private:
    sigc::signal<void()> m_loaded;
    sigc::signal<void(const std::string&)> m_link;
    sigc::signal<void()> m_failed;
};

class MessageFeedTest : public testing::Test {
protected:
    MessageFeedTest() {
        feed.signalShown().connect([this] { isShown = true; });
        feed.signalAction().connect([this](auto verb, const AIMessage& message) {
            actions.emplace_back(verb, message.content);
        });
        feed.show("css", {});
    }

    AIMessage& add(AIMessage::Role role, const std::string& content, bool isStreaming = false) {
        AIMessage message;
        message.role = role;
        message.content = content;
        message.isStreaming = isStreaming;
        messages.push_back(message);
        feed.sync();
        return messages.back();
    }
    void piece(const std::string& text) {
        messages.back().content += text;
        feed.append(text);
    }
    bool settles() {
        isShown = false;
        feed.setReplaceable({Uuid::random()});
        return turnUntil([this] { return isShown; });
    }
    void end() {
        messages.back().isStreaming = false;
        feed.sync();
        ASSERT_TRUE(settles());
    }

    std::vector<AIMessage> messages;
    AnsweringView view;
    MessageFeed feed{view, [this]() -> const std::vector<AIMessage>& { return messages; }, true};
    std::vector<std::pair<MessageFeed::Verb, std::string>> actions;
    bool isShown = false;
};

TEST_F(MessageFeedTest, ShowsMessagesAndTheReplyWhole) {
    add(AIMessage::Role::user, "**Hi**");
    add(AIMessage::Role::assistant, "", true);
    piece("One [link]\n\nTwo");
    EXPECT_TRUE(turnUntil([this] { return view.joined().find("Two") != std::string::npos; }));
    piece("\n\n[link]: https://example.org\n");
    end();
    EXPECT_THAT(view.joined(), HasSubstr("<strong>Hi</strong>"));
    EXPECT_THAT(view.joined(), HasSubstr("<p>One [link]</p>"));
    EXPECT_THAT(view.joined(), HasSubstr(R"(<a href=\"https://example.org\")"))
        << "a definition that came later";
    messages.clear();
    feed.sync();
    ASSERT_TRUE(settles());
    EXPECT_THAT(view.joined(), HasSubstr("messages.clear()"));
}

// The page is told at most once a frame, and never again of what has ended.
TEST_F(MessageFeedTest, TellsThePageLittleOfManyPieces) {
    add(AIMessage::Role::assistant, "", true);
    ASSERT_TRUE(settles());
    view.scripts.clear();
    std::size_t sent = 0;
    for (int burst = 0; burst < 50; ++burst) {
        for (int i = 0; i < 200; ++i) {
            const std::string text = i % 20 == 19 ? "end of it.\n\n" : "word ";
            sent += text.size();
            piece(text);
        }
        Glib::MainContext::get_default()->iteration(false);
    }
    const auto last = "the last words " + std::to_string(sent);
    piece(last);
    ASSERT_TRUE(turnUntil([&] { return view.joined().find(last) != std::string::npos; }));
    EXPECT_LT(view.scripts.size(), 100U) << "of 10,000 pieces";
    std::size_t pushed = 0;
    for (const auto& script : view.scripts)
        pushed += script.size();
    EXPECT_LT(pushed, 3 * sent);
}

TEST_F(MessageFeedTest, ShowsAllOfABurstAlsoWhenNothingFollows) {
    add(AIMessage::Role::assistant, "", true);
    std::string burst;
    for (int number = 0; number < 20'000; ++number)
        burst += "paragraph " + std::to_string(number) + "\n\n";
    piece(burst + "and the rest");
    for (const char* part : {"<p>paragraph 0<", "<p>paragraph 12345<", "<p>paragraph 19999<"}) {
        EXPECT_TRUE(turnUntil([&] { return view.joined().find(part) != std::string::npos; }))
            << part;
    }
}

// Of a block without an end only so much is shown before it ends, and that not again and again.
TEST_F(MessageFeedTest, AHugeBlockIsNotShownAnewWithEveryPiece) {
    add(AIMessage::Role::assistant, "", true);
    piece(std::string(200'000, 'x'));
    ASSERT_TRUE(turnUntil([&] { return view.joined().size() > 90'000; }));
    for (int i = 0; i < 5; ++i) {
        piece(" more");
        turnUntil([] { return false; }, 3 * MessageFeed::kPause);
    }
    ASSERT_TRUE(settles());
    EXPECT_LT(view.joined().size(), 120'000U);
    end();
    EXPECT_THAT(view.joined(), HasSubstr("more more more more more"));
}

TEST_F(MessageFeedTest, TakesFromThePageOnlyWhatItMayAsk) {
    const auto user = add(AIMessage::Role::user, "question").id;
    const auto reply = add(AIMessage::Role::assistant, "answer").id;
    const auto growing = add(AIMessage::Role::assistant, "not yet", true).id;
    for (const auto& id : {user, growing, Uuid::random()})
        feed.receive("insert " + id.toString());
    for (const char* nonsense : {"", "insert", "insert ", "insert x", "erase 1 2", " "})
        feed.receive(nonsense);
    feed.receive("erase " + reply.toString());
    EXPECT_TRUE(actions.empty());
    feed.receive("replace " + reply.toString());
    feed.receive("copy " + reply.toString());
    ASSERT_EQ(actions.size(), 2U);
    EXPECT_EQ(actions[0].first, MessageFeed::Verb::replace);
    EXPECT_EQ(actions[1].second, "answer");
}

TEST_F(MessageFeedTest, BringsEverythingBackAfterThePageFailed) {
    add(AIMessage::Role::user, "question");
    ASSERT_TRUE(settles());
    add(AIMessage::Role::assistant, "begun", true);
    view.signalFailed().emit();
    view.scripts.clear();
    piece(" and gone on");
    ASSERT_TRUE(turnUntil([this] { return view.joined().find("gone on") != std::string::npos; }));
    EXPECT_EQ(view.loads, 2);
    EXPECT_THAT(view.joined(), HasSubstr("question"));
    EXPECT_THAT(view.joined(), HasSubstr("begun and gone on"));

    bool isUnavailable = false;
    feed.signalUnavailable().connect([&] { isUnavailable = true; });
    view.failures = 1000;
    piece("x");
    EXPECT_TRUE(turnUntil([&] { return isUnavailable; }));
    EXPECT_LT(view.loads, 10);
}

TEST_F(MessageFeedTest, HidesNothingOfAHostileReplyFromTheScriptsText) {
    add(AIMessage::Role::assistant, "`\u2028${x}</script> \xFF \"'\\ <script>alert(1)</script>");
    ASSERT_TRUE(settles());
    EXPECT_THAT(view.joined(), HasSubstr("\\\\"));
    EXPECT_EQ(std::ranges::count(view.joined(), '\n'),
              static_cast<std::ptrdiff_t>(view.scripts.size()))
        << "no line end gets out of its literal";
}

}  // namespace
}  // namespace corvel
