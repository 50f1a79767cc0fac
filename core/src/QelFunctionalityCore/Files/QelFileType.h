#pragma once

#include <string>
#include <vector>

#include <boost/shared_ptr.hpp>

#include "QelCommon/Export.h"
#include "QelMessage/QelRecord.h"

namespace Qel {

/// A file and, for a folder, its children.  An attribute is known if its bit is in the mask.  Reading returns -1 if the
/// name is missing or a child cannot be read.
struct QEL_EXPORT QelFileType : QelRecord<QelFileType> {
    enum ValidMask : unsigned {
        validType = 0x1,
        validMode = 0x2,
        validOwnerName = 0x4,
        validUid = 0x8,
        validGroupName = 0x10,
        validGid = 0x20,
        validSize = 0x40,
        validTime = 0x80,
        validLinks = 0x100,
        validLinkTarget = 0x200,
        validName = 0x400, ///< cleared by reading: the name is required and always known
        validExtra = 0x800,
    };

    std::vector<boost::shared_ptr<QelFileType>> children; ///< no null elements: they cannot be written
    std::string name;                                     ///< may contain any bytes, as may `linkTarget`
    int type = 0;
    int mode = 0; ///< as in chmod(2)
    std::string ownerName;
    int uid = 0;
    std::string groupName;
    int gid = 0;
    long long size = 0; ///< bytes
    long mtime = 0;     ///< seconds since the epoch
    int links = 0;      ///< hard links
    std::string linkTarget;
    std::string extra;
    std::vector<long long> values;
    unsigned validMask = 0; ///< bits of ValidMask

    void setValid(unsigned bit) { validMask |= bit; }
    [[nodiscard]] bool isValid(unsigned bit) const { return (validMask & bit) != 0; }

    static const QelWireLayout& wire;
};

/// Which attributes a request wants: bits of QelFileType::ValidMask.  A bit is encoded as an empty element with the ID
/// of the attribute.  Both functions return 0.  The reader replaces the mask.
QEL_EXPORT int QelReaderFileTypeMask(const QelMessageIterator& cursor, unsigned& mask);
QEL_EXPORT int QelWriterFileTypeMask(QelMessageIterator& cursor, unsigned mask);

} // namespace Qel
