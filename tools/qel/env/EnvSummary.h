#pragma once

#include <array>
#include <iosfwd>
#include <optional>
#include <string>
#include <vector>

#include "QelFunctionalityCore/Environment/QelEnv.h"
#include "qel/cli/Json.h"

namespace Qel::Tool {

/// The properties of an environment that listings show.
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

/// Prints one line for each environment.
void printAsTable(std::ostream& out, const std::vector<EnvSummary>& all);

/// Prints one line for each environment, as a tree of parents and children.  The roots are the environments whose
/// parent is not in `all`, and one environment of each cycle of parents.
void printAsTree(std::ostream& out, const std::vector<EnvSummary>& all);

/// An array with one object per environment.
[[nodiscard]] Json toJson(const std::vector<EnvSummary>& all);

} // namespace Qel::Tool
