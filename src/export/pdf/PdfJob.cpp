#include "export/pdf/PdfJob.h"

#include "export/pdf/PdfTask.h"
#include "markdown/HtmlEscape.h"

#include <glibmm/main.h>

#include <utility>

namespace corvel {

namespace {

using Kind = ExportError::Kind;

/// The running title as the page gives it, in one line.
std::string runningTitle(const std::string& title) {
    std::string line;
    appendEscaped(line, title);
    for (char& character : line) {
        if (static_cast<unsigned char>(character) < 0x20) character = ' ';
    }
    return line;
}

}  // namespace

PdfJob::PdfJob(Order order, const Glib::RefPtr<Gio::Cancellable>& cancellable, Exporter::Done done)
    : m_order(std::move(order)), m_cancellable(cancellable), m_done(std::move(done)) {}

std::shared_ptr<PdfJob> PdfJob::create(Order order,
                                       const Glib::RefPtr<Gio::Cancellable>& cancellable,
                                       Exporter::Done done) {
    std::shared_ptr<PdfJob> job(new PdfJob(std::move(order), cancellable, std::move(done)));
    // The view must not go while it is the one that calls: it goes when the loop turns.
    job->m_cancelled = cancellable->signal_cancelled().connect([weak = job->weak_from_this()] {
        Glib::signal_idle().connect_once([weak] {
            if (const auto self = weak.lock()) self->cancel();
        });
    });
    return job;
}

PdfJob::~PdfJob() = default;

void PdfJob::cancel() {
    m_done = {};
    m_delegate.reset();
    m_view.reset();
    m_finisher.reset();
    m_folder.reset();
}

void PdfJob::start(const PDFExporter::PrintViewMaker& makeView, const std::string& page) {
    try {
        m_folder = std::make_unique<WorkingFolder>();
    } catch (const std::filesystem::filesystem_error& error) {
        return fail(ExportError(Kind::fileWriteFailed, error.code().message()));
    }
    m_colors = MarkColors::unusedIn(page);
    m_photos = photosIn(page);
    m_view = makeView(m_order.paper);
    m_delegate = std::make_unique<PDFNavigationDelegate>(
        m_view->page(), [weak = weak_from_this()](const std::optional<std::string>& error) {
            if (const auto self = weak.lock()) self->loaded(error);
        });
    m_view->page().loadPage(page);
}

void PdfJob::loaded(const std::optional<std::string>& error) {
    if (failedWith(error)) return;
    m_view->call(markScript(m_colors),
                 [weak = weak_from_this()](const std::string& json,
                                           const std::optional<std::string>& failure) {
                     if (const auto self = weak.lock()) self->marked(json, failure);
                 });
}

void PdfJob::marked(const std::string& json, const std::optional<std::string>& error) {
    if (failedWith(error)) return;
    m_marks = json;
    // Hundreds of pages take a second to finish: the window must not wait for them. The process
    // makes itself ready while the view prints.
    const std::vector<std::string> finisher{kThisProgram, kPdfFinisherOption, printedFile()};
    m_finisher = std::make_unique<HelperProcess>(finisher);
    m_view->print(printedFile(), m_order.paper,
                  [weak = weak_from_this()](const std::optional<std::string>& failure) {
                      if (const auto self = weak.lock()) self->printed(failure);
                  });
}

void PdfJob::printed(const std::optional<std::string>& error) {
    if (failedWith(error)) return;
    const PdfTask task{m_colors,
                       std::move(m_marks),
                       m_order.paper,
                       runningTitle(title()),
                       m_order.description,
                       std::move(m_photos)};
    m_finisher->work(textOf(task), m_cancellable, [weak = weak_from_this()](HelperOutcome outcome) {
        if (const auto self = weak.lock()) self->finished(std::move(outcome));
    });
}

void PdfJob::finished(HelperOutcome outcome) {
    if (outcome.isGood) return end(std::move(outcome.output));
    fail(ExportError(Kind::platformFailed, outcome.output));
}

std::string PdfJob::printedFile() const {
    return m_folder->path() / "page.pdf";
}

bool PdfJob::failedWith(const std::optional<std::string>& error) {
    if (m_cancellable->is_cancelled()) return true;
    if (!error) return false;
    fail(ExportError(Kind::platformFailed, *error));
    return true;
}

void PdfJob::fail(const ExportError& error) {
    end(error);
}

void PdfJob::end(ExportOutcome outcome) {
    // After the call that brought the news has returned: it comes from the view that goes now.
    Glib::signal_idle().connect_once(
        [self = shared_from_this(), outcome = std::move(outcome)]() mutable {
            const auto done = std::exchange(self->m_done, {});
            const bool isWanted = done && !self->m_cancellable->is_cancelled();
            self->cancel();
            if (isWanted) done(std::move(outcome));
        });
}

}  // namespace corvel
