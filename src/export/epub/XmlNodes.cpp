#include "export/epub/XmlNodes.h"

namespace corvel {

namespace {

using XmlString = Handle<xmlChar, [](xmlChar* text) { xmlFree(text); }>;

}  // namespace

std::optional<std::string> attributeOf(const xmlNode* node, const char* name) {
    const XmlString value(xmlGetNoNsProp(node, xmlText(name)));
    if (!value) return std::nullopt;
    return reinterpret_cast<const char*>(value.get());
}

void setAttribute(xmlNode* node, const char* name, const std::string& value) {
    xmlSetProp(node, xmlText(name), xmlText(value));
}

std::string textContentOf(const xmlNode* node) {
    const XmlString text(xmlNodeGetContent(node));
    return text ? reinterpret_cast<const char*>(text.get()) : "";
}

bool isBlankText(const xmlNode* node) {
    return node->type == XML_TEXT_NODE && xmlIsBlankNode(node) != 0;
}

}  // namespace corvel
