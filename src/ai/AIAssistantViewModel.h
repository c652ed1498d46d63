#pragma once

#include "ai/AIDocumentAction.h"
#include "ai/AIMessage.h"
#include "ai/AIProviderSource.h"
#include "ai/AIQuickAction.h"
#include "ai/AITarget.h"
#include "app/settings/Localisation.h"
#include "app/settings/Preferences.h"
#include "platform/ScopedConnection.h"

#include <sigc++/signal.h>

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace corvel {

/// The state behind the assistant's panel: a chat about the open note, and one-click actions on the
/// selection or the whole note. Each of the two asks for one reply at a time; a reply goes on
/// arriving whatever note is shown, and belongs to the note it was asked for.
class AIAssistantViewModel {
public:
    enum class Tab { chat, quickActions };
    enum class Property {
        messages,  ///< added, removed, or a reply has ended; not for pieces
        inputText,
        isStreaming,
        error,
        quickActionResult,  ///< begun anew or complete; not for pieces
        isQuickActionStreaming,
        selectedTab,
        context,
        provider,  ///< service or model
        isKeyMissing,
    };
    using Apply = std::function<void(const AIEdit& edit)>;

    /// All must outlive the view model.
    AIAssistantViewModel(AIProviderSource& source,
                         Preferences& preferences,
                         const Localisation& texts);
    AIAssistantViewModel(const AIAssistantViewModel&) = delete;
    AIAssistantViewModel& operator=(const AIAssistantViewModel&) = delete;
    ~AIAssistantViewModel();

    // --- What the host gives. Any may be absent.

    Apply onInsertAtCursor;
    Apply onReplaceSelection;
    Apply onReplaceDocument;
    Apply onInsertAtTop;
    std::function<void()> onClose;
    /// Called before the context is used, so that the host need not set it at each key: `setNote`
    /// and `setSelection` are to be called from it.
    std::function<void()> onContextNeeded;
    /// The present text of a note that is perhaps not open; none when there is no such note.
    std::function<std::optional<std::string>(const Uuid& noteID)> contentOf;
    /// The note changed since the reply was asked for. `answer(true)` replaces its text all the
    /// same; may be called later, or not at all.
    std::function<void(const std::string& noteTitle, std::function<void(bool)> answer)>
        onConfirmReplace;

    /// The note that is open, as it is now.
    void setNote(std::optional<Uuid> noteID, std::string title, std::string content);
    /// `offset` is in bytes from the start of the content.
    void setSelection(std::string selectedText, std::size_t offset);
    const AIContext& context() const { return m_context; }

    // --- What the panel shows.

    const std::vector<AIMessage>& messages() const { return m_messages; }
    const std::string& inputText() const { return m_inputText; }
    bool isStreaming() const { return m_isStreaming; }
    const std::optional<std::string>& error() const { return m_error; }
    const std::string& quickActionResult() const { return m_quickActionResult; }
    /// The text the result is to replace: the selection of a quick action.
    const std::optional<std::string>& quickActionOriginal() const { return m_quickActionOriginal; }
    /// The same of an action on the whole note; empty otherwise.
    const std::string& quickActionDocument() const { return m_quickActionDocument; }
    AIActionResultType quickActionResultType() const { return m_quickActionResultType; }
    bool isQuickActionStreaming() const { return m_isQuickActionStreaming; }
    /// The result came whole; only then can it be applied.
    bool isQuickActionComplete() const { return m_isQuickActionComplete; }
    Tab selectedTab() const { return m_selectedTab; }
    AIProviderType selectedProviderType() const { return m_selectedProviderType; }
    const std::string& selectedModel() const { return m_selectedModel; }
    /// Known after `checkKey`.
    bool isKeyMissing() const { return m_isKeyMissing; }

    sigc::signal<void(Property)>& signalChanged() { return m_changed; }
    /// A piece was added to the last message. Thousands may come in a second.
    sigc::signal<void(std::string_view)>& signalPiece() { return m_piece; }
    /// A piece was added to the result.
    sigc::signal<void(std::string_view)>& signalResultPiece() { return m_resultPiece; }

    // --- What the panel does.

    void setInputText(std::string text);
    void setSelectedTab(Tab tab);
    void setSelectedProviderType(AIProviderType type);
    void setSelectedModel(const std::string& model);
    /// Finds out about the key: to be called when the panel is shown.
    void checkKey();

    void sendChatMessage();
    void runQuickAction(AIQuickAction action);
    void runDocumentAction(AIDocumentAction action);
    /// Asks for the note with the findings of the spell check put right.
    void applyCorrections();
    /// Ends the replies that are under way; what has come stays.
    void stop();
    void stopChat();
    void stopQuickAction();
    void clearChat();

    /// Does with the result what its type says.
    void applyResult();
    void insertMessage(const AIMessage& message);
    /// Whether the note that the message is about is open and has a selection.
    bool canReplaceSelection(const AIMessage& message) const;
    void replaceSelection(const AIMessage& message);

private:
    /// One of the two kinds of replies.
    struct Flow {
        std::unique_ptr<TextStream> stream;
        std::uint64_t ticket = 0;  // of the newest request
        bool isPreparing = false;  // a service is being made for it
    };
    struct ActionRequest {
        AITarget target;
        std::optional<std::string> original;
        std::string document;
        const char* prompt = nullptr;
        int maxTokens = 0;
        AIActionResultType resultType = AIActionResultType::copyOnly;
    };

    void withProvider(Flow& flow, std::function<void()> next);
    void startChat(const std::string& text, const std::string& prompt, const AITarget& target);
    std::vector<AIMessage> history() const;
    void endChat();
    void requestAction(ActionRequest request);
    void startAction(const ActionRequest& request);
    void endAction(bool isComplete);
    void replyEnded(const std::optional<AIError>& error, bool isEmpty);

    std::optional<std::string> presentContent(const AITarget& target);
    void deliver(AIActionResultType type, const AITarget& target, const std::string& text);
    void replaceSelectionOf(const AITarget& target,
                            const std::string& content,
                            const std::string& text);

    void loadChoice();
    void preferenceChanged(const std::string& key);
    void keyChanged(AIProviderType type);
    void setError(std::optional<std::string> error);
    void notify(Property property) { m_changed.emit(property); }
    void pullContext();

    AIProviderSource& m_source;
    Preferences& m_preferences;
    const Localisation& m_texts;

    AIContext m_context;
    std::vector<AIMessage> m_messages;
    std::unordered_map<Uuid, AITarget> m_targets;  // of the replies among the messages
    std::string m_inputText;
    bool m_isStreaming = false;
    std::optional<std::string> m_error;
    std::string m_quickActionResult;
    std::optional<std::string> m_quickActionOriginal;
    std::string m_quickActionDocument;
    AIActionResultType m_quickActionResultType = AIActionResultType::copyOnly;
    AITarget m_resultTarget;
    bool m_isQuickActionStreaming = false;
    bool m_isQuickActionComplete = false;
    Tab m_selectedTab = Tab::chat;
    AIProviderType m_selectedProviderType = AIProviderType::claude;
    std::string m_selectedModel;
    bool m_isKeyMissing = false;
    bool m_isKeyAskedFor = false;

    std::unique_ptr<AIProviderService> m_provider;
    std::uint64_t m_choice = 0;  // counts the changes of what m_provider is made from
    Flow m_chat;
    Flow m_action;

    sigc::signal<void(Property)> m_changed;
    sigc::signal<void(std::string_view)> m_piece;
    sigc::signal<void(std::string_view)> m_resultPiece;
    ScopedConnection m_preferenceChanges;
    ScopedConnection m_keyChanges;
    std::shared_ptr<int> m_alive = std::make_shared<int>();  // gone with this: late answers stop
};

}  // namespace corvel
