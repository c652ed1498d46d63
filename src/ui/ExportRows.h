#pragma once

#include "app/settings/Localisation.h"
#include "export/ExportOptions.h"

#include <adwaita.h>
#include <gtkmm/box.h>
#include <gtkmm/switch.h>

namespace corvel {

/// The options of an export as rows: those of the chosen format only. Writes to `options`, which
/// must outlive the rows, at every change.
class ExportRows : public Gtk::Box {
public:
    ExportRows(ExportOptions& options, const Localisation& texts);

    void relabel();

private:
    struct SwitchRow {
        AdwActionRow* row = nullptr;
        Gtk::Switch* control = nullptr;
    };

    AdwPreferencesGroup* addGroup();
    static AdwComboRow* addChoice(AdwPreferencesGroup* group);
    SwitchRow addSwitch(AdwPreferencesGroup* group, bool& option);
    void setLabel(const SwitchRow& row, const Text& label);
    void formatChosen();
    void showRowsOfFormat();
    static void chosen(AdwComboRow*, GParamSpec*, gpointer self);

    ExportOptions& m_options;
    const Localisation& m_texts;
    AdwPreferencesGroup* m_formatGroup;
    AdwPreferencesGroup* m_pdfGroup;
    AdwPreferencesGroup* m_generalGroup;
    AdwComboRow* m_format;
    AdwComboRow* m_pageSize;
    SwitchRow m_headerFooter;
    SwitchRow m_applyTheme;
    SwitchRow m_embedImages;
};

}  // namespace corvel
