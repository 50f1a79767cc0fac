#include "qel/records/RecordLimits.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <limits>
#include <memory>
#include <typeinfo>

#include "QelFunctionalityCore/Network/QelResource.h"
#include "QelFunctionalityCore/Vocabulary/QelVocID.h"
#include "QelFunctionalityCore/Vocabulary/VocabularyElements.h"
#include "QelMessage/QelElementNames.h"

namespace Qel::Tool {

namespace {

constexpr int addressElement = 1262;
constexpr int pairsPoolElement = 1974;

std::optional<std::string> findLongName(const QelMessageIterator& cursor) {
    if (isTooLongForVocID(cursor, "name"_element))
        return "the name is too long";
    if (isTooLongForVocID(cursor, "version"_element))
        return "the version is too long";
    return std::nullopt;
}

std::optional<std::string> findFatalAddressOfPair(const QelMessageIterator& pair) {
    const std::unique_ptr<QelMessageIterator> at(pair.newIterator(false));
    // Only elements of this complex type are read as address pools.
    if (at->seek(pairsPoolElement) != 0 || at->curType() != QelDerivedKey<QelResourceIpPool::Writer>())
        return std::nullopt;
    return findFatalAddress(*at);
}

/// A record whose reader aborts the process on certain values, and a function that finds such a value.
struct TrustingReader {
    const std::type_info& record;
    std::optional<std::string> (*find)(const QelMessageIterator& cursor);
};

} // namespace

bool isTooLongForVocID(const QelMessageIterator& cursor, int element) {
    constexpr std::size_t most = sizeof(QelVocID::name) - 1;
    std::string text;
    return cursor.getValue(text, element) == 0 && std::strlen(text.c_str()) > most;
}

bool canBeInPool(unsigned address) {
    return address != std::numeric_limits<unsigned>::min() && address != std::numeric_limits<unsigned>::max();
}

std::optional<std::string> findFatalAddress(const QelMessageIterator& cursor) {
    const std::unique_ptr<QelMessageIterator> at(cursor.newIterator(false));
    if (at->firstChild(addressElement) != 0)
        return std::nullopt;
    do {
        unsigned address = 0;
        (void)at->getObject(address, QelIPReader(), getEmptyID());
        if (!canBeInPool(address)) {
            std::string text;
            (void)at->getValue(text, getEmptyID());
            return "no pool can hold the address '" + text + "'";
        }
    } while (at->nextSibling(addressElement) == 0);
    return std::nullopt;
}

std::optional<std::string> findFatalValue(const QelRecordType& type, const QelMessageIterator& cursor) {
    static const std::array readers{TrustingReader{typeid(QelVocID), findLongName},
                                    TrustingReader{typeid(QelResourceIpPool), findFatalAddress},
                                    TrustingReader{typeid(QelPoolResourcePair), findFatalAddressOfPair}};
    const auto found = std::find_if(readers.begin(), readers.end(),
                                    [&](const TrustingReader& each) { return each.record == *type.record; });
    return found == readers.end() ? std::nullopt : found->find(cursor);
}

} // namespace Qel::Tool
