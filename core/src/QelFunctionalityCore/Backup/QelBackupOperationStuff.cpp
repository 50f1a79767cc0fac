#include "QelFunctionalityCore/Backup/QelBackupOperationStuff.h"

#include <ctime>

#include "QelFunctionalityCore/Values/QelValueCodecs.h"
#include "QelMessage/QelWireTable.h"

namespace Qel {

namespace {

constexpr long long secondsPerDay = 86400;

template <class T> void complementProperty(QelOptionalProperty<T>& property, const QelOptionalProperty<T>& other) {
    if (!property.isSpecified())
        property = other;
}

// Both records have the same fields.  They differ in whether a missing setting is an error.
template <class Record, QelWireRead read> struct SettingsWire : WireWords<Record> {
    using Words = WireWords<Record>;
    static constexpr QelWireField fields[] = {
        Words::template field<&Record::connection>(1986, read, Words::ifSet),
        Words::template field<&Record::maxChainLength>(2087, read, Words::ifSet),
        Words::template field<&Record::maxChainAge>(2088, read, Words::ifSet),
        Words::template field<&Record::option2089>(2089, read, Words::ifSet),
        Words::template field<&Record::option1983>(1983, read, Words::ifSet),
        Words::template field<&Record::option1007>(1007, read, Words::ifSet),
    };
};

} // namespace

bool QelBackupOperationStuff::longChain(int length) const {
    return maxChainLength.isSpecified() && maxChainLength.get() >= 1 && maxChainLength.get() <= length;
}

bool QelBackupOperationStuff::oldChain(long time) const {
    if (!maxChainAge.isSpecified() || maxChainAge.get() == 0)
        return false;
    return time < std::time(nullptr) - maxChainAge.get() * secondsPerDay;
}

void QelBackupOperationStuff::complement(const QelBackupOperationStuff& other) {
    complementProperty(connection, other.connection);
    complementProperty(maxChainLength, other.maxChainLength);
    complementProperty(maxChainAge, other.maxChainAge);
    complementProperty(option2089, other.option2089);
    complementProperty(option1983, other.option1983);
    complementProperty(option1007, other.option1007);
}

template <> struct Wire<QelBackupOperationStuff> : SettingsWire<QelBackupOperationStuff, QelWireRead::ignored> {};
const QelWireLayout& QelBackupOperationStuff::wire = wireLayoutOf<QelBackupOperationStuff>;

template <> struct Wire<QelBackupMConfig> : SettingsWire<QelBackupMConfig, QelWireRead::required> {};
const QelWireLayout& QelBackupMConfig::wire = wireLayoutOf<QelBackupMConfig>;

QelBackupMConfig::QelBackupMConfig() {
    connection = QelAgentConnectionInfo::localConnectionInfo();
    maxChainLength = 0;
    maxChainAge = 0;
    option2089 = 0;
    option1983 = 1;
    option1007 = 0;
}

QelBackupMConfig::QelBackupMConfig(const QelBackupOperationStuff& settings) : QelRecord(settings) {
    complement(QelBackupMConfig());
}

// The first pass reads every setting that is present; the second fails at the first missing one.
int QelBackupMConfig::Reader::operator()(const QelMessageIterator& cursor, QelBackupMConfig& config) const {
    traceBackupCall(__PRETTY_FUNCTION__);
    if (const int result = QelBackupOperationStuff::Reader()(cursor, static_cast<QelBackupOperationStuff&>(config)))
        return result;
    return readByLayout(QelBackupMConfig::wire, &config, cursor);
}

} // namespace Qel
