#include "QelFunctionalityCore/Events/QelRequestProgressData.h"

#include <gmock/gmock.h>

#include "QelFunctionalityCore/Environment/EnvTestSupport.h"
#include "QelFunctionalityCore/Security/LocalConfig.h"
#include "QelFunctionalityCore/TestTree.h"
#include "QelMessage/QelMessage.h"

namespace Qel {

namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using TestSupport::childIDs;
using TestSupport::someEID;

/// Progress of a request in the root of a message.
class QelRequestProgressDataTest : public testing::Test {
protected:
    void write(const QelRequestProgressData& data) { ASSERT_EQ(QelRequestProgressData::Writer()(*tree, data), 0); }
    int read(QelRequestProgressData& data) const { return QelRequestProgressData::Reader()(*tree, data); }
    [[nodiscard]] QelMessage& message() const { return *tree->getMessage(); }

    TestTree tree;
};

QelRequestProgressData of(const std::string& requestId) {
    QelRequestProgressData data;
    data.requestId = requestId;
    return data;
}

TEST_F(QelRequestProgressDataTest, DefaultsToLocalAgent) {
    const LocalConfig config(localEID);
    const QelRequestProgressData data("copying");
    EXPECT_EQ(data.session.eid, localEID);
    EXPECT_EQ(data.session.session, "");
    EXPECT_EQ(data.info, QelInfo("copying", "", true));
    EXPECT_EQ(data.progress, 0);
    EXPECT_EQ(data.state, 0);
    EXPECT_EQ(data.time, 0);
    EXPECT_TRUE(factoryQelRequestProgressData.createObject()->info.empty());
}

TEST_F(QelRequestProgressDataTest, OmitsUnsetFields) {
    write(QelRequestProgressData());
    EXPECT_THAT(childIDs(*tree), IsEmpty());
}

TEST_F(QelRequestProgressDataTest, OmitsProgressBelowOne) {
    for (const int progress : {0, -1}) {
        QelRequestProgressData data;
        data.progress = progress;
        write(data);
        EXPECT_EQ(tree->seekPresence(1397), -1) << progress;
    }
}

TEST_F(QelRequestProgressDataTest, WritesNegativeStateAndTime) {
    QelRequestProgressData data;
    data.state = -1;
    data.time = -1;
    write(data);
    EXPECT_THAT(childIDs(*tree), ElementsAre(1192, 1004));
}

TEST_F(QelRequestProgressDataTest, RoundTrips) {
    QelRequestProgressData data("copying");
    data.requestId = "a/b";
    data.parentId = "a";
    data.operation = "copy";
    data.progress = 40;
    data.state = 3;
    data.time = 1'000'000'000;
    data.eids.insert(someEID);
    data.session.session = "s";
    write(data);
    EXPECT_THAT(childIDs(*tree), ElementsAre(1010, 1914, 1638, 1224, 1397, 1192, 1004, 1899, 1962));
    EXPECT_EQ(childValue(*tree, 1962), "s");
    message().setSession("another");
    message().setTime(1);
    message().setRequestId("another");

    QelRequestProgressData back;
    ASSERT_EQ(read(back), 0);
    EXPECT_EQ(back.requestId, "a/b");
    EXPECT_EQ(back.parentId, "a");
    EXPECT_EQ(back.operation, "copy");
    EXPECT_EQ(back.info, data.info);
    EXPECT_EQ(back.progress, 40);
    EXPECT_EQ(back.state, 3);
    EXPECT_EQ(back.time, 1'000'000'000);
    EXPECT_EQ(back.eids, data.eids);
    EXPECT_EQ(back.session.session, "s");
}

TEST_F(QelRequestProgressDataTest, FieldsHaveProgressNamespace) {
    QelRequestProgressData data = of("a");
    data.operation = "copy";
    tree->newChild(1115);
    ASSERT_EQ(tree->putObject(data, QelRequestProgressData::Writer(), 0), 0);
    EXPECT_EQ(tree->curNamespaceID(), 0) << "of the record's own element";
    EXPECT_EQ(tree->curType(), "");
    tree->firstChild();
    EXPECT_EQ(tree->curNamespaceID(), 296);
    tree->seekUp();
    tree->newChild(1116);
    EXPECT_EQ(tree->curNamespaceID(), 0) << "of elements written afterwards";
}

// The info is a typed record, and the writer of a typed record resets the saved namespace.
TEST_F(QelRequestProgressDataTest, FieldsAfterInfoHaveNoNamespace) {
    QelRequestProgressData data("text");
    data.requestId = "a";
    data.state = 1;
    write(data);
    tree->seek(1010);
    EXPECT_EQ(tree->curNamespaceID(), 296);
    tree->nextSibling(1192);
    EXPECT_EQ(tree->curNamespaceID(), 0);
}

// --- Defaults from the envelope

TEST_F(QelRequestProgressDataTest, MissingRequestDefaultsToRequestOfMessage) {
    message().setRequestId("r/1");
    QelRequestProgressData data;
    EXPECT_EQ(read(data), 0);
    EXPECT_EQ(data.requestId, "r/1");
    EXPECT_EQ(data.parentId, "r");
}

TEST_F(QelRequestProgressDataTest, RejectsMissingRequest) {
    tree->putValue(std::string("copy"), 1638);
    QelRequestProgressData data;
    EXPECT_EQ(read(data), -1);
    EXPECT_EQ(data.operation, "");
}

TEST_F(QelRequestProgressDataTest, NonPositiveTimeDefaultsToTimeOfMessage) {
    message().setTime(1'234'567'890);
    write(of("a"));
    QelRequestProgressData data;
    EXPECT_EQ(read(data), 0);
    EXPECT_EQ(data.time, 1'234'567'890);
    for (const char* const none : {"0", "-5", "1970-01-01T00:00:00Z", "noon"}) {
        tree->deleteChild(1004);
        tree->putValue(std::string(none), 1004);
        QelRequestProgressData other;
        EXPECT_EQ(read(other), 0);
        EXPECT_EQ(other.time, 1'234'567'890) << none;
    }
}

TEST_F(QelRequestProgressDataTest, MissingSessionDefaultsToSessionOfMessage) {
    message().setSession("of the message");
    write(of("a"));
    QelRequestProgressData data;
    EXPECT_EQ(read(data), 0);
    EXPECT_EQ(data.session.session, "of the message");
}

TEST_F(QelRequestProgressDataTest, SessionAgentIsSender) {
    write(of("a"));
    QelRequestProgressData data;
    data.session.eid = localEID;
    EXPECT_EQ(read(data), 0);
    EXPECT_EQ(data.session.eid, localEID) << "unchanged without a sender";
    message().setSenderEID("no identifier");
    EXPECT_EQ(read(data), 0);
    EXPECT_EQ(data.session.eid, localEID);
    message().setSenderEID(someEID.toString());
    EXPECT_EQ(read(data), 0);
    EXPECT_EQ(data.session.eid, someEID);
}

TEST_F(QelRequestProgressDataTest, MissingStateIsZero) {
    write(of("a"));
    QelRequestProgressData data;
    data.state = 5;
    data.progress = 5;
    EXPECT_EQ(read(data), 0);
    EXPECT_EQ(data.state, 0);
    EXPECT_EQ(data.progress, 5);
}

// --- Requests and their parents

TEST_F(QelRequestProgressDataTest, ParentIsPathBeforeLastSlash) {
    write(of("a/b/c"));
    QelRequestProgressData data;
    EXPECT_EQ(read(data), 0);
    EXPECT_EQ(data.requestId, "a/b/c");
    EXPECT_EQ(data.parentId, "a/b");
}

TEST_F(QelRequestProgressDataTest, RejectsParentThatContradictsPath) {
    for (const auto& [parent, result] : {std::pair("a/b", 0), std::pair("x", -1), std::pair("a", -1)}) {
        const TestTree other;
        QelRequestProgressData data = of("a/b/c");
        data.parentId = parent;
        ASSERT_EQ(QelRequestProgressData::Writer()(*other, data), 0);
        QelRequestProgressData back;
        EXPECT_EQ(QelRequestProgressData::Reader()(*other, back), result) << parent;
        EXPECT_EQ(back.parentId, parent);
    }
}

TEST_F(QelRequestProgressDataTest, RequestWithoutSlashKeepsExplicitParent) {
    QelRequestProgressData data = of("c");
    data.parentId = "x";
    write(data);
    QelRequestProgressData back;
    EXPECT_EQ(read(back), 0);
    EXPECT_EQ(back.parentId, "x");
}

TEST_F(QelRequestProgressDataTest, RequestAtRootHasNoParent) {
    write(of("/a"));
    QelRequestProgressData data;
    EXPECT_EQ(read(data), 0);
    EXPECT_EQ(data.parentId, "");
}

} // namespace

} // namespace Qel
