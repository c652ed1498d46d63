#include "app/ProviderKeyViewModel.h"

#include "ai/ApiKey.h"
#include "ai/AssistantTexts.h"
#include "app/texts/AssistantSettingsTexts.h"
#include "platform/Text.h"

#include <algorithm>
#include <utility>

namespace corvel {

namespace {

// Room for a model that thinks before it speaks, and little to pay for.
constexpr int kTrialTokens = 256;
constexpr std::size_t kShownCharacters = 120;
constexpr std::size_t kMostReplyBytes = 4096;

const Text& textOf(ApiKeyFault fault) {
    switch (fault) {
        case ApiKeyFault::innerSpace:
            return texts::assistantKeyInnerSpace;
        case ApiKeyFault::unusualCharacters:
            return texts::assistantKeyUnusual;
        case ApiKeyFault::empty:
            break;
    }
    return texts::assistantKeyEmpty;
}

const Text* explanationOf(unsigned status) {
    if (status == 401 || status == 403) return &texts::assistantKeyRefused;
    if (status == 429 || status == 529) return &texts::assistantTooMany;
    return status >= 500 ? &texts::assistantServiceFails : nullptr;
}

std::string described(const AIError& error, const Localisation& texts) {
    const Text* explanation = explanationOf(error.status());
    const auto words = error.description(texts);
    return explanation == nullptr ? words : texts.format(*explanation, {words});
}

/// The beginning of a reply, in one line.
std::string shown(std::string_view reply) {
    auto line = std::string(text::prefixByGraphemes(reply, kShownCharacters));
    const bool isCut = line.size() < reply.size();
    std::ranges::replace_if(
        line, [](char byte) { return byte >= 0 && byte < ' '; }, ' ');
    line = trimmedApiKey(line);
    return isCut ? line + "…" : line;
}

auto always(const Text& text) {
    return [&text](const Localisation& texts) { return std::string(texts(text)); };
}

}  // namespace

ProviderKeyViewModel::ProviderKeyViewModel(AIProviderFactory& factory,
                                           KeychainService& keychain,
                                           AIProviderType type)
    : m_factory(factory), m_keychain(keychain), m_type(type) {
    m_keyChanges = keychain.signalChanged().connect([this](AIProviderType changed) {
        if (changed == m_type && m_work == Work::none) refresh();
    });
}

std::string ProviderKeyViewModel::status(const Localisation& texts) const {
    switch (m_work) {
        case Work::saving:
            return texts(texts::assistantKeySaving);
        case Work::deleting:
            return texts(texts::assistantKeyDeleting);
        case Work::testing:
            return texts(texts::assistantKeyTesting);
        case Work::none:
            break;
    }
    if (!m_keyState) return texts(texts::assistantKeyLookedFor);
    switch (*m_keyState) {
        case KeyState::stored:
            return texts(texts::assistantKeyStored);
        case KeyState::noStore:
            return texts(texts::assistantKeyNoStore);
        case KeyState::notStored:
            break;
    }
    return texts(texts::assistantKeyNotStored);
}

std::string ProviderKeyViewModel::detail(const Localisation& texts) const {
    if (m_news) return m_news->text(texts);
    return m_keyState == KeyState::noStore ? texts(texts::assistantNoSecretService) : "";
}

bool ProviderKeyViewModel::isBad() const {
    return m_news ? m_news->isBad : m_keyState == KeyState::noStore;
}

void ProviderKeyViewModel::begin(Work work) {
    m_news.reset();
    m_work = work;
    m_changed.emit();
}

void ProviderKeyViewModel::end(bool isBad, std::function<std::string(const Localisation&)> text) {
    m_work = Work::none;
    m_news = News{isBad, std::move(text)};
    m_changed.emit();
}

void ProviderKeyViewModel::refresh() {
    m_keychain.findKey(m_type, [this, alive = std::weak_ptr(m_alive)](KeyState state) {
        if (alive.expired() || m_keyState == state) return;
        m_keyState = state;
        m_changed.emit();
    });
}

// --- Saving and deleting.

std::optional<std::string> ProviderKeyViewModel::acceptedKey(std::string_view entered) {
    std::string key(trimmedApiKey(entered));
    const auto fault = faultOf(key);
    if (!fault) return key;
    end(true, always(textOf(*fault)));
    return std::nullopt;
}

void ProviderKeyViewModel::save(std::string_view entered) {
    if (m_work != Work::none) return;
    const auto key = acceptedKey(entered);
    if (!key) return;
    begin(Work::saving);
    m_keychain.saveKey(*key, m_type, [this, alive = std::weak_ptr(m_alive)](const auto& error) {
        if (alive.expired()) return;
        if (error) {
            saveFailed(*error);
        } else {
            end(false, always(texts::assistantKeySaved));
            m_saved.emit();
        }
        refresh();
    });
}

void ProviderKeyViewModel::saveFailed(const KeychainError& error) {
    end(true, [error](const Localisation& texts) {
        auto words = error.description();
        if (error.isServiceMissing()) return texts(texts::assistantNoSecretService) + (" " + words);
        if (error.isLocked()) return texts(texts::assistantKeyLocked) + (" " + words);
        return words;
    });
}

void ProviderKeyViewModel::remove() {
    if (m_work != Work::none) return;
    begin(Work::deleting);
    // Whether it is gone is asked for: deleting itself never fails.
    m_keychain.deleteKey(m_type, [this, alive = std::weak_ptr(m_alive)] {
        if (alive.expired()) return;
        m_keychain.findKey(m_type, [this, alive](KeyState state) {
            if (alive.expired()) return;
            m_keyState = state;
            const bool isThere = state == KeyState::stored;
            end(isThere,
                always(isThere ? texts::assistantKeyStillThere : texts::assistantKeyDeleted));
        });
    });
}

// --- The test.

void ProviderKeyViewModel::test(std::string_view entered) {
    if (m_work != Work::none) return;
    if (!trimmedApiKey(entered).empty()) {
        const auto key = acceptedKey(entered);
        if (!key) return;
        begin(Work::testing);
        return ask(m_factory.providerWith(m_type, *key));
    }
    if (m_keyState != KeyState::stored) return end(true, always(texts::assistantKeyEmpty));
    begin(Work::testing);
    const auto made = [this, trial = ++m_trial, alive = std::weak_ptr(m_alive)](
                          std::unique_ptr<AIProviderService> provider) {
        if (alive.expired() || trial != m_trial) return;
        if (!provider) return end(true, always(texts::assistantCannotRead));
        ask(std::move(provider));
    };
    m_factory.makeProvider(m_type, made);
}

void ProviderKeyViewModel::ask(std::unique_ptr<AIProviderService> provider) {
    m_reply.clear();
    AIMessage question;
    question.content = "Reply with the one word: OK";
    m_stream = provider->streamMessage({question}, "Answer briefly.", kTrialTokens,
                                       {[this](std::string_view piece) {
                                            if (m_reply.size() < kMostReplyBytes) m_reply += piece;
                                        },
                                        [this](const auto& error) { answered(error); }});
}

void ProviderKeyViewModel::answered(const std::optional<AIError>& error) {
    // What is called is the stream's own.
    const auto stream = std::move(m_stream);
    if (error) {
        return end(true,
                   [error = *error](const Localisation& texts) { return described(error, texts); });
    }
    const auto reply = shown(m_reply);
    if (reply.empty()) return end(true, always(texts::assistantAnsweredNothing));
    end(false, [reply](const Localisation& texts) {
        return texts.format(texts::assistantAnswered, {reply});
    });
}

void ProviderKeyViewModel::cancelTest() {
    if (m_work != Work::testing) return;
    ++m_trial;
    m_stream.reset();
    m_work = Work::none;
    m_changed.emit();
}

}  // namespace corvel
