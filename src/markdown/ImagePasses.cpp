#include "markdown/ImagePasses.h"

#include "markdown/BareUrl.h"
#include "markdown/ImageSourceScanner.h"
#include "markdown/PatternSpace.h"

#include <glib.h>

#include <algorithm>

namespace corvel::imagepasses {

namespace {

constexpr std::size_t kNone = std::string_view::npos;
constexpr std::size_t kIdentifierLength = 36;

bool isIdentifierCharacter(char character) {
    return (character >= '0' && character <= '9') || (character >= 'a' && character <= 'f') ||
           (character >= 'A' && character <= 'F') || character == '-';
}

// The first character behind "<img\s" of the next such tag; none at the end.
std::size_t findImage(std::string_view html, std::size_t from) {
    constexpr std::string_view kTag = "<img";
    for (std::size_t begin = html.find(kTag, from); begin != kNone;
         begin = html.find(kTag, begin + 1)) {
        const std::size_t name = begin + kTag.size();
        if (const std::size_t space = spaceLengthAt(html, name)) return name + space;
    }
    return kNone;
}

// Copies the text between replacements as whole spans.
class Rewriter {
public:
    explicit Rewriter(std::string& html) : m_html(html) {}

    void replace(TextSpan span, std::string_view text) {
        m_output.append(m_html, m_copied, span.begin - m_copied).append(text);
        m_copied = span.end;
    }
    std::string finish() {
        if (m_copied == 0) return std::move(m_html);
        return std::move(m_output.append(m_html, m_copied));
    }

private:
    std::string& m_html;
    std::string m_output;
    std::size_t m_copied = 0;
};

// Finds the absolute paths in the sources of images.
class LocalSourceScanner {
public:
    explicit LocalSourceScanner(std::string_view html)
        : m_html(html), m_lastQuote(html.rfind('"')), m_lastClose(html.rfind('>')) {}

    /// The next path; its match ends behind `matchEnd`.
    std::optional<TextSpan> next();

private:
    std::optional<TextSpan> lastSourceIn(TextSpan attributes) const;
    std::optional<TextSpan> sourceAt(std::size_t name) const;

    std::string_view m_html;
    std::size_t m_lastQuote;
    std::size_t m_lastClose;
    std::size_t m_position = 0;
};

std::optional<TextSpan> LocalSourceScanner::next() {
    for (;;) {
        const std::size_t begin = findImage(m_html, m_position);
        if (begin == kNone) return std::nullopt;
        const std::size_t end = std::min(m_html.find('>', begin), m_html.size());
        if (const auto source = lastSourceIn({begin, end})) {
            m_position = m_html.find('>', source->end) + 1;
            return source;
        }
        // A later tag before the same ">" has a part of the same attributes: it fails as well.
        m_position = end;
    }
}

// "[^>]*" is greedy, so the last "src" that fits is the one.
std::optional<TextSpan> LocalSourceScanner::lastSourceIn(TextSpan attributes) const {
    std::optional<TextSpan> last;
    for (std::size_t name = m_html.find("src", attributes.begin); name < attributes.end;
         name = m_html.substr(0, attributes.end).find("src", name + 1)) {
        if (const auto source = sourceAt(name)) last = source;
    }
    return last;
}

std::optional<TextSpan> LocalSourceScanner::sourceAt(std::size_t name) const {
    std::size_t position = skipSpaces(m_html, name + 3);
    if (m_html.substr(position, 1) != "=") return std::nullopt;
    position = skipSpaces(m_html, position + 1);
    if (m_html.substr(position, 2) != "\"/") return std::nullopt;
    const std::size_t begin = position + 1;
    if (m_lastQuote == kNone || m_lastQuote <= begin) return std::nullopt;
    const std::size_t end = m_html.find('"', begin);
    if (end == begin + 1 || m_lastClose == kNone || m_lastClose < end) return std::nullopt;
    return TextSpan{begin, end};
}

struct WidthMatch {
    TextSpan span;  // from the tag's ">" to the closing brace
    std::string_view value;
};

class WidthScanner {
public:
    explicit WidthScanner(std::string_view html) : m_html(html), m_lastBrace(html.rfind('}')) {}

    std::optional<WidthMatch> next();

private:
    std::optional<WidthMatch> widthBehind(std::size_t tagEnd) const;

    std::string_view m_html;
    std::size_t m_lastBrace;
    std::size_t m_position = 0;
};

std::optional<WidthMatch> WidthScanner::next() {
    for (;;) {
        const std::size_t begin = findImage(m_html, m_position);
        if (begin == kNone) return std::nullopt;
        const std::size_t tagEnd = m_html.find('>', begin);
        if (tagEnd == kNone) return std::nullopt;
        const auto match = widthBehind(tagEnd);
        m_position = match ? match->span.end : tagEnd + 1;
        if (match) return match;
    }
}

std::optional<WidthMatch> WidthScanner::widthBehind(std::size_t tagEnd) const {
    constexpr std::string_view kOpening = "{width=";
    const std::size_t opening = skipSpaces(m_html, tagEnd + 1);
    if (m_html.substr(opening, kOpening.size()) != kOpening) return std::nullopt;
    const std::size_t value = opening + kOpening.size();
    if (m_lastBrace == kNone || m_lastBrace <= value) return std::nullopt;
    const std::size_t end = m_html.find('}', value);
    if (end == value) return std::nullopt;
    return WidthMatch{{tagEnd, end + 1}, m_html.substr(value, end - value)};
}

bool hasRemoteScheme(std::string_view address) {
    for (const std::string_view scheme : {"http://", "https://"}) {
        const auto start = address.substr(0, scheme.size());
        if (std::ranges::equal(start, scheme, {}, g_ascii_tolower)) return true;
    }
    return false;
}

// No scheme, no root, no place in the page itself.
bool isRelative(std::string_view address) {
    if (address.empty() || address.front() == '/' || address.front() == '#') return false;
    const std::size_t colon = address.find(':');
    return colon == kNone || address.find('/') < colon;
}

std::string replaceSources(std::string html,
                           bool (*isMeant)(std::string_view),
                           const Replacement& replacement) {
    ImageSourceScanner scanner(html);
    Rewriter rewriter(html);
    while (const auto source = scanner.next()) {
        const auto address =
            std::string_view(html).substr(source->begin, source->end - source->begin);
        if (!isMeant(address)) continue;
        if (const auto other = replacement(address)) rewriter.replace(*source, *other);
    }
    return rewriter.finish();
}

}  // namespace

std::string replaceAttachments(std::string html, const Replacement& replacement) {
    constexpr std::string_view kScheme = "attachment://";
    Rewriter rewriter(html);
    const std::string_view text = html;
    for (std::size_t begin = text.find(kScheme); begin != kNone;) {
        const std::string_view id = text.substr(begin + kScheme.size(), kIdentifierLength);
        if (id.size() < kIdentifierLength || !std::ranges::all_of(id, isIdentifierCharacter)) {
            begin = text.find(kScheme, begin + 1);
            continue;
        }
        const std::size_t end = begin + kScheme.size() + kIdentifierLength;
        if (const auto url = replacement(id)) rewriter.replace({begin, end}, *url);
        begin = text.find(kScheme, end);
    }
    return rewriter.finish();
}

std::string replaceLocalSources(std::string html, const Replacement& replacement) {
    LocalSourceScanner scanner(html);
    Rewriter rewriter(html);
    while (const auto path = scanner.next()) {
        const auto text = std::string_view(html).substr(path->begin, path->end - path->begin);
        if (const auto url = replacement(text)) rewriter.replace(*path, *url);
    }
    return rewriter.finish();
}

std::string applyWidths(std::string html) {
    WidthScanner scanner(html);
    Rewriter rewriter(html);
    while (const auto match = scanner.next()) {
        std::string style = " style=\"width:";
        style.append(match->value).append(";\">");
        rewriter.replace(match->span, style);
    }
    return rewriter.finish();
}

std::string replaceRemoteSources(std::string html, const Replacement& replacement) {
    return replaceSources(std::move(html), hasRemoteScheme, replacement);
}

std::string markRemoteSources(std::string html, std::string_view scheme) {
    return replaceRemoteSources(std::move(html), [scheme](std::string_view address) {
        return std::string(scheme).append(address);
    });
}

std::string replaceRelativeSources(std::string html, const Replacement& replacement) {
    return replaceSources(std::move(html), isRelative, replacement);
}

}  // namespace corvel::imagepasses
