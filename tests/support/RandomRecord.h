#pragma once

#include <array>
#include <cstdint>
#include <functional>
#include <initializer_list>
#include <map>
#include <memory>
#include <random>
#include <span>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "QelCore/QelIPConversions.h"
#include "QelFunctionalityCore/Configuration/QelAuthName.h"
#include "QelFunctionalityCore/Environment/QelEnv.h"
#include "QelFunctionalityCore/Environment/QelEnvStatus.h"
#include "QelFunctionalityCore/Files/QelFileType.h"
#include "QelFunctionalityCore/Network/QelNetDevice.h"
#include "QelFunctionalityCore/QelRecordTypes.h"
#include "QelFunctionalityCore/Security/QelDirControl.h"
#include "QelFunctionalityCore/Security/QelDirRealm.h"
#include "QelMessage/QelMessageIterator.h"
#include "QelMessage/QelWireLayout.h"

namespace Qel::TestSupport {

/// Fills elements with what a record's table allows: required fields always, others now and then.
///
/// What a table doesn't tell is made by hand here: the steps, the fields of which more is asked than to be there, and
/// the records without a table.  A family that has such adds them to the two maps.
class RandomRecord {
public:
    explicit RandomRecord(unsigned seed) : m_random(seed) {}

    /// Whether records of this type can be made.
    [[nodiscard]] bool knows(std::string_view typeName, const QelWireLayout* layout) const {
        return layout || m_byHand.contains(std::string(typeName));
    }

    /// Fills the element under the cursor.
    void fill(QelMessageIterator& cursor, std::string_view typeName, const QelWireLayout* layout) {
        if (const auto byHand = m_byHand.find(std::string(typeName)); !layout && byHand != m_byHand.end()) {
            byHand->second(cursor);
            return;
        }
        if (const auto whole = m_beyondTable.find(std::string(typeName)); whole != m_beyondTable.end()) {
            whole->second(cursor);
            return;
        }
        // A record with functors of its own doesn't tell whoever contains it that it has a table.
        if (!layout)
            layout = findRecordType(typeName)->layout;
        for (const QelWireField& field : layout->fields)
            if (field.read == QelWireRead::required || below(3) != 0)
                putField(cursor, *layout, field);
    }

    /// Changes one random element below the one under the cursor: takes it out, doubles it, gives it another value or a
    /// child that doesn't belong there.
    void damage(QelMessageIterator& cursor) {
        const int depthOfTarget = descend(cursor);
        if (depthOfTarget == 0)
            return;
        const std::unique_ptr<QelMessageIterator> target(cursor.newIterator(false));
        for (int level = 0; level < depthOfTarget; ++level)
            cursor.seekUp();
        static constexpr std::array<const char*, 5> oddValues{"", "text", "-1", "99999999999999999999", "\xFF\x01"};
        switch (below(4)) {
        case 0:
            target->deleteFromChild();
            break;
        case 1: {
            const std::unique_ptr<QelMessageIterator> copy(target->newIterator(false));
            target->seekUp();
            target->copyToChild(copy.get());
            break;
        }
        case 2:
            target->putValue(std::string(oddValues[below(oddValues.size())]), 0);
            break;
        default:
            target->putValue(std::string("stray"), static_cast<int>(1000 + below(900)));
        }
    }

    [[nodiscard]] unsigned below(std::size_t limit) {
        return std::uniform_int_distribution<unsigned>(0, static_cast<unsigned>(limit - 1))(m_random);
    }

private:
    using Fill = std::function<void(QelMessageIterator&)>;

    /// Goes down at random, and tells how many levels.
    int descend(const QelMessageIterator& cursor) {
        int depth = 0;
        while ((depth == 0 || below(3) != 0) && cursor.firstChild() == 0) {
            ++depth;
            for (unsigned left = below(8); left > 0 && cursor.nextSibling() == 0;)
                --left;
        }
        return depth;
    }

    void putField(QelMessageIterator& cursor, const QelWireLayout& layout, const QelWireField& field) {
        const QelWireCodec& codec = *field.codec;
        const std::pair key(std::string(layout.typeName), field.ownID());
        if (const auto byHand = m_fields.find(key); byHand != m_fields.end()) {
            byHand->second(cursor);
            return;
        }
        switch (codec.kind) {
        case QelWireKind::base:
            fillRecord(cursor, codec);
            break;
        case QelWireKind::group:
            cursor.newChild(field.id);
            fillRecord(cursor, codec);
            cursor.seekUp();
            break;
        case QelWireKind::step:
            // A type known to be enough; any other step is among those made by hand.
            putChild(cursor, field.id, contentOf(layout, field), field.form);
            break;
        case QelWireKind::sequence:
        case QelWireKind::set:
            if (field.id != 0)
                cursor.newChild(field.id);
            for (unsigned left = below(4) + 1; left > 0; --left)
                putItem(cursor, field);
            if (field.id != 0)
                cursor.seekUp();
            break;
        case QelWireKind::bits:
            if (field.id != 0)
                cursor.newChild(field.id);
            for (const QelWireBit& each : codec.bits)
                if (below(2) == 0)
                    cursor.putChild(each.id);
            if (field.id != 0)
                cursor.seekUp();
            break;
        case QelWireKind::map:
            if (field.id != 0)
                cursor.newChild(field.id);
            for (unsigned left = below(4); left > 0; --left)
                putEntry(cursor, field);
            if (field.id != 0)
                cursor.seekUp();
            break;
        default:
            putChild(cursor, field.id, codec, field.form);
        }
    }

    static const QelWireCodec& contentOf(const QelWireLayout& layout, const QelWireField& field) {
        if (const QelWireCodec* const content = field.codec->item; content && !content->item)
            return *content;
        throw std::out_of_range("no way to make " + std::string(layout.typeName) + ", element " +
                                std::to_string(field.id));
    }

    void fillRecord(QelMessageIterator& cursor, const QelWireCodec& codec) {
        const QelWireLayout* const layout = codec.layout ? codec.layout() : nullptr;
        fill(cursor, layout ? layout->typeName : codec.typeName, layout);
    }

    void putItem(QelMessageIterator& cursor, const QelWireField& field) {
        cursor.newChild(field.item);
        putChild(cursor, field.value, *field.codec->item, field.form);
        cursor.seekUp();
    }

    void putEntry(QelMessageIterator& cursor, const QelWireField& field) {
        cursor.newChild(field.item);
        putChild(cursor, field.key, *field.codec->key, field.form);
        putChild(cursor, field.value, *field.codec->item, field.form);
        cursor.seekUp();
    }

    /// With `id` 0 in the record's own element.
    void putChild(QelMessageIterator& cursor, int id, const QelWireCodec& codec, QelWireForm form) {
        if (id == 0) {
            putValue(cursor, codec, form);
            return;
        }
        cursor.newChild(id);
        putValue(cursor, codec, form);
        cursor.seekUp();
    }

    void putValue(QelMessageIterator& cursor, const QelWireCodec& codec, QelWireForm form) {
        switch (codec.kind) {
        case QelWireKind::text:
            putText(cursor, form == QelWireForm::base64);
            break;
        case QelWireKind::integer:
            cursor.putValue(static_cast<int>(below(4)), 0);
            break;
        case QelWireKind::longInteger:
            if (form == QelWireForm::time)
                cursor.putValueTime(static_cast<long>(below(2'000'000'000)), 0);
            else
                cursor.putValueLongLong(static_cast<long long>(m_random()) << 20U, 0);
            break;
        case QelWireKind::real:
            cursor.putValueDouble(below(1000) / 7.0, 0);
            break;
        case QelWireKind::boolean:
            cursor.putValue(static_cast<int>(below(2)), 0);
            break;
        case QelWireKind::derived:
            m_byHand.at(std::string(codec.typeName))(cursor);
            break;
        case QelWireKind::record:
            fillRecord(cursor, codec);
            break;
        default: // presence: no value
            break;
        }
    }

    /// Short, since a fixed-length text ends the process when it is given a longer one.
    [[nodiscard]] std::string text() {
        static constexpr std::array<std::string_view, 8> some{"",      "a",        "<&>",      "two words",
                                                              "12345", "10.0.0.1", "\xC3\xB6", " padded "};
        return std::string(some[below(some.size())]);
    }

    void putIdentifier(QelMessageIterator& cursor) {
        cursor.putObj(QelGUID(static_cast<long long>(m_random()), static_cast<long long>(m_random())), 0);
    }

    void putAddress(QelMessageIterator& cursor) {
        static constexpr std::array<const char*, 5> addresses{"10.0.0.1", "2001:db8::1", "::", "", "no address"};
        static constexpr std::array<const char*, 6> masks{"24", "255.255.0.0", "64", "", "no mask", "99"};
        if (below(2) == 0)
            cursor.putValue(std::string(masks[below(masks.size())]), 1784);
        cursor.putValue(std::string(addresses[below(addresses.size())]), 1262);
    }

    Fill inChild(int id, const Fill& fillChild) {
        return [id, fillChild](QelMessageIterator& cursor) {
            cursor.newChild(id);
            fillChild(cursor);
            cursor.seekUp();
        };
    }

    Fill configuration(int typeID) {
        return [this, typeID](QelMessageIterator& cursor) {
            cursor.setComplexType(292, typeID);
            fill(cursor, "QelEnvConfig", &qelWireLayout<QelEnvConfig>());
        };
    }

    Fill identifier() {
        return [this](QelMessageIterator& cursor) { putIdentifier(cursor); };
    }

    /// An entry of a top list: its numbers are whole, so that they are of either representation.
    void putTopSet(QelMessageIterator& cursor) {
        inChild(1866, identifier())(cursor);
        cursor.putValue(static_cast<int>(below(1000)), 1018);
    }

    /// One of several classes of a family, stamped.
    void putOneOf(QelMessageIterator& cursor, std::initializer_list<std::string_view> classes) {
        const QelRecordType& type = *findRecordType(classes.begin()[below(classes.size())]);
        cursor.setComplexType(type.nsId, type.typeId);
        fill(cursor, type.name, type.layout);
    }
    void putTrigger(QelMessageIterator& cursor) {
        putOneOf(cursor, {"QelSchedulerOnceTrigger", "QelSchedulerDailyTrigger", "QelSchedulerWeeklyTrigger",
                          "QelSchedulerMonthlyTrigger", "QelSchedulerMonthlyDayOfWeekTrigger"});
    }
    void putPayload(QelMessageIterator& cursor) {
        putOneOf(cursor, {"QelAnyEventData", "QelResourceAlertData", "QelServerGroupAlertData"});
    }

    Fill control() {
        return [this](QelMessageIterator& cursor) { fill(cursor, "QelDirControl", &qelWireLayout<QelDirControl>()); };
    }

    /// The rules of a policy.
    void putRules(QelMessageIterator& cursor) {
        for (unsigned left = below(4); left > 0; --left)
            inChild(2273, [this](QelMessageIterator& rule) {
                rule.putValue(text(), 1010);
                rule.putValue(text(), 1018);
            })(cursor);
    }

    /// What a plug-in keeps with a session, now and then without a value.
    void putSessionData(QelMessageIterator& cursor) {
        for (unsigned left = below(4); left > 0; --left)
            inChild(1307, [this](QelMessageIterator& entry) {
                entry.putValue(text(), 1240);
                if (below(3) != 0)
                    inChild(1018, identifier())(entry);
            })(cursor);
    }

    /// Down to a few levels only: folders with as many folders again would go on for ever.
    void putChildFiles(QelMessageIterator& cursor) {
        constexpr unsigned levels = 3;
        if (++m_fileDepth <= levels)
            for (unsigned left = below(3); left > 0; --left)
                inChild(1161, [this](QelMessageIterator& child) {
                    fill(child, "QelFileType", &qelWireLayout<QelFileType>());
                })(cursor);
        --m_fileDepth;
    }

    /// One of the three forms; the second number of the range stands behind the first.
    Fill owner(int name, int id, int rangeFrom) {
        return [this, name, id, rangeFrom](QelMessageIterator& cursor) {
            switch (below(3)) {
            case 0:
                cursor.putValue(text(), name);
                break;
            case 1:
                number(id)(cursor);
                break;
            default:
                number(rangeFrom)(cursor);
                number(rangeFrom + 1)(cursor);
            }
        };
    }

    /// Infos, as deep as chance will have it.
    void putParameters(QelMessageIterator& cursor) {
        for (unsigned left = below(3) == 0 ? 2 : 0; left > 0; --left)
            inChild(1017,
                    [this](QelMessageIterator& at) { fill(at, "QelInfo", findRecordType("QelInfo")->layout); })(cursor);
    }

    Fill number(int id) {
        return [this, id](QelMessageIterator& cursor) { cursor.putValue(static_cast<int>(below(2000)), id); };
    }

    /// A cell of a row set, with its text in element `id`.
    void putCell(QelMessageIterator& cursor, int id) {
        if (below(3) != 0) {
            cursor.newChild(id);
            putText(cursor, id == 1018);
            cursor.seekUp();
            return;
        }
        for (unsigned left = below(3); left > 0; --left)
            inChild(1082, [this, id](QelMessageIterator& child) { putCell(child, id); })(cursor);
    }

    void putText(QelMessageIterator& cursor, bool encoded) {
        if (encoded)
            cursor.putValueBase64(text(), 0);
        else
            cursor.putValue(text(), 0);
    }

    /// One that can be in a pool; often a neighbour of another.
    std::string poolAddress() { return ipToStr(0x0A000001U + below(40)); }

    void putPoolRanges(QelMessageIterator& cursor) {
        for (unsigned left = below(5); left > 0; --left) {
            if (below(2) == 0) {
                cursor.putValue(poolAddress(), 1262);
                continue;
            }
            cursor.newChild(1662);
            const unsigned start = 0x0A000001U + below(40);
            cursor.putValue(ipToStr(start), 1597);
            cursor.putValue(ipToStr(start + below(4)), 1663);
            cursor.seekUp();
        }
    }

    /// A prefix, a mask as a number or as an address; nothing only where the range has an end.
    void putPrefix(QelMessageIterator& cursor) {
        static constexpr std::array<const char*, 5> prefixes{"24", "128", "4294967040", "255.255.255.0", "1"};
        if (cursor.seekPresence(1663) != 0 || below(2) == 0)
            cursor.putValue(std::string(prefixes[below(prefixes.size())]), 1784);
    }

    void putNameServers(QelMessageIterator& cursor) {
        cursor.newChild(1708);
        for (unsigned left = below(3); left > 0; --left)
            cursor.putValue(below(2) == 0 ? poolAddress() : "2001:db8::53", 1281);
        cursor.seekUp();
    }

    void putKind(QelMessageIterator& cursor) {
        cursor.newChild(1192);
        cursor.putChild(below(2) == 0 ? 1758 : 2133);
        cursor.seekUp();
    }

    void putRows(QelMessageIterator& cursor) {
        for (unsigned left = below(3); left > 0; --left)
            inChild(1739, [this](QelMessageIterator& row) {
                for (unsigned cells = below(4); cells > 0; --cells)
                    inChild(1082, [this](QelMessageIterator& cell) { putCell(cell, 1018); })(row);
            })(cursor);
    }

    void putInterval(QelMessageIterator& cursor) {
        for (const int end : {1063, 1064})
            cursor.putValueTimeZone(static_cast<long>(below(2'000'000'000)), static_cast<int>(below(28) * 30) - 420,
                                    end);
    }

    void putStatistic(QelMessageIterator& cursor) {
        for (const int value : {1060, 1061, 1062, 1065})
            cursor.putValueLongLong(static_cast<long long>(m_random()) << 20U, value);
    }

    /// Runs of elements with a name each, one in the other, and a statistic in each of the innermost.
    void putCounters(QelMessageIterator& cursor, std::span<const int> levels) {
        if (levels.empty()) {
            inChild(1018, [this](QelMessageIterator& at) { putStatistic(at); })(cursor);
            return;
        }
        for (unsigned left = below(4); left > 0; --left)
            inChild(levels.front(), [&](QelMessageIterator& at) {
                at.putValue(text(), 1026);
                putCounters(at, levels.subspan(1));
            })(cursor);
    }

    void putBlock(QelMessageIterator& cursor) {
        std::string bytes(128, '\0');
        for (char& byte : bytes)
            byte = static_cast<char>(below(256));
        cursor.putValueBase64(bytes, 1010);
    }

    void putVocabulary(QelMessageIterator& cursor) {
        for (unsigned left = below(5); left > 0; --left)
            inChild(below(2) == 0 ? 1264 : 1017, [this](QelMessageIterator& at) {
                at.putValue(text(), 1010);
                at.putValue(text(), 1264);
            })(cursor);
    }

    Fill time(int id) {
        return [this, id](QelMessageIterator& cursor) {
            cursor.putValueTime(static_cast<long>(below(2'000'000'000)), id);
        };
    }

    Fill record(std::string_view typeName) {
        return
            [this, typeName](QelMessageIterator& cursor) { fill(cursor, typeName, findRecordType(typeName)->layout); };
    }

    /// A run of children, at least one.
    Fill run(const Fill& fillChild) {
        return [this, fillChild](QelMessageIterator& cursor) {
            for (unsigned left = below(4) + 1; left > 0; --left)
                fillChild(cursor);
        };
    }

    Fill textChild(int id) {
        return [this, id](QelMessageIterator& cursor) { cursor.putValue(text(), id); };
    }

    std::mt19937 m_random;
    unsigned m_fileDepth = 0;

    /// Records without a table, by their class.
    std::map<std::string, Fill> m_byHand{
        {"QelGUID", identifier()},
        {"QelEID", identifier()},
        {"QelCommonDevice",
         [this](QelMessageIterator& cursor) {
             putOneOf(cursor, {"QelCommonDevice", "QelScsiDevice", "QelWindowsDevice"});
         }},
        {"QelEnvConfig",
         [this](QelMessageIterator& cursor) {
             putOneOf(cursor, {"QelEnvConfig", "QelVEnvConfig"});
         }},
        {"QelVEnvConfig", configuration(121)},
        {"QelPackage",
         [this](QelMessageIterator& cursor) {
             putOneOf(cursor, {"QelPackage", "QelPackageDeb", "QelPackageRpm"});
         }},
        // A row without columns: it has no names for more.
        {"QelProcessInfo",
         [this](QelMessageIterator& cursor) { cursor.putValue(static_cast<int>(below(1000)), 1081); }},
        {"QelTopData",
         [this](QelMessageIterator& cursor) {
             for (unsigned left = below(4); left > 0; --left)
                 inChild(1179, [this](QelMessageIterator& entry) { putTopSet(entry); })(cursor);
             cursor.putValue(static_cast<int>(below(5000)), 1040);
         }},
        {"QelTopData::TopSet", [this](QelMessageIterator& cursor) { putTopSet(cursor); }},
        {"QelDirAttribute",
         [this](QelMessageIterator& cursor) {
             cursor.putValue(text(), 1026);
             for (unsigned left = below(4); left > 0; --left)
                 cursor.putValue(text(), 1018);
         }},
        {"QelEnv", record("QelEnv")},
        {"QelSchedulerTrigger", [this](QelMessageIterator& cursor) { putTrigger(cursor); }},
        {"QelIPAddress", [this](QelMessageIterator& cursor) { putAddress(cursor); }},
        {"QelNetDevice",
         [this](QelMessageIterator& cursor) { fill(cursor, "QelNetDevice", &qelWireLayout<QelNetDevice>()); }},
        {"QelResource",
         [this](QelMessageIterator& cursor) {
             putOneOf(cursor, {"QelResource", "QelRangedResource"});
         }},
        {"QelResourcePool",
         [this](QelMessageIterator& cursor) {
             putOneOf(cursor, {"QelResourcePool", "QelRangedPool"});
         }},
        {"QelStringTree<1018, true>", [this](QelMessageIterator& cursor) { putCell(cursor, 1018); }},
        {"QelStringTree<1026, false>", [this](QelMessageIterator& cursor) { putCell(cursor, 1026); }},
        {"QelSID",
         [](QelMessageIterator& cursor) {
             cursor.putValueBase64(std::string("\1\1\0\0\0\0\0\5\7\0\0\0", 12), 0); // S-1-5-7
         }},
        {"QelEIDList",
         [this](QelMessageIterator& cursor) {
             for (unsigned left = below(4); left > 0; --left)
                 inChild(1866, identifier())(cursor);
         }},
        {"QelConfiguration", inChild(1307,
                                     [this](QelMessageIterator& cursor) {
                                         for (unsigned left = below(4); left > 0; --left)
                                             inChild(static_cast<int>(1001 + below(20)), identifier())(cursor);
                                     })},
        {"QelMonitorData",
         [this](QelMessageIterator& cursor) {
             inChild(1866, identifier())(cursor);
             inChild(1086, [this](QelMessageIterator& at) { putInterval(at); })(cursor);
             static constexpr std::array levels{1094, 1905, 1906};
             putCounters(cursor, levels);
         }},
        {"QelPerfMonActualValue", [this](QelMessageIterator& cursor) { putBlock(cursor); }},
        {"QelPerfMonHistoricalValue", [this](QelMessageIterator& cursor) { putBlock(cursor); }},
        {"QelPerfStat", [this](QelMessageIterator& cursor) { putStatistic(cursor); }},
        {"QelTimeInterval", [this](QelMessageIterator& cursor) { putInterval(cursor); }},
        {"QelVocPrototype", [this](QelMessageIterator& cursor) { putVocabulary(cursor); }},
        {"QelNamedOpStrListProperty",
         [this](QelMessageIterator& cursor) {
             cursor.putValue(static_cast<int>(below(3)), 1638);
             cursor.putValue(text(), 1026);
             for (unsigned left = below(4); left > 0; --left)
                 cursor.putValue(text(), 1018);
         }},
    };

    /// Records of whose elements more is asked than the table can tell, by their class.
    std::map<std::string, Fill> m_beyondTable{
        // A time, a text or both.
        {"QelDate",
         [this](QelMessageIterator& cursor) {
             const unsigned parts = below(3) + 1;
             if ((parts & 1U) != 0)
                 cursor.putValueTime(static_cast<long>(below(2'000'000'000)) + 1, 1004);
             if ((parts & 2U) != 0)
                 cursor.putValue("day " + text(), 2007);
         }},
    };

    /// Steps and other fields, by the class of the table and the element.
    std::map<std::pair<std::string, int>, Fill> m_fields{
        // An empty address can't be written.
        {{"QelConnectivityInfo", 1687},
         [this](QelMessageIterator& cursor) { cursor.putValue("host-" + text(), 1687); }},
        {{"QelDevMountInfo", 1117}, [this](QelMessageIterator& cursor) { cursor.putValue("at " + text(), 1117); }},
        {{"QelInstallationPackage", 1156}, // an empty one isn't written
         [this](QelMessageIterator& cursor) { cursor.putValueBase64("/" + text(), 1156); }},
        {{"QelPackageListModificationData", 1007},
         [this](QelMessageIterator& cursor) { cursor.putValue(static_cast<int>(below(3)), 1007); }},
        // Each row has as many values as there are names, and these are in the order of a map.
        {{"QelProcessList", 1080},
         [this](QelMessageIterator& cursor) {
             for (unsigned left = below(4); left > 0; --left) {
                 cursor.newChild(1080);
                 cursor.putValue(static_cast<int>(below(1000)), 1081);
                 cursor.putValue(text(), 1082);
                 cursor.putValue(text(), 1082);
                 cursor.seekUp();
             }
         }},
        {{"QelProcessList", 1083},
         [](QelMessageIterator& cursor) {
             cursor.putValue("command", 1083);
             cursor.putValue("user", 1083);
         }},
        {{"QelDirRealm", 0},
         [this](QelMessageIterator& cursor) {
             fill(cursor, "QelRealm", &qelWireLayout<QelRealm>());
             cursor.deleteChild(1007);
             cursor.putValue(QelDirRealm::directoryType, 1007);
         }},
        {{"QelDirRealm", 1687}, [this](QelMessageIterator& cursor) { cursor.putValue("host-" + text(), 1687); }},
        {{"QelDirRealm", 1704},
         [this](QelMessageIterator& cursor) { cursor.putValue(static_cast<int>(1 + below(65535)), 1704); }},
        {{"QelDirRealm", 1958},
         [](QelMessageIterator& cursor) { cursor.putValue(std::string("dc=example,dc=org"), 1958); }},
        {{"QelDirRealm", 1959},
         [this](QelMessageIterator& cursor) { cursor.putValue(text() + "dc=EXAMPLE,dc=org", 1959); }},
        {{"QelDirSortControl", 0}, control()},
        {{"QelDirVlvControl", 0}, control()},
        {{"QelEffectivePolicyAssignment", 2276},
         inChild(2276, [this](QelMessageIterator& cursor) { putRules(cursor); })},
        {{"QelInfrastructureFolderAttributes", 1007},
         [this](QelMessageIterator& cursor) { cursor.putValue(static_cast<int>(1 + below(5)), 1007); }},
        {{"QelPolicy", 2276}, inChild(2276, [this](QelMessageIterator& cursor) { putRules(cursor); })},
        {{"QelSession", 1320},
         [this](QelMessageIterator& cursor) { cursor.putValue(static_cast<int>(below(4)) - 1, 1320); }},
        {{"QelSession", 1221},
         [this](QelMessageIterator& cursor) { cursor.putValue("0." + std::to_string(below(9)), 1221); }},
        {{"QelSession", 1307}, [this](QelMessageIterator& cursor) { putSessionData(cursor); }},
        {{"QelFirewallRule", 1195}, // an empty one isn't written, and missed when the rule is read back
         [this](QelMessageIterator& cursor) { cursor.putValue("text " + text(), 1195); }},
        {{"QelIPPoolBaseData", 1708}, [this](QelMessageIterator& cursor) { putNameServers(cursor); }},
        {{"QelIPRange", 1663}, [this](QelMessageIterator& cursor) { cursor.putValue(poolAddress(), 1663); }},
        {{"QelIPRange", 1784}, [this](QelMessageIterator& cursor) { putPrefix(cursor); }},
        {{"QelNetDevice", 1192}, [this](QelMessageIterator& cursor) { putKind(cursor); }},
        {{"QelRangedPool", 1662}, [this](QelMessageIterator& cursor) { putPoolRanges(cursor); }},
        {{"QelRangedResource", 1262}, [this](QelMessageIterator& cursor) { cursor.putValue(poolAddress(), 1262); }},
        {{"QelResourcePool", 1007},
         [this](QelMessageIterator& cursor) { cursor.putValue(below(2) == 0 ? "resource_ip" : "", 1007); }},
        {{"QelPagerSortCondition", 1378}, [](QelMessageIterator& cursor) { cursor.putChild(1378); }},
        {{"QelRowSet", 1739}, [this](QelMessageIterator& cursor) { putRows(cursor); }},
        {{"QelRowSet", 1259}, number(1259)},
        {{"QelRowSet", 1040}, number(1040)},
        {{"QelAnyEventData", 0}, inChild(1307, [this](QelMessageIterator& cursor) { cursor.putValue(text(), 1026); })},
        {{"QelEvent", 1004}, time(1004)},
        {{"QelEvent", 1307}, inChild(1307, inChild(1913, [this](QelMessageIterator& cursor) { putPayload(cursor); }))},
        {{"QelInfo", 1017}, [this](QelMessageIterator& cursor) { putParameters(cursor); }},
        // An empty identifier isn't written.
        {{"QelRequestProgressData", 1010},
         [this](QelMessageIterator& cursor) { cursor.putValue("request-" + text(), 1010); }},
        {{"QelRequestProgressData", 1004}, time(1004)},
        {{"QelRequestProgressData", 1962}, [this](QelMessageIterator& cursor) { cursor.putValue(text(), 1962); }},
        {{"QelResourceAlertData", 1065},
         [this](QelMessageIterator& cursor) {
             for (const int value : {1065, 1066, 1067})
                 if (value != 1066 || below(2) == 0)
                     cursor.putValueLongLong(static_cast<long long>(m_random()) << 20U, value);
         }},
        {{"QelSchedulerTrigger", 1063}, time(1063)},
        {{"QelSchedulerTrigger", 1064}, time(1064)},
        // A task without a name is written but can't be read back.
        {{"QelTask", 1026}, [this](QelMessageIterator& cursor) { cursor.putValue("task-" + text(), 1026); }},
        {{"QelFileFilter", 0}, [](QelMessageIterator&) {}}, // no element: the mask is told by what is there
        {{"QelFileFilter", 1025}, owner(1025, 1030, 1142)},
        {{"QelFileFilter", 1029}, owner(1029, 1027, 1144)},
        {{"QelFileType", 0}, [](QelMessageIterator&) {}},
        {{"QelFileType", 1161}, [this](QelMessageIterator& cursor) { putChildFiles(cursor); }},
        {{"QelFilerOptions", 1138},
         inChild(1138,
                 [this](QelMessageIterator& wrapper) {
                     if (below(2) == 0)
                         wrapper.putChild(1139);
                 })},
        {{"QelBackupOptions", 1014}, inChild(1014, textChild(1006))},
        {{"QelExcludeList", 1156}, run(textChild(1156))},
        {{"QelNewBackupData", 1006}, inChild(1006, record("QelBackup"))},
        {{"QelP2VMigrateOptions", 1185}, inChild(1185, configuration(120))},
        {{"QelP2VMigrateOptions", 1811}, inChild(1811, inChild(1115, textChild(1026)))},
        {{"QelV2VMigrateOptions", 1185}, inChild(1185, configuration(120))},
        {{"QelService", 0}, [](QelMessageIterator&) {}}, // what stands a second time is skipped
        {{"QelService", 1422},
         run([this](QelMessageIterator& cursor) { cursor.putValue(static_cast<int>(below(7)), 1422); })},
        {{"QelUserCredentials", 1030}, number(1030)},
        {{"QelUserCredentials", 1027}, inChild(1027, number(1030))},
        {{"QelProfile", 1630},
         inChild(1630,
                 [this](QelMessageIterator& cursor) { fill(cursor, "QelAuthName", &qelWireLayout<QelAuthName>()); })},
        {{"QelEnv", 1870}, inChild(1870, identifier())},
        {{"QelEnv", 1866}, inChild(1866, identifier())},
        {{"QelEnv", 1192},
         inChild(1192,
                 [this](QelMessageIterator& cursor) { fill(cursor, "QelEnvStatus", &qelWireLayout<QelEnvStatus>()); })},
        {{"QelEnv", 1003},
         [this](QelMessageIterator& cursor) {
             for (unsigned left = below(7); left > 0; --left)
                 cursor.putValue(static_cast<int>(below(5)), 1003);
         }},
        {{"QelEnv", 1185}, inChild(1185, configuration(120))},
        {{"QelEnv", 1872}, inChild(1872, configuration(121))},
    };
};

} // namespace Qel::TestSupport
