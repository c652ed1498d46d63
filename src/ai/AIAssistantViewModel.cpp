#include "ai/AIAssistantViewModel.h"

#include "ai/AISystemPrompt.h"
#include "ai/AssistantTexts.h"
#include "ai/OuterSpace.h"

#include <utility>

namespace corvel {

namespace {

constexpr int kReplyTokens = 8192;
constexpr int kQuickActionTokens = 4096;

AIMessage messageOf(AIMessage::Role role, std::string content) {
    AIMessage message;
    message.role = role;
    message.content = std::move(content);
    return message;
}

}  // namespace

AIAssistantViewModel::AIAssistantViewModel(AIProviderSource& source,
                                           Preferences& preferences,
                                           const Localisation& texts)
    : m_source(source), m_preferences(preferences), m_texts(texts) {
    loadChoice();
    m_preferenceChanges = preferences.signalChanged().connect(
        [this](const std::string& key) { preferenceChanged(key); });
    m_keyChanges =
        source.signalKeyChanged().connect([this](AIProviderType type) { keyChanged(type); });
}

AIAssistantViewModel::~AIAssistantViewModel() = default;

// --- The context.

void AIAssistantViewModel::setNote(std::optional<Uuid> noteID,
                                   std::string title,
                                   std::string content) {
    const bool isOther = noteID != m_context.noteID;
    m_context.noteID = noteID;
    m_context.noteTitle = std::move(title);
    m_context.noteContent = std::move(content);
    if (isOther) m_context.selectedText.clear();
    notify(Property::context);
}

void AIAssistantViewModel::setSelection(std::string selectedText, std::size_t offset) {
    m_context.selectedText = std::move(selectedText);
    m_context.selectionOffset = offset;
    notify(Property::context);
}

void AIAssistantViewModel::pullContext() {
    if (onContextNeeded) onContextNeeded();
}

// --- Service, model and key.

void AIAssistantViewModel::loadChoice() {
    m_selectedProviderType =
        providerTypeOf(m_preferences.aiProvider()).value_or(AIProviderType::claude);
    m_selectedModel = m_preferences.aiModel(rawValue(m_selectedProviderType));
    m_provider.reset();
    ++m_choice;
}

void AIAssistantViewModel::preferenceChanged(const std::string& key) {
    const bool isProvider = key == "aiProvider";
    if (!isProvider && !key.starts_with("aiModel_") && !key.starts_with("aiEndpoint_")) return;
    loadChoice();
    notify(Property::provider);
    if (isProvider && m_isKeyAskedFor) checkKey();
}

void AIAssistantViewModel::setSelectedProviderType(AIProviderType type) {
    m_preferences.setAIProvider(rawValue(type));
}

void AIAssistantViewModel::setSelectedModel(const std::string& model) {
    m_preferences.setAIModel(rawValue(m_selectedProviderType), model);
}

void AIAssistantViewModel::keyChanged(AIProviderType type) {
    if (type != m_selectedProviderType) return;
    m_provider.reset();
    ++m_choice;
    if (m_isKeyAskedFor) checkKey();
}

void AIAssistantViewModel::checkKey() {
    m_isKeyAskedFor = true;
    const auto type = m_selectedProviderType;
    m_source.hasKey(type, [this, type, alive = std::weak_ptr(m_alive)](bool isThere) {
        if (alive.expired() || type != m_selectedProviderType) return;
        m_isKeyMissing = !isThere;
        notify(Property::isKeyMissing);
    });
}

void AIAssistantViewModel::withProvider(Flow& flow, std::function<void()> next) {
    if (m_provider) return next();
    flow.isPreparing = true;
    const auto made = [this, &flow, next = std::move(next), alive = std::weak_ptr(m_alive),
                       ticket = ++flow.ticket,
                       choice = m_choice](std::unique_ptr<AIProviderService> provider) {
        if (alive.expired() || ticket != flow.ticket) return;
        flow.isPreparing = false;
        if (choice != m_choice) return withProvider(flow, next);
        m_provider = std::move(provider);
        if (!m_provider) return setError(m_texts(texts::assistantConfigureKey));
        next();
    };
    m_source.makeProvider(m_selectedProviderType, made);
}

// --- The chat.

void AIAssistantViewModel::setInputText(std::string text) {
    if (text == m_inputText) return;
    m_inputText = std::move(text);
    notify(Property::inputText);
}

void AIAssistantViewModel::setSelectedTab(Tab tab) {
    if (tab == m_selectedTab) return;
    m_selectedTab = tab;
    notify(Property::selectedTab);
}

void AIAssistantViewModel::sendChatMessage() {
    std::string text(withoutOuterSpace(m_inputText));
    if (text.empty() || m_isStreaming || m_chat.isPreparing) return;
    pullContext();
    auto prompt =
        chatSystemPrompt(m_context.noteTitle, m_context.selectedText, m_context.noteContent);
    withProvider(m_chat, [this, text = std::move(text), prompt = std::move(prompt),
                          target = AITarget(m_context)] { startChat(text, prompt, target); });
}

void AIAssistantViewModel::startChat(const std::string& text,
                                     const std::string& prompt,
                                     const AITarget& target) {
    // What was typed while the key was read is the beginning of the next message.
    if (withoutOuterSpace(m_inputText) == text) setInputText({});
    setError(std::nullopt);
    m_messages.push_back(messageOf(AIMessage::Role::user, text));
    const auto sent = history();
    m_messages.push_back(messageOf(AIMessage::Role::assistant, {}));
    m_messages.back().isStreaming = true;
    m_targets.emplace(m_messages.back().id, target);
    m_isStreaming = true;
    const auto piece = [this](std::string_view added) {
        m_messages.back().content += added;
        m_piece.emit(added);
    };
    const auto ended = [this](const auto& error) {
        const bool isEmpty = m_messages.back().content.empty();
        endChat();
        replyEnded(error, isEmpty);
    };
    m_chat.stream = m_provider->streamMessage(sent, prompt, kReplyTokens, {piece, ended});
    notify(Property::messages);
    notify(Property::isStreaming);
}

// Replies that failed before their first word are no part of the conversation; services refuse
// empty messages.
std::vector<AIMessage> AIAssistantViewModel::history() const {
    std::vector<AIMessage> sent;
    for (const auto& message : m_messages) {
        if (!message.content.empty()) sent.push_back(message);
    }
    return sent;
}

void AIAssistantViewModel::endChat() {
    m_chat.stream.reset();
    m_messages.back().isStreaming = false;
    m_isStreaming = false;
    notify(Property::messages);
    notify(Property::isStreaming);
}

void AIAssistantViewModel::replyEnded(const std::optional<AIError>& error, bool isEmpty) {
    if (error) return setError(error->description(m_texts));
    // All that came was something else than a reply.
    if (isEmpty) setError(AIError(AIError::Kind::invalidResponse).description(m_texts));
}

void AIAssistantViewModel::stop() {
    stopChat();
    stopQuickAction();
}

void AIAssistantViewModel::stopChat() {
    ++m_chat.ticket;
    m_chat.isPreparing = false;
    if (m_isStreaming) endChat();
}

void AIAssistantViewModel::clearChat() {
    stopChat();
    m_messages.clear();
    m_targets.clear();
    notify(Property::messages);
}

void AIAssistantViewModel::setError(std::optional<std::string> error) {
    if (error == m_error) return;
    m_error = std::move(error);
    notify(Property::error);
}

// --- Actions.

void AIAssistantViewModel::runQuickAction(AIQuickAction action) {
    pullContext();
    if (m_context.selectedText.empty()) return;
    ActionRequest request;
    request.target = AITarget(m_context);
    request.original = m_context.selectedText;
    request.prompt = promptOf(action);
    request.maxTokens = kQuickActionTokens;
    request.resultType = AIActionResultType::replaceSelection;
    requestAction(std::move(request));
}

void AIAssistantViewModel::runDocumentAction(AIDocumentAction action) {
    pullContext();
    if (m_context.noteContent.empty()) return;
    ActionRequest request;
    request.target = AITarget(m_context);
    request.document = m_context.noteContent;
    request.prompt = promptOf(action);
    request.maxTokens = kReplyTokens;
    request.resultType = resultTypeOf(action);
    requestAction(std::move(request));
}

void AIAssistantViewModel::applyCorrections() {
    auto content = presentContent(m_resultTarget);
    if (!content) return setError(m_texts(texts::assistantNoteIsGone));
    if (content->empty()) return;
    ActionRequest request;
    request.target = AITarget(m_resultTarget.noteID(), m_resultTarget.noteTitle(), *content);
    request.document = std::move(*content);
    request.prompt = correctionsPrompt();
    request.maxTokens = kReplyTokens;
    request.resultType = AIActionResultType::replaceDocument;
    requestAction(std::move(request));
}

void AIAssistantViewModel::requestAction(ActionRequest request) {
    if (m_isQuickActionStreaming || m_action.isPreparing) return;
    withProvider(m_action, [this, request = std::move(request)] { startAction(request); });
}

void AIAssistantViewModel::startAction(const ActionRequest& request) {
    setError(std::nullopt);
    m_resultTarget = request.target;
    m_quickActionOriginal = request.original;
    m_quickActionDocument = request.document;
    m_quickActionResult.clear();
    m_quickActionResultType = request.resultType;
    m_isQuickActionComplete = false;
    m_isQuickActionStreaming = true;
    const auto piece = [this](std::string_view text) {
        m_quickActionResult += text;
        m_resultPiece.emit(text);
    };
    const auto ended = [this](const auto& error) {
        const bool isEmpty = m_quickActionResult.empty();
        endAction(!error && !isEmpty);
        replyEnded(error, isEmpty);
    };
    const auto& text = request.original ? *request.original : request.document;
    m_action.stream = m_provider->streamMessage({messageOf(AIMessage::Role::user, text)},
                                                request.prompt, request.maxTokens, {piece, ended});
    notify(Property::quickActionResult);
    notify(Property::isQuickActionStreaming);
}

void AIAssistantViewModel::endAction(bool isComplete) {
    m_action.stream.reset();
    m_isQuickActionStreaming = false;
    m_isQuickActionComplete = isComplete;
    notify(Property::quickActionResult);
    notify(Property::isQuickActionStreaming);
}

void AIAssistantViewModel::stopQuickAction() {
    ++m_action.ticket;
    m_action.isPreparing = false;
    if (m_isQuickActionStreaming) endAction(false);
}

// --- Results into notes.

std::optional<std::string> AIAssistantViewModel::presentContent(const AITarget& target) {
    pullContext();
    if (target.noteID() == m_context.noteID) return m_context.noteContent;
    if (!target.noteID() || !contentOf) return std::nullopt;
    return contentOf(*target.noteID());
}

void AIAssistantViewModel::applyResult() {
    if (!m_isQuickActionComplete) return;
    const auto type = m_quickActionResultType;
    if (type == AIActionResultType::review) return applyCorrections();
    if (type == AIActionResultType::copyOnly) return;
    const auto content = presentContent(m_resultTarget);
    if (!content) return setError(m_texts(texts::assistantNoteIsGone));
    const bool replaces = type != AIActionResultType::insertAtTop;
    if (!replaces || m_resultTarget.isContent(*content)) {
        return deliver(type, m_resultTarget, m_quickActionResult);
    }
    if (!onConfirmReplace) return;
    onConfirmReplace(m_resultTarget.noteTitle(),
                     [this, type, target = m_resultTarget, text = m_quickActionResult,
                      alive = std::weak_ptr(m_alive)](bool isWanted) {
                         if (isWanted && !alive.expired()) deliver(type, target, text);
                     });
}

void AIAssistantViewModel::deliver(AIActionResultType type,
                                   const AITarget& target,
                                   const std::string& text) {
    // Read again: the user may have gone on writing before answering.
    const auto content = presentContent(target);
    if (!content) return setError(m_texts(texts::assistantNoteIsGone));
    if (type == AIActionResultType::replaceSelection) {
        return replaceSelectionOf(target, *content, text);
    }
    const auto& apply = type == AIActionResultType::insertAtTop ? onInsertAtTop : onReplaceDocument;
    if (apply) apply({target.noteID(), text});
}

void AIAssistantViewModel::replaceSelectionOf(const AITarget& target,
                                              const std::string& content,
                                              const std::string& text) {
    const auto place = target.placeOfSelection(content);
    if (!place) return setError(m_texts(texts::assistantSelectionIsGone));
    if (onReplaceSelection) {
        onReplaceSelection({target.noteID(), text, *place, target.selectedText().size()});
    }
}

void AIAssistantViewModel::insertMessage(const AIMessage& message) {
    const auto found = m_targets.find(message.id);
    const auto noteID = found == m_targets.end() ? std::nullopt : found->second.noteID();
    if (noteID && !presentContent(found->second)) {
        return setError(m_texts(texts::assistantNoteIsGone));
    }
    if (onInsertAtCursor) onInsertAtCursor({noteID, message.content});
}

bool AIAssistantViewModel::canReplaceSelection(const AIMessage& message) const {
    const auto found = m_targets.find(message.id);
    return found != m_targets.end() && !m_context.selectedText.empty() &&
           found->second.noteID() == m_context.noteID;
}

void AIAssistantViewModel::replaceSelection(const AIMessage& message) {
    pullContext();
    if (!canReplaceSelection(message) || !onReplaceSelection) return;
    onReplaceSelection({m_context.noteID, message.content, m_context.selectionOffset,
                        m_context.selectedText.size()});
}

}  // namespace corvel
