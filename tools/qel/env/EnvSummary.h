#pragma once

#include <array>
#include <iosfwd>
#include <optional>
#include <string>
#include <vector>

#include "QelFunctionalityCore/Environment/QelEnv.h"

namespace Qel::Tool {

/// What the lists show of an environment.
struct EnvSummary {
    QelEID eid;
    QelEID parent;
    std::optional<std::string> type;
    QelEnvStatus status;
    std::string title;
    std::array<int, qelAlertReasonCount> alerts{};
    unsigned configSize = 0;  ///< bytes
    unsigned vconfigSize = 0; ///< bytes
};

[[nodiscard]] EnvSummary summarise(const QelEnv& env);

/// One line for each environment.
void printAsTable(std::ostream& out, const std::vector<EnvSummary>& all);

/// One line for each environment, below its parent and drawn as a tree.  Those whose parent isn't among `all` stand at
/// the left, and of a circle of parents one.
void printAsTree(std::ostream& out, const std::vector<EnvSummary>& all);

void printAsJson(std::ostream& out, const std::vector<EnvSummary>& all);

} // namespace Qel::Tool
