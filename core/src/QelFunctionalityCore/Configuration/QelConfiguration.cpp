#include "QelFunctionalityCore/Configuration/QelConfiguration.h"

#include <algorithm>

#include "QelFunctionalityCore/Configuration/QelConfigurationIterator.h"
#include "QelMessage/QelDerivedRegistry.h"
#include "QelMessage/QelElementNames.h"

// Layout of a configuration tree:
//
//     /  data  SECTION  configuration  OPTION...
//
// The options of a section are nested in its `configuration` element.

namespace Qel {

namespace {

boost::shared_ptr<QelMessage> sharedCopy(const QelMessage* message, bool withEnvelope) {
    if (!message)
        return {};
    return {message->copy(withEnvelope), &ifDestroy<QelMessage>};
}

int seekOrMake(QelMessageIterator& cursor, int element) {
    return cursor.seek(element) == 0 ? 0 : cursor.newChild(element);
}

} // namespace

boost::shared_ptr<QelMessage> QelConfiguration::m_localConf;
QelEID QelConfiguration::m_localEID;
QelLock QelConfiguration::m_confLock;

QelConfiguration::QelConfiguration(QelMessage* message) {
    reset(message, false);
}

QelConfiguration::QelConfiguration(const QelConfiguration& other) {
    reset(other.getMessage(), false);
}

QelConfiguration& QelConfiguration::operator=(const QelConfiguration& other) {
    if (m_message != other.m_message)
        reset(other.getMessage(), false);
    return *this;
}

QelConfiguration::~QelConfiguration() {
    // The cursor points into the tree, so destroy it first.
    m_iterator.reset();
}

void QelConfiguration::reset(QelMessage* message, bool withEnvelope) {
    boost::shared_ptr<QelMessage> copy = sharedCopy(message, withEnvelope);
    m_iterator.reset();
    m_message = std::move(copy);
    if (m_message)
        m_iterator.reset(m_message->rootIterator());
}

QelConfigurationIterator* QelConfiguration::getIterator() const {
    return m_message ? new QelConfigurationIterator(m_message->copy(false)) : nullptr;
}

int QelConfiguration::saveToFile(const std::string& path) const {
    return m_message ? m_message->saveToFile(path) : -1;
}

int QelConfiguration::readFromFile(const std::string& path) {
    const auto_destroy<QelMessage> loaded(QelMessage::getFactory()->createNew());
    if (!loaded.get() || loaded->loadFromFile(path) != 0)
        return -1;
    reset(loaded.get(), false);
    return m_message ? 0 : -1;
}

int QelConfiguration::walk(std::initializer_list<int> path) const {
    if (!m_iterator || m_iterator->seekRoot() != 0)
        return -1;
    const bool arrived =
        std::all_of(path.begin(), path.end(), [&](int element) { return m_iterator->seek(element) == 0; });
    return arrived ? 0 : -1;
}

int QelConfiguration::walkToGroup() {
    if (walk({"data"_element}) != 0)
        return -1;
    return seekOrMake(*m_iterator, "server_group"_element) == 0 && seekOrMake(*m_iterator, "configuration"_element) == 0
               ? 0
               : -1;
}

bool QelConfiguration::seekEntry(const QelEID& eid) const {
    if (m_iterator->firstChild("entry"_element) != 0)
        return false;
    do {
        QelEID candidate;
        if (m_iterator->getObj(candidate, "id"_element) == 0 && candidate == eid)
            return true;
    } while (m_iterator->nextSibling("entry"_element) == 0);
    m_iterator->seekUp();
    return false;
}

template <class Visit> void QelConfiguration::forEachEntry(const Visit& visit) const {
    if (m_iterator->firstChild("entry"_element) != 0)
        return;
    do {
        QelEID eid;
        if (m_iterator->getObj(eid, "id"_element) == 0)
            visit(eid);
    } while (m_iterator->nextSibling("entry"_element) == 0);
}

int QelConfiguration::getEID(QelEID& eid) const {
    return walk({"data"_element, "agent"_element, "configuration"_element}) == 0 ? m_iterator->getObj(eid, "id"_element)
                                                                                 : -1;
}

int QelConfiguration::setEID(const QelEID& eid) {
    return walk({"data"_element, "agent"_element, "configuration"_element}) == 0 ? m_iterator->putObj(eid, "id"_element)
                                                                                 : -1;
}

int QelConfiguration::getBuiltinRealmID(QelGUID& realmID) const {
    return walk({"data"_element, "security"_element, "configuration"_element}) == 0
               ? m_iterator->getObj(realmID, "builtin_realm"_element)
               : -1;
}

boost::shared_ptr<QelRealm> QelConfiguration::getBuiltinRealm() const {
    QelGUID wanted;
    QelRealmList all;
    if (getBuiltinRealmID(wanted) != 0)
        return {};
    // A realm of an unknown derived class is read as a plain realm.
    constexpr bool asPlainRealm = true;
    const auto reader = QelReaderDerivedList<int, QelRealm>("realm"_element, QelReaderRequired, asPlainRealm);
    if (m_iterator->getObject(all, reader, "realms"_element) != 0)
        return {};
    const auto found = std::find_if(all.begin(), all.end(), [&](const auto& each) { return each->id == wanted; });
    return found == all.end() ? boost::shared_ptr<QelRealm>() : *found;
}

int QelConfiguration::getMaster(QelEID& eid) const {
    return walk({"data"_element, "server_group"_element, "configuration"_element, "master"_element}) == 0
               ? m_iterator->getObj(eid, "id"_element)
               : -1;
}

int QelConfiguration::setMaster(const QelEID& eid) {
    if (walkToGroup() != 0)
        return -1;
    static_cast<void>(seekOrMake(*m_iterator, "master"_element));
    return m_iterator->putObj(eid, "id"_element);
}

int QelConfiguration::delMaster() {
    return walk({"data"_element, "server_group"_element, "configuration"_element, "master"_element}) == 0
               ? m_iterator->deleteFromChild()
               : -1;
}

bool QelConfiguration::isInServerGroup() const {
    return walk({"data"_element, "server_group"_element, "configuration"_element, "master"_element, "id"_element}) == 0;
}

bool QelConfiguration::isMaster() const {
    if (!isInServerGroup())
        return true;
    QelEID own;
    QelEID masters;
    return getEID(own) == 0 && getMaster(masters) == 0 && own == masters;
}

bool QelConfiguration::isSlave() const {
    QelEID own;
    QelEID masters;
    return getEID(own) == 0 && getMaster(masters) == 0 && own != masters;
}

int QelConfiguration::setMasterness() {
    return walkToGroup() == 0 ? seekOrMake(*m_iterator, "slaves"_element) : -1;
}

int QelConfiguration::unsetMasterness() {
    if (walk({"data"_element, "server_group"_element, "configuration"_element, "slaves"_element}) != 0)
        return 0;
    // Refuse: the slaves would have no master.
    if (m_iterator->seekPresence("entry"_element) == 0)
        return -1;
    m_iterator->deleteFromChild();
    return 0;
}

int QelConfiguration::addClientEnv(const QelEID& eid) {
    if (walkToGroup() != 0)
        return -1;
    static_cast<void>(seekOrMake(*m_iterator, "slaves"_element));
    m_iterator->newChild("entry"_element);
    m_iterator->putObj(eid, "id"_element);
    return 0;
}

int QelConfiguration::delClientEnv(const QelEID& eid) {
    if (walk({"data"_element, "server_group"_element, "configuration"_element, "slaves"_element}) != 0 ||
        !seekEntry(eid))
        return -1;
    m_iterator->deleteFromChild();
    return 0;
}

void QelConfiguration::getGroupSlaves(std::set<QelEID, QelEnvIDComparator>& all) const {
    if (walk({"data"_element, "server_group"_element, "configuration"_element, "slaves"_element}) == 0)
        forEachEntry([&](const QelEID& eid) { all.insert(eid); });
}

int QelConfiguration::findMapping(const QelEID& eid, QelConnectionInfo& info) const {
    if (walk({"data"_element, "agent"_element, "configuration"_element, "mapping_table"_element}) != 0 ||
        !seekEntry(eid))
        return -1;
    m_iterator->getObj(info, "connection_info"_element);
    return 0;
}

int QelConfiguration::setMapping(const QelEID& eid, const QelConnectionInfo& info) {
    if (walk({"data"_element, "agent"_element, "configuration"_element}) != 0)
        return -1;
    static_cast<void>(seekOrMake(*m_iterator, "mapping_table"_element));
    // Keep an existing mapping: an administrator may have set it, and an agent's own report must not overwrite it.
    if (seekEntry(eid))
        return 0;
    m_iterator->newChild("entry"_element);
    m_iterator->putObj(eid, "id"_element);
    m_iterator->putValue(info.address, "net_address"_element);
    m_iterator->putObj(info, "connection_info"_element);
    m_iterator->seekUp();
    return 0;
}

int QelConfiguration::removeMapping(const QelEID& eid) {
    if (walk({"data"_element, "agent"_element, "configuration"_element, "mapping_table"_element}) != 0)
        return -1;
    if (seekEntry(eid))
        m_iterator->deleteFromChild();
    return 0;
}

int QelConfiguration::getMappingTable(std::map<QelEID, QelConnectionInfo>& table) const {
    if (walk({"data"_element, "agent"_element, "configuration"_element, "mapping_table"_element}) != 0)
        return -1;
    forEachEntry([&](const QelEID& eid) {
        QelConnectionInfo info;
        m_iterator->getObj(info, "connection_info"_element);
        table[eid] = info;
    });
    return 0;
}

int QelConfiguration::setLocalConfig(QelMessage* message) {
    const QelGuardT<QelLock> guard(m_confLock);
    m_localConf = sharedCopy(message, false);
    m_localEID = QelEID();
    return 0;
}

QelConfiguration QelConfiguration::getLocalConfig() {
    const QelGuardT<QelLock> guard(m_confLock);
    return QelConfiguration(m_localConf.get());
}

const QelEID& QelConfiguration::getLocalEID() {
    const QelGuardT<QelLock> guard(m_confLock);
    if (!m_localEID.isValid())
        static_cast<void>(getLocalConfig().getEID(m_localEID));
    return m_localEID;
}

int QelConfiguration::Reader::operator()(const QelMessageIterator& cursor, QelConfiguration& configuration) const {
    configuration.reset(cursor.getMessage(), true);
    return configuration.getMessage() ? 0 : -1;
}

int QelConfiguration::Writer::operator()(QelMessageIterator& cursor, const QelConfiguration& configuration) const {
    return configuration.walk({"data"_element}) == 0 ? cursor.copyToChild(configuration.m_iterator.get()) : -1;
}

template class QelDerivedParserFactory<QelConfiguration>;

QelDerivedParserFactoryT<QelConfiguration, QelConfiguration> factoryQelConfiguration(true);

} // namespace Qel
