#pragma once

#include <ostream>
#include <string>

#include <gmock/gmock.h>

#include "qel/cachefile/CacheFileChecker.h"
#include "tools/cachefile/CacheFileBuilder.h"

namespace Qel::Tool {

inline void PrintTo(const Finding& finding, std::ostream* out) {
    *out << nameOf(finding.kind) << " at " << finding.offset << ": " << finding.text;
}

} // namespace Qel::Tool

inline Qel::Tool::Findings findingsIn(const CacheFileBuilder& file) {
    return Qel::Tool::checkCacheFile(file.bytes()).findings;
}

inline auto isFinding(Qel::Tool::FindingKind kind, std::uint64_t offset, const std::string& text) {
    using Qel::Tool::Finding;
    using testing::Field;
    return testing::AllOf(Field("kind", &Finding::kind, kind), Field("offset", &Finding::offset, offset),
                          Field("text", &Finding::text, testing::HasSubstr(text)));
}

/// Expects exactly one finding; consequential errors must be suppressed.
template <class Expected> void expectOnly(const CacheFileBuilder& file, const Expected& expected) {
    EXPECT_THAT(findingsIn(file), testing::ElementsAre(expected));
}
