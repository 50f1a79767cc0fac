#include "QelFunctionalityCore/Environment/QelEnv.h"

#include <algorithm>
#include <iterator>
#include <memory>
#include <span>
#include <utility>
#include <vector>

#include "QelCore/QelIPv6.h"
#include "QelFunctionalityCore/Environment/QelVtRecords.h"
#include "QelMessage/QelDerivedRegistry.h"
#include "QelMessage/QelElementNames.h"
#include "QelMessage/QelWireTable.h"

namespace Qel {

namespace {

constexpr const char* sourcePath = "core/src/QelFunctionalityCore/QelEnv";

// The address to display for an environment: the first IPv4 address, or the first address if there is none.
std::string chooseAddress(const std::vector<QelIPAddress>& addresses) {
    const auto shown = std::find_if(addresses.begin(), addresses.end(), [](const QelIPAddress& address) {
        return !address.ip.empty() && !QelIPv6::isResembling(address.ip);
    });
    return (shown == addresses.end() ? addresses.front() : *shown).ip;
}

} // namespace

const QelEnvType QelEnv::type("generic");

template class QelDerivedParserFactory<QelEnv>;

QelDerivedParserFactoryT<QelEnv, QelEnv> factoryQelEnv(true);
QelDerivedParserFactoryT<QelVtInfo, QelVtInfo> factoryQelVtInfo(true);
QelDerivedParserFactoryT<QelVtSettings, QelVtSettings> factoryQelVtSettings(true);

QelEnv::QelEnv() = default;

QelEnv::QelEnv(boost::shared_ptr<QelEnvCoreBasic> core) : m_maintainer(std::move(core)) {}

QelEnv::QelEnv(const QelEID& eid, const boost::shared_ptr<QelEnvConfig>& config,
               const boost::shared_ptr<QelVEnvConfig>& vconfig)
    : m_maintainer(eid, config, vconfig) {}

QelEnv::QelEnv(const QelEID& eid, const boost::shared_ptr<QelVEnvConfig>& vconfig) : m_maintainer(eid, vconfig) {}

QelEnv::QelEnv(const QelEID& eid, const boost::shared_ptr<QelEnvConfig>& config) : m_maintainer(eid, config) {}

QelEnv::~QelEnv() = default;

unsigned QelEnv::getSortKey() const {
    return 0;
}

boost::shared_ptr<QelVEnvConfig> QelEnv::getVirtualConfig() {
    m_maintainer.vconfigDirty = true;
    return m_maintainer.m_vconfig;
}

boost::shared_ptr<const QelVEnvConfig> QelEnv::getVirtualConfig() const {
    return m_maintainer.m_vconfig;
}

boost::shared_ptr<QelEnvConfig> QelEnv::getConfig() {
    m_maintainer.configDirty = true;
    return m_maintainer.m_config;
}

std::string QelEnv::getTitle() const {
    const boost::shared_ptr<const QelVEnvConfig> virtualConfig = getVirtualConfig();
    const boost::shared_ptr<const QelEnvConfig> config = getConfig();
    const QelEnvConfig* const both[] = {virtualConfig.get(), config.get()};

    for (const auto get : {&QelEnvConfig::getName, &QelEnvConfig::getHostname})
        for (const QelEnvConfig* const from : both) {
            QelStringOptionalProperty text;
            if (from && (from->*get)(text) == 0 && text.isSpecified())
                return text.get();
        }
    for (const QelEnvConfig* const from : both) {
        QelIPAddressListOptionalProperty addresses;
        if (from && from->getAddresses(addresses) == 0 && addresses.isSpecified() && !addresses.get().empty())
            return chooseAddress(addresses.get());
    }
    return getEID().toString();
}

boost::shared_ptr<QelEnvCoreBasic> QelEnv::getCoreBasic() const {
    QEL_CHECK(m_maintainer.m_core != nullptr, sourcePath);
    return m_maintainer.m_core;
}

QelAlertType QelEnv::getAlertType(QelAlertReason reason) const {
    return getCoreBasic()->alertType[static_cast<int>(reason)];
}

void QelEnv::setAlertType(QelAlertReason reason, QelAlertType alertType) {
    getCoreBasic()->alertType[static_cast<int>(reason)] = alertType;
}

QelAlertType QelEnv::getMaxAlertType() const {
    const auto core = getCoreBasic();
    const QelAlertType highest = *std::max_element(std::begin(core->alertType), std::end(core->alertType));
    return std::max(highest, QelAlertType::green);
}

int QelEnv::getBuffer(const void** out, unsigned& length, const void*) const {
    return m_maintainer.getBuffer(out, length, nullptr);
}

void QelEnv::syncBuffer() {
    const void* buffer = nullptr;
    unsigned length = 0;
    getBuffer(&buffer, length, nullptr);
}

/// Table steps for fields that are not members of QelEnv: they are in the flat record and in the configurations.
struct QelEnv::WireSteps {
    static int readConfig(const QelMessageIterator& cursor, QelEnv& env) {
        return cursor.getObject(env.m_maintainer.m_config, QelReaderDerived<QelEnvConfig>(true), "env_config"_element);
    }
    static int writeConfig(QelMessageIterator& cursor, const QelEnv& env) {
        return cursor.putObject(boost::shared_ptr<const QelEnvConfig>(env.getConfig()),
                                QelWriterDerived<QelEnvConfig>(), "env_config"_element);
    }

    static int readVirtualConfig(const QelMessageIterator& cursor, QelEnv& env) {
        boost::shared_ptr<QelEnvConfig> read;
        const int result = cursor.getObject(read, QelReaderDerived<QelEnvConfig>(true), "virtual_config"_element);
        env.m_maintainer.m_vconfig = boost::dynamic_pointer_cast<QelVEnvConfig>(read);
        settleConfigs(env);
        return result;
    }
    static int writeVirtualConfig(QelMessageIterator& cursor, const QelEnv& env) {
        return cursor.putObject(boost::shared_ptr<const QelEnvConfig>(env.getVirtualConfig()),
                                QelWriterDerived<QelEnvConfig>(), "virtual_config"_element);
    }

    template <QelEID QelEnvCoreBasic::*eid, int element>
    static int readEID(const QelMessageIterator& cursor, QelEnv& env) {
        return cursor.getObj((*env.getCoreBasic()).*eid, element);
    }
    template <QelEID QelEnvCoreBasic::*eid, int element>
    static int writeEID(QelMessageIterator& cursor, const QelEnv& env) {
        return cursor.putObj((*env.getCoreBasic()).*eid, element);
    }

    static int readStatus(const QelMessageIterator& cursor, QelEnv& env) {
        return cursor.getObj(env.getCoreBasic()->status, "status"_element);
    }
    static int writeStatus(QelMessageIterator& cursor, const QelEnv& env) {
        return cursor.putObj(env.getStatus(), "status"_element);
    }

    // The n-th element is the level of the n-th reason.  An invalid or missing level leaves its array entry unchanged.
    static int readAlerts(const QelMessageIterator& cursor, QelEnv& env) {
        if (cursor.firstChild("alert_level"_element) != 0)
            return 0;
        const auto core = env.getCoreBasic();
        int reason = 0;
        do
            QelAlertTypeReader()(cursor, core->alertType[reason]);
        while (++reason < qelAlertReasonCount && cursor.nextSibling("alert_level"_element) == 0);
        cursor.seekUp();
        return 0;
    }
    static int writeAlerts(QelMessageIterator& cursor, const QelEnv& env) {
        return QelWriterList(QelAlertTypeWriter(), "alert_level"_element)(
            cursor, std::span<const QelAlertType>(env.getCoreBasic()->alertType));
    }

private:
    // Even if reading failed, both configurations must exist; the type is derived from them.
    static void settleConfigs(QelEnv& env) {
        QelEnvCoreBasicMaintainer& maintainer = env.m_maintainer;
        if (!maintainer.m_vconfig)
            maintainer.m_vconfig.reset(new QelVEnvConfig());
        if (!maintainer.m_config)
            maintainer.m_config.reset(new QelEnvConfig());
        const QelEnvType& virtualType = maintainer.m_vconfig->getType();
        const QelEnvType& baseType = maintainer.m_config->getType();
        env.getCoreBasic()->type = virtualType.isSpecified() ? virtualType
                                   : baseType.isSpecified()  ? baseType
                                                             : QelEnv::type;
    }
};

template <> struct Wire<QelEnv> : WireWords<QelEnv> {
    using Steps = QelEnv::WireSteps;
    static constexpr int nsId = QelEnv::Writer::getNSID(), typeId = QelEnv::Writer::getTypeID();
    static constexpr QelWireField fields[] = {
        step<&Steps::readEID<&QelEnvCoreBasic::parentEID, 1870>, &Steps::writeEID<&QelEnvCoreBasic::parentEID, 1870>,
             QelEID>("parentEID", 1870, required),
        step<&Steps::readEID<&QelEnvCoreBasic::eid, 1866>, &Steps::writeEID<&QelEnvCoreBasic::eid, 1866>, QelEID>(
            "eid", 1866, required),
        step<&Steps::readStatus, &Steps::writeStatus, QelEnvStatus>("status", "status"_element, ignored),
        step<&Steps::readAlerts, &Steps::writeAlerts, std::vector<int>>("alertTypes", "alert_level"_element, ignored),
        step<&Steps::readConfig, &Steps::writeConfig, QelEnvConfig>("config", "env_config"_element, ignored),
        step<&Steps::readVirtualConfig, &Steps::writeVirtualConfig, QelVEnvConfig>("virtualConfig",
                                                                                   "virtual_config"_element, ignored),
    };
    // The configurations are read first because they determine the type.
    static constexpr int readOrder[] = {1185, 1872, 1870, 1866, 1192, 1003};
};
const QelWireLayout& QelEnv::wire = wireLayoutOf<QelEnv>;

int QelEnv::Reader::operator()(const QelMessageIterator& cursor, QelEnv& env) const {
    if (readByLayout(wireLayoutOf<QelEnv>, &env, cursor) != 0)
        return -1;
    // The flat record does not contain the configurations yet: they have only been read.
    env.m_maintainer.configDirty = env.m_maintainer.vconfigDirty = true;
    return 0;
}

int QelEnv::Writer::operator()(QelMessageIterator& cursor, const QelEnv& env) const {
    return writeByLayout(wireLayoutOf<QelEnv>, &env, cursor);
}

// An environment whose type has a factory is read twice: the first pass only determines the type.
int QelEnv::EnvSPReader::operator()(const QelMessageIterator& cursor, boost::shared_ptr<QelEnv>& out) const {
    boost::shared_ptr<QelEnv> plain(new QelEnv());
    const std::unique_ptr<QelMessageIterator> second(cursor.newIterator(false));
    if (const int result = QelEnv::Reader()(*second, *plain))
        return result;
    const boost::shared_ptr<QelEnv> typed = QelEnvFactory::getInstance().createEnv(plain->getType());
    out = typed ? typed : plain;
    return typed ? QelEnv::Reader()(cursor, *out) : 0;
}

} // namespace Qel
