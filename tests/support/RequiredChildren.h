#pragma once

#include <initializer_list>

#include <gtest/gtest.h>

#include "support/TestMessage.h"

namespace Qel::TestSupport {

/// Each of these children must be there: what was written of the record is read, but not without one of them.
template <class Record> void expectRequired(const Record& record, std::initializer_list<int> children) {
    for (const int child : children) {
        const TestMessage message;
        ASSERT_EQ(message.cursor().putObj(record, 0), 0);
        Record whole;
        EXPECT_EQ(message.cursor().getObj(whole, 0), 0);
        ASSERT_EQ(message.cursor().deleteChild(child), 0) << child;
        Record incomplete;
        EXPECT_EQ(message.cursor().getObj(incomplete, 0), -1) << child;
    }
}

} // namespace Qel::TestSupport
