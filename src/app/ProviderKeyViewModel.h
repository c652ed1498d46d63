#pragma once

#include "ai/AIProviderFactory.h"
#include "ai/KeychainService.h"
#include "app/settings/Localisation.h"
#include "platform/ScopedConnection.h"

#include <sigc++/signal.h>

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

namespace corvel {

/// One provider's key in the settings: whether it is stored, and what comes of saving, deleting and
/// trying it. The key itself is never kept here.
class ProviderKeyViewModel {
public:
    enum class Work { none, saving, deleting, testing };
    /// What came of the last thing done, to be said in the language of the moment.
    struct News {
        bool isBad = false;
        std::function<std::string(const Localisation& texts)> text;
    };

    /// Both must outlive the view model.
    ProviderKeyViewModel(AIProviderFactory& factory,
                         KeychainService& keychain,
                         AIProviderType type);
    ProviderKeyViewModel(const ProviderKeyViewModel&) = delete;
    ProviderKeyViewModel& operator=(const ProviderKeyViewModel&) = delete;
    ~ProviderKeyViewModel() = default;

    AIProviderType type() const { return m_type; }
    /// None until it is known.
    const std::optional<KeyState>& keyState() const { return m_keyState; }
    Work work() const { return m_work; }
    const std::optional<News>& news() const { return m_news; }
    /// One line on what is, or on what is being done.
    std::string status(const Localisation& texts) const;
    /// What came of the last thing done, or what is missing; may be empty.
    std::string detail(const Localisation& texts) const;
    /// Whether `detail` speaks of something wrong.
    bool isBad() const;

    /// Finds out whether a key is stored.
    void refresh();
    void save(std::string_view entered);
    void remove();
    /// Sends one short request, with the key that was entered or else with the stored one.
    void test(std::string_view entered);
    void cancelTest();

    sigc::signal<void()>& signalChanged() { return m_changed; }
    /// The entered key is in the store: it need not stand in the field any longer.
    sigc::signal<void()>& signalSaved() { return m_saved; }

private:
    std::optional<std::string> acceptedKey(std::string_view entered);
    void begin(Work work);
    void end(bool isBad, std::function<std::string(const Localisation&)> text);
    void saveFailed(const KeychainError& error);
    void ask(std::unique_ptr<AIProviderService> provider);
    void answered(const std::optional<AIError>& error);

    AIProviderFactory& m_factory;
    KeychainService& m_keychain;
    AIProviderType m_type;
    std::optional<KeyState> m_keyState;
    Work m_work = Work::none;
    std::optional<News> m_news;
    std::unique_ptr<TextStream> m_stream;
    std::string m_reply;
    std::uint64_t m_trial = 0;  // counts the tests: a cancelled one's key may come late
    sigc::signal<void()> m_changed;
    sigc::signal<void()> m_saved;
    ScopedConnection m_keyChanges;
    std::shared_ptr<int> m_alive = std::make_shared<int>();  // gone with this: late answers stop
};

}  // namespace corvel
