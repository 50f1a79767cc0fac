#include "qel/cachefile/CacheFinding.h"

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
    case FindingKind::unformatted:
        return "unformatted";
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

FindingClass classOf(const Finding& finding) {
    switch (finding.kind) {
    case FindingKind::unreferenced:
        return FindingClass::harmlessLeak;
    case FindingKind::counter:
    case FindingKind::snapshotRefCount:
    case FindingKind::recordRefCount:
        return FindingClass::wrongCount;
    default:
        return FindingClass::damage;
    }
}

std::string_view titleOf(FindingClass findingClass) {
    switch (findingClass) {
    case FindingClass::harmlessLeak:
        return "harmless leak";
    case FindingClass::wrongCount:
        return "wrong count";
    case FindingClass::damage:
        break;
    }
    return "damage";
}

std::string_view nameOf(FindingClass findingClass) {
    switch (findingClass) {
    case FindingClass::harmlessLeak:
        return "harmless-leak";
    case FindingClass::wrongCount:
        return "wrong-count";
    case FindingClass::damage:
        break;
    }
    return "damage";
}

std::string_view adviceOn(const Finding& finding) {
    switch (classOf(finding)) {
    case FindingClass::harmlessLeak:
        return "no action needed; the bytes stay in use until the file is removed";
    case FindingClass::wrongCount:
        return finding.isExcess ? "no action needed; bytes may stay in use until the file is removed"
                                : "stop the processes that use the file, then remove it; a write may free memory that "
                                  "is still in use, or abort the process";
    case FindingClass::damage:
        break;
    }
    return "stop the processes that use the file, then remove it; the next process creates a new file";
}

bool affectsListing(const Finding& finding) {
    switch (classOf(finding)) {
    case FindingClass::harmlessLeak:
        return false;
    case FindingClass::wrongCount:
        return !finding.isExcess && finding.kind != FindingKind::counter;
    case FindingClass::damage:
        break;
    }
    return true;
}

} // namespace Qel::Tool
