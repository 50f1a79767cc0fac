#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include <pugixml.hpp>

namespace Qel {

/// A parsed text.  It is well-formed; references in its texts and attributes are not replaced yet.  Not for public
/// headers.
class QelXmlDocument {
public:
    explicit QelXmlDocument(std::string_view text) noexcept : m_text(text) {}

    /// Parses one element with a declaration before it, or anything that may stand in an element.  False, with an error
    /// message, if the text isn't well-formed, or holds a document type, which would let it reach outside itself.
    [[nodiscard]] bool parseDocument();
    [[nodiscard]] bool parseContent();

    [[nodiscard]] pugi::xml_node node() const noexcept { return m_document.root(); }
    /// The element of a document.
    [[nodiscard]] pugi::xml_node element() const noexcept { return m_document.document_element(); }

    /// Stores an error message with line and column of a place in the text.  Always false.
    [[nodiscard]] bool fail(std::size_t offset, const std::string& what) const;
    [[nodiscard]] bool fail(pugi::xml_node place, const std::string& what) const;

private:
    [[nodiscard]] bool parse();
    [[nodiscard]] bool checkDeclaration(pugi::xml_node declaration) const;

    std::string_view m_text;
    pugi::xml_document m_document;
};

/// The namespace declarations that are in force while a document is walked.
class QelXmlScope {
public:
    /// Goes into an element, and out of it.
    void enter() { m_undo.emplace_back(); }
    void leave();
    void declare(std::string_view prefix, std::string uri);
    /// The URI of a prefix, or of no prefix; null if there is none.
    [[nodiscard]] const std::string* find(std::string_view prefix) const;

private:
    std::unordered_map<std::string, std::vector<std::string>> m_uris;
    std::vector<std::vector<std::string>> m_undo; // the prefixes that each open element has declared
};

} // namespace Qel
