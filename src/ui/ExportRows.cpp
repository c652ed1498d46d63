#include "ui/ExportRows.h"

#include "export/ExportTexts.h"

#include <string>
#include <vector>

namespace corvel {

namespace {

template <typename Values, typename Name>
void fill(AdwComboRow* row, const Values& values, Name name) {
    GtkStringList* list = gtk_string_list_new(nullptr);
    for (const auto value : values) {
        gtk_string_list_append(list, std::string(name(value)).c_str());
    }
    adw_combo_row_set_model(row, G_LIST_MODEL(list));
    g_object_unref(list);
}

void setTitle(AdwComboRow* row, const char* title) {
    adw_preferences_row_set_title(ADW_PREFERENCES_ROW(row), title);
}

}  // namespace

ExportRows::ExportRows(ExportOptions& options, const Localisation& texts)
    : Gtk::Box(Gtk::Orientation::VERTICAL, 24), m_options(options), m_texts(texts) {
    m_formatGroup = addGroup();
    m_format = addChoice(m_formatGroup);
    fill(m_format, kExportFormats, [](ExportFormat format) { return label(format); });
    m_pdfGroup = addGroup();
    m_pageSize = addChoice(m_pdfGroup);
    fill(m_pageSize, kPageSizes, [](PageSize size) { return dimensions(size).name; });
    m_headerFooter = addSwitch(m_pdfGroup, options.includeHeaderFooter);
    m_generalGroup = addGroup();
    m_applyTheme = addSwitch(m_generalGroup, options.applyTheme);
    m_embedImages = addSwitch(m_generalGroup, options.embedImages);
    g_signal_connect(m_format, "notify::selected", G_CALLBACK(chosen), this);
    g_signal_connect(m_pageSize, "notify::selected", G_CALLBACK(chosen), this);
    relabel();
    showRowsOfFormat();
}

AdwPreferencesGroup* ExportRows::addGroup() {
    auto* group = ADW_PREFERENCES_GROUP(adw_preferences_group_new());
    append(*Glib::wrap(GTK_WIDGET(group)));
    return group;
}

AdwComboRow* ExportRows::addChoice(AdwPreferencesGroup* group) {
    auto* row = ADW_COMBO_ROW(adw_combo_row_new());
    adw_preferences_group_add(group, GTK_WIDGET(row));
    return row;
}

ExportRows::SwitchRow ExportRows::addSwitch(AdwPreferencesGroup* group, bool& option) {
    auto* row = ADW_ACTION_ROW(adw_action_row_new());
    auto* control = Gtk::make_managed<Gtk::Switch>();
    control->set_valign(Gtk::Align::CENTER);
    control->set_active(option);
    control->property_active().signal_changed().connect(
        [control, &option] { option = control->get_active(); });
    adw_action_row_add_suffix(row, GTK_WIDGET(control->gobj()));
    // The row's title is the switch's name by this.
    adw_action_row_set_activatable_widget(row, GTK_WIDGET(control->gobj()));
    adw_preferences_group_add(group, GTK_WIDGET(row));
    return {row, control};
}

void ExportRows::setLabel(const SwitchRow& row, const Text& label) {
    adw_preferences_row_set_title(ADW_PREFERENCES_ROW(row.row), m_texts(label));
}

void ExportRows::relabel() {
    setTitle(m_format, m_texts(texts::exportFormat));
    setTitle(m_pageSize, m_texts(texts::exportPageSize));
    adw_preferences_group_set_title(m_pdfGroup, m_texts(texts::exportPdfOptions));
    adw_preferences_group_set_title(m_generalGroup, m_texts(texts::exportGeneral));
    setLabel(m_headerFooter, texts::exportHeaderFooter);
    setLabel(m_applyTheme, texts::exportApplyTheme);
    setLabel(m_embedImages, texts::exportEmbedImages);
}

void ExportRows::chosen(AdwComboRow*, GParamSpec*, gpointer self) {
    static_cast<ExportRows*>(self)->formatChosen();
}

void ExportRows::formatChosen() {
    m_options.format = kExportFormats.at(adw_combo_row_get_selected(m_format));
    m_options.pageSize = kPageSizes.at(adw_combo_row_get_selected(m_pageSize));
    showRowsOfFormat();
}

void ExportRows::showRowsOfFormat() {
    const auto show = [](auto* widget, bool isShown) {
        gtk_widget_set_visible(GTK_WIDGET(widget), isShown ? TRUE : FALSE);
    };
    show(m_pdfGroup, m_options.format == ExportFormat::pdf);
    show(m_generalGroup, m_options.format != ExportFormat::txt);
    show(m_embedImages.row, m_options.format == ExportFormat::html);
}

}  // namespace corvel
