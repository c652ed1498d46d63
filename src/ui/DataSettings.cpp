#include "ui/DataSettings.h"

#include "app/Texts.h"
#include "app/texts/DataTexts.h"
#include "app/texts/SettingsTexts.h"
#include "platform/Paths.h"
#include "ui/Accessible.h"
#include "ui/Dialogs.h"
#include "ui/FilePaths.h"
#include "ui/RelativeDate.h"

#include <glibmm/convert.h>
#include <glibmm/datetime.h>

namespace corvel {

namespace {

constexpr int kBarWidth = 160;
constexpr double kMegabyte = 1e6;

std::string sizeText(std::uintmax_t bytes, const Localisation& texts) {
    const double megabytes = static_cast<double>(bytes) / kMegabyte;
    return shortNumber(std::max(megabytes, 0.1), texts) + " MB";
}

const Text& reasonText(BackupFault fault) {
    switch (fault) {
        case BackupFault::diskFull:
            return texts::backupFaultFull;
        case BackupFault::notWritable:
            return texts::backupFaultNotWritable;
        case BackupFault::damaged:
            return texts::backupFaultDamaged;
        case BackupFault::failed:
            break;
    }
    return texts::backupFaultOther;
}

const Text& reasonText(RestoreFault fault) {
    switch (fault) {
        case RestoreFault::damaged:
            return texts::restoreFaultDamaged;
        case RestoreFault::newer:
            return texts::restoreFaultNewer;
        case RestoreFault::gone:
            return texts::restoreFaultGone;
        case RestoreFault::diskFull:
            return texts::exportFaultFull;
        case RestoreFault::notWritable:
            return texts::backupFaultNotWritable;
        case RestoreFault::notKept:
            return texts::restoreFaultNotKept;
        case RestoreFault::changed:
            return texts::restoreFaultChanged;
        case RestoreFault::notSaved:
            return texts::restoreFaultNotSaved;
        case RestoreFault::failed:
            break;
    }
    return texts::restoreFaultOther;
}

}  // namespace

std::string backupTime(Date madeAt, const Localisation& texts) {
    auto day = relativeDate(madeAt, Date::now(), texts);
    if (day.find(':') != std::string::npos) return day;
    return day + ", " + Glib::DateTime::create_now_local(madeAt.seconds()).format("%H:%M").raw();
}

DataSettings::DataSettings(Session& session,
                           Labels& labels,
                           SettingsRows& rows,
                           Gtk::Window& window)
    : m_session(session), m_labels(labels), m_rows(rows), m_window(window) {
    addBackups();
    addTrash();
    addPlaces();
    m_changed = session.backups.signalChanged().connect([this] { showBackups(); });
}

adw::PreferencesGroup DataSettings::addGroup(const Text& title) {
    adw::PreferencesGroup group;
    m_labels.add(title, [group](const auto& text) mutable { group.setTitle(text); });
    m_page.add(group);
    return group;
}

void DataSettings::addBackups() {
    m_backups = addGroup(texts::groupBackups);
    m_labels.add(texts::backupsDetail,
                 [this](const auto& text) { m_backups.setDescription(text); });
    auto* now = Gtk::make_managed<Gtk::Button>();
    now->set_valign(Gtk::Align::CENTER);
    now->set_margin_start(12);
    now->signal_clicked().connect([this] { m_session.backups.backUpNow(); });
    m_labels.add(texts::backUpNow, [now](const auto& text) { now->set_label(text); });
    m_backups.setHeaderSuffix(*now);
    m_bar.set_size_request(kBarWidth, -1);
    m_state.addSuffix(m_bar);
    m_cancel.signal_clicked().connect([this] { m_session.backups.cancelRestore(); });
    m_labels.add(texts::cancel, [this](const auto& text) { m_cancel.set_label(text); });
    m_state.addSuffix(m_cancel);
    m_backups.add(m_state.widget());
    // Also in another language.
    m_labels.add([this] {
        listBackups(m_session.backups.list());
        showState();
    });
}

// Progress comes often: the list is only made anew when it is another one.
void DataSettings::showBackups() {
    if (!m_session.backups.isWorking()) {
        auto backups = m_session.backups.list();
        if (backups != m_shown) listBackups(backups);
    }
    showState();
}

void DataSettings::showState() {
    const auto& say = m_session.texts;
    const auto& backups = m_session.backups;
    const auto& backupFault = backups.backupFault();
    const auto& restoreFault = backups.restoreFault();
    const bool isWorking = backups.isWorking();
    const bool isFault = !isWorking && (backupFault || restoreFault);
    if (isWorking) {
        m_state.setTitle(say(backups.isRestoring() ? texts::restoreRunning : texts::backupRunning));
        m_state.setSubtitle({});
        m_bar.set_fraction(backups.fraction());
        setAccessibleLabel(m_bar, say(texts::groupBackups));
    } else if (restoreFault) {
        m_state.setTitle(say(texts::restoreFailed));
        m_state.setSubtitle(say(reasonText(*restoreFault)));
    } else if (backupFault) {
        m_state.setTitle(say(texts::backupFailed));
        m_state.setSubtitle(say(reasonText(*backupFault)));
    } else if (m_shown.empty()) {
        m_state.setTitle(say(texts::backupNone));
        m_state.setSubtitle(say(texts::backupNoneDetail));
    }
    m_state.widget().set_visible(isWorking || isFault || m_shown.empty());
    m_state.setIcon(isFault ? "dialog-warning-symbolic" : nullptr);
    m_bar.set_visible(isWorking);
    m_cancel.set_visible(backups.isRestoring());
    for (auto* button : m_restoreButtons)
        button->set_sensitive(!isWorking);
}

void DataSettings::listBackups(const std::vector<BackupInfo>& backups) {
    for (auto* row : m_backupRows)
        m_backups.remove(*row);
    m_backupRows.clear();
    m_restoreButtons.clear();
    m_shown = backups;
    for (const auto& backup : m_shown)
        addBackup(backup);
}

void DataSettings::addBackup(const BackupInfo& backup) {
    const auto& say = m_session.texts;
    const auto time = backupTime(backup.madeAt, say);
    adw::ActionRow row;
    row.setTitle(time);
    row.setSubtitle(detailOf(backup));
    auto* restore = Gtk::make_managed<Gtk::Button>(say(texts::restoreVerb));
    setAccessibleLabel(*restore, say.format(texts::restoreOf, {time}));
    restore->signal_clicked().connect([this, backup] { askToRestore(backup); });
    row.addSuffix(*restore);
    row.setActivatable(*restore);
    m_backups.add(row.widget());
    m_backupRows.push_back(&row.widget());
    m_restoreButtons.push_back(restore);
}

std::string DataSettings::detailOf(const BackupInfo& backup) const {
    const auto& say = m_session.texts;
    const auto notes = say.notes(static_cast<std::int64_t>(backup.notes));
    const auto size = sizeText(backup.bytes, say);
    if (backup.kind == BackupKind::daily) return say.format(texts::backupDetail, {notes, size});
    const bool isByHand = backup.kind == BackupKind::byHand;
    return say.format(
        texts::backupDetailWithKind,
        {notes, size, say(isByHand ? texts::backupByHand : texts::backupBeforeRestore)});
}

void DataSettings::askToRestore(const BackupInfo& backup) {
    const auto& say = m_session.texts;
    ask(m_window,
        {say.format(texts::restoreQuestion, {backupTime(backup.madeAt, say)}),
         say.format(texts::restoreQuestionDetail,
                    {say.notes(static_cast<std::int64_t>(backup.notes))}),
         {{"cancel", say(texts::cancel)},
          {"restore", say(texts::restoreConfirm), DialogAnswer::Look::destructive}}},
        [this, backup](const std::string& answer) {
            if (answer == "restore") m_session.backups.restore(backup);
        });
}

void DataSettings::addTrash() {
    auto& preferences = m_session.preferences;
    auto trash = addGroup(texts::groupTrash);
    m_rows.add(trash, SettingsRows::Slider{
                          texts::trashRetention, &texts::trashRetentionDetail, 7, 90, 1,
                          [&] { return static_cast<double>(preferences.trashRetentionDays()); },
                          [&](double days) {
                              preferences.setTrashRetentionDays(static_cast<int>(days));
                          }});
}

void DataSettings::addPlaces() {
    auto places = addGroup(texts::groupPlaces);
    addPlace(places, texts::placeLibrary, paths::applicationSupport());
    addPlace(places, texts::placeThemes, m_session.themes.themesDirectory());
    addPlace(places, texts::placePreferences, paths::preferencesFile().parent_path());
}

void DataSettings::addPlace(adw::PreferencesGroup& group,
                            const Text& title,
                            const std::filesystem::path& folder) {
    adw::ActionRow row;
    row.setSubtitle(Glib::filename_display_name(folder.string()));
    auto* open = Gtk::make_managed<Gtk::Button>();
    open->signal_clicked().connect([folder] { openInDesktop(folder); });
    m_labels.add([this, row, open, &title]() mutable {
        const auto& say = m_session.texts;
        row.setTitle(say(title));
        open->set_label(say(texts::openFolder));
        setAccessibleLabel(*open, say.format(texts::openFolderOf, {say(title)}));
    });
    row.addSuffix(*open);
    row.setActivatable(*open);
    group.add(row.widget());
}

}  // namespace corvel
