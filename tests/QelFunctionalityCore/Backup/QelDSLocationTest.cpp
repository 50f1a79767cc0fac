#include "QelFunctionalityCore/Backup/QelDSLocation.h"

#include <gmock/gmock.h>

#include "QelFunctionalityCore/Backup/SampleLocation.h"
#include "support/RecordTest.h"

namespace Qel {

namespace {

using namespace Qel::TestSupport;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

class QelDSLocationTest : public RecordTest {};

TEST_F(QelDSLocationTest, AllFieldsSurviveRoundTrip) {
    const QelDSLocation back = roundTrip(vault());
    EXPECT_EQ(back.type, 2);
    EXPECT_EQ(back.path, "/vault");
    EXPECT_EQ(back.authName.name.get(), "keeper");
    EXPECT_EQ(back.password, "secret");
    EXPECT_THAT(childIDs(message), ElementsAre(1007, 1156, 1630, 1032));
}

TEST_F(QelDSLocationTest, PathIsBase64AndPasswordIsPlain) {
    EXPECT_EQ(write(vault()), 0);
    EXPECT_EQ(childValue(message, 1156), "L3ZhdWx0");
    EXPECT_EQ(childValue(message, 1032), "secret");
}

TEST_F(QelDSLocationTest, AllFieldsAreAlwaysWritten) {
    EXPECT_EQ(write(QelDSLocation()), 0);
    EXPECT_THAT(childIDs(message), ElementsAre(1007, 1156, 1630, 1032));
    EXPECT_EQ(childValue(message, 1007), "0");
}

TEST_F(QelDSLocationTest, TypeAndPathAreRequired) {
    for (const int id : {1007, 1156}) {
        clear();
        EXPECT_EQ(write(vault()), 0);
        replace(id, "?");
        QelDSLocation location;
        EXPECT_EQ(read(location), -1) << id;
        EXPECT_THAT(getErrorMessage(), HasSubstr("is malformed"));
        remove(id);
        EXPECT_EQ(read(location), -1) << id;
        EXPECT_THAT(getErrorMessage(), HasSubstr("is missing"));
    }
}

TEST_F(QelDSLocationTest, MissingNameAndPasswordAreUnchanged) {
    EXPECT_EQ(write(vault()), 0);
    remove(1032);
    remove(1630);
    message.newChild(1630); // without a realm
    message.seekUp();
    QelDSLocation location;
    location.password = "old";
    EXPECT_EQ(read(location), 0);
    EXPECT_EQ(location.path, "/vault");
    EXPECT_EQ(location.password, "old");
    EXPECT_FALSE(location.authName.name.isSpecified());
}

TEST_F(QelDSLocationTest, ElementHasNoType) {
    EXPECT_THAT(typeOf(vault()), IsEmpty());
}

TEST_F(QelDSLocationTest, ConfigurationContainsLocationElement) {
    QelDSConfiguration configuration;
    configuration.location = vault();
    EXPECT_EQ(roundTrip(configuration).location.path, "/vault");
    EXPECT_THAT(childIDs(message), ElementsAre(1828));
}

TEST_F(QelDSLocationTest, ConfigurationRequiresLocation) {
    QelDSConfiguration configuration;
    EXPECT_EQ(read(configuration), -1);
    message.newChild(1828);
    message.seekUp();
    EXPECT_EQ(read(configuration), -1) << "a location without a type";
}

} // namespace

} // namespace Qel
