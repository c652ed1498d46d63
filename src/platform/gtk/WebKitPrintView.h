#pragma once

#include "platform/Handle.h"
#include "platform/PrintView.h"
#include "platform/gtk/WebKitView.h"

#include <memory>

namespace corvel {

/// Prints a page of a closed room with the toolkit's "print to file". The view is in no window.
class WebKitPrintView : public PrintView {
public:
    WebKitPrintView(std::unique_ptr<WebKitView> view, const PaperSize& paper);
    WebKitPrintView(const WebKitPrintView&) = delete;
    WebKitPrintView& operator=(const WebKitPrintView&) = delete;
    ~WebKitPrintView() override;

    WebView& page() override { return *m_view; }
    void call(const std::string& functionBody, Called done) override;
    void print(const std::filesystem::path& file, const PaperSize& paper, Printed done) override;

private:
    static void called(GObject* view, GAsyncResult* result, gpointer data);
    static void finished(WebKitPrintOperation*, gpointer self);
    static void failed(WebKitPrintOperation*, GError* error, gpointer self);
    void answer(const std::optional<std::string>& error);

    std::unique_ptr<WebKitView> m_view;
    GObjectHandle<WebKitPrintOperation> m_operation;
    Printed m_printed;
    std::string m_uri;  // of the printed file
    std::shared_ptr<bool> m_isAlive = std::make_shared<bool>(true);
};

}  // namespace corvel
