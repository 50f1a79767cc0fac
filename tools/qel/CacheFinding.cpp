#include "qel/CacheFinding.h"

namespace Qel::Tool {

std::string_view nameOf(FindingKind kind) {
    switch (kind) {
    case FindingKind::headerConstant:
        return "header-constant";
    case FindingKind::fileLength:
        return "file-length";
    case FindingKind::blockSize:
        return "block-size";
    case FindingKind::freeListLink:
        return "free-list-link";
    case FindingKind::freeListOrder:
        return "free-list-order";
    case FindingKind::freeListUnmerged:
        return "free-list-unmerged";
    case FindingKind::counter:
        return "counter";
    case FindingKind::snapshotPointer:
        return "snapshot-pointer";
    case FindingKind::snapshotSize:
        return "snapshot-size";
    case FindingKind::snapshotRefCount:
        return "snapshot-refcount";
    case FindingKind::keyOrder:
        return "key-order";
    case FindingKind::recordPointer:
        return "record-pointer";
    case FindingKind::recordKey:
        return "record-key";
    case FindingKind::recordLength:
        return "record-length";
    case FindingKind::recordType:
        return "record-type";
    case FindingKind::recordRefCount:
        return "record-refcount";
    case FindingKind::unreferenced:
        return "unreferenced-block";
    }
    return "";
}

} // namespace Qel::Tool
