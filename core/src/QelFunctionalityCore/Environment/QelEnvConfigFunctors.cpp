#include <algorithm>
#include <atomic>
#include <initializer_list>
#include <map>
#include <memory>
#include <string>

#include "QelCore/QelLock.h"
#include "QelFunctionalityCore/Environment/QelEnvConfigElements.h"
#include "QelFunctionalityCore/Environment/QelVEnvConfig.h"
#include "QelFunctionalityCore/Values/QelValueCodecs.h"
#include "QelMessage/QelDefaultMap.h"
#include "QelMessage/QelDerivedRegistry.h"
#include "QelMessage/QelElementNames.h"
#include "QelMessage/QelWireTable.h"

namespace Qel {

using namespace EnvConfigElement;

template class QelDerivedParserFactory<QelEnvConfig>;

// Keep the order of these definitions: static objects are constructed in it.
QelDerivedParserFactoryT<QelVEnvConfig, QelEnvConfig, QelEnvConfig, QelEnvConfig::Reader> factoryQelVEnvConfig(false);
static QelLock positionLock;
QelDerivedParserFactoryT<QelEnvConfig, QelEnvConfig> factoryQelEnvConfig(true);

namespace {

// The elements of a configuration as a record with a table.  Reading a configuration only copies its elements, so a
// malformed element does not fail the read; its getter reports the error.
struct Elements {
    QelStringOptionalProperty name, description, domain, hostname, architecture, type;
    std::vector<QelIPAddress> addresses;
    QelOptionalProperty<QelOS> os;
    std::vector<std::string> nameservers;
    std::set<std::string> searchDomains, childTypes;
    QelOptionalProperty<QelGUID> baseSample, baseSnapshot;
    std::set<QelQoS> qos;
    QelOptionalProperty<int> agentVersion;
    QelOptionalProperty<bool> configCustomized, disabled;
};

// Number of leading fields that have a position in the canonical order.  A writer keeps any other element after its
// predecessor.
constexpr int positionCount = 15;

} // namespace

template <> struct Wire<Elements> : WireWords<Elements> {
    static constexpr std::string_view typeName = "QelEnvConfig";
    static constexpr int nsId = 292, typeId = 120;
    static constexpr QelWireField fields[] = {
        field<&R::name>("name"_element, ignored, ifSet),
        field<&R::description>("description"_element, ignored, ifSet, base64),
        field<&R::domain>("domain"_element, ignored, ifSet),
        field<&R::hostname>("hostname"_element, ignored, ifSet),
        list<&R::addresses>("address"_element, ignored),
        field<&R::architecture>("architecture"_element, ignored, ifSet),
        field<&R::os>("os"_element, ignored, ifSet),
        field<&R::type>("type"_element, ignored, ifSet),
        list<&R::nameservers>("name_server"_element, ignored),
        list<&R::searchDomains>("search_domain"_element, ignored),
        field<&R::baseSample>("base_sample_id"_element, ignored, ifSet),
        field<&R::baseSnapshot>("base_snapshot_id"_element, ignored, ifSet),
        list<&R::childTypes>("child_type"_element, ignored),
        list<&R::qos>("qos"_element, ignored),
        field<&R::agentVersion>("version"_element, ignored, ifSet),
        field<&R::configCustomized>("config_customized"_element, ignored, ifSet),
        field<&R::disabled>("disabled"_element, ignored, ifSet),
    };
};
const QelWireLayout& QelEnvConfig::wire = wireLayoutOf<Elements>;

namespace {

using Positions = std::map<std::string, int, std::less<>>;

Positions makePositions() {
    Positions positions;
    int position = 0;
    for (const QelWireField& field : wireLayoutOf<Elements>.fields.first(positionCount))
        positions.emplace(QelDefaultMap::findElemID(field.ownID()).view(), position++);
    return positions;
}

const Positions& positionsByName() {
    static Positions shared;
    static std::atomic<bool> isFilled = false;
    if (!isFilled.load(std::memory_order_acquire)) {
        Positions fresh = makePositions();
        const QelGuardT<QelLock> guard(positionLock);
        if (shared.empty())
            shared.swap(fresh);
        isFilled.store(true, std::memory_order_release);
    }
    return shared;
}

bool isAnyPresent(const QelMessageIterator& cursor, std::initializer_list<int> ids) {
    return std::any_of(ids.begin(), ids.end(), [&](int id) { return cursor.seekPresence(id) == 0; });
}

} // namespace

int QelEnvConfig::getPositionOfTheTag(const std::string& tag) const {
    const Positions& positions = positionsByName();
    const auto found = positions.find(tag);
    return found == positions.end() ? -1 : found->second;
}

int QelEnvConfig::Reader::operator()(const QelMessageIterator& cursor, QelEnvConfig& config) const {
    return config.readFrom(cursor);
}

int QelEnvConfig::Writer::operator()(QelMessageIterator& cursor, const QelEnvConfig& config) const {
    const QelMessageIterator* const source = config.tree();
    if (!source || source->firstChild() != 0)
        return 0;

    std::multimap<int, std::unique_ptr<QelMessageIterator>> children;
    int lastInserted = -1; // before all positions
    do {
        const int position = config.getPositionOfTheTag(source->curName());
        if (position >= 0)
            lastInserted = position;
        children.emplace(lastInserted, source->newIterator(false));
    } while (source->nextSibling() == 0);
    source->seekUp();

    for (const auto& [position, child] : children)
        if (cursor.copyToChild(child.get()) != 0)
            return -1;
    return 0;
}

int QelEnvConfig::FilterConfigWriter::operator()(QelMessageIterator& cursor, int filter) const {
    if (filter & filterBasic)
        for (const int id : {"name"_element, "domain"_element, "hostname"_element, "type"_element,
                             "architecture"_element, "os"_element, "address"_element})
            cursor.putChild(id);
    if (filter & filterNameservers)
        cursor.putChild("name_server"_element);
    if (filter & filterSearchDomains)
        cursor.putChild("search_domain"_element);
    if ((filter & filterAddresses) && !(filter & filterBasic))
        cursor.putChild("address"_element);
    return 0;
}

int QelEnvConfig::FilterConfigReader::operator()(const QelMessageIterator& cursor, int& filter) const {
    if (isAnyPresent(cursor, {"name_server"_element}))
        filter |= filterNameservers;
    if (isAnyPresent(cursor, {"search_domain"_element}))
        filter |= filterSearchDomains;
    // Addresses alone cannot be distinguished from the addresses among the basic fields, so both bits are set.
    if (isAnyPresent(cursor, {"address"_element}))
        filter |= filterBasic | filterAddresses;
    else if (isAnyPresent(cursor, {"name"_element, "domain"_element, "hostname"_element, "type"_element,
                                   "architecture"_element, "os"_element}))
        filter |= filterBasic;
    return 0;
}

} // namespace Qel
