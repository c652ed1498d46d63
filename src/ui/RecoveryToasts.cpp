#include "ui/RecoveryToasts.h"

#include "app/texts/DataTexts.h"
#include "app/texts/DraftTexts.h"

#include <string>

namespace corvel {

namespace {

std::string recoveredTitle(const Localisation& texts, const std::vector<RecoveredNote>& notes) {
    if (notes.size() > 1) {
        return texts.format(texts::recoveredSeveral,
                            {texts.notes(static_cast<std::int64_t>(notes.size()))});
    }
    const auto& note = notes.front();
    return texts.format(note.isNewNote ? texts::recoveredAsNote : texts::recoveredText,
                        {note.title});
}

}  // namespace

void sayWhatWasKept(Session& session, Toasts& toasts, std::vector<ScopedConnection>& connections) {
    auto& store = session.preferences.store();
    if (store.boolean(kLibraryRestored).value_or(false)) {
        store.setBoolean(kLibraryRestored, false);
        toasts.show(session.texts(texts::restored));
    }
    const auto say = [&session, &toasts](const std::string& title, const Uuid& id) {
        toasts.show(title, session.texts(texts::showNote), [&session, id] { session.reveal(id); });
    };
    connections.emplace_back(
        session.signalRecovered().connect([say, &session](const std::vector<RecoveredNote>& notes) {
            say(recoveredTitle(session.texts, notes), notes.back().id);
        }));
    connections.emplace_back(
        session.signalOtherVersionKept().connect([say, &session](const Note& copy) {
            say(session.texts.format(texts::otherVersionKept, {copy.title}), copy.id);
        }));
}

}  // namespace corvel
