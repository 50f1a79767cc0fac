#include "QelFunctionalityCore/Files/QelFileFilter.h"

#include "QelFunctionalityCore/Files/ValidMaskStep.h"
#include "QelMessage/QelWireTable.h"

namespace Qel {

namespace {

using Filter = QelFileFilter;

/// The three forms of an owner: name, number, or range of numbers.
struct Owner {
    int nameElement, numberElement, fromElement, toElement;
    unsigned nameBit, numberBit, rangeBit;
    std::string Filter::*name;
    int Filter::*number;
    Filter::Range Filter::*range;
};

constexpr Owner user{1025,
                     1030,
                     1142,
                     1143,
                     Filter::validUserName,
                     Filter::validUid,
                     Filter::validUserRange,
                     &Filter::userName,
                     &Filter::uid,
                     &Filter::userRange};
constexpr Owner group{1029,
                      1027,
                      1144,
                      1145,
                      Filter::validGroupName,
                      Filter::validGid,
                      Filter::validGroupRange,
                      &Filter::groupName,
                      &Filter::gid,
                      &Filter::groupRange};

template <const Owner& owner> int readOwner(const QelMessageIterator& cursor, Filter& filter) {
    Filter::Range range;
    if (cursor.getValue(filter.*owner.name, owner.nameElement) == 0) {
        filter.setValid(owner.nameBit);
    } else if (cursor.getValue(filter.*owner.number, owner.numberElement) == 0) {
        filter.setValid(owner.numberBit);
    } else if (cursor.getValue(range.from, owner.fromElement) == 0 && cursor.getValue(range.to, owner.toElement) == 0) {
        filter.*owner.range = range;
        filter.setValid(owner.rangeBit);
    }
    return 0;
}

template <const Owner& owner> int writeOwner(QelMessageIterator& cursor, const Filter& filter) {
    if (filter.isValid(owner.rangeBit)) {
        cursor.putValue((filter.*owner.range).from, owner.fromElement);
        cursor.putValue((filter.*owner.range).to, owner.toElement);
    } else if (filter.isValid(owner.nameBit)) {
        cursor.putValue(filter.*owner.name, owner.nameElement);
    } else if (filter.isValid(owner.numberBit)) {
        cursor.putValue(filter.*owner.number, owner.numberElement);
    }
    return 0;
}

} // namespace

template <> struct Wire<QelFileFilter> : WireWords<QelFileFilter> {
    static constexpr auto mask = &Filter::validMask;
    static constexpr QelWireField fields[] = {
        step<&Internal::clearValidMask<Filter>, &Internal::leaveValidMask<Filter>>("validMask", 0, required),
        marked<&Filter::name, mask>(1026, Filter::validName, ignored, ifSet, base64).bestEffort(),
        marked<&Filter::type, mask>(1007, Filter::validType, ignored, ifSet).bestEffort(),
        marked<&Filter::path, mask>(1150, Filter::validPath, ignored, ifSet, base64).bestEffort(),
        marked<&Filter::mtimeFrom, mask>(1146, Filter::validTimeFrom, ignored, ifSet, time).bestEffort(),
        marked<&Filter::mtimeTo, mask>(1147, Filter::validTimeTo, ignored, ifSet, time).bestEffort(),
        marked<&Filter::sizeFrom, mask>(1148, Filter::validSizeFrom, ignored, ifSet).bestEffort(),
        marked<&Filter::sizeTo, mask>(1149, Filter::validSizeTo, ignored, ifSet).bestEffort(),
        step<&readOwner<user>, &writeOwner<user>>("user", 1025, ignored, ifSet),
        step<&readOwner<group>, &writeOwner<group>>("group", 1029, ignored, ifSet),
    };
};
const QelWireLayout& QelFileFilter::wire = wireLayoutOf<QelFileFilter>;

} // namespace Qel
