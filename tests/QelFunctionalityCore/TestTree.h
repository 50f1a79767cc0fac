#pragma once

#include "support/TestMessage.h"

namespace Qel {

/// A message that behaves like a pointer to a cursor at its root.
class TestTree {
public:
    QelMessageIterator& operator*() const { return m_message.cursor(); }
    QelMessageIterator* operator->() const { return get(); }
    [[nodiscard]] QelMessageIterator* get() const { return &m_message.cursor(); }

private:
    TestSupport::TestMessage m_message;
};

using TestSupport::childIDs;
using TestSupport::childValue;
using TestSupport::countChildren;

} // namespace Qel
