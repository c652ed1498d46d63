#pragma once

#include "platform/Uuid.h"

#include <cstdint>
#include <filesystem>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace corvel {

/// The scheme under which a page asks the program for an image from the web; the image's whole
/// address follows it.
inline constexpr const char* kRemoteImageScheme = "corvel-image";

/// Fonts and sizes of the e-mail page.
struct EmailStyle {
    std::string bodyFont;
    std::string codeFont;
    double fontSize;    ///< points, written as whole pixels; must be finite
    double lineHeight;  ///< multiple of the font size
};

/// Turns Markdown text into HTML by the program's own rules. Rendering cannot fail: any text
/// parses.
class MarkdownParserService {
public:
    struct AttachmentData {
        std::string mimeType;
        std::vector<std::uint8_t> bytes;
    };
    /// Finds an attachment's data; none when there is no such attachment or it has no data.
    using AttachmentSource = std::function<std::optional<AttachmentData>(const Uuid&)>;

    explicit MarkdownParserService(AttachmentSource attachments = {});

    /// The fragment of HTML for `markdown`, without a wrapper element.
    static std::string renderBody(std::string_view markdown);
    /// The identifier of a heading with this plain text.
    static std::string headingSlug(std::string_view plainText);

    /// Attachment references and local image files become `data:` URLs, `{width=…}` becomes a
    /// style. A relative address means a file beside the text's own, in `folder` or below; without
    /// a folder it stays as it is.
    std::string postProcessImages(std::string html, const std::filesystem::path& folder = {}) const;

    /// For a web view that may show images from the web: their addresses get the scheme that
    /// reaches the program, and the key that it asks for, or none.
    static std::string markRemoteImages(std::string html, const std::string& key = {});

    static std::string fullPage(std::string_view title,
                                std::string_view css,
                                std::string_view body);
    static std::string emailPage(std::string_view title,
                                 std::string_view body,
                                 const EmailStyle& style);

    /// "&", "<", ">" and the double quote as entities.
    static std::string escaped(std::string_view text);

private:
    AttachmentSource m_attachments;
};

}  // namespace corvel
