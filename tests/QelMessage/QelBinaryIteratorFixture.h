#pragma once

#include <string>

#include <gtest/gtest.h>

#include "QelMessage/QelDefaultMap.h"
#include "QelMessage/QelMessageIterator.h"
#include "support/TestMessage.h"

namespace Qel::TestSupport {

inline constexpr int nameId = 1026;
inline constexpr int dataId = 1307;
inline constexpr int environmentId = 1624;
inline constexpr int envNamespace = 292;
inline constexpr int backupNamespace = 282;

inline std::string elementName(int id) {
    return std::string(QelDefaultMap::findElemID(id).view());
}
inline std::string namespaceName(int id) {
    return std::string(QelDefaultMap::findNSID(id).view());
}
inline std::string typeName(int id) {
    return std::string(QelDefaultMap::findTypeID(id).view());
}

/// The tree /data/system/{one, two, two} with a cursor at the root.
class QelBinaryIteratorFixture : public testing::Test {
protected:
    QelBinaryIteratorFixture() : cursor(message.cursor()) {
        cursor.newChild(dataId);
        cursor.newChild("system");
        cursor.putValue(std::string("1"), std::string("one"));
        cursor.putValue(std::string("2"), std::string("two"));
        cursor.putValue(std::string("3"), std::string("two"));
        cursor.seekRoot();
    }

    std::string valueHere() {
        std::string value = "(none)";
        cursor.getValue(value, 0);
        return value;
    }

    TestMessage message;
    QelMessageIterator& cursor;
};

} // namespace Qel::TestSupport
