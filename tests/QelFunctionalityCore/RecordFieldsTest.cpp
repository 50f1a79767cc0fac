// How each record that has a table handles missing elements, unreadable elements and failed writes.  The expectations
// are listed here instead of being taken from the tables, so that a change of a table fails a test.

#include <array>
#include <map>
#include <set>
#include <string>
#include <string_view>

#include <gmock/gmock.h>

#include "QelFunctionalityCore/QelRecordTypes.h"
#include "QelFunctionalityCore/RandomFamilies.h"
#include "support/LogCapture.h"
#include "support/RandomRecord.h"
#include "support/ScriptedCursor.h"
#include "support/TestMessage.h"

namespace Qel {
namespace {

using namespace Qel::TestSupport;
using Operation = ScriptedCursor::Operation;

constexpr int recordElement = 1115;

using Elements = std::set<int>;
using ElementsByRecord = std::map<std::string_view, Elements>;

bool contains(const ElementsByRecord& lists, std::string_view record, int element) {
    const auto found = lists.find(record);
    return found != lists.end() && found->second.contains(element);
}

/// A table row with its own element, and the path to it from the root.
struct Row {
    const QelWireField* field;
    ElementPath path;

    [[nodiscard]] int element() const { return path.back(); }
};

void addRows(std::vector<Row>& rows, const QelWireLayout& layout, const ElementPath& parent) {
    for (const QelWireField& field : layout.fields) {
        if (field.ownID() == 0 || (field.codec->kind == QelWireKind::bits && field.id == 0))
            continue;
        ElementPath path = parent;
        path.push_back(field.ownID());
        rows.push_back({&field, path});
        if (field.codec->kind == QelWireKind::group)
            addRows(rows, *field.codec->layout(), path);
    }
}

std::vector<Row> rowsOf(const QelRecordType& type) {
    std::vector<Row> rows;
    if (type.layout)
        addRows(rows, *type.layout, {recordElement});
    return rows;
}

/// True if a single call reads the value.
bool isSimple(const QelWireCodec& codec) {
    switch (codec.kind) {
    case QelWireKind::text:
    case QelWireKind::integer:
    case QelWireKind::longInteger:
    case QelWireKind::real:
    case QelWireKind::boolean:
        return true;
    case QelWireKind::step:
        return codec.item && isSimple(*codec.item);
    default:
        return false;
    }
}

/// A message with the element of a record under the cursor.
class RecordMessage : public TestMessage {
public:
    RecordMessage() {
        get()->setTime(1'795'167'000);
        get()->setRequestId("request");
        cursor().newChild(recordElement);
    }
    /// Fills the element with random fields.
    RecordMessage(const QelRecordType& type, RandomRecord& random) : RecordMessage() {
        random.fill(cursor(), type.name, type.layout);
    }
};

class RecordFieldsTest : public testing::Test {
protected:
    /// Creates the missing elements on the path of a row.
    static void createElement(const TestMessage& message, const Row& row) {
        const auto cursor = message.root();
        for (const int id : row.path)
            if (cursor->seek(id) != 0)
                cursor->newChild(id);
    }
    static void remove(const TestMessage& message, const Row& row) {
        const auto cursor = message.root();
        for (std::size_t level = 0; level + 1 < row.path.size(); ++level)
            if (cursor->seek(row.path[level]) != 0)
                return;
        while (cursor->deleteChild(row.element()) == 0) {
        }
    }
    static std::string nameOf(const QelRecordType& type, const Row& row) {
        return std::string(type.name) + ' ' + std::to_string(row.element()) + ' ' + std::string(row.field->name);
    }

    RandomRecord random{20261122, families()};
    const LogCapture log; // suppresses the log records about incomplete messages
};

/// Optional simple values that fail the record if they are present and unreadable.
const ElementsByRecord mustBeReadable{
    {"QelBrowseColumn", {2206, 2214}},   {"QelIPPool", {1496, 1705}},
    {"QelIPPoolBaseData", {1784, 2050}}, {"QelInfrastructureFolderAttributes", {1496}},
    {"QelMailerAccount", {1026, 1099}},  {"QelPolicy", {1026, 1496}},
};

TEST_F(RecordFieldsTest, UnreadableOptionalValueLeavesFieldUnchangedAndReadingContinues) {
    for (const QelRecordType& type : recordTypes())
        for (const Row& row : rowsOf(type)) {
            if (!isSimple(*row.field->codec) || row.field->read == QelWireRead::required)
                continue;
            if (type.name == "QelDate") // requires one of its two fields
                continue;
            const RecordMessage message(type, random);
            createElement(message, row);
            const ScriptedCursor unreadable(message.cursor(), failsBelow({Operation::get}, row.path));
            const RecordMessage written;
            const int expected = contains(mustBeReadable, type.name, row.element()) ? -1 : 0;
            EXPECT_EQ(type.rewrite(unreadable, written.cursor()).read, expected) << nameOf(type, row);
        }
}

/// Optional elements of host records.
const ElementsByRecord optionalElements{
    {"QelCPULoad", {}},
    {"QelCommonDevice", {1026, 1496}},
    {"QelDevMountInfo", {1024, 1113, 1114, 1116, 1118, 1250}},
    {"QelDeviceInfo", {1113, 1114, 1115}},
    {"QelDisk", {1115}},
    {"QelDiskImage", {1010, 1024, 1026, 1496, 1856, 2248, 2249, 2262}},
    {"QelDiskPartition", {1804}},
    {"QelEnvSample", {1010, 1872}},
    {"QelFileListType", {2289}},
    {"QelFileShare", {1010, 1024, 1026, 1032, 1156, 1192, 1496, 1712, 1845, 2247}},
    {"QelForwardDevice", {}},
    {"QelForwardPoint", {1866}},
    {"QelGroup", {1025, 1737}},
    {"QelHNLookupInfoType", {1072, 1277}},
    {"QelImageInfo", {2259}},
    {"QelLoadAvg", {}},
    {"QelLoadAvg1", {1060, 1061, 1062}},
    {"QelLogClass", {1905, 1906}},
    {"QelLogInfo", {}},
    {"QelLogParameters", {1089, 1094}},
    {"QelMailTemplate", {1607}},
    {"QelMailerAccount", {1026, 1099}},
    {"QelMailerConfig", {1044, 2151, 2152}},
    {"QelNetInterface", {1071, 1072, 1712}},
    {"QelNetTransfer", {}},
    {"QelNetTransferStat", {1056}},
    {"QelNetwork", {1250, 1281}},
    {"QelPackage", {1223, 1277, 1496, 1853, 2005}},
    {"QelPackageDeb", {1156}},
    {"QelPackageLinux", {1156}},
    {"QelPackageListModificationData", {}},
    {"QelPackageManagerListOptions", {1007, 1197}},
    {"QelPackageRpm", {1156}},
    {"QelProcessList", {1035, 1036, 1037, 1038, 1039, 1040, 1046, 1080}},
    {"QelProcessMExecOutput", {1057, 1396}},
    {"QelProcessMExecParams", {1054, 1057, 1158, 1390, 1391, 1395, 1396, 2085}},
    {"QelProgCredentials", {1393, 1394}},
    {"QelSampleConf", {1026, 1034}},
    {"QelScsiDevice", {2112}},
    {"QelService", {1192, 1421, 1422, 1426, 1496, 1646, 1728, 1729, 1734, 1735, 1788}},
    {"QelSnapshot", {1496, 1873}},
    {"QelStats", {}},
    {"QelSystemInfo", {}},
    {"QelTimeZone", {}},
    {"QelTopInfo", {1346, 1378, 1899}},
    {"QelUsageStats", {}},
    {"QelUser", {1028, 1029, 1031, 1032, 1033, 1034}},
    {"QelVncConnectionInfo", {2308, 2309}},
    {"QelVncConsoleInfo", {2310, 2311, 2312}},
    {"QelVtVersion", {1276, 1846, 2103}},
    {"QelWindowsDevice", {2112}},
};

TEST_F(RecordFieldsTest, HostRecordNeedsOnlyItsRequiredElements) {
    for (const auto& [name, optional] : optionalElements) {
        const QelRecordType* const type = findRecordType(name);
        ASSERT_NE(type, nullptr) << name;
        for (const Row& row : rowsOf(*type)) {
            const RecordMessage message(*type, random);
            remove(message, row);
            const RecordMessage written;
            EXPECT_EQ(type->rewrite(message.cursor(), written.cursor()).read, optional.contains(row.element()) ? 0 : -1)
                << nameOf(*type, row);
        }
    }
}

/// Elements of network and host records whose write failures are ignored.
const ElementsByRecord bestEffort{
    {"QelFirewallRule", {1026, 1195, 1196, 1197, 1198, 1199, 1200, 1201, 1202, 1203, 1204}},
    {"QelFirewallRule::NetAddress", {1068}},
    {"QelIPPoolAllocation", {1262}},
    {"QelInterfaceRate", {1251}},
    {"QelLoadAvg1", {1060, 1061, 1062}},
    {"QelNetBridge", {1010, 1192, 1282, 2047, 2048, 2066, 2305, 2307}},
    {"QelNetDevice", {1010, 1192, 1282, 2047, 2048, 2066, 2305, 2307}},
    {"QelNetNIC", {1836}},
    {"QelNetVLAN", {1836, 2051, 2052}},
    {"QelPoolResourcePair", {1665, 1974}},
    {"QelRangedPool", {1662}},
    {"QelResourcePool", {1007}},
    {"QelSnapshot", {1007, 1010, 1026, 1496, 1873}},
    {"QelVncConnectionInfo", {2308, 2309}},
    {"QelVncConsoleInfo", {2310, 2311, 2312}},
};

/// Network records that ignore no write failure.
constexpr std::array<std::string_view, 9> strict{
    "QelAllocateIPParams", "QelFirewallRule::PortRange",
    "QelIPPool",           "QelIPPoolAllocationItem",
    "QelIPPoolBaseData",   "QelIPPoolUsage",
    "QelIPRange",          "QelPagerSortCondition",
    "QelRangedResource",
};

TEST_F(RecordFieldsTest, RejectedValueFailsRecordUnlessFieldIsBestEffort) {
    constexpr int attempts = 60; // enough for a random record to have each of its fields at least once
    std::set<std::string_view> names(strict.begin(), strict.end());
    for (const ElementsByRecord* const lists : {&optionalElements, &bestEffort})
        for (const auto& list : *lists)
            names.insert(list.first);
    for (const std::string_view name : names) {
        const QelRecordType* const type = findRecordType(name);
        ASSERT_NE(type, nullptr) << name;
        for (const Row& row : rowsOf(*type)) {
            if (row.field->codec->kind == QelWireKind::bits) // writes no value
                continue;
            bool isWritten = false;
            for (int left = attempts; left > 0 && !isWritten; --left) {
                const RecordMessage message(*type, random);
                const RecordMessage written;
                ScriptedCursor rejecting(written.cursor(), failsBelow({Operation::put, Operation::add}, row.path));
                const auto results = type->rewrite(message.cursor(), rejecting);
                isWritten = rejecting.replacedCalls() > 0;
                if (isWritten) {
                    EXPECT_EQ(results.write == 0, contains(bestEffort, name, row.element())) << nameOf(*type, row);
                }
            }
            EXPECT_TRUE(isWritten) << nameOf(*type, row);
        }
    }
}

} // namespace
} // namespace Qel
