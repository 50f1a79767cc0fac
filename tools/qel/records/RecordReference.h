#pragma once

#include <string>
#include <vector>

namespace Qel::Tool {

/// A page of the reference of record types.
struct ReferencePage {
    std::string file; ///< file name
    std::string text; ///< Markdown
};

/// Generates a page for each record type from its table, and index.md, which lists all types.
[[nodiscard]] std::vector<ReferencePage> referencePages();

} // namespace Qel::Tool
