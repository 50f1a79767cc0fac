#include "QelFunctionalityCore/Environment/QelEnvConfig.h"

#include <utility>

#include "QelCommon/Log.h"
#include "QelCore/QelIPv6.h"
#include "QelFunctionalityCore/Environment/QelEnvConfigElements.h"
#include "QelMessage/QelElementNames.h"
#include "QelMessage/QelMessage.h"

namespace Qel {

using namespace EnvConfigElement;

namespace {

constexpr int agentVersionOfNewTree = 40500;
constexpr int defaultAgentVersion = 40000; // older agents do not send their version

boost::shared_ptr<QelEnvCoreBasic> blankRecord() {
    return QelEnvCoreBasic::createInstance(nullptr, EnvConfigType::base);
}

const std::string& valueOrEmpty(const QelStringOptionalProperty& property) {
    static const std::string empty;
    return property.isSpecified() ? property.get() : empty;
}

int sign(int order) {
    return order < 0 ? -1 : order > 0 ? 1 : 0;
}

int compareItems(const std::string& a, const std::string& b) {
    return a.compare(b);
}
int compareItems(const QelIPAddress& a, const QelIPAddress& b) {
    return a.compare(b);
}

template <class Container>
int compareLists(const QelOptionalProperty<Container>& a, const QelOptionalProperty<Container>& b) {
    static const Container empty;
    const Container& left = a.isSpecified() ? a.get() : empty;
    const Container& right = b.isSpecified() ? b.get() : empty;
    auto l = left.begin();
    auto r = right.begin();
    for (; l != left.end() && r != right.end(); ++l, ++r)
        if (const int order = compareItems(*l, *r))
            return sign(order);
    return l != left.end() ? 1 : r != right.end() ? -1 : 0;
}

template <class Property> Property valueOf(const QelEnvConfig& config, int (QelEnvConfig::*get)(Property&) const) {
    Property property;
    (config.*get)(property);
    return property;
}

} // namespace

void QelEnvConfig::DestroyTree::operator()(QelMessageIterator* cursor) const {
    QelMessage* const message = cursor->getMessage();
    delete cursor;
    ifDestroy(message);
}

QelEnvConfig::QelEnvConfig(const QelMessageIterator* cursor, EnvConfigType type)
    : m_configType(type), m_core(blankRecord()) {
    if (cursor)
        readFrom(*cursor);
}

QelEnvConfig::QelEnvConfig(boost::shared_ptr<QelEnvCoreBasic> core, EnvConfigType type)
    : m_isParsed(false), m_configType(type), m_core(core ? std::move(core) : blankRecord()) {}

QelEnvConfig::QelEnvConfig(const QelEnvConfig& other) : m_configType(other.m_configType) {
    *this = other;
}

QelEnvConfig& QelEnvConfig::operator=(const QelEnvConfig& other) {
    if (this == &other)
        return *this;
    const QelMessageIterator* const source = other.tree();
    m_msg.reset(source ? source->newIterator(true) : nullptr);
    m_isParsed = true;
    m_core = other.m_core;
    m_configType = other.m_configType;
    applyVersionDefault();
    return *this;
}

QelEnvConfig::~QelEnvConfig() = default;

void QelEnvConfig::reset(bool resetCore) {
    m_msg.reset();
    m_isParsed = true;
    if (resetCore)
        m_core = blankRecord();
}

QelEnvConfig::Tree QelEnvConfig::makeTree() {
    QelMessage* const message = QelMessage::getFactory()->createNew();
    message->create(0);
    Tree tree(message->rootIterator());
    tree->newChild("env_config"_element);
    tree->setNamespace(rootNamespace);
    tree->saveNamespace(rootNamespace);
    return tree;
}

QelMessageIterator* QelEnvConfig::tree() const {
    if (m_isParsed)
        return m_msg.get();
    m_isParsed = true;
    QelMessage* const message =
        m_configType == EnvConfigType::virtualised ? m_core->getVirtualConfig() : m_core->getConfig();
    if (!message)
        return nullptr;
    Tree parsed(message->rootIterator());
    if (parsed->firstChild() != 0)
        return nullptr;
    m_msg = std::move(parsed);
    applyVersionDefault();
    return m_msg.get();
}

void QelEnvConfig::applyVersionDefault() const {
    int version = 0;
    if (m_configType != EnvConfigType::base || !m_msg || m_msg->getValue(version, "version"_element) == 0)
        return;
    m_msg->deleteChild("version"_element);
    m_msg->putValue(defaultAgentVersion, "version"_element);
}

QelMessageIterator& QelEnvConfig::initMsg() {
    if (!tree()) {
        m_msg = makeTree();
        if (m_configType == EnvConfigType::base)
            m_msg->putValue(agentVersionOfNewTree, "version"_element);
    }
    return *m_msg;
}

int QelEnvConfig::readFrom(const QelMessageIterator& cursor) {
    reset(true);
    Tree fresh = makeTree();
    if (cursor.firstChild() == 0) {
        int result = 0;
        do
            result = fresh->copyToChild(&cursor);
        while (result == 0 && cursor.nextSibling() == 0);
        cursor.seekUp();
        if (result != 0)
            return -1;
    }
    m_msg = std::move(fresh);
    applyVersionDefault();
    auto record = QelEnvCoreBasic::createInstance(cursor, m_configType);
    if (!record)
        return -1;
    m_core = std::move(record);
    return 0;
}

template <class Property, class Get>
int QelEnvConfig::getStringAttrEx(Property& property, int id, const Get& get) const {
    const QelMessageIterator* const cursor = tree();
    if (!cursor)
        return -1;
    const bool isRead = get(*cursor) == 0;
    property.specify(isRead || cursor->seekPresence(id) == 0);
    return 0;
}

template <class Property, class Put>
int QelEnvConfig::setStringAttrEx(const Property& property, int id, const Put& put) {
    QelMessageIterator& cursor = initMsg();
    if (cursor.seekPresence(id) == 0)
        cursor.deleteChild(id);
    return property.isSpecified() ? put(cursor) : 0;
}

int QelEnvConfig::getStringAttr(QelStringOptionalProperty& property, int id) const {
    return getStringAttrEx(property, id,
                           [&](const QelMessageIterator& cursor) { return cursor.getValue(property.get(), id); });
}

int QelEnvConfig::setStringAttr(const QelStringOptionalProperty& property, int id) {
    return setStringAttrEx(property, id,
                           [&](QelMessageIterator& cursor) { return cursor.putValue(property.get(), id); });
}

int QelEnvConfig::getStringBase64Attr(QelStringOptionalProperty& property, int id) const {
    return getStringAttrEx(property, id,
                           [&](const QelMessageIterator& cursor) { return cursor.getValueBase64(property.get(), id); });
}

int QelEnvConfig::setStringBase64Attr(const QelStringOptionalProperty& property, int id) {
    return setStringAttrEx(property, id,
                           [&](QelMessageIterator& cursor) { return cursor.putValueBase64(property.get(), id); });
}

int QelEnvConfig::getName(QelStringOptionalProperty& property) const {
    return getStringAttr(property, "name"_element);
}
int QelEnvConfig::setName(const QelStringOptionalProperty& property) {
    return setStringAttr(property, "name"_element);
}
int QelEnvConfig::getDescription(QelStringOptionalProperty& property) const {
    return getStringBase64Attr(property, "description"_element);
}
int QelEnvConfig::setDescription(const QelStringOptionalProperty& property) {
    return setStringBase64Attr(property, "description"_element);
}
int QelEnvConfig::getDomain(QelStringOptionalProperty& property) const {
    return getStringAttr(property, "domain"_element);
}
int QelEnvConfig::setDomain(const QelStringOptionalProperty& property) {
    return setStringAttr(property, "domain"_element);
}
int QelEnvConfig::getHostname(QelStringOptionalProperty& property) const {
    return getStringAttr(property, "hostname"_element);
}
int QelEnvConfig::setHostname(const QelStringOptionalProperty& property) {
    static constexpr const char* signature =
        "int Qel::QelEnvConfig::setHostname(const Qel::QelStringOptionalProperty&)";
    Log2(QEL_MODULE, sourcePath, __LINE__, __func__, signature).put(LogLevel::trace, "Calling [%s]", signature);
    return setStringAttr(property, "hostname"_element);
}
int QelEnvConfig::getArchitecture(QelStringOptionalProperty& property) const {
    return getStringAttr(property, "architecture"_element);
}
int QelEnvConfig::setArchitecture(const QelStringOptionalProperty& property) {
    return setStringAttr(property, "architecture"_element);
}

int QelEnvConfig::getOS(QelOS& os) const {
    const QelMessageIterator* const cursor = tree();
    return cursor ? cursor->getObj(os, "os"_element) : -1;
}

int QelEnvConfig::setOS(const QelOS& os) {
    return initMsg().putObj(os, "os"_element);
}

const QelEnvType& QelEnvConfig::getType() const {
    return m_core->type;
}

int QelEnvConfig::setType(const QelEnvType& newType) {
    QelMessageIterator& cursor = initMsg();
    cursor.deleteChild("type"_element);
    m_core->type = newType;
    return newType.isSpecified() ? cursor.putValue(newType.c_str(), static_cast<int>(newType.length()), "type"_element)
                                 : 0;
}

int QelEnvConfig::getBaseSampleId(QelOptionalProperty<QelGUID>& id) const {
    return getStringAttrEx(id, "base_sample_id"_element, [&](const QelMessageIterator& cursor) {
        return cursor.getObj(id.get(), "base_sample_id"_element);
    });
}

int QelEnvConfig::setBaseSampleId(const QelOptionalProperty<QelGUID>& id) {
    return setStringAttrEx(id, "base_sample_id"_element, [&](QelMessageIterator& cursor) {
        return cursor.putObj(id.get(), "base_sample_id"_element);
    });
}

int QelEnvConfig::getBaseSnapshotId(QelGUID& id) const {
    const QelMessageIterator* const cursor = tree();
    return cursor ? cursor->getObj(id, "base_snapshot_id"_element) : -1;
}

int QelEnvConfig::setBaseSnapshotId(const QelGUID& id) {
    return initMsg().putObj(id, "base_snapshot_id"_element);
}

int QelEnvConfig::getConfigCustomized(bool& customized) const {
    const QelMessageIterator* const cursor = tree();
    return cursor ? cursor->getValue(customized, "config_customized"_element) : -1;
}

int QelEnvConfig::getAgentVersion() const {
    const QelMessageIterator* const cursor = tree();
    if (!cursor || m_configType != EnvConfigType::base)
        return -1;
    int version = defaultAgentVersion;
    cursor->getValue(version, "version"_element);
    return version;
}

template <class Container>
inline int QelEnvConfig::getOptionalListAttribute(QelOptionalProperty<Container>& list, int id) const {
    const QelMessageIterator* const cursor = tree();
    if (!cursor)
        return -1;
    list.get().clear();
    list.specify(false);
    const int result = QelReaderData(list.get(), id, QelReaderRequired)(*cursor, list.get());
    list.specify(result == 0 || cursor->seekPresence(id) == 0);
    return 0;
}

template <class Container> int QelEnvConfig::getStringListAttr(QelOptionalProperty<Container>& list, int id) const {
    const int result = getOptionalListAttribute(list, id);
    // A single empty element represents a list that is specified and empty.
    if (result == 0 && list.get().size() == 1 && list.get().begin()->empty())
        list.get().clear();
    return result;
}

template <class List> inline int QelEnvConfig::setListAttr(const QelOptionalProperty<List>& list, int id) {
    QelMessageIterator& cursor = initMsg();
    while (cursor.firstChild(id) == 0)
        cursor.deleteFromChild();
    if (!list.isSpecified())
        return 0;
    if (list.get().empty())
        return cursor.putChild(id);
    return QelWriterData(list.get(), id)(cursor, list.get());
}

template int QelEnvConfig::setListAttr(const QelQoSListOptionalProperty&, int);

int QelEnvConfig::getAddresses(QelIPAddressListOptionalProperty& list) const {
    return getOptionalListAttribute(list, "address"_element);
}

int QelEnvConfig::setAddresses(const QelIPAddressListOptionalProperty& list) {
    return setListAttr(list, "address"_element);
}

int QelEnvConfig::getNameservers(QelStringListOptionalProperty& list) const {
    return getStringListAttr(list, "name_server"_element);
}

int QelEnvConfig::setNameservers(const QelStringListOptionalProperty& list) {
    if (!list.isSpecified())
        return setListAttr(list, "name_server"_element);
    QelStringListOptionalProperty distinct;
    distinct.specify(true);
    std::set<std::string> seen;
    for (const std::string& server : list.get())
        if (seen.insert(QelIPv6(server).toString()).second)
            distinct.get().push_back(server);
    return setListAttr(distinct, "name_server"_element);
}

int QelEnvConfig::getSearchDomains(QelStringSetOptionalProperty& list) const {
    return getStringListAttr(list, "search_domain"_element);
}

int QelEnvConfig::getChildTypes(QelStringSetOptionalProperty& list) const {
    return getStringListAttr(list, "child_type"_element);
}

int QelEnvConfig::compare(const QelEnvConfig& other) const {
    const auto compareStrings = [&](int (QelEnvConfig::*get)(QelStringOptionalProperty&) const) {
        return sign(valueOrEmpty(valueOf(*this, get)).compare(valueOrEmpty(valueOf(other, get))));
    };
    // Name and domain are compared before the type, so that configurations with equal names are adjacent in sorted
    // lists.
    if (const int order = compareStrings(&QelEnvConfig::getName))
        return order;
    if (const int order = compareStrings(&QelEnvConfig::getDomain))
        return order;
    if (const int order = sign(getType().compare(other.getType())))
        return order;
    for (const auto get : {&QelEnvConfig::getHostname, &QelEnvConfig::getDescription, &QelEnvConfig::getArchitecture})
        if (const int order = compareStrings(get))
            return order;
    if (const int order = sign(valueOf(*this, &QelEnvConfig::getOS).compare(valueOf(other, &QelEnvConfig::getOS))))
        return order;
    const auto compareListsOf = [&](auto get) { return compareLists(valueOf(*this, get), valueOf(other, get)); };
    if (const int order = compareListsOf(&QelEnvConfig::getAddresses))
        return order;
    if (const int order = compareListsOf(&QelEnvConfig::getNameservers))
        return order;
    if (const int order = compareListsOf(&QelEnvConfig::getSearchDomains))
        return order;
    return compareListsOf(&QelEnvConfig::getChildTypes);
}

} // namespace Qel
