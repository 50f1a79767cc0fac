#include "QelFunctionalityCore/Network/QelResource.h"

#include <iterator>
#include <limits>

#include "QelCore/QelContainers.h"
#include "QelMessage/QelDerivedRegistry.h"
#include "QelMessage/QelElementNames.h"
#include "QelMessage/QelReaderListAll.h"
#include "QelMessage/QelWireTable.h"

namespace Qel {

namespace {

using IDResourceName = std::map<QelResourceType, std::string>;
using ResourceNameID = std::map<std::string, QelResourceType>;

constexpr scalarPair<IDResourceName> namesOfIDs[] = {{QelResourceType::ip, "resource_ip"}, {QelResourceType::none, ""}};
constexpr scalarPair<ResourceNameID> idsOfNames[] = {{"resource_ip", QelResourceType::ip}, {"", QelResourceType::none}};

int readType(const QelMessageIterator& cursor, QelResourcePool& pool) {
    std::string name;
    cursor.getValue(name, "type"_element);
    const auto found = ResourceNameIDMap.find(name);
    if (found == ResourceNameIDMap.end())
        return -1;
    pool.type = found->second;
    return 0;
}
int writeType(QelMessageIterator& cursor, const QelResourcePool& pool) {
    const auto found = IDResourceNameMap.find(pool.type);
    if (found == IDResourceNameMap.end())
        return -1;
    cursor.putValue(found->second, "type"_element);
    return 0;
}

int readAddress(const QelMessageIterator& cursor, QelResourceIp& resource) {
    return cursor.getObject(resource.value, QelIPReader(), "ip"_element);
}
int writeAddress(QelMessageIterator& cursor, const QelResourceIp& resource) {
    return cursor.putObject(resource.value, QelIPWriter(), "ip"_element);
}

/// Reads one child of a pool and appends its value or range to `ranges`; ignores children of other kinds.
template <class T, T emptyValue, class ValueReader> struct ElementParser {
    int operator()(const QelMessageIterator& cursor, std::vector<range<T>>& ranges) const {
        range<T> found{emptyValue, emptyValue};
        switch (cursor.curID()) {
        case "ip"_element:
            // Not checked, unlike the bounds of a range: a writer gets single values from a set, which never contains
            // the extreme values.  An extreme value here is an internal error, and the set terminates the process.
            cursor.getObject(found.start, ValueReader(), getEmptyID());
            found.end = found.start;
            break;
        case "range"_element:
            if (readBounds(cursor, found) != 0)
                return -1;
            break;
        default:
            return 0;
        }
        ranges.push_back(found);
        return 0;
    }

private:
    static int readBounds(const QelMessageIterator& cursor, range<T>& found) {
        if (cursor.getObject(found.start, ValueReader(), "start"_element) != 0 ||
            cursor.getObject(found.end, ValueReader(), "end"_element) != 0)
            return -1;
        const bool isInSet = std::numeric_limits<T>::min() < found.start && found.start <= found.end &&
                             found.end < std::numeric_limits<T>::max();
        return isInSet ? 0 : -1;
    }
};

int readRanges(const QelMessageIterator& cursor, QelResourceIpPool& pool) {
    std::vector<range<unsigned>> ranges;
    const int result = QelReaderListAllT(ElementParser<unsigned, 0, QelIPReader>(), QelReaderOptional)(cursor, ranges);
    // A single insertion, because inserting descending ranges one by one takes quadratic time, and a message may
    // contain a million of them.
    pool.ranges.insert(ranges.begin(), ranges.end());
    return result;
}

int writeRanges(QelMessageIterator& cursor, const QelResourceIpPool& pool) {
    for (const range<unsigned>& each : pool.ranges) {
        cursor.newChild(each.start == each.end ? "ip"_element : "range"_element);
        if (each.start == each.end) {
            QelIPWriter()(cursor, each.start);
        } else {
            cursor.putObject(each.start, QelIPWriter(), "start"_element);
            cursor.putObject(each.end, QelIPWriter(), "end"_element);
        }
        cursor.seekUp();
    }
    return 0;
}

} // namespace

const IDResourceName IDResourceNameMap(std::begin(namesOfIDs), std::end(namesOfIDs));
const ResourceNameID ResourceNameIDMap(std::begin(idsOfNames), std::end(idsOfNames));

template <> struct Wire<QelResource> : WireWords<QelResource> { static constexpr int nsId = 281, typeId = 129; };
const QelWireLayout& QelResource::wire = wireLayoutOf<QelResource>;

template <> struct Wire<QelResourceIp> : WireWords<QelResourceIp> {
    static constexpr std::string_view typeName = "QelResourceIp";
    static constexpr int nsId = 281, typeId = 251;
    static constexpr QelWireField fields[] = {
        base<QelResource>(),
        step<&readAddress, &writeAddress>("value", "ip"_element, required),
    };
};
template <> const QelWireLayout& QelResourceIp::wire = wireLayoutOf<QelResourceIp>;

template <> struct Wire<QelResourcePool> : WireWords<QelResourcePool> {
    static constexpr int nsId = 281, typeId = 249;
    static constexpr QelWireField fields[] = {
        step<&readType, &writeType>("type", "type"_element, optional),
    };
};
const QelWireLayout& QelResourcePool::wire = wireLayoutOf<QelResourcePool>;

template <> struct Wire<QelResourceIpPool> : WireWords<QelResourceIpPool> {
    static constexpr std::string_view typeName = "QelResourceIpPool";
    static constexpr int nsId = 281, typeId = 250;
    static constexpr QelWireField fields[] = {
        base<QelResourcePool>(),
        step<&readRanges, &writeRanges>("ranges", "range"_element, optional, ifSet),
    };
};
template <> const QelWireLayout& QelResourceIpPool::wire = wireLayoutOf<QelResourceIpPool>;

template <> struct Wire<QelPoolResourcePair> : WireWords<QelPoolResourcePair> {
    static constexpr bool bestEffort = true;
    static constexpr QelWireField fields[] = {
        derived<&R::pool, false>(1974, ignored, ifSet),
        derived<&R::resource, false>(1665, ignored, ifSet),
    };
};
const QelWireLayout& QelPoolResourcePair::wire = wireLayoutOf<QelPoolResourcePair>;

template class QelDerivedParserFactory<QelResource>;
template class QelDerivedParserFactory<QelResourcePool>;

QelDerivedParserFactoryT<QelResource, QelResource> factoryQelResource(true);
QelDerivedParserFactoryT<QelResourceIp, QelResource> factoryQelResourceIp(false);
QelDerivedParserFactoryT<QelResourcePool, QelResourcePool> factoryQelResourcePool(true);
QelDerivedParserFactoryT<QelResourceIpPool, QelResourcePool> factoryQelResourceIpPool(false);

} // namespace Qel
