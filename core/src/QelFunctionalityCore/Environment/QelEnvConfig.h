#pragma once

#include <memory>
#include <set>
#include <string>
#include <vector>

#include <boost/shared_ptr.hpp>

#include "QelCommon/Export.h"
#include "QelFunctionalityCore/Environment/QelEnvCoreBasic.h"
#include "QelFunctionalityCore/Environment/QelOS.h"
#include "QelFunctionalityCore/Environment/QelQoS.h"
#include "QelFunctionalityCore/Values/QelGUID.h"
#include "QelFunctionalityCore/Values/QelIPAddress.h"
#include "QelFunctionalityCore/Values/QelProperty.h"
#include "QelMessage/QelDerivedParsers.h"
#include "QelMessage/QelRecord.h"

namespace Qel {

using QelStringOptionalProperty = QelOptionalProperty<std::string>;
using QelStringListOptionalProperty = QelOptionalProperty<std::vector<std::string>>;
using QelStringSetOptionalProperty = QelOptionalProperty<std::set<std::string>>;
using QelIPAddressListOptionalProperty = QelOptionalProperty<std::vector<QelIPAddress>>;
using QelQoSListOptionalProperty = QelOptionalProperty<std::set<QelQoS>>;

/// A configuration of an environment: a view of a small message tree.  Each getter reads an element of the tree; each
/// setter replaces one.  The tree is parsed from the flat record on first access, so an environment from the cache
/// costs no parsing if only its identity is used.
///
/// An absent element is an unspecified value; an element without content is a specified, empty value.
///
/// Operations return 0, or -1 if there is no tree or an element cannot be read or written.  Not thread-safe.  A view of
/// a cache record must not outlive the list that the record came from.
class QEL_EXPORT QelEnvConfig {
public:
    struct Reader {
        int operator()(const QelMessageIterator& cursor, QelEnvConfig& config) const;
    };
    /// Writes the children of the tree in canonical order.  An element without a position in that order stays directly
    /// after its predecessor.
    struct Writer : QelWriterBaseT<Writer> {
        static constexpr int getNSID() { return 292; }
        static constexpr int getTypeID() { return 120; }
        int operator()(QelMessageIterator& cursor, const QelEnvConfig& config) const;
    };
    using reader_type = Reader;
    using writer_type = Writer;

    static const QelWireLayout& wire;

    /// Bits of a filter: the parts of a configuration that a request asks for.
    enum Filter : int { filterBasic = 1, filterNameservers = 2, filterSearchDomains = 4, filterAddresses = 8 };
    /// Writes a filter as empty elements, and reads it from the elements that are present.  The basic fields include
    /// the addresses, so filterAddresses alone is read back with filterBasic.  Both always return 0.
    struct FilterConfigReader {
        int operator()(const QelMessageIterator& cursor, int& filter) const;
    };
    struct FilterConfigWriter : QelWriterBase {
        int operator()(QelMessageIterator& cursor, int filter) const;
    };

    /// A configuration without a tree.
    QelEnvConfig() : QelEnvConfig(static_cast<const QelMessageIterator*>(nullptr), EnvConfigType::base) {}
    /// Reads the configuration under the cursor.  A null cursor makes a configuration without a tree.
    QelEnvConfig(const QelMessageIterator* cursor, EnvConfigType type);
    /// A view of one of the two configurations of a record; a null record is replaced by a blank one.
    QelEnvConfig(boost::shared_ptr<QelEnvCoreBasic> core, EnvConfigType type);
    QelEnvConfig(const QelEnvConfig& other);
    /// Copies the tree and shares the record.
    QelEnvConfig& operator=(const QelEnvConfig& other);
    virtual ~QelEnvConfig();

    /// The position of an element name in the canonical order, or -1 if it has none.  Derived classes may extend the
    /// order.
    [[nodiscard]] virtual int getPositionOfTheTag(const std::string& name) const;

    [[nodiscard]] EnvConfigType getConfigType() const { return m_configType; }
    /// Discards the tree and, with `resetCore`, the record.
    void reset(bool resetCore);

    int getName(QelStringOptionalProperty& name) const;
    int setName(const QelStringOptionalProperty& name);
    int getDescription(QelStringOptionalProperty& description) const;
    int setDescription(const QelStringOptionalProperty& description);
    int getDomain(QelStringOptionalProperty& domain) const;
    int setDomain(const QelStringOptionalProperty& domain);
    int getHostname(QelStringOptionalProperty& hostname) const;
    int setHostname(const QelStringOptionalProperty& hostname);
    int getArchitecture(QelStringOptionalProperty& architecture) const;
    int setArchitecture(const QelStringOptionalProperty& architecture);
    int getAddresses(QelIPAddressListOptionalProperty& addresses) const;
    int setAddresses(const QelIPAddressListOptionalProperty& addresses);
    int getOS(QelOS& os) const;
    int setOS(const QelOS& os);
    /// The type as stored in the record.
    [[nodiscard]] const QelEnvType& getType() const;
    int setType(const QelEnvType& type);
    int getNameservers(QelStringListOptionalProperty& nameservers) const;
    /// Stores each name server once: of several spellings of one address, the first is kept.
    int setNameservers(const QelStringListOptionalProperty& nameservers);
    int getSearchDomains(QelStringSetOptionalProperty& domains) const;
    int getBaseSampleId(QelOptionalProperty<QelGUID>& id) const;
    int setBaseSampleId(const QelOptionalProperty<QelGUID>& id);
    int getBaseSnapshotId(QelGUID& id) const;
    int setBaseSnapshotId(const QelGUID& id);
    int getChildTypes(QelStringSetOptionalProperty& types) const;
    int getConfigCustomized(bool& customized) const;
    /// The version of the agent that wrote a base configuration (40500 is 4.5.0); -1 if there is no tree, and for a
    /// virtual configuration.
    [[nodiscard]] int getAgentVersion() const;

    /// Compares name, domain, type, host name, description, architecture, operating system, addresses, name servers,
    /// search domains and child types, in this order.  Returns a value < 0, 0 or > 0.
    [[nodiscard]] int compare(const QelEnvConfig& other) const;

protected:
    /// The tree, parsed from the record on first use; null if there is none.
    [[nodiscard]] QelMessageIterator* tree() const;
    /// The tree, created if there is none.
    QelMessageIterator& initMsg();

    /// Replaces the elements `id` with those of a list.  An empty list is written as one empty element, an unspecified
    /// list as none.
    template <class List> int setListAttr(const QelOptionalProperty<List>& list, int id);

private:
    friend class QelEnvCoreBasicMaintainer;

    /// Destroys a cursor and its message.
    struct DestroyTree {
        void operator()(QelMessageIterator* cursor) const;
    };
    using Tree = std::unique_ptr<QelMessageIterator, DestroyTree>;

    static Tree makeTree();
    int readFrom(const QelMessageIterator& cursor);
    void applyVersionDefault() const;

    int getStringAttr(QelStringOptionalProperty& property, int id) const;
    int setStringAttr(const QelStringOptionalProperty& property, int id);
    int getStringBase64Attr(QelStringOptionalProperty& property, int id) const;
    int setStringBase64Attr(const QelStringOptionalProperty& property, int id);
    template <class Property, class Get> int getStringAttrEx(Property& property, int id, const Get& get) const;
    template <class Property, class Put> int setStringAttrEx(const Property& property, int id, const Put& put);
    template <class Container> int getOptionalListAttribute(QelOptionalProperty<Container>& list, int id) const;
    template <class Container> int getStringListAttr(QelOptionalProperty<Container>& list, int id) const;

    mutable Tree m_msg;
    mutable bool m_isParsed = true; // false: the tree has not been parsed from the record yet
    EnvConfigType m_configType;
    boost::shared_ptr<QelEnvCoreBasic> m_core;
};

extern template class QelDerivedParserFactory<QelEnvConfig>;

} // namespace Qel
