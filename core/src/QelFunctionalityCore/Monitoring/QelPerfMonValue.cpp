#include "QelFunctionalityCore/Monitoring/QelPerfMonValue.h"

#include <cstddef>
#include <cstring>
#include <string>
#include <type_traits>

#include "QelCommon/Debug.h"
#include "QelCommon/ErrorMessage.h"
#include "QelMessage/QelElementNames.h"

namespace Qel {

namespace {

constexpr const char* sourcePath = "core/src/QelFunctionalityCore/QelPerfMonBase";

// The in-memory layout is the wire format.
static_assert(sizeof(QelPerfMonBlock) == 128 && offsetof(QelPerfMonBlock, values) == 16);
static_assert(std::is_trivially_copyable_v<QelPerfMonBlock>);

} // namespace

int QelPerfMonBlock::Reader::operator()(const QelMessageIterator& cursor, QelPerfMonBlock& block) const {
    std::string bytes;
    cursor.getValueBase64(bytes, "id"_element);
    if (bytes.size() != sizeof block) {
        setErrorMessage("a value block has %zu bytes, not %zu", sizeof block, bytes.size());
        return -1;
    }
    std::memcpy(&block, bytes.data(), sizeof block);
    return 0;
}

int QelPerfMonBlock::Writer::operator()(QelMessageIterator& cursor, const QelPerfMonBlock& block) const {
    char bytes[sizeof block];
    std::memcpy(bytes, &block, sizeof block);
    cursor.putValueBase64(bytes, sizeof bytes, "id"_element);
    return 0;
}

void QelPerfMonActualValue::set(unsigned index, double value) {
    QEL_CHECK_AT(index < count, sourcePath, 67);
    values[index] = value;
}

void QelPerfMonHistoricalValue::set(unsigned index, double value) {
    QEL_CHECK_AT(index < count, sourcePath, 135);
    values[index] = value;
}

} // namespace Qel
