#pragma once

#include <memory>
#include <string>

#include "QelMessage/QelBinary.h"
#include "QelMessage/QelBinaryIterator.h"

namespace Qel::TestSupport {

/// A cursor at the root of an empty message that answers gets by ID with a code of the test's own.
class OddAnswers : private std::shared_ptr<QelBinary>, public QelBinaryIterator {
public:
    explicit OddAnswers(int answer)
        : std::shared_ptr<QelBinary>(new QelBinary, [](QelBinary* message) { message->destroy(); }),
          QelBinaryIterator(std::shared_ptr<QelBinary>::get()), m_answer(answer) {}

    using QelBinaryIterator::getValue;
    using QelBinaryIterator::getValueLongLong;
    int getValue(std::string&, int) const override { return m_answer; }
    int getValueLongLong(long long&, int) const override { return m_answer; }

private:
    int m_answer;
};

} // namespace Qel::TestSupport
