#include "QelFunctionalityCore/Files/QelFileType.h"

#include "QelFunctionalityCore/Files/ValidMaskStep.h"
#include "QelMessage/QelElementNames.h"
#include "QelMessage/QelWireTable.h"

namespace Qel {

namespace {

using File = QelFileType;

/// The attribute mask as a record.
struct AttributeMask {
    unsigned mask = 0;
};

} // namespace

template <> struct Wire<QelFileType> : WireWords<QelFileType> {
    static constexpr auto mask = &File::validMask;
    static constexpr QelWireField fields[] = {
        marked<&File::name, mask>("name"_element, File::validName, required, always, base64),
        list<&File::children>(1161, optional),
        step<&Internal::clearValidMask<File>, &Internal::leaveValidMask<File>>("validMask", 0, required),
        marked<&File::type, mask>("type"_element, File::validType, ignored, ifSet).bestEffort(),
        marked<&File::mode, mask>("mode"_element, File::validMode, ignored, ifSet).bestEffort(),
        marked<&File::ownerName, mask>("user"_element, File::validOwnerName, ignored, ifSet).bestEffort(),
        marked<&File::groupName, mask>("group"_element, File::validGroupName, ignored, ifSet).bestEffort(),
        marked<&File::uid, mask>("uid"_element, File::validUid, ignored, ifSet).bestEffort(),
        marked<&File::gid, mask>("gid"_element, File::validGid, ignored, ifSet).bestEffort(),
        marked<&File::links, mask>("links"_element, File::validLinks, ignored, ifSet).bestEffort(),
        marked<&File::linkTarget, mask>("link_target"_element, File::validLinkTarget, ignored, ifSet, base64)
            .bestEffort(),
        marked<&File::extra, mask>("extra"_element, File::validExtra, ignored, ifSet).bestEffort(),
        marked<&File::size, mask>("size"_element, File::validSize, ignored, ifSet).bestEffort(),
        marked<&File::mtime, mask>("mtime"_element, File::validTime, ignored, ifSet, time).bestEffort(),
        list<&File::values>(1087, ignored).bestEffort(),
    };
};
const QelWireLayout& QelFileType::wire = wireLayoutOf<QelFileType>;

template <> struct Wire<AttributeMask> : WireWords<AttributeMask> {
    static constexpr QelWireField fields[] = {
        bits<&R::mask, QelWireBit{File::validType, "type"_element}, QelWireBit{File::validName, "name"_element},
             QelWireBit{File::validMode, "mode"_element}, QelWireBit{File::validOwnerName, "user"_element},
             QelWireBit{File::validUid, "uid"_element}, QelWireBit{File::validGroupName, "group"_element},
             QelWireBit{File::validGid, "gid"_element}, QelWireBit{File::validSize, "size"_element},
             QelWireBit{File::validTime, "mtime"_element}, QelWireBit{File::validLinks, "links"_element},
             QelWireBit{File::validLinkTarget, "link_target"_element}, QelWireBit{File::validExtra, "extra"_element}>(),
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
