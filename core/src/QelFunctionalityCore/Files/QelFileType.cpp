#include "QelFunctionalityCore/Files/QelFileType.h"

#include "QelFunctionalityCore/Files/ValidMaskStep.h"
#include "QelMessage/QelWireTable.h"

namespace Qel {

namespace {

using File = QelFileType;

constexpr int typeElement = 1007;
constexpr int nameElement = 1026;
constexpr int modeElement = 1135;
constexpr int ownerNameElement = 1025;
constexpr int uidElement = 1030;
constexpr int groupNameElement = 1029;
constexpr int gidElement = 1027;
constexpr int sizeElement = 1024;
constexpr int mtimeElement = 1023;
constexpr int linksElement = 1136;
constexpr int linkTargetElement = 1137;
constexpr int extraElement = 1798;

/// The attribute mask as a record.
struct AttributeMask {
    unsigned mask = 0;
};

} // namespace

template <> struct Wire<QelFileType> : WireWords<QelFileType> {
    static constexpr auto mask = &File::validMask;
    static constexpr QelWireField fields[] = {
        marked<&File::name, mask>(nameElement, File::validName, required, always, base64),
        list<&File::children>(1161, optional),
        step<&Internal::clearValidMask<File>, &Internal::leaveValidMask<File>>("validMask", 0, required),
        marked<&File::type, mask>(typeElement, File::validType, ignored, ifSet).bestEffort(),
        marked<&File::mode, mask>(modeElement, File::validMode, ignored, ifSet).bestEffort(),
        marked<&File::ownerName, mask>(ownerNameElement, File::validOwnerName, ignored, ifSet).bestEffort(),
        marked<&File::groupName, mask>(groupNameElement, File::validGroupName, ignored, ifSet).bestEffort(),
        marked<&File::uid, mask>(uidElement, File::validUid, ignored, ifSet).bestEffort(),
        marked<&File::gid, mask>(gidElement, File::validGid, ignored, ifSet).bestEffort(),
        marked<&File::links, mask>(linksElement, File::validLinks, ignored, ifSet).bestEffort(),
        marked<&File::linkTarget, mask>(linkTargetElement, File::validLinkTarget, ignored, ifSet, base64).bestEffort(),
        marked<&File::extra, mask>(extraElement, File::validExtra, ignored, ifSet).bestEffort(),
        marked<&File::size, mask>(sizeElement, File::validSize, ignored, ifSet).bestEffort(),
        marked<&File::mtime, mask>(mtimeElement, File::validTime, ignored, ifSet, time).bestEffort(),
        list<&File::values>(1087, ignored).bestEffort(),
    };
};
const QelWireLayout& QelFileType::wire = wireLayoutOf<QelFileType>;

template <> struct Wire<AttributeMask> : WireWords<AttributeMask> {
    static constexpr QelWireField fields[] = {
        bits<&R::mask, QelWireBit{File::validType, typeElement}, QelWireBit{File::validName, nameElement},
             QelWireBit{File::validMode, modeElement}, QelWireBit{File::validOwnerName, ownerNameElement},
             QelWireBit{File::validUid, uidElement}, QelWireBit{File::validGroupName, groupNameElement},
             QelWireBit{File::validGid, gidElement}, QelWireBit{File::validSize, sizeElement},
             QelWireBit{File::validTime, mtimeElement}, QelWireBit{File::validLinks, linksElement},
             QelWireBit{File::validLinkTarget, linkTargetElement}, QelWireBit{File::validExtra, extraElement}>(),
    };
};

int QelReaderFileTypeMask(const QelMessageIterator& cursor, unsigned& mask) {
    AttributeMask read;
    const int result = readByLayout(wireLayoutOf<AttributeMask>, &read, cursor);
    mask = read.mask;
    return result;
}

int QelWriterFileTypeMask(QelMessageIterator& cursor, unsigned mask) {
    const AttributeMask written{mask};
    return writeByLayout(wireLayoutOf<AttributeMask>, &written, cursor);
}

} // namespace Qel
