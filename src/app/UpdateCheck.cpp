#include "app/UpdateCheck.h"

#include "app/texts/UpdateTexts.h"
#include "platform/Version.h"

#include <utility>

namespace corvel {

UpdateCheck::UpdateCheck(InstallOriginQuery::Places places, std::chrono::milliseconds silence)
    : m_places(std::move(places))
    , m_packages(
          packageName, [this](const PackageNews& news) { heard(news); }, silence) {}

void UpdateCheck::heard(const PackageNews& news) {
    m_news = news;
    if (news.kind == PackageNews::Kind::newer) return end(State::newer);
    if (news.kind == PackageNews::Kind::upToDate) return end(State::upToDate);
    m_originQuery = std::make_unique<InstallOriginQuery>(
        m_places, [this](const InstallOrigin& origin) { located(origin); });
}

void UpdateCheck::located(const InstallOrigin& origin) {
    m_origin = origin;
    end(m_news.kind == PackageNews::Kind::failed ? State::failed : State::unmanaged);
}

void UpdateCheck::end(State state) {
    m_state = state;
    m_doneSignal.emit();
}

std::string UpdateCheck::heading(const Localisation& texts) const {
    switch (m_state) {
        case State::newer:
            return texts(texts::updateNewer);
        case State::upToDate:
            return texts(texts::updateNone);
        case State::unmanaged:
            return texts(texts::updateUnmanaged);
        case State::failed:
            return texts(texts::updateUnknown);
        case State::checking:
            break;
    }
    return texts(texts::updateChecking);
}

std::string UpdateCheck::body(const Localisation& texts) const {
    switch (m_state) {
        case State::newer:
            return texts.format(texts::updateNewerBody, {m_news.version, version()});
        case State::upToDate:
            return texts.format(texts::updateNoneBody, {version()});
        case State::unmanaged:
            return originText(texts);
        case State::failed:
            return failureText(texts) + "\n\n" + originText(texts);
        case State::checking:
            break;
    }
    return texts(texts::updateCheckingBody);
}

std::string UpdateCheck::failureText(const Localisation& texts) const {
    if (m_news.detail.empty()) return texts(texts::updateFailed);
    return texts.format(texts::updateFailedBecause, {m_news.detail});
}

std::string UpdateCheck::originText(const Localisation& texts) const {
    switch (m_origin.kind) {
        case InstallOrigin::Kind::flatpak:
            return texts.format(texts::updateFlatpak, {version()});
        case InstallOrigin::Kind::package:
            return texts.format(texts::updatePackage, {version(), m_origin.package});
        case InstallOrigin::Kind::built:
            break;
    }
    return texts.format(texts::updateBuilt, {version()});
}

}  // namespace corvel
