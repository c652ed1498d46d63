#include "markdown/MarkdownParserService.h"

#include "markdown/BodyRenderer.h"
#include "markdown/DataUrl.h"
#include "markdown/EmailPage.h"
#include "markdown/FullPage.h"
#include "markdown/HeadingSlug.h"
#include "markdown/HtmlEscape.h"
#include "markdown/ImagePasses.h"
#include "markdown/LocalImage.h"
#include "platform/Text.h"

#include <utility>

namespace corvel {

namespace {

// Past this the rest of a page's images stay references: no web view could hold them.
constexpr std::size_t kEmbeddedLimit = std::size_t{512} * 1024 * 1024;

class EmbeddingBudget {
public:
    std::optional<std::string> embed(std::string_view mimeType,
                                     const std::vector<std::uint8_t>& bytes) {
        if (bytes.size() > m_left) return std::nullopt;
        m_left -= bytes.size();
        return dataUrl(mimeType, bytes);
    }

private:
    std::size_t m_left = kEmbeddedLimit;
};

}  // namespace

MarkdownParserService::MarkdownParserService(AttachmentSource attachments)
    : m_attachments(std::move(attachments)) {}

std::string MarkdownParserService::renderBody(std::string_view markdown) {
    const MarkdownTree tree(markdown);
    std::string body = BodyRenderer(tree).render(markdown.size());
    // The parser turns references to U+FFFE and U+FFFF into bytes that are no UTF-8.
    const bool mayBeBroken = markdown.find("&#") != std::string_view::npos;
    if (mayBeBroken) return text::repaired(body);
    return body;
}

std::string MarkdownParserService::headingSlug(std::string_view plainText) {
    return corvel::headingSlug(plainText);
}

std::string MarkdownParserService::postProcessImages(std::string html,
                                                     const std::filesystem::path& folder) const {
    EmbeddingBudget budget;
    const auto attachment = [&](std::string_view text) -> std::optional<std::string> {
        const auto id = Uuid::parse(text);
        const auto data = id && m_attachments ? m_attachments(*id) : std::nullopt;
        if (!data) return std::nullopt;
        return budget.embed(data->mimeType, data->bytes);
    };
    const auto localFile = [&](std::string_view source) -> std::optional<std::string> {
        const std::string path = percentDecoded(source);
        const auto bytes = readLocalImage(path);
        if (!bytes) return std::nullopt;
        return budget.embed(imageMimeType(path), *bytes);
    };
    const auto beside = [&](std::string_view source) -> std::optional<std::string> {
        const auto image = readImageBeside(folder, source);
        if (!image) return std::nullopt;
        return budget.embed(image->mimeType, image->bytes);
    };
    if (!folder.empty()) html = imagepasses::replaceRelativeSources(std::move(html), beside);
    html = imagepasses::replaceAttachments(std::move(html), attachment);
    html = imagepasses::replaceLocalSources(std::move(html), localFile);
    return imagepasses::applyWidths(std::move(html));
}

std::string MarkdownParserService::markRemoteImages(std::string html, const std::string& key) {
    return imagepasses::markRemoteSources(std::move(html),
                                          std::string(kRemoteImageScheme) + ":" + key);
}

std::string MarkdownParserService::fullPage(std::string_view title,
                                            std::string_view css,
                                            std::string_view body) {
    return corvel::fullPage(title, css, body);
}

std::string MarkdownParserService::emailPage(std::string_view title,
                                             std::string_view body,
                                             const EmailStyle& style) {
    return corvel::emailPage(title, body, style);
}

std::string MarkdownParserService::escaped(std::string_view text) {
    std::string output;
    output.reserve(text.size() + text.size() / 8);
    appendEscaped(output, text);
    return output;
}

}  // namespace corvel
