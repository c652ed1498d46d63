#include "support/Keyring.h"
#include "support/ScriptedServer.h"
#include "ui/Accessible.h"
#include "ui/AssistantHost.h"
#include "ui/NotePane.h"
#include "ui/WindowTest.h"

#include <gmock/gmock.h>
#include <nlohmann/json.hpp>

#include <algorithm>
#include <memory>

namespace corvel {
namespace {

using testing::HasSubstr;

/// The panel beside a note, a keyring with a key, and a service on this machine.
class AssistantPanelTest : public WindowTest {
protected:
    static void SetUpTestSuite() {
        WindowTest::SetUpTestSuite();
        keyring = std::make_unique<Keyring>();
    }
    static void TearDownTestSuite() { keyring.reset(); }

    AssistantPanelTest() {
        defaults.setString("aiEndpoint_claude", server.url());
        bool isSaved = false;
        session.ai.keychain.saveKey("key", AIProviderType::claude, [&](auto) { isSaved = true; });
        EXPECT_TRUE(turnUntil([&] { return isSaved; }));
        first = addNote("First", "One two three.\n");
        second = addNote("Second", "Another note.\n");
        session.start();
        open(first);
        box.append(note);
        box.append(host.panel());
        toasts.setChild(box);
        parent.set_child(toasts.widget());
        parent.set_default_size(1000, 700);
        parent.present();
    }
    ~AssistantPanelTest() override { parent.unset_child(); }

    Uuid addNote(const std::string& title, const std::string& content) {
        Note added;
        added.id = Uuid::random();
        added.title = title;
        added.content = content;
        session.library.notes.create(added);
        return added.id;
    }
    void open(const Uuid& id) {
        session.state.selectedNoteID.set(id);
        ASSERT_TRUE(session.editor.note());
        ASSERT_EQ(session.editor.note()->id, id);
    }
    void serve(const std::string& reply) {
        const auto event = [](const nlohmann::json& data) {
            return "data: " + data.dump() + "\n\n";
        };
        server.answer(200,
                      event({{"type", "content_block_delta"},
                             {"index", 0},
                             {"delta", {{"type", "text_delta"}, {"text", reply}}}}) +
                          event({{"type", "message_stop"}}),
                      "Content-Type: text/event-stream\r\n");
    }
    void ask(const std::string& reply) {
        serve(reply);
        host.panel().chat().input().setText("Please");
        assistant.sendChatMessage();
        ASSERT_TRUE(
            turnUntil([&] { return !assistant.messages().empty() && !assistant.isStreaming(); }));
        ASSERT_EQ(assistant.error(), std::nullopt);
    }
    template <typename Run>
    void act(const std::string& reply, Run run) {
        serve(reply);
        run();
        ASSERT_TRUE(turnUntil([&] { return assistant.isQuickActionComplete(); }));
    }
    Glib::RefPtr<Gtk::TextBuffer> buffer() { return note.editor().textView().get_buffer(); }
    std::string text() { return note.editor().text(); }
    void select(int begin, int end) {
        buffer()->select_range(buffer()->get_iter_at_offset(begin),
                               buffer()->get_iter_at_offset(end));
    }
    /// The value of an expression in the chat's page, as text.
    std::string askPage(const std::string& expression) {
        std::optional<std::string> answer;
        const auto answered = [](GObject* source, GAsyncResult* result, gpointer data) {
            const GObjectHandle<JSCValue> value(webkit_web_view_evaluate_javascript_finish(
                WEBKIT_WEB_VIEW(source), result, nullptr));
            const Handle<char, g_free> text(value ? jsc_value_to_string(value.get()) : nullptr);
            *static_cast<std::optional<std::string>*>(data) = text ? text.get() : "(error)";
        };
        webkit_web_view_evaluate_javascript(host.panel().chat().messages().webView()->handle(),
                                            expression.c_str(), -1, nullptr, nullptr, nullptr,
                                            answered, &answer);
        turnUntil([&] { return answer.has_value(); });
        return answer.value_or("(no answer)");
    }
    bool pageShows(const std::string& words) {
        return turnUntil([this] { return host.panel().chat().messages().webView() != nullptr; }) &&
               turnUntil([&] {
                   return askPage("document.body.innerText").find(words) != std::string::npos;
               });
    }
    /// Whether so many replies come to have their buttons.
    bool pageHasActions(int count) {
        return turnUntil([this] { return host.panel().chat().messages().webView() != nullptr; }) &&
               turnUntil([&] {
                   return askPage("document.querySelectorAll('.actions:not([hidden])').length") ==
                          std::to_string(count);
               });
    }
    /// Presses the button of the last reply that says `label`, as a reader does.
    void press(const std::string& label) {
        askPage(
            "Array.from(document.querySelectorAll('button')).filter(b => !b.closest('[hidden]') "
            "&& b.textContent === '" +
            label + "').pop().click()");
    }
    /// What has the focus in the page: the page itself, or which button of which message.
    std::string focusInPage() {
        return askPage(
            "(() => { const here = document.activeElement;"
            "if (!document.hasFocus()) return 'nothing';"
            "if (here === document.body)"
            "  return document.documentElement.classList.contains('focused') ? 'page' : 'unseen';"
            "return Array.from(document.querySelectorAll('article')).indexOf("
            "  here.closest('article')) + ' ' + here.textContent"
            "  + (here.matches(':focus-visible') ? '' : ' unseen'); })()");
    }
    void expectFocusAfter(const char* key, const std::string& expected) {
        type(key);
        std::string found;
        EXPECT_TRUE(turnUntil([&] { return (found = focusInPage()) == expected; }))
            << "after " << key << " the focus is on " << found << ", not on " << expected;
    }

    static inline std::unique_ptr<Keyring> keyring;
    ScriptedServer server;
    Toasts toasts;
    NotePane note{session, {}};
    AssistantHost host{session, note.editor(), toasts, parent};
    AIAssistantViewModel& assistant = host.assistant();
    Gtk::Box box;
    Uuid first;
    Uuid second;
};

TEST_F(AssistantPanelTest, InsertsAReplyAsOneStepBehindTheCursor) {
    buffer()->place_cursor(buffer()->end());
    buffer()->insert_at_cursor("typed ");
    ask("**A reply** of some length");
    ASSERT_TRUE(pageShows("A reply of some length"));
    press("Wstaw w edytorze");
    const std::string expected = "One two three.\ntyped **A reply** of some length";
    ASSERT_TRUE(turnUntil([&] { return text() == expected; })) << text();
    buffer()->undo();
    EXPECT_EQ(text(), "One two three.\ntyped ");
    EXPECT_TRUE(session.editor.isEdited());
}

TEST_F(AssistantPanelTest, ReplacesTheSelectionThatIsThereWhenTheButtonIsPressed) {
    ask("zwei");
    ASSERT_TRUE(pageShows("zwei"));
    EXPECT_EQ(
        askPage("Array.from(document.querySelectorAll('button')).filter(b => !b.hidden).length"),
        "2");
    select(4, 7);
    ASSERT_TRUE(turnUntil([this] {
        return askPage(
                   "Array.from(document.querySelectorAll('button')).filter(b => !b.hidden)"
                   ".length") == "3";
    }));
    press("Zastąp zaznaczenie");
    ASSERT_TRUE(turnUntil([&] { return text() == "One zwei three.\n"; })) << text();
    buffer()->undo();
    EXPECT_EQ(text(), "One two three.\n");
}

TEST_F(AssistantPanelTest, TabWalksThroughTheButtonsOfTheRepliesAndOutAtBothEnds) {
    ask("the first reply");
    ask("the second reply");
    ASSERT_TRUE(pageHasActions(2));
    auto& chat = host.panel().chat();
    chat.focusInput();
    expectFocusAfter("shift+Tab", "3 Kopiuj");
    expectFocusAfter("shift+Tab", "3 Wstaw w edytorze");
    expectFocusAfter("shift+Tab", "1 Kopiuj");
    expectFocusAfter("shift+Tab", "1 Wstaw w edytorze");
    expectFocusAfter("shift+Tab", "nothing");
    auto* clear = buttonWithIcon(chat, "user-trash-symbolic");
    EXPECT_EQ(parent.get_focus(), clear) << "one step, not two";
    expectFocusAfter("Tab", "page");
    expectFocusAfter("Tab", "1 Wstaw w edytorze");
    type("space");
    EXPECT_TRUE(turnUntil([&] { return text().ends_with("the first reply"); })) << text();

    chat.focusInput();
    expectFocusAfter("shift+Tab", "1 Wstaw w edytorze");
    chat.focusInput();
    ask("the third reply");
    ASSERT_TRUE(pageHasActions(3));
    EXPECT_EQ(parent.get_focus(), &chat.input().textView()) << "a reply leaves the focus alone";
    int copies = 0;
    chat.signalCopied().connect([&copies] { ++copies; });
    expectFocusAfter("shift+Tab", "5 Kopiuj");
    type("Return");
    EXPECT_TRUE(turnUntil([&] { return copies == 1; }));
    expectFocusAfter("Tab", "nothing");
    EXPECT_EQ(parent.get_focus(), &chat.input().textView());
}

TEST_F(AssistantPanelTest, TheFocusStaysInThePanelWhenAButtonHasDoneItsWork) {
    auto& input = host.panel().chat().input();
    server.answer({"HTTP/1.1 200 OK\r\n\r\n", 65536, 1, "", false});
    input.setText("Please");
    input.button().grab_focus();
    input.button().activate();
    ASSERT_TRUE(turnUntil([this] { return assistant.isStreaming(); }));
    EXPECT_EQ(parent.get_focus(), &input.textView());
    input.button().grab_focus();
    input.button().activate();
    ASSERT_TRUE(turnUntil([this] { return !assistant.isStreaming(); }));
    EXPECT_EQ(parent.get_focus(), &input.textView());

    assistant.setSelectedTab(AIAssistantViewModel::Tab::quickActions);
    auto& actions = host.panel().actions();
    const auto buttons = all<Gtk::Button>(actions);
    const auto action = std::ranges::find_if(buttons.rbegin(), buttons.rend(), [](auto* button) {
        return button->has_css_class("assistant-action");
    });
    ASSERT_NE(action, buttons.rend());
    (*action)->grab_focus();
    act("Jeden dwa trzy.\n", [&] { (*action)->activate(); });
    EXPECT_EQ(parent.get_focus(), &actions.result().applyButton());
}

TEST_F(AssistantPanelTest, ChangesTheNoteThatWasAskedForAfterAnotherWasOpened) {
    select(4, 7);
    act("2", [this] { assistant.runQuickAction(AIQuickAction::shorten); });
    EXPECT_EQ(host.panel().actions().result().differences().changeCount(), 1U);
    open(second);
    assistant.applyResult();
    EXPECT_EQ(text(), "Another note.\n");
    EXPECT_EQ(session.library.notes.fetchNote(first)->content, "One 2 three.\n");
    open(first);
    EXPECT_EQ(text(), "One 2 three.\n");
    buffer()->undo();
    EXPECT_EQ(text(), "One two three.\n") << "one step, still there when the note is opened";

    open(second);
    act("- [One](#one)\n", [this] { assistant.runDocumentAction(AIDocumentAction::generateTOC); });
    session.list.moveToTrash({second});
    assistant.applyResult();
    EXPECT_EQ(session.library.notes.fetchNote(second)->content, "Another note.\n");
}

TEST_F(AssistantPanelTest, AsksBeforeItReplacesANoteThatChanged) {
    act("Jeden dwa trzy.\n",
        [this] { assistant.runDocumentAction(AIDocumentAction::translateToPolish); });
    buffer()->insert(buffer()->end(), "More.");
    assistant.applyResult();
    EXPECT_EQ(text(), "One two three.\nMore.");
    std::vector<GtkWindow*> dialogs;
    ASSERT_TRUE(turnUntil([&] {
        dialogs.clear();
        auto* all = gtk_window_get_toplevels();
        for (guint i = 0; i < g_list_model_get_n_items(all); ++i) {
            const GObjectHandle<GtkWindow> window(GTK_WINDOW(g_list_model_get_item(all, i)));
            if (ADW_IS_MESSAGE_DIALOG(window.get()) != FALSE) dialogs.push_back(window.get());
        }
        return !dialogs.empty();
    }));
    adw_message_dialog_response(ADW_MESSAGE_DIALOG(dialogs.front()), "replace");
    EXPECT_TRUE(turnUntil([&] { return text() == "Jeden dwa trzy.\n"; })) << text();
    buffer()->undo();
    EXPECT_EQ(text(), "One two three.\nMore.");
    gtk_window_destroy(dialogs.front());
}

TEST_F(AssistantPanelTest, ShowsOnlyTheTextOfAHostileReply) {
    std::string many;
    while (many.size() < 300'000)
        many += "words ";
    ask("<script>document.title='x'</script><img src=\"" + server.url() +
        "/leak.png\" alt=\"picture\"><style>article{display:none}</style>"
        "<button id=\"messages\" onclick=\"messages.clear()\">Press</button> ![two](" +
        server.url() + "/two.png) <iframe src=\"" + server.url() + "\"></iframe>\n\n" + many +
        "\n\nthe end");
    ASSERT_TRUE(pageShows("the end"));
    EXPECT_EQ(askPage("document.querySelectorAll('.ended img, .ended script, .ended style, "
                      ".ended iframe, .ended button, .ended [onclick], .ended [id]').length"),
              "0");
    EXPECT_THAT(askPage("document.querySelector('.assistant').innerText.slice(0, 200)"),
                HasSubstr("picture"));
    EXPECT_EQ(server.requests().size(), 1U) << "nothing but the question was asked for";
}

TEST_F(AssistantPanelTest, SaysWhatIsMissingOrWentWrong) {
    server.answer(401, R"({"error": {"message": "invalid key"}})");
    host.panel().chat().input().setText("Please");
    assistant.sendChatMessage();
    ASSERT_TRUE(turnUntil([this] { return assistant.error().has_value(); }));
    EXPECT_THAT(host.panel().errorText().get_text().raw(), HasSubstr("401"));
    EXPECT_FALSE(host.panel().keyNotice().get_visible());
    bool isDeleted = false;
    session.ai.keychain.deleteKey(AIProviderType::claude, [&] { isDeleted = true; });
    EXPECT_TRUE(turnUntil([this] { return host.panel().keyNotice().get_visible(); }));
}

}  // namespace
}  // namespace corvel
