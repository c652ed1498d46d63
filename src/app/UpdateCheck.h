#pragma once

#include "app/settings/Localisation.h"
#include "platform/InstallOrigin.h"
#include "platform/PackageQuery.h"

#include <sigc++/signal.h>

#include <chrono>
#include <memory>
#include <optional>
#include <string>

namespace corvel {

/// Looks for a newer version of this program: the system's package service is asked; where that
/// knows nothing, it is found out how the program was installed and so where updates come from.
class UpdateCheck {
public:
    enum class State { checking, newer, upToDate, unmanaged, failed };
    static constexpr const char* packageName = "qno-corvel";

    explicit UpdateCheck(InstallOriginQuery::Places places = {},
                         std::chrono::milliseconds silence = std::chrono::seconds(60));
    UpdateCheck(const UpdateCheck&) = delete;
    UpdateCheck& operator=(const UpdateCheck&) = delete;
    ~UpdateCheck() = default;

    State state() const { return m_state; }
    std::string heading(const Localisation& texts) const;
    std::string body(const Localisation& texts) const;
    /// Emitted once, when it is no longer checking.
    sigc::signal<void()>& signalDone() { return m_doneSignal; }

private:
    void heard(const PackageNews& news);
    void located(const InstallOrigin& origin);
    void end(State state);
    std::string originText(const Localisation& texts) const;
    std::string failureText(const Localisation& texts) const;

    InstallOriginQuery::Places m_places;
    State m_state = State::checking;
    PackageNews m_news{PackageNews::Kind::serviceMissing};
    InstallOrigin m_origin;
    sigc::signal<void()> m_doneSignal;
    std::unique_ptr<InstallOriginQuery> m_originQuery;
    PackageQuery m_packages;
};

}  // namespace corvel
