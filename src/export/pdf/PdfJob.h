#pragma once

#include "export/PDFExporter.h"
#include "export/WorkingFolder.h"
#include "export/pdf/PDFNavigationDelegate.h"
#include "export/pdf/PageMarks.h"
#include "export/pdf/PdfFinisher.h"
#include "platform/HelperProcess.h"

#include <giomm/cancellable.h>

#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace corvel {

/// One printing, from the page to the finished bytes. Cancelling it, or dropping it, closes the web
/// view and removes what was written.
class PdfJob : public std::enable_shared_from_this<PdfJob> {
public:
    struct Order {
        PaperSize paper;
        PdfDescription description;
    };

    static std::shared_ptr<PdfJob> create(Order order,
                                          const Glib::RefPtr<Gio::Cancellable>& cancellable,
                                          Exporter::Done done);
    ~PdfJob();

    const std::string& title() const { return m_order.description.title; }
    void start(const PDFExporter::PrintViewMaker& makeView, const std::string& page);
    void fail(const ExportError& error);

private:
    PdfJob(Order order, const Glib::RefPtr<Gio::Cancellable>& cancellable, Exporter::Done done);
    void cancel();
    void loaded(const std::optional<std::string>& error);
    void marked(const std::string& json, const std::optional<std::string>& error);
    void printed(const std::optional<std::string>& error);
    void finished(HelperOutcome outcome);
    std::string printedFile() const;
    void end(ExportOutcome outcome);
    bool failedWith(const std::optional<std::string>& error);

    Order m_order;
    Glib::RefPtr<Gio::Cancellable> m_cancellable;
    Exporter::Done m_done;
    MarkColors m_colors;
    std::string m_marks;  // as JSON
    std::vector<std::string> m_photos;
    std::unique_ptr<WorkingFolder> m_folder;
    std::unique_ptr<PrintView> m_view;
    std::unique_ptr<PDFNavigationDelegate> m_delegate;
    std::unique_ptr<HelperProcess> m_finisher;
    ScopedConnection m_cancelled;
};

}  // namespace corvel
