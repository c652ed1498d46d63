#pragma once

#include "platform/Uuid.h"

#include <string>
#include <string_view>
#include <vector>

namespace corvel {

/// The page that shows messages, and the scripts that are run in it. Each message is an article
/// with its rendered text; those of the assistant have buttons below. A button posts
/// "verb id" to the handler `messageHandler`.
class MessagePage {
public:
    /// What the page says by itself.
    struct Labels {
        std::string user;  ///< who wrote a message, for assistive technology
        std::string assistant;
        std::string waiting;  ///< while nothing of a reply has come
        std::string copy;
        std::string insert;
        std::string replace;
    };

    static constexpr const char* kHandler = "messageHandler";

    /// The page without a message. Nothing in `stylesheet` gets out of its style element.
    static std::string html(std::string_view stylesheet);
    /// "sha256-…" of the page's script: what a content security policy names to let it run.
    static std::string scriptHash();

    static std::string labelScript(const Labels& labels);
    static std::string clearScript();
    /// A new message at the end, still empty.
    static std::string addScript(const Uuid& id, std::string_view role, bool hasActions);
    /// `ended` goes behind what ended before, `open` in the place of what was open.
    static std::string growScript(const Uuid& id, std::string_view ended, std::string_view open);
    /// The text of a message anew.
    static std::string wholeScript(const Uuid& id, std::string_view body);
    /// Its buttons show when the message is complete.
    static std::string stateScript(const Uuid& id, bool isStreaming);
    /// These messages, and no others, offer to replace the selection.
    static std::string replaceableScript(const std::vector<Uuid>& ids);
};

}  // namespace corvel
