#pragma once

#include <initializer_list>

#include <gtest/gtest.h>

#include "support/TestMessage.h"

namespace Qel::TestSupport {

/// Expects that each of these children is required: the written record can be read, but not after one of them has been
/// removed.
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
