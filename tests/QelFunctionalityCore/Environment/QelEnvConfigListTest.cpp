#include <algorithm>

#include <gmock/gmock.h>

#include "EnvTestSupport.h"

// The lists in a configuration, and the comparison of configurations.

namespace Qel {
namespace {

using namespace Qel::TestSupport;
using testing::ElementsAre;
using testing::IsEmpty;

constexpr int addresses = 1687;
constexpr int nameservers = 1281;
constexpr int searchDomains = 1558;
constexpr int childTypes = 2153;
constexpr int agentVersion = 1223;

using Texts = std::vector<std::string>;
using Addresses = std::vector<QelIPAddress>;

class ListElement : public TestMessage {
public:
    ListElement() { cursor().newChild(1185); }
    explicit ListElement(int id, const Texts& texts) : ListElement() {
        for (const std::string& text : texts)
            cursor().putValue(text, id);
    }
    [[nodiscard]] QelEnvConfig config() const { return {&cursor(), EnvConfigType::base}; }
};

Texts ipsBy(const QelEnvConfig& config) {
    QelIPAddressListOptionalProperty list;
    EXPECT_EQ(config.getAddresses(list), 0);
    if (!list.isSpecified())
        return {"(unspecified)"};
    Texts texts;
    for (const QelIPAddress& address : list.get())
        texts.push_back(address.toStringWithNetwork());
    return texts;
}

Texts nameserversBy(const QelEnvConfig& config) {
    QelStringListOptionalProperty list;
    EXPECT_EQ(config.getNameservers(list), 0);
    return list.isSpecified() ? list.get() : Texts{"(unspecified)"};
}

TEST(QelEnvConfigListTest, WithoutTreeListsFailAndAreUnchanged) {
    const QelEnvConfig config;
    auto texts = specified(Texts{""});
    EXPECT_EQ(config.getNameservers(texts), -1);
    EXPECT_EQ(texts, specified(Texts{""}));
    auto set = specified(std::set<std::string>{""});
    EXPECT_EQ(config.getSearchDomains(set), -1);
    EXPECT_EQ(config.getChildTypes(set), -1);
    EXPECT_EQ(set, specified(std::set<std::string>{""}));
    auto ips = specified(Addresses{QelIPAddress("10.0.0.1")});
    EXPECT_EQ(config.getAddresses(ips), -1);
    EXPECT_EQ(ips.get().size(), 1U);
}

TEST(QelEnvConfigListTest, MissingListIsUnspecifiedAndEmpty) {
    const ListElement element;
    auto texts = specified(Texts{"left"});
    EXPECT_EQ(element.config().getNameservers(texts), 0);
    EXPECT_FALSE(texts.isSpecified());
    EXPECT_THAT(texts.get(), IsEmpty());
}

TEST(QelEnvConfigListTest, AddressesAreReplaced) {
    QelEnvConfig config;
    const Addresses three{QelIPAddress("10.0.0.1/24"), QelIPAddress("::1/64"), QelIPAddress("10.0.0.1")};
    EXPECT_EQ(config.setAddresses(specified(three)), 0);
    EXPECT_THAT(ipsBy(config), ElementsAre("10.0.0.1/24", "::1/64", "10.0.0.1"));
    EXPECT_EQ(config.setAddresses(specified(Addresses{QelIPAddress("10.0.0.2")})), 0);
    EXPECT_THAT(ipsBy(config), ElementsAre("10.0.0.2"));
    EXPECT_EQ(config.setAddresses(QelIPAddressListOptionalProperty()), 0);
    EXPECT_THAT(ipsBy(config), ElementsAre("(unspecified)"));
    EXPECT_THAT(writtenIDs(config), ElementsAre(agentVersion));
}

TEST(QelEnvConfigListTest, SpecifiedEmptyAddressListIsOneEmptyElement) {
    QelEnvConfig config;
    EXPECT_EQ(config.setAddresses(specified(Addresses())), 0);
    EXPECT_THAT(writtenIDs(config), ElementsAre(addresses, agentVersion));
    EXPECT_THAT(ipsBy(config), IsEmpty());
}

TEST(QelEnvConfigListTest, UnreadableAddressEndsListButListIsSpecified) {
    const ListElement element;
    element.cursor().putObj(QelIPAddress("10.0.0.1"), addresses);
    element.cursor().putChild(addresses);
    EXPECT_THAT(ipsBy(element.config()), ElementsAre("10.0.0.1"));
}

TEST(QelEnvConfigListTest, NameserversAreStoredOnceAndInOrder) {
    QelEnvConfig config;
    EXPECT_EQ(config.setNameservers(specified(Texts{"10.0.0.1", "10.0.0.1", "10.0.0.2"})), 0);
    EXPECT_THAT(nameserversBy(config), ElementsAre("10.0.0.1", "10.0.0.2"));
    EXPECT_THAT(writtenIDs(config), ElementsAre(nameservers, nameservers, agentVersion));
}

TEST(QelEnvConfigListTest, FirstSpellingOfNameserverIsKept) {
    QelEnvConfig config;
    EXPECT_EQ(config.setNameservers(specified(Texts{"FE80:0::1", "10.0.0.9", "fe80::1", "::10.0.0.9"})), 0);
    EXPECT_THAT(nameserversBy(config), ElementsAre("FE80:0::1", "10.0.0.9"));
}

TEST(QelEnvConfigListTest, NameserversMayBeSpecifiedAndEmptyOrUnspecified) {
    QelEnvConfig config;
    EXPECT_EQ(config.setNameservers(specified(Texts{"10.0.0.1"})), 0);
    EXPECT_EQ(config.setNameservers(specified(Texts())), 0);
    EXPECT_THAT(writtenIDs(config), ElementsAre(nameservers, agentVersion));
    EXPECT_THAT(nameserversBy(config), IsEmpty());
    EXPECT_EQ(config.setNameservers(QelStringListOptionalProperty()), 0);
    EXPECT_THAT(nameserversBy(config), ElementsAre("(unspecified)"));
}

TEST(QelEnvConfigListTest, SearchDomainsAndChildTypesAreSets) {
    const ListElement domains(searchDomains, {"b.example", "a.example", "b.example"});
    QelStringSetOptionalProperty set;
    EXPECT_EQ(domains.config().getSearchDomains(set), 0);
    EXPECT_TRUE(set.isSpecified());
    EXPECT_THAT(set.get(), ElementsAre("a.example", "b.example"));
    EXPECT_EQ(domains.config().getChildTypes(set), 0);
    EXPECT_FALSE(set.isSpecified());

    const ListElement types(childTypes, {"vm", "ct"});
    EXPECT_EQ(types.config().getChildTypes(set), 0);
    EXPECT_THAT(set.get(), ElementsAre("ct", "vm"));
}

TEST(QelEnvConfigListTest, EmptyStringIsAnItemUnlessItIsAlone) {
    QelStringSetOptionalProperty set;
    EXPECT_EQ(ListElement(searchDomains, {""}).config().getSearchDomains(set), 0);
    EXPECT_TRUE(set.isSpecified());
    EXPECT_THAT(set.get(), IsEmpty());
    EXPECT_EQ(ListElement(searchDomains, {"", "a"}).config().getSearchDomains(set), 0);
    EXPECT_THAT(set.get(), ElementsAre("", "a"));
}

/// One way to make configurations differ.  Differences later in the list are compared later.
struct Difference {
    const char* what;
    void (*make)(QelEnvConfig& lesser, QelEnvConfig& greater);
};

template <int (QelEnvConfig::*set)(const QelStringOptionalProperty&)>
void differ(QelEnvConfig& lesser, QelEnvConfig& greater) {
    (lesser.*set)(specified("a"));
    (greater.*set)(specified("b"));
}

/// Adds a child `id` to a configuration and keeps its other children.
void add(QelEnvConfig& config, int id, const char* text) {
    const TestMessage message;
    message.cursor().newChild(1185);
    QelEnvConfig::Writer()(message.cursor(), config);
    message.cursor().putValue(std::string(text), id);
    config = QelEnvConfig(&message.cursor(), EnvConfigType::base);
}

constexpr Difference differences[] = {
    {"name", &differ<&QelEnvConfig::setName>},
    {"domain", &differ<&QelEnvConfig::setDomain>},
    {"type",
     [](QelEnvConfig& lesser, QelEnvConfig& greater) {
         lesser.setType("a");
         greater.setType("b");
     }},
    {"host name", &differ<&QelEnvConfig::setHostname>},
    {"description", &differ<&QelEnvConfig::setDescription>},
    {"architecture", &differ<&QelEnvConfig::setArchitecture>},
    {"operating system",
     [](QelEnvConfig& lesser, QelEnvConfig& greater) {
         lesser.setOS(QelOS("", "A", "", ""));
         greater.setOS(QelOS("", "b", "", ""));
     }},
    {"addresses",
     [](QelEnvConfig& lesser, QelEnvConfig& greater) {
         lesser.setAddresses(specified(Addresses{QelIPAddress("9.0.0.1")}));
         greater.setAddresses(specified(Addresses{QelIPAddress("10.0.0.1")}));
     }},
    {"name servers",
     [](QelEnvConfig& lesser, QelEnvConfig& greater) {
         lesser.setNameservers(specified(Texts{"10.0.0.1"}));
         greater.setNameservers(specified(Texts{"10.0.0.1", "10.0.0.2"}));
     }},
    {"search domains",
     [](QelEnvConfig& lesser, QelEnvConfig& greater) {
         add(lesser, searchDomains, "a");
         add(greater, searchDomains, "b");
     }},
    {"child types",
     [](QelEnvConfig& lesser, QelEnvConfig& greater) {
         add(lesser, childTypes, "a");
         add(greater, childTypes, "b");
     }},
};

TEST(QelEnvConfigListTest, EarlierDifferencesTakePrecedence) {
    QelEnvConfig lesser;
    QelEnvConfig greater;
    EXPECT_EQ(lesser.compare(greater), 0);
    // Compares each difference with all later ones, starting with the last.
    for (auto each = std::rbegin(differences); each != std::rend(differences); ++each) {
        std::swap(lesser, greater);
        each->make(lesser, greater);
        EXPECT_EQ(lesser.compare(greater), -1) << each->what;
        EXPECT_EQ(greater.compare(lesser), 1) << each->what;
        EXPECT_EQ(lesser.compare(lesser), 0) << each->what;
    }
}

TEST(QelEnvConfigListTest, LongerListIsGreater) {
    QelEnvConfig one;
    one.setAddresses(specified(Addresses{QelIPAddress("10.0.0.1")}));
    QelEnvConfig two;
    two.setAddresses(specified(Addresses{QelIPAddress("10.0.0.1"), QelIPAddress("10.0.0.0")}));
    EXPECT_EQ(one.compare(two), -1);
    EXPECT_EQ(two.compare(one), 1);
}

TEST(QelEnvConfigListTest, UnspecifiedValueComparesAsEmptyExceptType) {
    QelEnvConfig empty;
    empty.setName(specified(""));
    empty.setAddresses(specified(Addresses()));
    empty.setNameservers(specified(Texts()));
    EXPECT_EQ(empty.compare(QelEnvConfig()), 0);
    empty.setType("");
    EXPECT_EQ(empty.compare(QelEnvConfig()), 1);
    EXPECT_EQ(QelEnvConfig().compare(empty), -1);
}

} // namespace
} // namespace Qel
