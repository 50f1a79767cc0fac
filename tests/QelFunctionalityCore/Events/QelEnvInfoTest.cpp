#include "QelFunctionalityCore/Events/QelEnvInfo.h"

#include <gmock/gmock.h>

#include "QelFunctionalityCore/Environment/EnvCacheTestSupport.h"

namespace Qel {

namespace {

using testing::IsNull;

constexpr QelEID eid(0x0102030405060708, 0x1112131415161718);

QelEnv namedEnv() {
    QelEnv env;
    env.getCoreBasic()->eid = eid;
    env.getCoreBasic()->type = std::string("container");
    QelStringOptionalProperty name;
    name.set("web");
    env.getConfig()->setName(name);
    return env;
}

void expectNamed(const QelInfo& info) {
    EXPECT_EQ(info.name, "env");
    EXPECT_EQ(info.text, "%title%");
    EXPECT_TRUE(info.translatable);
    EXPECT_EQ(info.toString(), "web");
    EXPECT_EQ(info.getParameterByPath("eid"), eid.toString());
    EXPECT_EQ(info.getParameterByPath("title"), "web");
    EXPECT_EQ(info.getParameterByPath("type"), "container");
    EXPECT_EQ(info.parameters.size(), 3U);
    for (const auto& [name, parameter] : info.parameters)
        EXPECT_TRUE(parameter.translatable) << name;
}

TEST(QelEnvInfoTest, ContainsIdentifierTitleAndType) {
    expectNamed(QelEnvInfo(namedEnv()));
}

TEST(QelEnvInfoTest, FillReplacesParameters) {
    QelEnv other = namedEnv();
    QelStringOptionalProperty name;
    name.set("mail");
    other.getConfig()->setName(name);
    QelEnvInfo info(other);
    EXPECT_EQ(info.toString(), "mail");
    info.fill(namedEnv());
    expectNamed(info);
}

using QelEnvInfoCacheTest = EnvCacheTest;

TEST_F(QelEnvInfoCacheTest, LooksUpEnvironmentInCache) {
    insert(namedEnv());
    expectNamed(QelEnvInfo(eid));
}

TEST_F(QelEnvInfoCacheTest, UsesIdentifierAsTitleIfNotInCache) {
    const QelEnvInfo info(eid);
    EXPECT_EQ(info.toString(), eid.toString());
    EXPECT_EQ(info.getParameterByPath("eid"), eid.toString());
    EXPECT_THAT(info.getParameter("type"), IsNull());
    EXPECT_TRUE(info.getParameter("title")->translatable);
}

TEST(QelEnvInfoTest, UsesIdentifierAsTitleWithoutCache) {
    initEnvCache({}, false);
    EXPECT_EQ(QelEnvInfo(eid).toString(), eid.toString());
}

} // namespace

} // namespace Qel
