#include "markdown/PreviewPage.h"

#include "markdown/HtmlEscape.h"
#include "platform/Handle.h"

#include <glib.h>

#include <array>

namespace corvel {

namespace {

constexpr std::string_view kHead =
    R"html(<!DOCTYPE html>
<html>
<head>
    <meta charset="utf-8">
    <meta name="viewport" content="width=device-width, initial-scale=1">
    <style>)html";

constexpr std::string_view kAfterStyle =
    R"html(</style>
    <style>
        body { margin: 0; padding: 20px 32px; }
        img { max-width: 100%; height: auto; border-radius: 8px; display: block; margin: 12px 0; }
        p > img:only-child { margin: 16px auto; }
    </style>
</head>
<body>
    <div id="content">)html";

constexpr std::string_view kBeforeScript = R"html(</div>
    <script>)html";

constexpr std::string_view kScript = R"html(
        var _isApplyingScroll = false;
        function updateContent(html) {
            document.getElementById('content').innerHTML = html;
        }
        function scrollToPercent(pct) {
            var maxScroll = document.body.scrollHeight - window.innerHeight;
            if (maxScroll <= 0) return;
            _isApplyingScroll = true;
            window.scrollTo(0, maxScroll * pct);
            setTimeout(function() { _isApplyingScroll = false; }, 50);
        }
        window.addEventListener('scroll', function() {
            if (_isApplyingScroll) return;
            var maxScroll = document.body.scrollHeight - window.innerHeight;
            if (maxScroll <= 0) return;
            var pct = window.scrollY / maxScroll;
            pct = Math.min(Math.max(pct, 0), 1);
            if (window.webkit && window.webkit.messageHandlers && window.webkit.messageHandlers.scrollHandler) {
                window.webkit.messageHandlers.scrollHandler.postMessage(pct);
            }
        });
    )html";

constexpr std::string_view kEnd = R"html(</script>
</body>
</html>)html";

}  // namespace

std::string PreviewPage::html(std::string_view stylesheet, std::string_view body) {
    const std::string style = styleText(stylesheet);
    std::string page;
    page.reserve(4096 + style.size() + body.size());
    for (const std::string_view piece :
         {kHead, std::string_view(style), kAfterStyle, body, kBeforeScript, kScript, kEnd}) {
        page += piece;
    }
    return page;
}

std::string PreviewPage::scriptHash() {
    const Handle<GChecksum, g_checksum_free> checksum(g_checksum_new(G_CHECKSUM_SHA256));
    g_checksum_update(checksum.get(), reinterpret_cast<const guchar*>(kScript.data()),
                      static_cast<gssize>(kScript.size()));
    std::array<guchar, 32> digest{};
    gsize length = digest.size();
    g_checksum_get_digest(checksum.get(), digest.data(), &length);
    const Handle<gchar, g_free> encoded(g_base64_encode(digest.data(), length));
    return std::string("sha256-") + encoded.get();
}

std::string PreviewPage::updateScript(std::string_view body) {
    std::string script = "updateContent(`";
    script.reserve(body.size() + body.size() / 64 + 32);
    for (std::size_t position = 0; position < body.size(); ++position) {
        const char character = body[position];
        const bool opensExpression = character == '$' && body.substr(position + 1, 1) == "{";
        if (character == '\\' || character == '`' || opensExpression) script += '\\';
        script += character;
    }
    return script += "`);";
}

std::string PreviewPage::scrollScript(double percent) {
    std::array<char, G_ASCII_DTOSTR_BUF_SIZE> number{};
    g_ascii_dtostr(number.data(), static_cast<int>(number.size()), percent);
    return std::string("scrollToPercent(") + number.data() + ");";
}

std::string PreviewPage::jumpScript(std::string_view fragment) {
    std::string script = "document.getElementById('";
    for (const char character : fragment) {
        if (character == '\'' || character == '\\') script += '\\';
        if (character == '\n') {
            script += "\\n";
        } else if (character == '\r') {
            script += "\\r";
        } else {
            script += character;
        }
    }
    return script += "')?.scrollIntoView({behavior:'smooth'});";
}

}  // namespace corvel
