#pragma once

#include <string>
#include <vector>

namespace Qel::Tool {

/// A page of the reference of record types, in Markdown.
struct ReferencePage {
    std::string file; ///< its name
    std::string text;
};

/// A page for each record type, made from its table, and index.md, which lists them.
[[nodiscard]] std::vector<ReferencePage> referencePages();

} // namespace Qel::Tool
