#include <gmock/gmock.h>

#include "EnvTestSupport.h"
#include "QelFunctionalityCore/Environment/QelVEnvConfig.h"
#include "QelMessage/QelDefaultMap.h"

// The wire form of configurations and filters.

namespace Qel {
namespace {

using namespace Qel::TestSupport;
using testing::ElementsAre;
using testing::ElementsAreArray;
using testing::IsEmpty;

constexpr int config = 1185;
constexpr int name = 1026;
constexpr int domain = 1374;
constexpr int hostname = 1261;
constexpr int type = 1007;
constexpr int architecture = 1276;
constexpr int operatingSystem = 1277;
constexpr int addresses = 1687;
constexpr int nameservers = 1281;
constexpr int searchDomains = 1558;
constexpr int agentVersion = 1223;
constexpr int disabled = 1705;

/// The elements in canonical order.
constexpr int canonical[] = {1026, 1496, 1374, 1261, 1687, 1276, 1277, 1007, 1281, 1558, 1895, 1896, 2153, 1476, 1223};

/// Reads an element with these empty children as a configuration and writes it again.
std::vector<int> rewritten(const std::vector<int>& ids, EnvConfigType configType = EnvConfigType::virtualised) {
    const TestMessage message;
    message.cursor().newChild(config);
    for (const int id : ids)
        message.cursor().putChild(id);
    return writtenIDs(QelEnvConfig(&message.cursor(), configType));
}

TEST(QelEnvConfigFunctorsTest, PositionIsThatInCanonicalOrder) {
    const QelEnvConfig order;
    int position = 0;
    for (const int id : canonical)
        EXPECT_EQ(order.getPositionOfTheTag(std::string(QelDefaultMap::findElemID(id).view())), position++) << id;
    for (const int id : {disabled, 1766, 1003})
        EXPECT_EQ(order.getPositionOfTheTag(std::string(QelDefaultMap::findElemID(id).view())), -1) << id;
    EXPECT_EQ(order.getPositionOfTheTag(""), -1);
    EXPECT_EQ(order.getPositionOfTheTag("no such name"), -1);
}

TEST(QelEnvConfigFunctorsTest, WritesElementsInCanonicalOrder) {
    EXPECT_THAT(rewritten(std::vector<int>(std::rbegin(canonical), std::rend(canonical))), ElementsAreArray(canonical));
}

TEST(QelEnvConfigFunctorsTest, ElementWithoutPositionStaysAfterItsPredecessor) {
    EXPECT_THAT(rewritten({agentVersion, name, 1003, hostname}), ElementsAre(name, 1003, hostname, agentVersion));
    EXPECT_THAT(rewritten({agentVersion, name, 1003, 1004, hostname, 1005}),
                ElementsAre(name, 1003, 1004, hostname, 1005, agentVersion));
}

TEST(QelEnvConfigFunctorsTest, FirstElementWithoutPositionStaysFirst) {
    EXPECT_THAT(rewritten({1003, 1004, hostname, name}), ElementsAre(1003, 1004, name, hostname));
}

TEST(QelEnvConfigFunctorsTest, EqualElementsKeepTheirOrder) {
    const TestMessage message;
    message.cursor().newChild(config);
    for (const char* const text : {"b", "a", "c"})
        message.cursor().putValue(std::string(text), nameservers);
    const QelEnvConfig read(&message.cursor(), EnvConfigType::virtualised);
    QelOptionalProperty<std::vector<std::string>> servers;
    const TestMessage out;
    QelEnvConfig::Writer()(out.cursor(), read);
    const QelEnvConfig again(&out.cursor(), EnvConfigType::virtualised);
    EXPECT_EQ(again.getNameservers(servers), 0);
    EXPECT_THAT(servers.get(), ElementsAre("b", "a", "c"));
}

/// A class that adds one element to the order, at the front.
class ExtendedConfig : public QelEnvConfig {
public:
    using QelEnvConfig::QelEnvConfig;
    [[nodiscard]] int getPositionOfTheTag(const std::string& tag) const override {
        const bool isOwn = tag == QelDefaultMap::findElemID(disabled).view();
        return isOwn ? 0 : QelEnvConfig::getPositionOfTheTag(tag);
    }
};

TEST(QelEnvConfigFunctorsTest, DerivedClassMayExtendOrder) {
    const TestMessage message;
    message.cursor().newChild(config);
    for (const int id : {hostname, disabled, name})
        message.cursor().putChild(id);
    EXPECT_THAT(writtenIDs(ExtendedConfig(&message.cursor(), EnvConfigType::virtualised)),
                ElementsAre(disabled, name, hostname));
}

TEST(QelEnvConfigFunctorsTest, WithoutTreeOrChildrenNothingIsWritten) {
    EXPECT_THAT(writtenIDs(QelEnvConfig()), IsEmpty());
    EXPECT_THAT(rewritten({}), IsEmpty());
}

TEST(QelEnvConfigFunctorsTest, ReadsAllChildrenWithTheirContent) {
    const TestMessage message;
    message.cursor().newChild(config);
    message.cursor().newChild(1003);
    message.cursor().setNamespace(299);
    message.cursor().setComplexType(299, 218);
    message.cursor().putValue(std::string("deep"), 1004);
    message.cursor().putAttr(std::string("attribute"), 1);
    message.cursor().seekUp();

    QelEnvConfig read;
    read.setName(specified("gone"));
    ASSERT_EQ(QelEnvConfig::Reader()(message.cursor(), read), 0);
    EXPECT_EQ(message.cursor().curID(), config) << "the position is restored";
    EXPECT_EQ(valueBy(read, &QelEnvConfig::getName), "(unspecified)");

    const TestMessage out;
    ASSERT_EQ(QelEnvConfig::Writer()(out.cursor(), read), 0);
    ASSERT_EQ(out.cursor().firstChild(1003), 0);
    ASSERT_EQ(message.cursor().firstChild(1003), 0);
    EXPECT_EQ(taken(out.cursor().toTextFromChild()), taken(message.cursor().toTextFromChild()));
}

TEST(QelEnvConfigFunctorsTest, ReadingCreatesRecordOfElement) {
    const TestMessage message;
    message.cursor().newChild(config);
    message.cursor().putValue(std::string("abcdefghijklmnopqrst"), type);
    const auto before = recordOf("", "");
    QelEnvConfig read(before, EnvConfigType::base);
    ASSERT_EQ(QelEnvConfig::Reader()(message.cursor(), read), 0);
    EXPECT_EQ(read.getType(), "abcdefghijklmno");
    EXPECT_FALSE(before->type.isSpecified());
}

TEST(QelEnvConfigFunctorsTest, UnserialisableElementIsRead) {
    QelEnvConfig read;
    EXPECT_EQ(QelEnvConfig::Reader()(TooDeepMessage().cursor(), read), 0);
    EXPECT_THAT(writtenIDs(read), ElementsAre(1115, agentVersion));
    EXPECT_FALSE(read.getType().isSpecified());
}

TEST(QelEnvConfigFunctorsTest, EachClassIsStampedAndReadAsItself) {
    EXPECT_EQ(QelEnvConfig::Writer::getNSID(), 292);
    EXPECT_EQ(QelEnvConfig::Writer::getTypeID(), 120);
    EXPECT_EQ(QelVEnvConfig::Writer::getNSID(), 292);
    EXPECT_EQ(QelVEnvConfig::Writer::getTypeID(), 121);

    const TestMessage message;
    const boost::shared_ptr<QelEnvConfig> vconfig(new QelVEnvConfig);
    vconfig->setName(specified("virtual"));
    ASSERT_EQ(message.cursor().putObject(vconfig, QelWriterDerived<QelEnvConfig>(), 1872), 0);
    boost::shared_ptr<QelEnvConfig> read;
    ASSERT_EQ(message.cursor().getObject(read, QelReaderDerived<QelEnvConfig>(false), 1872), 0);
    EXPECT_NE(boost::dynamic_pointer_cast<QelVEnvConfig>(read), nullptr);
    EXPECT_EQ(read->getConfigType(), EnvConfigType::virtualised);
    EXPECT_EQ(valueBy(*read, &QelEnvConfig::getName), "virtual");
    message.cursor().firstChild(1872);
    expectStampOf<QelVEnvConfig::Writer>(message.cursor());
    EXPECT_EQ(countChildren(message.cursor(), agentVersion), 0);
}

TEST(QelEnvConfigFunctorsTest, UntypedElementIsBaseConfiguration) {
    const TestMessage message;
    message.cursor().putChild(1872);
    boost::shared_ptr<QelEnvConfig> read;
    EXPECT_EQ(message.cursor().getObject(read, QelReaderDerived<QelEnvConfig>(false), 1872), -1);
    EXPECT_EQ(message.cursor().getObject(read, QelReaderDerived<QelEnvConfig>(true), 1872), 0);
    EXPECT_EQ(boost::dynamic_pointer_cast<QelVEnvConfig>(read), nullptr);
    EXPECT_EQ(read->getConfigType(), EnvConfigType::base);
}

TEST(QelEnvConfigFunctorsTest, ClassWithoutFactoryIsWrittenAsBaseClass) {
    const TestMessage message;
    const boost::shared_ptr<QelEnvConfig> extended(new ExtendedConfig);
    ASSERT_EQ(message.cursor().putObject(extended, QelWriterDerived<QelEnvConfig>(), config), 0);
    message.cursor().firstChild();
    expectStampOf<QelEnvConfig::Writer>(message.cursor());
}

TEST(QelEnvConfigFunctorsTest, ChildrenOfNewTreeAreInItsNamespace) {
    QelEnvConfig written;
    written.setName(specified("x"));
    const TestMessage message;
    QelEnvConfig::Writer()(message.cursor(), written);
    message.cursor().firstChild(name);
    EXPECT_EQ(message.cursor().curNamespaceID(), 292);
}

std::vector<int> filterElements(int filter) {
    const TestMessage message;
    EXPECT_EQ(message.cursor().putObject(filter, QelEnvConfig::FilterConfigWriter(), 0), 0);
    return childIDs(message.cursor());
}

int filterBy(const std::vector<int>& ids, int before = 0) {
    const TestMessage message;
    for (const int id : ids)
        message.cursor().putChild(id);
    int filter = before;
    EXPECT_EQ(QelEnvConfig::FilterConfigReader()(message.cursor(), filter), 0);
    return filter;
}

TEST(QelEnvConfigFunctorsTest, FilterIsWrittenAsEmptyElements) {
    EXPECT_THAT(filterElements(0), IsEmpty());
    EXPECT_THAT(filterElements(1), ElementsAre(name, domain, hostname, type, architecture, operatingSystem, addresses));
    EXPECT_THAT(filterElements(2), ElementsAre(nameservers));
    EXPECT_THAT(filterElements(4), ElementsAre(searchDomains));
    EXPECT_THAT(filterElements(8), ElementsAre(addresses));
    EXPECT_EQ(filterElements(9), filterElements(1));
    EXPECT_THAT(filterElements(14), ElementsAre(nameservers, searchDomains, addresses));
}

TEST(QelEnvConfigFunctorsTest, FilterIsReadFromPresentElements) {
    EXPECT_EQ(filterBy({}), 0);
    EXPECT_EQ(filterBy({nameservers}), 2);
    EXPECT_EQ(filterBy({searchDomains}), 4);
    EXPECT_EQ(filterBy({addresses}), 9);
    EXPECT_EQ(filterBy({addresses, name}), 9);
    for (const int id : {name, domain, hostname, type, architecture, operatingSystem})
        EXPECT_EQ(filterBy({id}), 1) << id;
    EXPECT_EQ(filterBy({1003}), 0);
    EXPECT_EQ(filterBy({nameservers}, 4), 6) << "bits are added";
}

TEST(QelEnvConfigFunctorsTest, AddressFilterIsReadBackWithBasicFields) {
    EXPECT_EQ(filterBy(filterElements(8)), 9);
    EXPECT_EQ(filterBy(filterElements(1)), 9);
    EXPECT_EQ(filterBy(filterElements(15)), 15);
}

} // namespace
} // namespace Qel
