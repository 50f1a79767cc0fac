#include "QelMessage/QelWireLayout.h"

#include <memory>
#include <string>

#include "QelCommon/ErrorMessage.h"
#include "QelMessage/QelMessageIterator.h"
#include "QelMessage/QelNames.h"

namespace Qel {

namespace {

// Number of failures reported on this thread.  If it has changed during a nested read or write, the enclosing record
// keeps that report, which is more precise than its own.
thread_local unsigned failuresReported = 0;

// The path of the current element from the root.
std::string placeOf(const QelMessageIterator& cursor) {
    const std::unique_ptr<QelMessageIterator> climber(cursor.newIterator(false));
    std::string path;
    for (std::string name = climber->curName(); name != "/"; name = climber->curName()) {
        path.insert(0, '/' + name);
        climber->seekUp();
    }
    return path.empty() ? "/" : path;
}

void reportFailure(const char* verb, const QelWireLayout& layout, const QelWireField& field,
                   const QelMessageIterator& cursor, const char* what) {
    ++failuresReported;
    const int id = field.ownID();
    const std::string element = id == 0 ? std::string() : "element " + QelNames::elementName(id) + " ";
    setErrorMessage("%s: cannot %s %.*s: %s(%.*s) %s", placeOf(cursor).c_str(), verb,
                    static_cast<int>(layout.typeName.size()), layout.typeName.data(), element.c_str(),
                    static_cast<int>(field.name.size()), field.name.data(), what);
}

bool isPresent(const QelWireField& field, const QelMessageIterator& cursor) {
    return field.ownID() == 0 || cursor.seekPresence(field.ownID()) == 0;
}

int readField(const QelWireLayout& layout, const QelWireField& field, void* record, const QelMessageIterator& cursor) {
    const unsigned reportedBefore = failuresReported;
    if (field.codec->read(cursor, field.member(record), field.id, field) == 0) {
        if (field.mask)
            *field.mask(record) |= field.bit;
        return 0;
    }
    if (field.read == QelWireRead::ignored)
        return 0;
    const bool present = isPresent(field, cursor);
    if (field.read == QelWireRead::optional && !present)
        return 0;
    if (failuresReported == reportedBefore)
        reportFailure("read", layout, field, cursor, present ? "is malformed" : "is missing");
    return -1;
}

bool isWritten(const QelWireField& field, void* record, const void* member) {
    if (field.write == QelWireWrite::always)
        return true;
    if (field.mask)
        return (*field.mask(record) & field.bit) != 0;
    return field.writtenIf ? field.writtenIf(member) : field.codec->isSet(member);
}

int writeField(const QelWireLayout& layout, const QelWireField& field, const void* record, QelMessageIterator& cursor) {
    void* const whole = const_cast<void*>(record);
    const void* const member = field.member(whole);
    if (!isWritten(field, whole, member))
        return 0;
    const unsigned reportedBefore = failuresReported;
    if (field.codec->write(cursor, member, field.id, field) == 0 || field.isBestEffort || layout.isBestEffort)
        return 0;
    if (failuresReported == reportedBefore)
        reportFailure("write", layout, field, cursor, "was rejected");
    return -1;
}

} // namespace

int readByLayout(const QelWireLayout& layout, void* record, const QelMessageIterator& cursor) {
    for (const unsigned char index : layout.readingOrder)
        if (readField(layout, layout.fields[index], record, cursor) != 0)
            return -1;
    return 0;
}

int writeByLayout(const QelWireLayout& layout, const void* record, QelMessageIterator& cursor) {
    for (const QelWireField& field : layout.fields)
        if (writeField(layout, field, record, cursor) != 0)
            return -1;
    return 0;
}

} // namespace Qel
