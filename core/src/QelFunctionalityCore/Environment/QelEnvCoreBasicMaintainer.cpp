#include "QelFunctionalityCore/Environment/QelEnvCoreBasicMaintainer.h"

#include <algorithm>
#include <utility>

#include "QelFunctionalityCore/Environment/QelEnvFactory.h"
#include "QelMessage/QelMessage.h"

namespace Qel {

namespace {

constexpr const char* sourcePath = "core/src/QelFunctionalityCore/QelEnv";
constexpr int bufferTooSmall = -2; // result of measureOrFlatten for a null buffer

} // namespace

/// The bytes of one configuration for a new record: serialised from a tree that may have changed, or copied from the
/// existing record of the configuration.
struct QelEnvCoreBasicMaintainer::Half {
    const QelMessageIterator* tree = nullptr;
    const char* bytes = nullptr;
    int size = 0;

    /// Returns false if the tree cannot be serialised.
    bool measure() { return !tree || tree->getMessage()->measureOrFlatten(nullptr, &size, tree) == bufferTooSmall; }
    bool fill(char* destination) {
        if (tree)
            return tree->getMessage()->measureOrFlatten(destination, &size, tree) == 0;
        std::copy_n(bytes, size, destination);
        return true;
    }
};

QelEnvCoreBasicMaintainer::QelEnvCoreBasicMaintainer()
    : m_core(QelEnvCoreBasic::createInstance(nullptr, EnvConfigType::base)) {
    remakeViews();
}

QelEnvCoreBasicMaintainer::QelEnvCoreBasicMaintainer(boost::shared_ptr<QelEnvCoreBasic> core)
    : m_core(std::move(core)) {
    QEL_CHECK(m_core != nullptr, sourcePath);
    remakeViews();
}

QelEnvCoreBasicMaintainer::QelEnvCoreBasicMaintainer(const QelEID& eid, const boost::shared_ptr<QelEnvConfig>& config,
                                                     const boost::shared_ptr<QelVEnvConfig>& vconfig) {
    QEL_CHECK(config != nullptr, sourcePath);
    QEL_CHECK(vconfig != nullptr, sourcePath);
    const auto base = QelEnvCoreBasic::createInstance(config->tree(), EnvConfigType::base);
    const auto virtualised = QelEnvCoreBasic::createInstance(vconfig->tree(), EnvConfigType::virtualised);
    if (!base || !virtualised)
        return;
    m_core = QelEnvCoreBasic::createInstance(*base, *virtualised);
    if (!m_core)
        return;
    m_core->eid = eid;
    remakeViews();
    applyDirtyRule();
}

QelEnvCoreBasicMaintainer::QelEnvCoreBasicMaintainer(const QelEID& eid, const boost::shared_ptr<QelEnvConfig>& config) {
    QEL_CHECK(config != nullptr, sourcePath);
    QEL_CHECK(config->getConfigType() == EnvConfigType::base, sourcePath);
    m_core = QelEnvCoreBasic::createInstance(config->tree(), *config->m_core, EnvConfigType::base);
    if (!m_core)
        return;
    m_core->eid = eid;
    remakeViews();
    configDirty = isConfigUnsaved();
}

QelEnvCoreBasicMaintainer::QelEnvCoreBasicMaintainer(const QelEID& eid,
                                                     const boost::shared_ptr<QelVEnvConfig>& vconfig) {
    QEL_CHECK(vconfig != nullptr, sourcePath);
    QEL_CHECK(vconfig->getConfigType() == EnvConfigType::virtualised, sourcePath);
    m_core = QelEnvCoreBasic::createInstance(vconfig->tree(), *vconfig->m_core, EnvConfigType::virtualised);
    if (!m_core)
        return;
    m_core->eid = eid;
    remakeViews();
    vconfigDirty = isVirtualConfigUnsaved();
}

QelEnvCoreBasicMaintainer::QelEnvCoreBasicMaintainer(const QelEnvCoreBasicMaintainer& other) {
    *this = other;
}

QelEnvCoreBasicMaintainer& QelEnvCoreBasicMaintainer::operator=(const QelEnvCoreBasicMaintainer& other) {
    if (this == &other)
        return *this;
    m_core = other.m_core ? QelEnvCoreBasic::createInstance(*other.m_core) : other.m_core;
    configDirty = vconfigDirty = false;
    if (m_core) {
        remakeViews();
        applyDirtyRule();
    } else {
        m_config.reset();
        m_vconfig.reset();
    }
    return *this;
}

void QelEnvCoreBasicMaintainer::remakeViews() {
    m_config.reset(new QelEnvConfig(m_core, EnvConfigType::base));
    m_vconfig = QelEnvFactory::getInstance().createVEnvConfig(m_core);
}

void QelEnvCoreBasicMaintainer::applyDirtyRule() {
    configDirty = isConfigUnsaved();
    vconfigDirty = isVirtualConfigUnsaved();
}

bool QelEnvCoreBasicMaintainer::isConfigUnsaved() const {
    return m_core->configSize == 0 && m_config->tree();
}

bool QelEnvCoreBasicMaintainer::isVirtualConfigUnsaved() const {
    return m_core->vconfigSize == 0 && m_vconfig->tree();
}

QelEnvCoreBasicMaintainer::Half QelEnvCoreBasicMaintainer::baseHalf() const {
    if (configDirty)
        return {m_config->tree(), nullptr, 0};
    return {nullptr, m_config->m_core->configBytes(), static_cast<int>(m_config->m_core->configSize)};
}

QelEnvCoreBasicMaintainer::Half QelEnvCoreBasicMaintainer::virtualHalf() const {
    if (vconfigDirty)
        return {m_vconfig->tree(), nullptr, 0};
    return {nullptr, m_vconfig->m_core->virtualConfigBytes(), static_cast<int>(m_vconfig->m_core->vconfigSize)};
}

// The type in the virtual configuration takes precedence over that in the base one.  An unchanged configuration does
// not change the type.
QelEnvType QelEnvCoreBasicMaintainer::typeByConfigs() const {
    QelEnvType type = m_core->type;
    const QelEnvType& baseType = m_config->getType();
    const QelEnvType& virtualType = m_vconfig->getType();
    if (configDirty && m_config->tree() && baseType.isSpecified() && !virtualType.isSpecified())
        type = baseType;
    if (vconfigDirty && m_vconfig->tree() && virtualType.isSpecified())
        type = virtualType;
    return type;
}

int QelEnvCoreBasicMaintainer::getBuffer(const void** out, unsigned& length, const void*) {
    if (!configDirty && !vconfigDirty)
        return m_core->getBuffer(out, length, nullptr);

    Half base = baseHalf();
    Half virtualised = virtualHalf();
    if (!base.measure() || !virtualised.measure())
        return -1;
    const auto total = static_cast<std::size_t>(base.size) + static_cast<std::size_t>(virtualised.size);
    const auto record = QelEnvCoreBasic::createWithRoom(*m_core, total);
    if (!record)
        return -1;
    char* const data = const_cast<char*>(record->configBytes());
    if (!base.fill(data) || !virtualised.fill(data + base.size))
        return -1;
    record->type = typeByConfigs();
    record->configSize = static_cast<std::uint32_t>(base.size);
    record->vconfigSize = static_cast<std::uint32_t>(virtualised.size);

    configDirty = vconfigDirty = false;
    m_core = record;
    m_config->m_core = record;
    m_vconfig->m_core = record;
    return m_core->getBuffer(out, length, nullptr);
}

} // namespace Qel
