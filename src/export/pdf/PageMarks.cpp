#include "export/pdf/PageMarks.h"

#include <glib.h>
#include <nlohmann/json.hpp>

#include <algorithm>
#include <bitset>
#include <charconv>

namespace corvel {

namespace {

constexpr std::string_view kScript = R"js(
const patience = new Promise(resolve => setTimeout(resolve, 20000));
const images = Array.from(document.images, image => {
    image.loading = 'eager';
    return image.decode().catch(() => {});
});
await Promise.race([patience, Promise.all(images)]);
// A heading stays with what it heads: room for that is kept free below it, and taken back.
const room = 72;
const kept = Array.from(document.querySelectorAll('h1,h2,h3,h4,h5,h6'), heading => {
    const margin = (element, side) => element ? parseFloat(getComputedStyle(element)[side]) || 0 : 0;
    const shared = Math.min(margin(heading, 'marginBottom'),
                            margin(heading.nextElementSibling, 'marginTop'));
    return {heading, below: heading.nextElementSibling ? -room - shared : null};
});
for (const {heading, below} of kept) {
    if (below === null) continue;
    const keeper = document.createElement('div');
    keeper.style.cssText = 'break-inside: avoid; padding-bottom: ' + room + 'px; margin-bottom: ' +
        below + 'px';
    heading.replaceWith(keeper);
    keeper.append(heading);
}
const marks = [];
const seen = new Set();
const mark = (element, record) => {
    if (seen.has(element) || marks.length >= most) return;
    seen.add(element);
    const color = 'rgb(' + red + ',' + (marks.length >> 8) + ',' + (marks.length & 255) + ')';
    for (const painted of [element, ...element.querySelectorAll('img')]) {
        painted.style.setProperty('background', color, 'important');
        painted.style.setProperty('border-radius', '0', 'important');
        painted.style.setProperty('-webkit-print-color-adjust', 'exact', 'important');
    }
    marks.push(record);
};
// A target in which nothing shows, as an empty anchor, is marked by a place before it. The page is
// not laid out yet: what it holds must tell.
const visible = target => {
    const shows = target.textContent.trim() !== '' || target.matches('img') || target.querySelector('img');
    if (seen.has(target) || shows) return target;
    const place = document.createElement('span');
    place.style.cssText = 'position: absolute; width: 1px; height: 1em';
    target.before(place);
    seen.add(target);
    return place;
};
for (const heading of document.querySelectorAll('h1,h2,h3,h4,h5,h6')) {
    const text = heading.textContent.replace(/\s+/g, ' ').trim();
    mark(heading, {id: heading.id, level: Number(heading.localName[1]), text});
}
for (const link of document.querySelectorAll('a[href]')) {
    const href = link.getAttribute('href');
    mark(link, {href});
    if (!href.startsWith('#')) continue;
    let id = href.substring(1);
    try { id = decodeURIComponent(id); } catch (error) {}
    const target = id && (document.getElementById(id) || document.getElementsByName(id)[0]);
    if (target) mark(visible(target), {id});
}
// Each page is drawn by a walk over all blocks that lie side by side: on shelves it is a short one.
const shelfLength = 100;
let shelf = null;
for (const node of Array.from(document.body.childNodes)) {
    const isFull = shelf === null || shelf.childNodes.length >= shelfLength;
    if (isFull && node instanceof Element && getComputedStyle(node).display === 'block') {
        shelf = document.createElement('div');
        node.before(shelf);
    }
    if (shelf !== null) shelf.append(node);
}
return JSON.stringify(marks);
)js";

using Reds = std::bitset<256>;

void addNumber(Reds& named, std::string_view text, int base) {
    unsigned red = 0;
    std::from_chars(text.data(), text.data() + text.size(), red, base);
    if (red < named.size()) named.set(red);
}

bool isColorFunction(std::string_view before) {
    const auto is = [before](std::string_view name) {
        const auto end = before.substr(before.size() - std::min(before.size(), name.size()));
        return std::ranges::equal(end, name, {}, g_ascii_tolower);
    };
    return is("rgb") || is("rgba");
}

/// The red parts of the colours that the page names by their numbers. Embedded pictures have none
/// of the signs that are looked for, so they are passed as fast as memory is read.
Reds redsIn(std::string_view page) {
    Reds named;
    for (auto at = page.find('#'); at != page.npos; at = page.find('#', at + 1))
        addNumber(named, page.substr(at + 1, 2), 16);
    for (auto at = page.find('('); at != page.npos; at = page.find('(', at + 1)) {
        if (!isColorFunction(page.substr(0, at))) continue;
        const auto number = std::min(page.find_first_not_of(" \t\n", at + 1), page.size());
        addNumber(named, page.substr(number, 3), 10);
    }
    return named;
}

}  // namespace

MarkColors MarkColors::unusedIn(std::string_view page) {
    const Reds named = redsIn(page);
    for (int red = 253; red > 128; --red) {
        if (!named.test(static_cast<std::size_t>(red))) return {red};
    }
    return {};
}

std::string markScript(const MarkColors& colors) {
    return "const red = " + std::to_string(colors.red) +
           ", most = " + std::to_string(MarkColors::kMost) + ";" + std::string(kScript);
}

std::vector<PageMark> marksFrom(const std::string& json) {
    const auto list = nlohmann::json::parse(json, nullptr, false);
    if (!list.is_array()) return {};
    std::vector<PageMark> marks;
    const auto text = [](const nlohmann::json& item, const char* key) {
        const auto found = item.find(key);
        return found != item.end() && found->is_string() ? found->get<std::string>()
                                                         : std::string();
    };
    for (const auto& item : list) {
        if (!item.is_object()) return {};
        const auto level = item.find("level");
        const bool hasLevel = level != item.end() && level->is_number_integer();
        marks.push_back({text(item, "href"), text(item, "id"), hasLevel ? level->get<int>() : 0,
                         text(item, "text")});
    }
    return marks;
}

}  // namespace corvel
