#include "markdown/GuardedRenderer.h"

#include "markdown/MarkdownHelper.h"
#include "markdown/MarkdownParserService.h"
#include "markdown/MarkdownRisk.h"

#include <glibmm/main.h>

#include <chrono>
#include <utility>

namespace corvel {

namespace {

using std::chrono::milliseconds;

constexpr milliseconds kRiskyLimit{2000};
// What is only long gets time in proportion: several times what it takes.
constexpr milliseconds kLimitPerMegabyte{200};

milliseconds limitFor(MarkdownRisk risk, std::size_t size) {
    if (risk == MarkdownRisk::risky) return kRiskyLimit;
    return kRiskyLimit + kLimitPerMegabyte * static_cast<int>(size >> 20U);
}

void renderSoon(std::string markdown,
                const Glib::RefPtr<Gio::Cancellable>& cancellable,
                GuardedRenderer::Done done) {
    const auto answer = [markdown = std::move(markdown), cancellable, done = std::move(done)] {
        if (cancellable && cancellable->is_cancelled()) return done({});
        done({MarkdownParserService::renderBody(markdown), false});
    };
    Glib::signal_idle().connect_once(answer, Glib::PRIORITY_DEFAULT);
}

RenderOutcome plainText(const std::string& markdown) {
    return {"<pre>" + MarkdownParserService::escaped(markdown) + "</pre>", true};
}

}  // namespace

GuardedRenderer::GuardedRenderer(std::string executable) : m_executable(std::move(executable)) {}

void GuardedRenderer::render(std::string markdown,
                             const Glib::RefPtr<Gio::Cancellable>& cancellable,
                             Done done) const {
    const MarkdownRisk risk = riskOf(markdown);
    if (risk == MarkdownRisk::ordinary) {
        return renderSoon(std::move(markdown), cancellable, std::move(done));
    }
    const milliseconds limit = limitFor(risk, markdown.size());
    std::string input = markdown;
    auto answer = [markdown = std::move(markdown), cancellable,
                   done = std::move(done)](HelperOutcome outcome) {
        if (cancellable && cancellable->is_cancelled()) return done({{}, true});
        done(outcome.isGood ? RenderOutcome{std::move(outcome.output)} : plainText(markdown));
    };
    HelperProcess({m_executable, kMarkdownHelperOption})
        .work(std::move(input), cancellable, std::move(answer), limit);
}

}  // namespace corvel
