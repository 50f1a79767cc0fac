#include "QelMessage/QelXmlDocument.h"

#include <algorithm>
#include <array>
#include <new>

#include "QelCommon/ErrorMessage.h"
#include "QelCommon/Strings.h"
#include "QelMessage/QelLimits.h"
#include "QelMessage/QelXmlMarkup.h"
#include "QelMessage/QelXmlText.h"

namespace Qel {

namespace {

// References are not decoded by the parser, since it accepts unknown ones as text.
constexpr unsigned parseFlags = pugi::parse_cdata | pugi::parse_ws_pcdata | pugi::parse_eol |
                                pugi::parse_wconv_attribute | pugi::parse_declaration | pugi::parse_doctype |
                                pugi::parse_fragment;

constexpr std::string_view byteOrderMark = "\xEF\xBB\xBF";

} // namespace

bool QelXmlDocument::fail(std::size_t offset, const std::string& what) const {
    const std::string_view before = m_text.substr(0, offset);
    const auto lines = std::ranges::count(before, '\n');
    const std::size_t lineStart = before.rfind('\n') + 1; // 0 on the first line
    const auto isCharacterStart = [](char byte) { return (static_cast<unsigned char>(byte) & 0xC0) != 0x80; };
    const auto column = std::ranges::count_if(before.substr(lineStart), isCharacterStart);
    setErrorMessage("line %lld, column %lld: %s", static_cast<long long>(lines) + 1, static_cast<long long>(column) + 1,
                    what.c_str());
    return false;
}

bool QelXmlDocument::fail(pugi::xml_node place, const std::string& what) const {
    return fail(static_cast<std::size_t>(std::max<std::ptrdiff_t>(place.offset_debug(), 0)), what);
}

bool QelXmlDocument::parse() {
    if (m_text.size() > QelLimits::messageBytes)
        return fail(0, "the text is longer than " + std::to_string(QelLimits::messageBytes) + " bytes");
    if (const std::size_t forbidden = QelXmlText::findForbidden(m_text); forbidden != m_text.size())
        return fail(forbidden, "a character not allowed in XML, or malformed UTF-8");
    if (const auto fault = QelXmlMarkup::findFault(m_text))
        return fail(fault->offset, fault->what);
    const pugi::xml_parse_result result =
        m_document.load_buffer(m_text.data(), m_text.size(), parseFlags, pugi::encoding_utf8);
    if (result.status == pugi::status_out_of_memory)
        throw std::bad_alloc();
    if (!result)
        return fail(static_cast<std::size_t>(result.offset), result.description());
    return true;
}

bool QelXmlDocument::parseDocument() {
    if (!parse())
        return false;
    pugi::xml_node element;
    for (const pugi::xml_node child : m_document) {
        switch (child.type()) {
        case pugi::node_element:
            if (element)
                return fail(child, "more than one root element");
            element = child;
            break;
        case pugi::node_declaration:
            if (!checkDeclaration(child))
                return false;
            break;
        case pugi::node_doctype:
            return fail(child, "document type declarations are not allowed");
        default:
            if (child.type() == pugi::node_cdata || !QelXmlText::isBlank(child.value()))
                return fail(child, "text outside the root element");
            break;
        }
    }
    return element || fail(m_text.size(), "no root element");
}

bool QelXmlDocument::parseContent() {
    if (!parse())
        return false;
    for (const pugi::xml_node child : m_document)
        if (child.type() == pugi::node_declaration || child.type() == pugi::node_doctype)
            return fail(child, "a declaration inside an element");
    return true;
}

bool QelXmlDocument::checkDeclaration(pugi::xml_node declaration) const {
    constexpr std::size_t opening = 2; // "<?"
    const std::size_t start = m_text.starts_with(byteOrderMark) ? byteOrderMark.size() : 0;
    if (static_cast<std::size_t>(declaration.offset_debug()) != start + opening)
        return fail(declaration, "the XML declaration is not at the start of the document");
    constexpr std::array<std::string_view, 3> order{"version", "encoding", "standalone"};
    const auto* next = order.begin();
    for (const pugi::xml_attribute attribute : declaration.attributes()) {
        const auto* const found = std::find(next, order.end(), attribute.name());
        if (found == order.end())
            return fail(declaration, "unknown or misplaced in the XML declaration: " + std::string(attribute.name()));
        next = found + 1;
    }
    if (std::string_view(declaration.attribute("version").value()) != "1.0")
        return fail(declaration, "the XML version is not 1.0");
    const std::string_view standalone = declaration.attribute("standalone").as_string("no");
    if (standalone != "yes" && standalone != "no")
        return fail(declaration, "standalone is neither yes nor no");
    const std::string_view encoding = declaration.attribute("encoding").as_string("UTF-8");
    if (compareNoCase(encoding, "UTF-8") != 0 && compareNoCase(encoding, "US-ASCII") != 0)
        return fail(declaration, "the encoding is not UTF-8");
    return true;
}

void QelXmlScope::leave() {
    for (const std::string& prefix : m_undo.back()) {
        const auto declared = m_uris.find(prefix);
        declared->second.pop_back();
        if (declared->second.empty())
            m_uris.erase(declared);
    }
    m_undo.pop_back();
}

void QelXmlScope::declare(std::string_view prefix, std::string uri) {
    m_uris[std::string(prefix)].push_back(std::move(uri));
    m_undo.back().emplace_back(prefix);
}

const std::string* QelXmlScope::find(std::string_view prefix) const {
    const auto declared = m_uris.find(std::string(prefix));
    return declared == m_uris.end() ? nullptr : &declared->second.back();
}

} // namespace Qel
