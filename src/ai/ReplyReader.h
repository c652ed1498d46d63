#pragma once

#include "ai/ReplyFormat.h"
#include "ai/TextStream.h"
#include "platform/HttpClient.h"

#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

namespace corvel {

/// Reads one answer: lines of server-sent events in, pieces of text and at last the end out.
class ReplyReader {
public:
    /// What would repeat `key` in an error is left out.
    ReplyReader(const ReplyFormat& format, std::string key, TextStream::Handler handler);

    /// Sends `request` and reads its answer.
    static std::unique_ptr<TextStream> ask(const HttpClient& http,
                                           HttpRequest request,
                                           const ReplyFormat& format,
                                           std::string key,
                                           TextStream::Handler handler);

    void status(unsigned status) { m_status = status; }
    void line(std::string_view line);
    void ended(const std::optional<HttpError>& error);

private:
    void errorLine(std::string_view line);
    void end(const std::optional<AIError>& error);
    std::string withoutKey(std::string text) const;

    ReplyFormat m_format;
    std::string m_key;
    TextStream::Handler m_handler;
    unsigned m_status = 0;
    std::string m_errorBody;
    std::size_t m_errorLines = 0;
    bool m_isOver = false;
};

}  // namespace corvel
