#include "ui/PageMenu.h"

#include "app/texts/SettingsTexts.h"
#include "platform/Handle.h"

namespace corvel {

namespace {

GtkWidget* childOfType(GtkWidget* widget, GType type) {
    if (g_type_is_a(G_OBJECT_TYPE(widget), type) != 0) return widget;
    for (auto* child = gtk_widget_get_first_child(widget); child != nullptr;
         child = gtk_widget_get_next_sibling(child)) {
        if (auto* found = childOfType(child, type)) return found;
    }
    return nullptr;
}

PageMenu* menuAt(gpointer self) {
    return static_cast<PageMenu*>(self);
}

}  // namespace

PageMenu::PageMenu(Gtk::Window& window, Labels& labels)
    : m_window(window)
    , m_tabs(childOfType(GTK_WIDGET(window.gobj()), ADW_TYPE_VIEW_SWITCHER_BAR))
    , m_title(childOfType(GTK_WIDGET(window.gobj()), ADW_TYPE_VIEW_SWITCHER_TITLE))
    , m_pages(m_tabs == nullptr ? nullptr
                                : adw_view_switcher_bar_get_stack(ADW_VIEW_SWITCHER_BAR(m_tabs))) {
    // Another version of libadwaita may have other tabs, and its own way with little room.
    if (m_title == nullptr || m_pages == nullptr) return;
    build();
    labels.add(texts::settingsPage, [this](const auto& text) {
        m_name = text;
        tellPage();
    });
    followPage();
    followWidth();
}

void PageMenu::build() {
    auto* name = gtk_property_expression_new(ADW_TYPE_VIEW_STACK_PAGE, nullptr, "title");
    m_menu =
        GTK_DROP_DOWN(gtk_drop_down_new(G_LIST_MODEL(adw_view_stack_get_pages(m_pages)), name));
    auto* widget = GTK_WIDGET(m_menu);
    gtk_widget_set_margin_start(widget, 12);
    gtk_widget_set_margin_end(widget, 12);
    gtk_widget_set_margin_top(widget, 6);
    gtk_widget_set_margin_bottom(widget, 6);
    gtk_widget_set_visible(widget, FALSE);
    auto* header = gtk_widget_get_ancestor(m_title, ADW_TYPE_HEADER_BAR);
    gtk_box_insert_child_after(GTK_BOX(gtk_widget_get_parent(header)), widget, header);
}

void PageMenu::followPage() {
    m_pageSignals.follow(m_pages);
    m_pageSignals.connect("notify::visible-child",
                          G_CALLBACK(+[](gpointer self) { menuAt(self)->showPage(); }), this,
                          G_CONNECT_SWAPPED);
    m_menuSignals.follow(m_menu);
    m_menuSignals.connect("notify::selected",
                          G_CALLBACK(+[](gpointer self) { menuAt(self)->choosePage(); }), this,
                          G_CONNECT_SWAPPED);
    showPage();
}

void PageMenu::followWidth() {
    m_titleSignals.follow(m_title);
    m_titleSignals.connect("notify::title-visible",
                           G_CALLBACK(+[](gpointer self) { menuAt(self)->update(); }), this,
                           G_CONNECT_SWAPPED);
    m_windowSignals.follow(m_window.gobj());
    for (const char* signal : {"notify::default-width", "map"}) {
        m_windowSignals.connect(signal, G_CALLBACK(+[](gpointer self) { menuAt(self)->update(); }),
                                this, G_CONNECT_SWAPPED);
    }
}

void PageMenu::showPage() {
    const GObjectHandle<GtkSelectionModel> pages(adw_view_stack_get_pages(m_pages));
    const Handle<GtkBitset, gtk_bitset_unref> shown(gtk_selection_model_get_selection(pages.get()));
    if (gtk_bitset_is_empty(shown.get()) != 0) return;
    gtk_drop_down_set_selected(m_menu, gtk_bitset_get_minimum(shown.get()));
    tellPage();
}

// The focus is on the button inside, which has no name of its own.
void PageMenu::tellPage() {
    const auto setLabel = [](GtkWidget* widget, const std::string& text) {
        gtk_accessible_update_property(GTK_ACCESSIBLE(widget), GTK_ACCESSIBLE_PROPERTY_LABEL,
                                       text.c_str(), -1);
    };
    setLabel(GTK_WIDGET(m_menu), m_name);
    auto* shown = adw_view_stack_get_visible_child(m_pages);
    if (shown == nullptr) return;
    const char* title = adw_view_stack_page_get_title(adw_view_stack_get_page(m_pages, shown));
    setLabel(gtk_widget_get_first_child(GTK_WIDGET(m_menu)), m_name + ": " + title);
}

void PageMenu::choosePage() {
    const GObjectHandle<GtkSelectionModel> pages(adw_view_stack_get_pages(m_pages));
    gtk_selection_model_select_item(pages.get(), gtk_drop_down_get_selected(m_menu), TRUE);
}

// What the tabs hold is measured, not they: while they are hidden they say that they need no room.
void PageMenu::update() {
    int needed = 0;
    gtk_widget_measure(gtk_widget_get_first_child(m_tabs), GTK_ORIENTATION_HORIZONTAL, -1, nullptr,
                       &needed, nullptr, nullptr);
    const bool fits = needed <= m_window.get_width();
    const bool isNarrow =
        adw_view_switcher_title_get_title_visible(ADW_VIEW_SWITCHER_TITLE(m_title)) != 0;
    gtk_widget_set_visible(m_tabs, fits ? TRUE : FALSE);
    gtk_widget_set_visible(GTK_WIDGET(m_menu), isNarrow && !fits ? TRUE : FALSE);
}

}  // namespace corvel
