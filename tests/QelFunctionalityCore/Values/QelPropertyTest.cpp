#include "QelFunctionalityCore/Values/QelProperty.h"

#include <vector>

#include <gtest/gtest.h>

namespace Qel {
namespace {

using OptionalText = QelOptionalProperty<std::string>;

OptionalText specified(const std::string& text) {
    OptionalText property;
    property = text;
    return property;
}

TEST(QelPropertyTest, StoresValue) {
    QelProperty<int> property;
    EXPECT_EQ(property.get(), 0);
    property.set(1);
    EXPECT_EQ(property.get(), 1);
    property = 2;
    EXPECT_EQ(property.get(), 2);
    property.get() = 3;
    EXPECT_EQ(property.get(), 3);
}

TEST(QelPropertyTest, ProvidesAccessToMembersOfValue) {
    QelProperty<std::vector<int>> property;
    property->push_back(1);
    const auto& constant = property;
    EXPECT_EQ(constant->size(), 1U);
}

TEST(QelPropertyTest, ComparesWithString) {
    QelProperty<std::string> property;
    property = "b";
    EXPECT_TRUE(property < std::string("c"));
    EXPECT_FALSE(property < std::string("b"));
}

TEST(QelOptionalPropertyTest, IsInitiallyUnspecified) {
    EXPECT_FALSE(OptionalText().isSpecified());
}

TEST(QelOptionalPropertyTest, AssignmentSpecifies) {
    OptionalText property;
    property.set("a");
    EXPECT_TRUE(property.isSpecified());
    EXPECT_EQ(property.get(), "a");

    OptionalText other;
    other = std::string("b");
    EXPECT_TRUE(other.isSpecified());
    EXPECT_EQ(other.get(), "b");
}

TEST(QelOptionalPropertyTest, WriteThroughReferenceDoesNotSpecify) {
    OptionalText property;
    property.get() = "a";
    EXPECT_FALSE(property.isSpecified());
    property.specify(true);
    EXPECT_EQ(property.get(), "a");
}

TEST(QelOptionalPropertyTest, UnspecifyingKeepsTheValue) {
    OptionalText property = specified("a");
    property.specify(false);
    EXPECT_FALSE(property.isSpecified());
    EXPECT_EQ(property.get(), "a");
}

TEST(QelOptionalPropertyTest, CopyAndAssignmentCopySpecifiedState) {
    OptionalText unspecified = specified("a");
    unspecified.specify(false);

    const OptionalText copy = unspecified;
    EXPECT_FALSE(copy.isSpecified());
    EXPECT_EQ(copy.get(), "a");

    OptionalText assigned = specified("b");
    assigned = unspecified;
    EXPECT_FALSE(assigned.isSpecified());
    EXPECT_EQ(assigned.get(), "a");
    assigned = specified("c");
    EXPECT_TRUE(assigned.isSpecified());
}

TEST(QelOptionalPropertyTest, UnspecifiedIsLessThanEveryValue) {
    EXPECT_EQ(OptionalText().compare(specified("")), -1);
    EXPECT_EQ(specified("").compare(OptionalText()), 1);
    EXPECT_TRUE(OptionalText() < specified(""));
    EXPECT_FALSE(specified("") < OptionalText());
    EXPECT_NE(OptionalText(), specified(""));
}

TEST(QelOptionalPropertyTest, UnspecifiedPropertiesCompareEqual) {
    OptionalText property = specified("a");
    property.specify(false);
    EXPECT_EQ(property, OptionalText());
    EXPECT_EQ(property.compare(OptionalText()), 0);
}

TEST(QelOptionalPropertyTest, SpecifiedPropertiesCompareByValue) {
    EXPECT_EQ(specified("a").compare(specified("b")), -1);
    EXPECT_EQ(specified("b").compare(specified("a")), 1);
    EXPECT_EQ(specified("a").compare(specified("a")), 0);
    EXPECT_TRUE(specified("a") < specified("b"));
    EXPECT_EQ(specified("a"), specified("a"));
    EXPECT_NE(specified("a"), specified("b"));
}

TEST(QelOperationPropertyTest, InitiallyHasNoOperation) {
    QelOperationProperty<int> property;
    EXPECT_EQ(property.getOperation(), -1);
    property.setOperation(3);
    property = 5;
    EXPECT_EQ(property.getOperation(), 3);
    EXPECT_EQ(property.get(), 5);
}

TEST(QelNamedPropertyTest, AddsNameToProperty) {
    QelNamedProperty<std::vector<std::string>, QelProperty> property("hosts");
    EXPECT_EQ(property.getName(), "hosts");
    property = {"a", "b"};
    EXPECT_EQ(property->size(), 2U);
    EXPECT_EQ(property.getName(), "hosts");

    const QelNamedProperty<std::vector<std::string>, QelOperationProperty> withOperation("groups");
    EXPECT_EQ(withOperation.getOperation(), -1);
}

} // namespace
} // namespace Qel
