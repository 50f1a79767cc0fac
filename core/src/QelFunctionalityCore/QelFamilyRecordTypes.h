#pragma once

#include <vector>

#include "QelMessage/QelRecord.h"
#include "QelMessage/QelRecordType.h"

namespace Qel {

/// The record type of a class whose wire form is a table.
template <class Record> QelRecordType tableRecordType() {
    const QelWireLayout& layout = Record::wire;
    return makeRecordType<Record>(layout.typeName, &layout);
}

// The record types of each family, in any order.
[[nodiscard]] std::vector<QelRecordType> backupRecordTypes();
[[nodiscard]] std::vector<QelRecordType> configurationRecordTypes();
[[nodiscard]] std::vector<QelRecordType> environmentRecordTypes();
[[nodiscard]] std::vector<QelRecordType> eventsRecordTypes();
[[nodiscard]] std::vector<QelRecordType> filesRecordTypes();
[[nodiscard]] std::vector<QelRecordType> hostRecordTypes();
[[nodiscard]] std::vector<QelRecordType> monitoringRecordTypes();
[[nodiscard]] std::vector<QelRecordType> networkRecordTypes();
[[nodiscard]] std::vector<QelRecordType> profileRecordTypes();
[[nodiscard]] std::vector<QelRecordType> schedulingRecordTypes();
[[nodiscard]] std::vector<QelRecordType> securityRecordTypes();
[[nodiscard]] std::vector<QelRecordType> valuesRecordTypes();
[[nodiscard]] std::vector<QelRecordType> vocabularyRecordTypes();

} // namespace Qel
