#include "export/pdf/PdfPhotos.h"

#include "platform/Handle.h"

#include <glib.h>

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <exception>
#include <iterator>
#include <map>
#include <memory>
#include <set>

namespace corvel {

namespace {

using Object = QPDFObjectHandle;
using Bytes = std::shared_ptr<Buffer>;

std::string decoded(const std::string& base64) {
    gsize size = 0;
    const Handle<guchar, g_free> bytes(g_base64_decode(base64.c_str(), &size));
    return {reinterpret_cast<const char*>(bytes.get()), size};
}

std::size_t countIn(Object dictionary, const char* key) {
    auto value = dictionary.getKey(key);
    return value.isInteger() ? static_cast<std::size_t>(std::max(0LL, value.getIntValue())) : 0;
}

/// Pictures of three colours, by the length of their pixels.
std::multimap<std::size_t, Object> picturesOf(QPDF& pdf) {
    std::multimap<std::size_t, Object> pictures;
    for (auto& object : pdf.getAllObjects()) {
        if (!object.isStream()) continue;
        auto dictionary = object.getDict();
        const auto pixels = countIn(dictionary, "/Width") * countIn(dictionary, "/Height");
        const bool isPlain =
            countIn(dictionary, "/BitsPerComponent") == 8 && !dictionary.hasKey("/DecodeParms");
        if (pixels > 0 && isPlain) pictures.emplace(pixels * 3, object);
    }
    return pictures;
}

/// None for what is no JPEG file after all.
Bytes pixelsOf(Object stream) {
    try {
        return stream.getStreamData(qpdf_dl_all);
    } catch (const std::exception&) {
        return {};
    }
}

bool areSame(const Bytes& one, const Bytes& other) {
    return one && other && one->getSize() == other->getSize() &&
           std::memcmp(one->getBuffer(), other->getBuffer(), one->getSize()) == 0;
}

void restore(QPDF& pdf, std::multimap<std::size_t, Object>& pictures, const std::string& file) {
    const auto filter = Object::newName("/DCTDecode");
    auto photo = Object::newStream(&pdf, file);
    photo.getDict().replaceKey("/Filter", filter);
    const auto pixels = pixelsOf(photo);
    if (!pixels) return;
    const auto [first, last] = pictures.equal_range(pixels->getSize());
    for (auto picture = first; picture != last;) {
        const auto next = std::next(picture);
        if (areSame(pixelsOf(picture->second), pixels)) {
            picture->second.replaceStreamData(file, filter, Object::newNull());
            pictures.erase(picture);
        }
        picture = next;
    }
}

// Each search is as fast as memory is read, and none goes on behind what another found.
std::size_t endOfAddress(std::string_view page, std::size_t from) {
    for (const char end : {'"', '\'', ')'})
        page = page.substr(0, page.find(end, from));
    return page.size();
}

}  // namespace

std::vector<std::string> photosIn(std::string_view page) {
    constexpr std::string_view kStart = "data:image/jp";
    constexpr std::string_view kEnd = "g;base64,";
    std::set<std::string_view> found;
    for (auto at = page.find(kStart); at != page.npos; at = page.find(kStart, at)) {
        at += kStart.size();
        if (page.substr(at, 1) == "e") ++at;
        if (!page.substr(at).starts_with(kEnd)) continue;
        at += kEnd.size();
        const auto end = endOfAddress(page, at);
        found.insert(page.substr(at, end - at));
        at = end;
    }
    return {found.begin(), found.end()};
}

void restorePhotos(QPDF& pdf, const std::vector<std::string>& photos) {
    if (photos.empty()) return;
    auto pictures = picturesOf(pdf);
    for (const auto& photo : photos)
        restore(pdf, pictures, decoded(photo));
}

}  // namespace corvel
