#include "markdown/EmailMessage.h"

#include "markdown/EmailImages.h"
#include "platform/Handle.h"
#include "platform/Text.h"

#include <glib.h>

#include <algorithm>
#include <array>
#include <cstdio>

namespace corvel {

namespace {

constexpr std::string_view kLineEnd = "\r\n";
constexpr std::size_t kLineLength = 76;
constexpr std::size_t kWordBytes = 42;       // 56 letters of Base64 and 12 around them
constexpr std::size_t kFirstWordBytes = 36;  // beside the header's name
// No line of Base64 holds an underscore.
constexpr std::string_view kAlternatives = "=_corvel_alternatives";
constexpr std::string_view kRelated = "=_corvel_related";

std::string onOneLine(std::string text) {
    std::ranges::replace_if(
        text, [](char letter) { return letter >= '\0' && letter < ' '; }, ' ');
    return text;
}

/// The line ends that text has in a message, also inside an encoding.
std::string withLineEnds(std::string_view text) {
    std::string lines;
    lines.reserve(text.size() + text.size() / 16);
    for (const char letter : text) {
        if (letter == '\n' && !lines.ends_with('\r')) lines += '\r';
        lines += letter;
    }
    return lines;
}

std::string base64Of(std::string_view bytes) {
    const Handle<char, g_free> encoded(
        g_base64_encode(reinterpret_cast<const guchar*>(bytes.data()), bytes.size()));
    return encoded.get();
}

bool isPlainHeader(std::string_view text) {
    return text.size() < 60 && text.find("=?") == std::string_view::npos &&
           std::ranges::all_of(text, [](char letter) { return letter >= ' ' && letter < '\x7F'; });
}

/// A header's text as RFC 2047 writes it, folded between characters.
std::string headerText(std::string_view text) {
    if (isPlainHeader(text)) return std::string(text);
    std::string words;
    while (!text.empty()) {
        const std::string_view piece =
            text::prefixByBytes(text, words.empty() ? kFirstWordBytes : kWordBytes);
        text.remove_prefix(piece.size());
        if (!words.empty()) words.append(kLineEnd).append(" ");
        words.append("=?UTF-8?B?").append(base64Of(piece)).append("?=");
    }
    return words;
}

/// RFC 5322's form, in English whatever the language.
std::string headerDate(Date date) {
    constexpr std::array kDays{"Mon", "Tue", "Wed", "Thu", "Fri", "Sat", "Sun"};
    constexpr std::array kMonths{"Jan", "Feb", "Mar", "Apr", "May", "Jun",
                                 "Jul", "Aug", "Sep", "Oct", "Nov", "Dec"};
    const Handle<GDateTime, g_date_time_unref> utc(g_date_time_new_from_unix_utc(date.seconds()));
    std::array<char, 64> text{};
    std::snprintf(text.data(), text.size(), "%s, %02d %s %04d %02d:%02d:%02d +0000",
                  kDays[static_cast<std::size_t>(g_date_time_get_day_of_week(utc.get()) - 1)],
                  g_date_time_get_day_of_month(utc.get()),
                  kMonths[static_cast<std::size_t>(g_date_time_get_month(utc.get()) - 1)],
                  g_date_time_get_year(utc.get()), g_date_time_get_hour(utc.get()),
                  g_date_time_get_minute(utc.get()), g_date_time_get_second(utc.get()));
    return text.data();
}

class MessageWriter {
public:
    void header(std::string_view name, std::string_view value) {
        m_text.append(name).append(": ").append(value).append(kLineEnd);
    }
    void multipart(std::string_view type, std::string_view boundary) {
        m_text.append("Content-Type: ").append(type).append(";").append(kLineEnd);
        m_text.append(" boundary=\"").append(boundary).append("\"").append(kLineEnd);
        m_text.append(kLineEnd);
    }
    void open(std::string_view boundary) { m_text.append("--").append(boundary).append(kLineEnd); }
    void close(std::string_view boundary) {
        m_text.append("--").append(boundary).append("--").append(kLineEnd);
    }
    void textPart(std::string_view type, std::string_view text) {
        header("Content-Type", std::string(type) + "; charset=utf-8");
        body(base64Of(withLineEnds(text)));
    }
    void imagePart(const EmailImage& image) {
        header("Content-Type", image.mimeType);
        header("Content-ID", "<" + image.contentID + ">");
        header("Content-Disposition", "inline");
        body(image.base64);
    }
    std::string take() { return std::move(m_text); }

private:
    void body(std::string_view base64) {
        header("Content-Transfer-Encoding", "base64");
        m_text.append(kLineEnd);
        for (; !base64.empty(); base64.remove_prefix(std::min(kLineLength, base64.size()))) {
            m_text.append(base64.substr(0, kLineLength)).append(kLineEnd);
        }
    }

    std::string m_text;
};

void writeHtml(MessageWriter& message, std::string_view html) {
    const auto content = EmailImages::takenFrom(html);
    if (content.images.empty()) return message.textPart("text/html", html);
    message.multipart("multipart/related; type=\"text/html\"", kRelated);
    message.open(kRelated);
    message.textPart("text/html", content.html);
    for (const EmailImage& image : content.images) {
        message.open(kRelated);
        message.imagePart(image);
    }
    message.close(kRelated);
}

}  // namespace

std::string emailMessage(const EmailParts& parts) {
    MessageWriter message;
    message.header("Subject", headerText(onOneLine(text::repaired(parts.subject))));
    message.header("Date", headerDate(parts.date));
    message.header("MIME-Version", "1.0");
    message.header("X-Unsent", "1");
    message.multipart("multipart/alternative", kAlternatives);
    message.open(kAlternatives);
    message.textPart("text/plain", parts.plainText);
    message.open(kAlternatives);
    writeHtml(message, parts.html);
    message.close(kAlternatives);
    return message.take();
}

}  // namespace corvel
