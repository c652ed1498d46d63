#include "ai/AIAssistantViewModel.h"
#include "ai/AISystemPrompt.h"
#include "ai/AITestSettings.h"

#include <gmock/gmock.h>

#include <deque>
#include <map>
#include <set>

namespace corvel {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using Property = AIAssistantViewModel::Property;
using Role = AIMessage::Role;
using ResultType = AIActionResultType;

/// What a service was asked, and the means to answer.
struct Asked {
    std::vector<AIMessage> messages;
    std::string systemPrompt;
    int maxTokens = 0;
    std::string model;
    TextStream::Handler handler;
};

/// Services that answer when the test says so. Providers are made when `make` is called.
class ScriptedSource : public AIProviderSource {
public:
    void makeProvider(AIProviderType type, Made done) override {
        waiting.emplace_back(type, std::move(done));
    }
    void hasKey(AIProviderType type, std::function<void(bool)> done) override {
        done(keys.contains(rawValue(type)));
    }
    sigc::signal<void(AIProviderType)>& signalKeyChanged() override { return changed; }

    void make(bool hasKey = true) {
        auto [type, done] = std::move(waiting.front());
        waiting.pop_front();
        ++made;
        done(hasKey ? std::make_unique<Provider>(*this, type) : nullptr);
    }
    Asked& last() { return asked.back(); }
    void piece(const std::string& text) { last().handler.piece(text); }
    void end(const std::optional<AIError>& error = {}) {
        const auto handler = last().handler;
        handler.ended(error);
    }

    std::deque<std::pair<AIProviderType, Made>> waiting;
    std::deque<Asked> asked;
    std::set<std::string> keys;
    sigc::signal<void(AIProviderType)> changed;
    int made = 0;

private:
    class Provider : public AIProviderService {
    public:
        Provider(ScriptedSource& source, AIProviderType type) : m_source(source), m_type(type) {}
        AIProviderType providerType() const override { return m_type; }
        std::unique_ptr<TextStream> streamMessage(const std::vector<AIMessage>& messages,
                                                  const std::string& systemPrompt,
                                                  int maxTokens,
                                                  TextStream::Handler handler) const override {
            m_source.asked.push_back(
                {messages, systemPrompt, maxTokens, rawValue(m_type), std::move(handler)});
            return std::make_unique<TextStream>(std::unique_ptr<HttpTransfer>());
        }

    private:
        ScriptedSource& m_source;
        AIProviderType m_type;
    };
};

class AssistantTest : public testing::Test {
protected:
    AssistantTest() {
        model.contentOf = [this](const Uuid& id) -> std::optional<std::string> {
            const auto found = notes.find(id);
            return found == notes.end() ? std::nullopt : std::optional(found->second);
        };
        const auto keep = [this](const char* what) {
            return [this, what](const AIEdit& edit) {
                edits.push_back(edit);
                calls.emplace_back(what);
            };
        };
        model.onInsertAtCursor = keep("insert");
        model.onReplaceSelection = keep("selection");
        model.onReplaceDocument = keep("document");
        model.onInsertAtTop = keep("top");
        model.onConfirmReplace = [this](const std::string&, auto given) { answer = given; };
        open(first, "Some text of mine");
        model.setSelection("text", 5);
    }

    void open(const Uuid& id, const std::string& content) {
        notes[id] = content;
        model.setNote(id, "Title", content);
    }
    void send(const std::string& text) {
        model.setInputText(text);
        model.sendChatMessage();
        if (!source.waiting.empty()) source.make();
    }
    void quick(AIQuickAction action = AIQuickAction::shorten) {
        model.runQuickAction(action);
        if (!source.waiting.empty()) source.make();
    }
    void document(AIDocumentAction action) {
        model.runDocumentAction(action);
        if (!source.waiting.empty()) source.make();
    }
    void result(const std::string& text) {
        source.piece(text);
        source.end();
    }

    const Uuid first = Uuid::random();
    const Uuid second = Uuid::random();
    AITestSettings settings;
    ScriptedSource source;
    AIAssistantViewModel model{source, settings.preferences, settings.texts};
    std::map<Uuid, std::string> notes;
    std::vector<AIEdit> edits;
    std::vector<std::string> calls;
    std::function<void(bool)> answer;
};

TEST_F(AssistantTest, AChatTurnSendsTheTrimmedTextAndGathersTheReply) {
    std::vector<std::string> pieces;
    model.signalPiece().connect([&](std::string_view piece) { pieces.emplace_back(piece); });
    send(" \n Hello \n");
    EXPECT_EQ(model.inputText(), "");
    EXPECT_TRUE(model.isStreaming());
    ASSERT_EQ(model.messages().size(), 2U);
    EXPECT_EQ(source.last().systemPrompt, chatSystemPrompt("Title", "text", "Some text of mine"));
    EXPECT_EQ(source.last().maxTokens, 8192);
    ASSERT_EQ(source.last().messages.size(), 1U);
    EXPECT_EQ(source.last().messages[0].content, "Hello");
    source.piece("One");
    source.piece(", two");
    EXPECT_TRUE(model.messages()[1].isStreaming);
    source.end();
    EXPECT_EQ(model.messages()[1].content, "One, two");
    EXPECT_FALSE(model.messages()[1].isStreaming);
    EXPECT_FALSE(model.isStreaming());
    EXPECT_THAT(pieces, ElementsAre("One", ", two"));

    send("More");
    EXPECT_EQ(source.last().messages.size(), 3U);
    EXPECT_EQ(source.made, 1) << "the service is kept";
}

TEST_F(AssistantTest, NothingIsSentWithoutTextOrKeyOrWhileAReplyArrives) {
    send(" \n\t");
    EXPECT_TRUE(source.waiting.empty());
    model.setInputText("Hello");
    model.sendChatMessage();
    model.sendChatMessage();
    ASSERT_EQ(source.waiting.size(), 1U);
    source.make(false);
    EXPECT_THAT(model.messages(), IsEmpty());
    EXPECT_EQ(model.inputText(), "Hello");
    EXPECT_EQ(model.error(), "Configure API key in Settings → AI Assistant");
    settings.preferences.setAppLanguage("pl");
    send("Hello");
    EXPECT_EQ(model.error(), std::nullopt);
    send("Again");
    EXPECT_EQ(source.asked.size(), 1U);
    EXPECT_EQ(model.inputText(), "Again");
}

TEST_F(AssistantTest, AFailedReplyKeepsWhatCameAndDoesNotSpoilTheNext) {
    send("Hello");
    source.end(AIError::http(529, "Overloaded"));
    EXPECT_EQ(model.error(), "HTTP 529: Overloaded");
    EXPECT_FALSE(model.isStreaming());
    send("Again");
    ASSERT_EQ(source.last().messages.size(), 2U);
    EXPECT_EQ(source.last().messages[1].content, "Again");
    source.piece("Half");
    source.end(AIError(AIError::Kind::invalidResponse));
    EXPECT_EQ(model.messages().back().content, "Half");
    send("And again");
    EXPECT_EQ(model.error(), std::nullopt);
    source.end();
    EXPECT_EQ(model.error(), "Invalid response from AI provider") << "a reply without a word";
}

TEST_F(AssistantTest, StoppingKeepsThePartAndClearingEndsTheReply) {
    send("Hello");
    source.piece("Half");
    model.stop();
    EXPECT_FALSE(model.isStreaming());
    EXPECT_EQ(model.messages()[1].content, "Half");
    EXPECT_FALSE(model.messages()[1].isStreaming);
    EXPECT_EQ(model.error(), std::nullopt);
    send("Go on");
    model.clearChat();
    EXPECT_THAT(model.messages(), IsEmpty());
    EXPECT_FALSE(model.isStreaming());

    model.setSelectedModel("other");
    model.setInputText("Hello");
    model.sendChatMessage();
    model.stop();
    source.make();
    EXPECT_THAT(model.messages(), IsEmpty()) << "stopped before the key was read";
}

TEST_F(AssistantTest, ActionsAskForTheirTextAndSayHowItMayBeUsed) {
    quick(AIQuickAction::fixGrammar);
    EXPECT_TRUE(model.isQuickActionStreaming());
    EXPECT_EQ(model.quickActionOriginal(), "text");
    EXPECT_EQ(source.last().messages[0].content, "text");
    EXPECT_EQ(source.last().systemPrompt, promptOf(AIQuickAction::fixGrammar));
    EXPECT_EQ(source.last().maxTokens, 4096);
    result("words");
    EXPECT_EQ(model.quickActionResult(), "words");
    EXPECT_EQ(model.quickActionResultType(), ResultType::replaceSelection);

    const auto typeAfter = [&](AIDocumentAction action) {
        document(action);
        EXPECT_EQ(model.quickActionResult(), "");
        EXPECT_EQ(model.quickActionOriginal(), std::nullopt);
        EXPECT_EQ(source.last().messages[0].content, "Some text of mine");
        EXPECT_EQ(source.last().maxTokens, 8192);
        result("done");
        return model.quickActionResultType();
    };
    EXPECT_EQ(typeAfter(AIDocumentAction::generateTOC), ResultType::insertAtTop);
    EXPECT_EQ(typeAfter(AIDocumentAction::spellCheck), ResultType::review);
    EXPECT_EQ(typeAfter(AIDocumentAction::summarize), ResultType::copyOnly);
    EXPECT_EQ(typeAfter(AIDocumentAction::makeProfessional), ResultType::replaceDocument);

    const auto before = source.asked.size();
    open(second, "");
    quick();
    document(AIDocumentAction::summarize);
    EXPECT_EQ(source.asked.size(), before);
}

TEST_F(AssistantTest, AResultGoesToTheNoteItWasAskedFor) {
    quick();
    open(second, "Another text");
    model.setSelection("text", 8);
    result("words");
    model.applyResult();
    ASSERT_THAT(calls, ElementsAre("selection"));
    EXPECT_EQ(edits[0].noteID, first);
    EXPECT_EQ(edits[0].text, "words");
    EXPECT_EQ(edits[0].offset, 5U);
    EXPECT_EQ(edits[0].length, 4U);

    document(AIDocumentAction::generateTOC);
    open(first, "Some text of mine");
    result("- toc");
    model.applyResult();
    EXPECT_EQ(calls.back(), "top");
    EXPECT_EQ(edits.back().noteID, second);

    send("Hello");
    result("reply");
    open(second, "Another text");
    model.setSelection("Another", 0);
    EXPECT_FALSE(model.canReplaceSelection(model.messages().back()));
    model.replaceSelection(model.messages().back());
    model.insertMessage(model.messages().back());
    EXPECT_EQ(calls.back(), "insert");
    EXPECT_EQ(edits.back().noteID, first);
    EXPECT_EQ(edits.size(), 3U);
}

TEST_F(AssistantTest, AReplacementForANoteThatChangedAsksFirst) {
    document(AIDocumentAction::simplify);
    result("Simple.");
    open(first, "Some text of mine, and more");
    model.applyResult();
    EXPECT_THAT(edits, IsEmpty());
    ASSERT_TRUE(answer);
    answer(false);
    EXPECT_THAT(edits, IsEmpty());
    answer(true);
    EXPECT_THAT(calls, ElementsAre("document"));

    // The selection is looked for where it stands now.
    open(first, "text, some text of mine");
    model.setSelection("text", 11);
    quick();
    result("words");
    open(first, "text. Now: text, some of mine");
    model.applyResult();
    answer(true);
    EXPECT_EQ(edits.back().offset, 11U);
    open(first, "all gone");
    model.applyResult();
    answer(true);
    EXPECT_EQ(edits.size(), 2U);
    EXPECT_EQ(model.error(),
              "The selected text is no longer in the note. The result can be copied.");

    open(second, "Another");
    notes.erase(first);
    model.applyResult();
    EXPECT_EQ(model.error(), "This note is gone.");
}

TEST_F(AssistantTest, OnlyAWholeResultCanBeApplied) {
    document(AIDocumentAction::shortenDocument);
    source.piece("Half a no");
    model.applyResult();
    model.stop();
    EXPECT_EQ(model.quickActionResult(), "Half a no");
    EXPECT_FALSE(model.isQuickActionStreaming());
    model.applyResult();
    document(AIDocumentAction::shortenDocument);
    source.piece("Half a no");
    source.end(AIError::of({HttpError::Kind::timedOut}));
    EXPECT_EQ(model.error(), "The service does not answer.");
    model.applyResult();
    document(AIDocumentAction::summarize);
    result("Summary");
    model.applyResult();
    EXPECT_THAT(calls, IsEmpty());
}

TEST_F(AssistantTest, CorrectionsAreMadeInTheNoteThatWasChecked) {
    document(AIDocumentAction::spellCheck);
    result("1. txet");
    open(second, "Another");
    notes[first] = "Some text, edited";
    model.applyResult();
    EXPECT_EQ(source.last().messages[0].content, "Some text, edited");
    EXPECT_EQ(source.last().systemPrompt, correctionsPrompt());
    EXPECT_EQ(source.last().maxTokens, 8192);
    result("Corrected");
    EXPECT_EQ(model.quickActionResultType(), ResultType::replaceDocument);
    model.applyResult();
    EXPECT_FALSE(answer);
    EXPECT_THAT(calls, ElementsAre("document"));
    EXPECT_EQ(edits[0].noteID, first);
}

TEST_F(AssistantTest, ServiceModelAndKeyAreFollowedWhereverTheyChange) {
    EXPECT_EQ(model.selectedModel(), "claude-sonnet-4-5-20250929");
    model.setSelectedProviderType(AIProviderType::openai);
    EXPECT_EQ(settings.preferences.aiProvider(), "openai");
    EXPECT_EQ(model.selectedModel(), "gpt-4o");
    model.setSelectedModel("o3-mini");
    EXPECT_EQ(settings.preferences.aiModel("openai"), "o3-mini");
    model.checkKey();
    EXPECT_TRUE(model.isKeyMissing());
    source.keys.insert("openai");
    source.changed.emit(AIProviderType::openai);
    EXPECT_FALSE(model.isKeyMissing());
    send("Hello");
    EXPECT_EQ(source.last().model, "openai");
    result("x");
    source.changed.emit(AIProviderType::openai);
    send("With the new key");
    EXPECT_EQ(source.made, 2);
    result("x");

    // Changed while the key was being read: the service of the old choice is not asked.
    settings.preferences.setAIProvider("gemini");
    model.setInputText("Hello");
    model.sendChatMessage();
    settings.preferences.setAIProvider("nobody");
    EXPECT_EQ(model.selectedProviderType(), AIProviderType::claude);
    source.make();
    source.make();
    EXPECT_EQ(source.last().model, "claude");
}

TEST_F(AssistantTest, LateAnswersFindNobody) {
    auto other =
        std::make_unique<AIAssistantViewModel>(source, settings.preferences, settings.texts);
    other->setInputText("Hello");
    other->sendChatMessage();
    other.reset();
    source.make();
    EXPECT_THAT(source.asked, IsEmpty());
}

}  // namespace
}  // namespace corvel
