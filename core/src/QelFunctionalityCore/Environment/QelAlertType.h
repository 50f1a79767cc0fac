#pragma once

#include "QelCommon/Export.h"
#include "QelMessage/QelMessageIterator.h"

namespace Qel {

/// How far an environment is outside its normal range.
enum class QelAlertType : int { green = 0, yellow = 1, red = 2, black = 3 };

/// The subject of an alert level: an index into the levels of an environment, below `qelAlertReasonCount`.  The agent
/// defines the meaning of each reason.
enum class QelAlertReason : int {};

inline constexpr int qelAlertReasonCount = 5;

/// Reads an alert level from the current element.  For anything but 0 to 3, returns -1 and leaves the level unchanged.
struct QEL_EXPORT QelAlertTypeReader {
    int operator()(const QelMessageIterator& cursor, QelAlertType& type) const;
};

/// Writes an alert level as the value of the current element.
struct QEL_EXPORT QelAlertTypeWriter : QelWriterBase {
    int operator()(QelMessageIterator& cursor, const QelAlertType& type) const;
};

} // namespace Qel
