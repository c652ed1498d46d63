#pragma once

#include "platform/Handle.h"

#include <libxml/tree.h>

#include <optional>
#include <string>
#include <string_view>

namespace corvel {

using XmlDocument = Handle<xmlDoc, xmlFreeDoc>;

// The library's texts are bytes of another type; here they are views and strings.

inline std::string_view nameOf(const xmlNode* node) {
    return reinterpret_cast<const char*>(node->name);
}

inline bool isElement(const xmlNode* node) {
    return node->type == XML_ELEMENT_NODE;
}

inline bool isElement(const xmlNode* node, std::string_view name) {
    return isElement(node) && nameOf(node) == name;
}

inline const xmlChar* xmlText(const char* text) {
    return reinterpret_cast<const xmlChar*>(text);
}

inline const xmlChar* xmlText(const std::string& text) {
    return xmlText(text.c_str());
}

std::optional<std::string> attributeOf(const xmlNode* node, const char* name);
void setAttribute(xmlNode* node, const char* name, const std::string& value);

/// The text of `node` and everything in it.
std::string textContentOf(const xmlNode* node);

bool isBlankText(const xmlNode* node);

}  // namespace corvel
