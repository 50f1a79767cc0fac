#pragma once

#include "QelMessage/QelMessageIterator.h"

namespace Qel {

/// How far an environment has left its normal range.
enum class QelAlertType : int { green = 0, yellow = 1, red = 2, black = 3 };

/// What an alert level is about: an index into the levels of an environment, below `qelAlertReasonCount`.  What the
/// reasons stand for is settled by the agent.
enum class QelAlertReason : int {};

inline constexpr int qelAlertReasonCount = 5;

/// Reads an alert level from the current element; -1, and the level as it was, for anything but 0 to 3.
struct QelAlertTypeReader {
    int operator()(const QelMessageIterator& cursor, QelAlertType& type) const;
};

/// Writes an alert level as the value of the current element.
struct QelAlertTypeWriter : QelWriterBase {
    int operator()(QelMessageIterator& cursor, const QelAlertType& type) const;
};

} // namespace Qel
