#include "platform/gtk/WebKitPrintView.h"

#include <gtk/gtkunixprint.h>

#include <utility>

namespace corvel {

namespace {

using PaperHandle = Handle<GtkPaperSize, gtk_paper_size_free>;

// On paper nothing can be scrolled aside. The page is laid out for paper alone: nobody sees it on
// the screen.
constexpr const char* kPaperRules = R"css(
@media screen { body { display: none !important; } }
pre, pre code { white-space: pre-wrap !important; overflow-wrap: anywhere !important; overflow: visible !important; }
p, li, td, th, h1, h2, h3, h4, h5, h6 { overflow-wrap: anywhere; }
h1, h2, h3, h4, h5, h6, img, tr { break-inside: avoid; }
p, li { orphans: 2; widows: 2; }
)css";

// The view prints a CSS pixel as 0.8 points, whatever the paper.
constexpr double kPixelsPerPoint = 1.25;

/// No picture is higher than a page. Units of the viewport are nothing on paper.
std::string paperRules(const PaperSize& paper) {
    const double height = (paper.height - 2 * paper.margin) * kPixelsPerPoint;
    return kPaperRules + ("img { max-width: 100% !important; max-height: " +
                          std::to_string(static_cast<int>(height * 0.9)) + "px; }\n");
}

struct Call {
    std::weak_ptr<bool> view;
    PrintView::Called done;
};

/// The name of the printer that writes files; it is translated.
std::string filePrinter() {
    std::string name;
    gtk_enumerate_printers(
        [](GtkPrinter* printer, gpointer data) -> gboolean {
            const bool writesFiles = gtk_printer_is_virtual(printer) != FALSE &&
                                     gtk_printer_accepts_pdf(printer) != FALSE;
            if (writesFiles) *static_cast<std::string*>(data) = gtk_printer_get_name(printer);
            return writesFiles ? TRUE : FALSE;
        },
        &name, nullptr, TRUE);
    return name;
}

GObjectHandle<GtkPrintSettings> settingsFor(const std::string& uri) {
    GObjectHandle<GtkPrintSettings> settings(gtk_print_settings_new());
    gtk_print_settings_set_printer(settings.get(), filePrinter().c_str());
    gtk_print_settings_set(settings.get(), GTK_PRINT_SETTINGS_OUTPUT_URI, uri.c_str());
    gtk_print_settings_set(settings.get(), GTK_PRINT_SETTINGS_OUTPUT_FILE_FORMAT, "pdf");
    return settings;
}

GObjectHandle<GtkPageSetup> setupFor(const PaperSize& paper) {
    const PaperHandle size(
        gtk_paper_size_new_custom("note", "note", paper.width, paper.height, GTK_UNIT_POINTS));
    GObjectHandle<GtkPageSetup> setup(gtk_page_setup_new());
    gtk_page_setup_set_paper_size(setup.get(), size.get());
    for (auto* const setMargin :
         {gtk_page_setup_set_top_margin, gtk_page_setup_set_bottom_margin,
          gtk_page_setup_set_left_margin, gtk_page_setup_set_right_margin}) {
        setMargin(setup.get(), paper.margin, GTK_UNIT_POINTS);
    }
    return setup;
}

}  // namespace

WebKitPrintView::WebKitPrintView(std::unique_ptr<WebKitView> view, const PaperSize& paper)
    : m_view(std::move(view)) {
    auto* content = webkit_web_view_get_user_content_manager(m_view->handle());
    const Handle<WebKitUserStyleSheet, webkit_user_style_sheet_unref> rules(
        webkit_user_style_sheet_new(paperRules(paper).c_str(), WEBKIT_USER_CONTENT_INJECT_TOP_FRAME,
                                    WEBKIT_USER_STYLE_LEVEL_USER, nullptr, nullptr));
    webkit_user_content_manager_add_style_sheet(content, rules.get());
    m_view->widget().set_size_request(static_cast<int>(paper.width),
                                      static_cast<int>(paper.height));
}

WebKitPrintView::~WebKitPrintView() {
    // The toolkit lists what it printed among the user's recent files.
    if (!m_uri.empty()) {
        gtk_recent_manager_remove_item(gtk_recent_manager_get_default(), m_uri.c_str(), nullptr);
    }
    if (m_operation) g_signal_handlers_disconnect_by_data(m_operation.get(), this);
}

void WebKitPrintView::call(const std::string& functionBody, Called done) {
    auto data = std::make_unique<Call>(Call{m_isAlive, std::move(done)});
    webkit_web_view_call_async_javascript_function(
        m_view->handle(), functionBody.data(), static_cast<gssize>(functionBody.size()), nullptr,
        nullptr, nullptr, nullptr, &WebKitPrintView::called, data.release());
}

void WebKitPrintView::called(GObject* view, GAsyncResult* result, gpointer data) {
    const std::unique_ptr<Call> call(static_cast<Call*>(data));
    GError* error = nullptr;
    const GObjectHandle<JSCValue> value(webkit_web_view_call_async_javascript_function_finish(
        WEBKIT_WEB_VIEW(view), result, &error));
    const Handle<GError, g_error_free> failure(error);
    if (call->view.expired()) return;
    const Handle<char, g_free> text(value ? jsc_value_to_string(value.get()) : nullptr);
    call->done(text ? text.get() : "",
               failure ? std::optional<std::string>(failure->message) : std::nullopt);
}

void WebKitPrintView::print(const std::filesystem::path& file,
                            const PaperSize& paper,
                            Printed done) {
    m_printed = std::move(done);
    const Handle<char, g_free> uri(g_filename_to_uri(file.c_str(), nullptr, nullptr));
    m_uri = uri.get();
    m_operation.reset(webkit_print_operation_new(m_view->handle()));
    webkit_print_operation_set_print_settings(m_operation.get(), settingsFor(m_uri).get());
    webkit_print_operation_set_page_setup(m_operation.get(), setupFor(paper).get());
    g_signal_connect(m_operation.get(), "failed", G_CALLBACK(failed), this);
    g_signal_connect(m_operation.get(), "finished", G_CALLBACK(finished), this);
    webkit_print_operation_print(m_operation.get());
}

void WebKitPrintView::finished(WebKitPrintOperation*, gpointer self) {
    static_cast<WebKitPrintView*>(self)->answer(std::nullopt);
}

void WebKitPrintView::failed(WebKitPrintOperation*, GError* error, gpointer self) {
    static_cast<WebKitPrintView*>(self)->answer(error->message);
}

// "finished" also follows "failed": the first of them counts.
void WebKitPrintView::answer(const std::optional<std::string>& error) {
    if (const auto done = std::exchange(m_printed, {})) done(error);
}

}  // namespace corvel
