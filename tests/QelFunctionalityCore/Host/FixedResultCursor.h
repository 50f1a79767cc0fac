#pragma once

#include <memory>
#include <string>

#include "QelMessage/QelBinary.h"
#include "QelMessage/QelBinaryIterator.h"

namespace Qel::TestSupport {

/// A cursor at the root of an empty message whose gets by ID return a given result code.
class FixedResultCursor : private std::shared_ptr<QelBinary>, public QelBinaryIterator {
public:
    explicit FixedResultCursor(int result)
        : std::shared_ptr<QelBinary>(new QelBinary, [](QelBinary* message) { message->destroy(); }),
          QelBinaryIterator(std::shared_ptr<QelBinary>::get()), m_result(result) {}

    using QelBinaryIterator::getValue;
    using QelBinaryIterator::getValueLongLong;
    int getValue(std::string&, int) const override { return m_result; }
    int getValueLongLong(long long&, int) const override { return m_result; }

private:
    int m_result;
};

} // namespace Qel::TestSupport
