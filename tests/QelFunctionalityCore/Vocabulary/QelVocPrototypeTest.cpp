#include "QelFunctionalityCore/Vocabulary/QelVocPrototype.h"

#include <cstdlib>

#include <gmock/gmock.h>

#include "QelFunctionalityCore/Vocabulary/QelVocLocalPrototype.h"
#include "QelFunctionalityCore/Vocabulary/VocTestSupport.h"
#include "support/ChildProcess.h"
#include "support/TempFolder.h"

namespace Qel {
namespace {

using namespace Qel::TestSupport;
using testing::ElementsAre;
using testing::IsNull;
using testing::NotNull;

using Iterator = std::unique_ptr<QelVocIterator>;

const Voc sample{"", "1.2", {{"cpu", {"hardware"}}}, {{"load", {"cpu"}}, {"usage", {"cpu", "counter"}}}};

TEST(QelVocPrototypeTest, ReadsFailWithoutMessage) {
    QelVocPrototype none;
    EXPECT_THAT(none.getMessage(), IsNull());
    EXPECT_THAT(none.newIterator(), IsNull());
    EXPECT_THAT(none.newIteratorWithInit(), IsNull());
    EXPECT_THAT(none.read(), IsNull());
    EXPECT_THAT(none.readCategory("cpu"), IsNull());
    EXPECT_THAT(none.readParameter("load"), IsNull());
    EXPECT_THAT(none.processCategory(nullptr, {"cpu"}), IsNull());
    EXPECT_THAT(none.processParameter(nullptr, "load"), IsNull());
    EXPECT_FALSE(none.isFeatureEnabled("load"));
    EXPECT_EQ(none.saveToFile("/none/none"), -1);
}

TEST(QelVocPrototypeTest, ReadCategoryRestrictsIterator) {
    QelVocPrototype voc(makeVocabulary(sample));
    const Iterator one(voc.readCategory("cpu"));
    ASSERT_THAT(one, NotNull());
    EXPECT_EQ(one->firstParameter(), 0);
    EXPECT_EQ(idOf(*one), "load");
    const Iterator both(std::as_const(voc).readCategory(Categories{"cpu", "counter"}));
    ASSERT_THAT(both, NotNull());
    EXPECT_EQ(both->firstParameter(), 0);
    EXPECT_EQ(idOf(*both), "usage");
    EXPECT_EQ(both->nextParameter(), -1);
    EXPECT_EQ(Iterator(std::as_const(voc).readCategory("none"))->firstParameter(), -1);
}

TEST(QelVocPrototypeTest, ReadParameterReturnsIteratorAtParameter) {
    QelVocPrototype voc(makeVocabulary(sample));
    EXPECT_EQ(idOf(*Iterator(voc.readParameter("usage"))), "usage");
    EXPECT_EQ(idOf(*Iterator(std::as_const(voc).readParameter("usage"))), "usage");
    EXPECT_THAT(voc.readParameter("cpu"), IsNull());
    EXPECT_TRUE(voc.isFeatureEnabled("usage"));
    EXPECT_FALSE(voc.isFeatureEnabled("cpu"));
}

TEST(QelVocPrototypeTest, ResetReplacesMessage) {
    QelVocPrototype voc(makeVocabulary(sample));
    QelMessage* const other = makeVocabulary({"", "2"});
    voc.reset(other);
    EXPECT_EQ(voc.getMessage(), other);
    EXPECT_FALSE(voc.isFeatureEnabled("usage"));
    voc.reset(nullptr);
    EXPECT_THAT(voc.read(), IsNull());
}

TEST(QelVocPrototypeTest, VersionIsCachedOnceFound) {
    QelVocPrototype voc(makeVocabulary({"", "", {}, {{"load"}}}));
    EXPECT_EQ(voc.readVersion(), "");
    voc.reset(makeVocabulary(sample));
    EXPECT_EQ(voc.readVersion(), "1.2") << "an empty version is not cached";
    voc.reset(makeVocabulary({"", "2"}));
    EXPECT_EQ(voc.readVersion(), "1.2") << "a new message does not change it";
    EXPECT_EQ(QelVocPrototype().readVersion(), "");
}

TEST(QelVocPrototypeTest, FileRoundTrips) {
    const TempFolder folder;
    const std::string path = folder.path("voc");
    EXPECT_EQ(QelVocPrototype(makeVocabulary(sample)).saveToFile(path), 0);
    QelVocPrototype voc;
    EXPECT_EQ(voc.readFromFile(path), 0);
    EXPECT_THAT(parametersOf(*Iterator(voc.read())), ElementsAre("vocversion", "load", "usage"));
    EXPECT_EQ(voc.saveToFile(folder.path("none/voc")), -1);
}

TEST(QelVocPrototypeTest, UnreadableFileChangesNothing) {
    const TempFolder folder;
    QelVocPrototype voc(makeVocabulary(sample));
    QelMessage* const before = voc.getMessage();
    EXPECT_EQ(voc.readFromFile(folder.path("none")), -1);
    EXPECT_EQ(voc.readFromFile(folder.write("damaged", "<message><data>")), -1);
    EXPECT_EQ(voc.getMessage(), before);
}

// ---- Reader and Writer

class QelVocPrototypeRecordTest : public testing::Test {
protected:
    QelVocPrototypeRecordTest() { message.cursor().newChild(1115); }

    TestMessage message;
    QelMessageIterator& at = message.cursor();
};

TEST_F(QelVocPrototypeRecordTest, WritesContentWithoutWrapper) {
    const QelVocPrototype voc(makeVocabulary(sample));
    EXPECT_EQ(at.putObj(voc, 0), 0);
    EXPECT_EQ(at.curID(), 1115);
    EXPECT_EQ(countChildren(at, 1264), 1);
    EXPECT_EQ(countChildren(at, 1017), 3);
    EXPECT_EQ(at.seekPresence(1307), -1);

    QelVocPrototype back;
    EXPECT_EQ(at.getObj(back, 0), 0);
    EXPECT_EQ(at.curID(), 1115);
    const Iterator iterator(back.read());
    EXPECT_THAT(categoriesOf(*iterator), ElementsAre("cpu"));
    EXPECT_THAT(parametersOf(*iterator), ElementsAre("vocversion", "load", "usage"));
    EXPECT_TRUE(Iterator(back.readParameter("usage"))->belongsTo("counter"));
}

TEST_F(QelVocPrototypeRecordTest, WritesElementsInVocabularyNamespace) {
    at.putValue("beside", 1026);
    EXPECT_EQ(at.putObj(QelVocPrototype(makeVocabulary(sample)), 0), 0);
    ASSERT_EQ(at.firstChild(), 0);
    do
        EXPECT_EQ(at.curNamespaceID(), 292) << at.curName();
    while (at.nextSibling() == 0);
    EXPECT_EQ(at.firstChild(), 0);
    EXPECT_EQ(at.curNamespaceID(), 0) << "nested elements are unchanged";
}

TEST_F(QelVocPrototypeRecordTest, ReaderAcceptsEmptyVocabulary) {
    QelVocPrototype voc(makeVocabulary(sample));
    EXPECT_EQ(at.getObj(voc, 0), 0);
    ASSERT_THAT(voc.getMessage(), NotNull());
    EXPECT_EQ(Iterator(voc.read())->seekRoot(), 0);
    EXPECT_FALSE(voc.isFeatureEnabled("load")) << "the previous vocabulary is replaced";
    EXPECT_EQ(at.putObj(voc, 0), 0);
    EXPECT_EQ(at.firstChild(), -1);
}

TEST_F(QelVocPrototypeRecordTest, WriterRequiresVocabulary) {
    EXPECT_EQ(at.putObj(QelVocPrototype(), 0), -1);
    EXPECT_EQ(at.putObj(QelVocPrototype(makeMap({})), 0), -1) << "a message without a vocabulary";
}

// ---- QelVocLocalPrototype

class QelVocLocalPrototypeTest : public testing::Test {
protected:
    QelVocLocalPrototypeTest() { setenv("QEL_ROOT", folder.path("").c_str(), 1); }
    ~QelVocLocalPrototypeTest() override { unsetenv("QEL_ROOT"); }

    void writeFile(const Voc& voc) const {
        const TestMessage message(makeVocabulary(voc));
        folder.write("etc/qel/qelagent.voc.linux", TestSupport::textOf(*message.get()));
    }

    TempFolder folder;
};

TEST_F(QelVocLocalPrototypeTest, LoadsFileAtFirstRead) {
    writeFile(sample);
    QelVocLocalPrototype voc;
    EXPECT_FALSE(voc.isFeatureEnabled("load")) << "const operations do not load";
    EXPECT_THAT(std::as_const(voc).read(), IsNull());
    EXPECT_EQ(idOf(*Iterator(voc.readParameter("load"))), "load");
    EXPECT_TRUE(voc.isFeatureEnabled("load"));
    EXPECT_EQ(voc.readVersion(), "1.2");
    writeFile({"", "2"});
    EXPECT_THAT(Iterator(voc.readParameter("load")), NotNull()) << "the file is loaded only once";
}

TEST_F(QelVocLocalPrototypeTest, RetriesMissingFile) {
    QelVocLocalPrototype voc;
    EXPECT_THAT(voc.read(), IsNull());
    EXPECT_THAT(voc.readCategory("cpu"), IsNull());
    EXPECT_FALSE(voc.isFeatureEnabled("load"));
    writeFile(sample);
    EXPECT_THAT(Iterator(voc.readCategory("cpu")), NotNull());
    EXPECT_TRUE(voc.isFeatureEnabled("load"));
}

// getVoc() is a singleton, so each of these tests runs in a child process.

TEST_F(QelVocLocalPrototypeTest, SingletonIsLoaded) {
    writeFile(sample);
    EXPECT_EQ(inChild([] {
                  const auto voc = QelVocPrototype::getVoc();
                  return voc == QelVocPrototype::getVoc() && voc->isFeatureEnabled("load") ? 0 : 1;
              }),
              0);
}

TEST_F(QelVocLocalPrototypeTest, SingletonExistsWithoutFile) {
    EXPECT_EQ(inChild([this] {
                  const auto voc = QelVocPrototype::getVoc();
                  if (!voc || voc->getMessage())
                      return 1;
                  writeFile(sample);
                  if (QelVocPrototype::getVoc()->isFeatureEnabled("load"))
                      return 2;
                  return Iterator(QelVocPrototype::getVoc()->read()) && voc->isFeatureEnabled("load") ? 0 : 3;
              }),
              0);
}

} // namespace
} // namespace Qel
