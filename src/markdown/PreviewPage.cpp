#include "markdown/PreviewPage.h"

#include "markdown/HtmlEscape.h"
#include "markdown/ScriptHash.h"

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

// The piece is parsed by itself: it begins and ends where the parser of the whole body stands at
// the top with nothing open.
constexpr std::string_view kReplace = R"js((function(first, end, html) {
    var content = document.getElementById('content');
    var parsed = content.cloneNode(false);
    parsed.innerHTML = html;
    var range = document.createRange();
    range.setStart(content, first);
    range.setEnd(content, end);
    range.deleteContents();
    var next = content.childNodes[first] || null;
    while (parsed.firstChild) content.insertBefore(parsed.firstChild, next);
}))js";

// A place that was asked for holds until every image is there or the reader scrolls; otherwise the
// block at the window's top stays where it is when something above it grows. An image that is in
// the new body too is put in its twin's place before anything is laid out: the page does not jump.
constexpr const char* kKeepPlace = R"js((function() {
    var content = document.getElementById('content');
    var scrollToShare = scrollToPercent;
    var held = null, put = -1, putAt = 0, anchor = null, anchorTop = 0;
    function isWaiting() {
        return Array.prototype.some.call(document.images, function(image) { return !image.complete; });
    }
    function findAnchor() {
        var blocks = content.children, low = 0, high = blocks.length;
        while (low < high) {
            var middle = (low + high) >> 1;
            if (blocks[middle].getBoundingClientRect().bottom > 0) high = middle; else low = middle + 1;
        }
        anchor = blocks[low] || null;
        if (anchor) anchorTop = anchor.getBoundingClientRect().top;
    }
    scrollToPercent = function(pct) {
        scrollToShare(pct);
        held = isWaiting() ? pct : null;
        put = window.scrollY;
        putAt = performance.now();
    };
    window.addEventListener('scroll', function() {
        if (window.scrollY === 0 && put > 0 && performance.now() - putAt < 500) {
            _isApplyingScroll = true;
            window.scrollTo(0, put);
            setTimeout(function() { _isApplyingScroll = false; }, 50);
            put = -1;
            return;
        }
        if (window.scrollY !== put) held = null;
        findAnchor();
    }, true);
    document.addEventListener('load', function() {
        if (held !== null) {
            scrollToPercent(held);
            return;
        }
        if (!anchor || !anchor.isConnected || window.scrollY <= 0) return;
        var moved = anchor.getBoundingClientRect().top - anchorTop;
        if (Math.abs(moved) < 1) return;
        _isApplyingScroll = true;
        window.scrollBy(0, moved);
        setTimeout(function() { _isApplyingScroll = false; }, 50);
    }, true);
    new MutationObserver(function(changes) {
        var old = new Map();
        changes.forEach(function(change) {
            change.removedNodes.forEach(function(node) {
                if (node.nodeType !== 1) return;
                var images = node.tagName === 'IMG' ? [node] : node.getElementsByTagName('img');
                Array.prototype.forEach.call(images, function(image) {
                    if (image.complete) old.set(image.getAttribute('src'), image);
                });
            });
        });
        if (old.size > 0) content.querySelectorAll('img').forEach(function(image) {
            var twin = old.get(image.getAttribute('src'));
            if (image.complete || !twin || !twin.isEqualNode(image)) return;
            old.delete(image.getAttribute('src'));
            image.replaceWith(twin);
        });
        if (isWaiting()) findAnchor(); else requestAnimationFrame(findAnchor);
    }).observe(content, {childList: true});
})();)js";

/// What stands in a template literal as `text`.
void appendLiteral(std::string& script, std::string_view text) {
    for (std::size_t position = 0; position < text.size(); ++position) {
        const char character = text[position];
        const bool opensExpression = character == '$' && text.substr(position + 1, 1) == "{";
        if (character == '\\' || character == '`' || opensExpression) script += '\\';
        script += character;
    }
}

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
    return scriptHashOf(kScript);
}

std::string PreviewPage::updateScript(std::string_view body) {
    std::string script = "updateContent(`";
    script.reserve(body.size() + body.size() / 64 + 32);
    appendLiteral(script, body);
    return script += "`);";
}

std::string PreviewPage::replaceScript(std::size_t firstNode,
                                       std::size_t endNode,
                                       std::string_view html) {
    std::string script(kReplace);
    script.append("(").append(std::to_string(firstNode)).append(", ");
    script.append(std::to_string(endNode)).append(", `");
    appendLiteral(script, html);
    return script += "`);";
}

const std::string& PreviewPage::placeScript() {
    static const std::string script = kKeepPlace;
    return script;
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
