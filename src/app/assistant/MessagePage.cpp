#include "app/assistant/MessagePage.h"

#include "markdown/HtmlEscape.h"
#include "markdown/ScriptHash.h"
#include "platform/Handle.h"

#include <glib.h>
#include <nlohmann/json.hpp>

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

constexpr std::string_view kBeforeScript = R"html(</style>
</head>
<body>
    <main id="messages"></main>
    <script>)html";

// Of a message's text only what Markdown makes is kept, and nothing in it is asked for by name: it
// may hold any name. Images are shown by their description: their addresses could carry away what
// the reader wrote. The page stays at its end until the reader scrolls away from there. The
// keyboard finds the newest reply's buttons first; the page shows when it has the focus itself.
constexpr std::string_view kScript = R"js(
const messages = (function() {
    const list = document.getElementById('messages');
    const root = document.scrollingElement;
    const items = new Map();
    let labels = {};
    let follows = true;
    let shownTop = 0;
    function atEnd() {
        return root.scrollHeight - root.scrollTop - window.innerHeight < 24;
    }
    function settle() {
        if (follows) root.scrollTop = root.scrollHeight;
        shownTop = root.scrollTop;
    }
    window.addEventListener('scroll', function() {
        if (root.scrollTop < shownTop - 1) follows = atEnd();
        else if (atEnd()) follows = true;
        shownTop = root.scrollTop;
    });
    window.addEventListener('resize', settle);
    function showFocus() {
        root.classList.toggle('focused', document.hasFocus() && document.activeElement === document.body);
    }
    ['focus', 'blur', 'focusin', 'focusout'].forEach(function(name) { window.addEventListener(name, showFocus); });
    window.addEventListener('pointerdown', function() { root.classList.remove('focused'); });
    function post(verb, id) {
        window.webkit.messageHandlers.messageHandler.postMessage(verb + ' ' + id);
    }
    const kept = ['a', 'b', 'blockquote', 'br', 'code', 'dd', 'del', 'div', 'dl', 'dt', 'em', 'h1', 'h2',
        'h3', 'h4', 'h5', 'h6', 'hr', 'i', 'kbd', 'li', 'mark', 'ol', 'p', 'pre', 's', 'span', 'strong',
        'sub', 'sup', 'table', 'tbody', 'td', 'th', 'thead', 'tr', 'u', 'ul'];
    const hidden = ['script', 'style', 'template', 'title', 'noscript', 'iframe', 'object'];
    const keptAttributes = ['href', 'title', 'align', 'start'];
    function cleaned(element) {
        const tag = element.localName;
        const text = document.createElement('span');
        if (tag === 'img') {
            text.className = 'image';
            text.textContent = element.getAttribute('alt') || element.getAttribute('src') || '';
            element.replaceWith(text);
        } else if (tag === 'input') {
            text.textContent = element.hasAttribute('checked') ? '\u2611 ' : '\u2610 ';
            element.replaceWith(text);
        } else if (kept.indexOf(tag) < 0) {
            if (hidden.indexOf(tag) < 0) text.textContent = element.textContent;
            element.replaceWith(text);
        } else {
            element.getAttributeNames().forEach(function(name) {
                if (keptAttributes.indexOf(name) < 0) element.removeAttribute(name);
            });
        }
    }
    function parsed(html) {
        const page = new DOMParser().parseFromString(html, 'text/html');
        const part = document.createElement('div');
        page.body.querySelectorAll('*').forEach(cleaned);
        while (page.body.firstChild) part.appendChild(page.body.firstChild);
        return part;
    }
    function button(item, verb) {
        const made = document.createElement('button');
        made.type = 'button';
        made.addEventListener('click', function() { post(verb, item.id); });
        item.actions.appendChild(made);
        item.buttons[verb] = made;
    }
    function name(item) {
        item.article.setAttribute('aria-label', labels[item.role] || '');
        item.wait.textContent = labels.waiting || '';
        for (const verb in item.buttons) item.buttons[verb].textContent = labels[verb] || '';
    }
    function waiting(item) {
        const isEmpty = !item.ended.hasChildNodes() && !item.open.hasChildNodes();
        item.wait.hidden = !item.streaming || !isEmpty;
        item.article.hidden = !item.streaming && isEmpty;
        item.actions.hidden = item.streaming || isEmpty || !item.buttons.copy;
    }
    return {
        label: function(all) {
            labels = all;
            items.forEach(name);
        },
        clear: function() {
            items.clear();
            list.replaceChildren();
            follows = true;
        },
        add: function(id, role, hasActions) {
            const item = {id: id, role: role, buttons: {}, streaming: false};
            ['article', 'ended', 'open', 'wait', 'actions'].forEach(function(part) {
                item[part] = document.createElement(part === 'article' ? 'article' : 'div');
                if (part === 'article') return;
                item[part].className = part;
                item.article.appendChild(item[part]);
            });
            item.article.className = role;
            item.actions.hidden = true;
            item.wait.hidden = true;
            if (hasActions) ['insert', 'replace', 'copy'].forEach(function(verb) { button(item, verb); });
            if (item.buttons.replace) item.buttons.replace.hidden = true;
            items.set(id, item);
            name(item);
            list.appendChild(item.article);
            if (role === 'user') follows = true;
            settle();
        },
        grow: function(id, ended, open) {
            const item = items.get(id);
            if (!item) return;
            if (ended) item.ended.appendChild(parsed(ended));
            item.open.replaceChildren();
            if (open) item.open.appendChild(parsed(open));
            waiting(item);
            settle();
        },
        whole: function(id, body) {
            const item = items.get(id);
            if (!item) return;
            item.ended.replaceChildren();
            if (body) item.ended.appendChild(parsed(body));
            item.open.replaceChildren();
            waiting(item);
            settle();
        },
        state: function(id, streaming) {
            const item = items.get(id);
            if (!item) return;
            item.streaming = streaming;
            item.article.setAttribute('aria-busy', streaming);
            waiting(item);
            if (!item.actions.hidden && !document.hasFocus()) item.buttons.copy.focus({preventScroll: true});
            settle();
        },
        replaceable: function(ids) {
            items.forEach(function(item) {
                if (item.buttons.replace) item.buttons.replace.hidden = ids.indexOf(item.id) < 0;
            });
            settle();
        }
    };
})();
)js";

constexpr std::string_view kEnd = R"html(</script>
</body>
</html>)html";

/// A literal of the script's language, whatever the bytes.
std::string literal(std::string_view text) {
    using Json = nlohmann::json;
    return Json(text).dump(-1, ' ', false, Json::error_handler_t::replace);
}

template <typename... Arguments>
std::string call(const char* function, const Arguments&... arguments) {
    std::string script = std::string("messages.") + function + "(";
    std::size_t count = 0;
    ((script += (count++ > 0 ? "," : "") + std::string(arguments)), ...);
    return script += ");";
}

const char* boolean(bool value) {
    return value ? "true" : "false";
}

}  // namespace

std::string MessagePage::html(std::string_view stylesheet) {
    const std::string style = styleText(stylesheet);
    std::string page;
    for (const std::string_view piece :
         {kHead, std::string_view(style), kBeforeScript, kScript, kEnd}) {
        page += piece;
    }
    return page;
}

std::string MessagePage::scriptHash() {
    return scriptHashOf(kScript);
}

std::string MessagePage::labelScript(const Labels& labels) {
    const nlohmann::json all{{"user", labels.user},       {"assistant", labels.assistant},
                             {"waiting", labels.waiting}, {"copy", labels.copy},
                             {"insert", labels.insert},   {"replace", labels.replace}};
    return call("label", all.dump());
}

std::string MessagePage::clearScript() {
    return call("clear");
}

std::string MessagePage::addScript(const Uuid& id, std::string_view role, bool hasActions) {
    return call("add", literal(id.toString()), literal(role), boolean(hasActions));
}

std::string MessagePage::growScript(const Uuid& id, std::string_view ended, std::string_view open) {
    return call("grow", literal(id.toString()), literal(ended), literal(open));
}

std::string MessagePage::wholeScript(const Uuid& id, std::string_view body) {
    return call("whole", literal(id.toString()), literal(body));
}

std::string MessagePage::stateScript(const Uuid& id, bool isStreaming) {
    return call("state", literal(id.toString()), boolean(isStreaming));
}

std::string MessagePage::replaceableScript(const std::vector<Uuid>& ids) {
    nlohmann::json all = nlohmann::json::array();
    for (const auto& id : ids)
        all.push_back(id.toString());
    return call("replaceable", all.dump());
}

}  // namespace corvel
