#pragma once

#include <vector>

#include <gtest/gtest.h>

#include "../TestTree.h"

namespace Qel::TestSupport {

template <class Record> void writeTo(const TestTree& tree, const Record& record) {
    EXPECT_EQ(tree->putObj(record, 0), 0);
}

template <class Record> Record readFrom(const TestTree& tree) {
    Record record;
    EXPECT_EQ(tree->getObj(record, 0), 0);
    return record;
}

} // namespace Qel::TestSupport
