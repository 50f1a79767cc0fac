#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include <pugixml.hpp>

namespace Qel {

/// A parsed document. It is well-formed; references in its character data and attributes are not replaced. Public
/// headers must not include this header.
class QelXmlDocument {
public:
    explicit QelXmlDocument(std::string_view text) noexcept : m_text(text) {}

    /// Parse a document or the content of an element. Return false with an error message if the text is not well-formed
    /// or has a document type declaration, which could refer to external entities.
    [[nodiscard]] bool parseDocument();
    [[nodiscard]] bool parseContent();

    [[nodiscard]] pugi::xml_node node() const noexcept { return m_document.root(); }
    /// The root element of a document.
    [[nodiscard]] pugi::xml_node element() const noexcept { return m_document.document_element(); }

    /// Stores an error message with the line and column of a location in the text. Always returns false.
    [[nodiscard]] bool fail(std::size_t offset, const std::string& what) const;
    [[nodiscard]] bool fail(pugi::xml_node place, const std::string& what) const;

private:
    [[nodiscard]] bool parse();
    [[nodiscard]] bool checkDeclaration(pugi::xml_node declaration) const;

    std::string_view m_text;
    pugi::xml_document m_document;
};

/// The namespace declarations in scope at the current element.
class QelXmlScope {
public:
    /// Enter and leave an element.
    void enter() { m_undo.emplace_back(); }
    void leave();
    void declare(std::string_view prefix, std::string uri);
    /// The URI of a prefix, or the default namespace for an empty prefix; null if it is not declared.
    [[nodiscard]] const std::string* find(std::string_view prefix) const;

private:
    std::unordered_map<std::string, std::vector<std::string>> m_uris;
    std::vector<std::vector<std::string>> m_undo; // prefixes declared by each open element
};

} // namespace Qel
