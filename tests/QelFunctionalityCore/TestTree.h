#pragma once

#include "support/TestMessage.h"

namespace Qel {

/// A message to read from and to write to, used as the cursor at its root.
class TestTree {
public:
    QelMessageIterator& operator*() const { return m_message.cursor(); }
    QelMessageIterator* operator->() const { return get(); }
    [[nodiscard]] QelMessageIterator* get() const { return &m_message.cursor(); }

private:
    TestSupport::TestMessage m_message;
};

// What tests ask of an element.
using TestSupport::childIDs;
using TestSupport::childValue;
using TestSupport::countChildren;

} // namespace Qel
