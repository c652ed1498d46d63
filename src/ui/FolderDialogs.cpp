#include "ui/FolderDialogs.h"

#include "app/Texts.h"
#include "ui/Dialogs.h"

#include <utility>

namespace corvel {

void FolderDialogs::createFor(Gtk::Window& parent, std::vector<Uuid> noteIDs) {
    const auto& texts = m_session.texts;
    askForText(parent,
               {texts(texts::newFolder),
                texts(texts::folderName),
                {},
                texts(texts::cancel),
                texts(texts::create)},
               [this, ids = std::move(noteIDs)](const std::string& name) {
                   const auto folder = m_session.sidebar.createFolder(name, std::nullopt);
                   if (folder && !ids.empty()) m_session.list.addToFolder(ids, folder->id);
               });
}

void FolderDialogs::createIn(Gtk::Window& parent,
                             const Uuid& folderID,
                             const std::string& folderName) {
    const auto& texts = m_session.texts;
    askForText(parent,
               {texts.format(texts::newSubfolderIn, {folderName}),
                texts(texts::subfolderName),
                {},
                texts(texts::cancel),
                texts(texts::create)},
               [this, folderID](const std::string& name) {
                   m_session.sidebar.createFolder(name, folderID);
               });
}

void FolderDialogs::rename(Gtk::Window& parent,
                           const Uuid& folderID,
                           const std::string& folderName) {
    const auto& texts = m_session.texts;
    askForText(parent,
               {texts(texts::renameFolder), texts(texts::folderName), folderName,
                texts(texts::cancel), texts(texts::rename)},
               [this, folderID](const std::string& name) {
                   m_session.sidebar.renameFolder(folderID, name);
               });
}

void FolderDialogs::remove(Gtk::Window& parent,
                           const Uuid& folderID,
                           const std::string& folderName) {
    const auto& texts = m_session.texts;
    ask(parent,
        {texts.format(texts::deleteFolderQuestion, {folderName}),
         texts(texts::deleteFolderDetail),
         {{"cancel", texts(texts::cancel)},
          {"delete", texts(texts::deleteFolder), DialogAnswer::Look::destructive}}},
        [this, folderID](const std::string& answer) {
            if (answer == "delete") m_session.sidebar.deleteFolder(folderID);
        });
}

void FolderDialogs::drop(Gtk::Window& parent, std::vector<Uuid> noteIDs, const Uuid& folderID) {
    if (!m_session.sidebar.dropNeedsQuestion(noteIDs, folderID)) {
        m_session.sidebar.addNotes(noteIDs, folderID);
        return;
    }
    const auto& texts = m_session.texts;
    const auto& message = noteIDs.size() == 1 ? texts::moveOrAddOne : texts::moveOrAddSeveral;
    ask(parent,
        {texts(texts::moveOrAdd),
         texts(message),
         {{"cancel", texts(texts::cancel)},
          {"move", texts(texts::moveToThisFolder)},
          {"add", texts(texts::addToThisFolder), DialogAnswer::Look::suggested}}},
        [this, ids = std::move(noteIDs), folderID](const std::string& answer) {
            if (answer == "move") m_session.sidebar.moveNotes(ids, folderID);
            if (answer == "add") m_session.sidebar.addNotes(ids, folderID);
        });
}

}  // namespace corvel
