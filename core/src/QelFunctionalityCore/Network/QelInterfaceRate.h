#pragma once

#include <string>

#include "QelMessage/QelRecord.h"

namespace Qel {

/// Bandwidth limit of one traffic class on a network interface.
struct QelInterfaceRate {
    unsigned int rateClass = 0; ///< of the traffic
    long long rate = 0;         ///< 0 for no limit

    /// -1, 0 or 1: by class, then by rate.
    [[nodiscard]] int compare(const QelInterfaceRate& other) const;

    /// "*:CLASS:RATE" in decimal, for the interfaces of every name; empty without a limit.
    [[nodiscard]] std::string toString() const;

    /// Takes class and rate from such a text, whatever stands before the first colon.  1 if nothing does, or no class
    /// follows it.  A text without the second colon leaves the rate; a rate that is no number reads as 0, and one that
    /// doesn't fit as the nearest that does.
    [[nodiscard]] int fromStringEx(const std::string& text);

    using Reader = QelRecordReader<QelInterfaceRate>;
    using Writer = QelRecordWriter<QelInterfaceRate>;
    using reader_type = Reader;
    using writer_type = Writer;
};

} // namespace Qel
