#include "QelFunctionalityCore/Backup/QelBackupTrace.h"

#include <type_traits>

#include <gmock/gmock.h>

#include "QelFunctionalityCore/Backup/QelBackup.h"
#include "QelFunctionalityCore/Backup/QelBackupData.h"
#include "QelFunctionalityCore/Backup/QelBackupOptions.h"
#include "support/LogCapture.h"
#include "support/RecordTest.h"

namespace Qel {

namespace {

using namespace Qel::TestSupport;
using testing::AllOf;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::StartsWith;

class QelBackupTraceTest : public RecordTest {
protected:
    /// The first call logged during `use`.
    template <class Use> static std::string firstCall(const Use& use) {
        const LogCapture log;
        static_cast<void>(use());
        if (log.lines().empty())
            return "(none)";
        EXPECT_EQ(log.lines().front().file, "core/src/QelFunctionalityCore/QelBackupMBase");
        return log.messages().front();
    }
    template <class... Records> void expectTraced() { (expectTracedOne<Records>(), ...); }

private:
    template <class Record> void expectTracedOne() {
        const auto isCallOf = [](const char* functor) {
            const std::string name = "Qel::" + std::string(Record::wire.typeName);
            return AllOf(StartsWith("4 Calling [int Qel::"), HasSubstr(functor), HasSubstr(name));
        };
        Record record;
        EXPECT_THAT(firstCall([&] { return write(record); }), isCallOf("Writer"));
        EXPECT_THAT(firstCall([&] { return read(record); }), isCallOf("Reader"));
    }
};

TEST_F(QelBackupTraceTest, EveryReaderAndWriterLogsItsCall) {
    expectTraced<QelBackup, QelNewBackupData, QelDestroyedBackupsData, QelBackupData, QelEnvBackupData, QelExcludeList,
                 QelBackupOperationStuff, QelBackupMConfig, QelBackupOptions, QelRestoreOptions,
                 QelSelectiveRestoreOptions, QelBackupGetInfoOptions, QelBackupGetEnvInfoOptions,
                 QelRemoveBackupOptions, QelListBackupOptions, QelSearchBackupOptions>();
}

TEST_F(QelBackupTraceTest, CallsAreNotLoggedAtErrorLevel) {
    const LogCapture log(LogLevel::error);
    EXPECT_EQ(write(QelBackupOptions()), 0);
    EXPECT_THAT(log.lines(), IsEmpty());
}

// A derived record without its own functors would be read without its own fields.
struct Derived : QelRestoreOptions {};
static_assert(!std::is_invocable_v<QelRestoreOptions::Reader, const QelMessageIterator&, Derived&>);
static_assert(!std::is_invocable_v<QelRestoreOptions::Writer, QelMessageIterator&, const Derived&>);

} // namespace

} // namespace Qel
