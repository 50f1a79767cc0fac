#include "QelCommon/OptionManager.h"

#include <gtest/gtest.h>

namespace Qel {

namespace {

TEST(OptionManagerTest, AcceptsValueOnInclusiveBoundOnly) {
    EXPECT_TRUE(oh_check_min_border(3, 3, true));
    EXPECT_FALSE(oh_check_min_border(3, 3, false));
    EXPECT_TRUE(oh_check_max_border(3, 3, true));
    EXPECT_FALSE(oh_check_max_border(3, 3, false));
}

TEST(OptionManagerTest, AcceptsValueInsideAndRejectsValueOutside) {
    for (const bool inclusive : {true, false}) {
        EXPECT_TRUE(oh_check_min_border(4, 3, inclusive));
        EXPECT_FALSE(oh_check_min_border(2, 3, inclusive));
        EXPECT_TRUE(oh_check_max_border(2, 3, inclusive));
        EXPECT_FALSE(oh_check_max_border(4, 3, inclusive));
    }
}

TEST(OptionManagerTest, ChecksBothBounds) {
    EXPECT_TRUE(oh_check_min_max_border(1, 0, 1, true));
    EXPECT_FALSE(oh_check_min_max_border(2, 0, 1, true));
    EXPECT_FALSE(oh_check_min_max_border(-1, 0, 1, true));
    EXPECT_FALSE(oh_check_min_max_border(0, 0, 2, false));
    EXPECT_TRUE(oh_check_min_max_border(1, 0, 2, false));
    EXPECT_FALSE(oh_check_min_max_border(2, 0, 2, false));
}

} // namespace

} // namespace Qel
