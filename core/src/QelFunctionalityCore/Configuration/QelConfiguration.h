#pragma once

#include <initializer_list>
#include <map>
#include <set>
#include <string>
#include <string_view>

#include <boost/shared_ptr.hpp>

#include "QelCommon/Export.h"
#include "QelCore/QelLock.h"
#include "QelFunctionalityCore/Configuration/QelConnectionInfo.h"
#include "QelFunctionalityCore/Configuration/QelRealm.h"
#include "QelFunctionalityCore/Values/QelEID.h"
#include "QelFunctionalityCore/Values/QelEnvIDComparator.h"
#include "QelMessage/QelDerivedParsers.h"

namespace Qel {

class QelConfigurationIterator;

/// The configuration of an agent: a tree, with accessors for the parts that the library itself uses.  These are the
/// agent's identity, the agents that it can reach and how, and its place in a server group, which has one master and
/// any number of slaves.
///
/// A configuration is empty or owns its tree.  Only saveToFile() writes changes to disk.  Operations return 0 on
/// success and -1 on failure unless stated otherwise.  Not thread-safe: even reading moves the internal cursor.
class QEL_EXPORT QelConfiguration {
public:
    /// Name of the subscription to changes, and the tag of its events.
    static constexpr std::string_view subscriptionName = "qelconf_subscription";
    static constexpr int eventTag = 1044;

    struct Reader;
    struct Writer;
    using reader_type = Reader;
    using writer_type = Writer;

    /// Copies the tree of the message; null makes an empty configuration.
    explicit QelConfiguration(QelMessage* message = nullptr);
    QelConfiguration(const QelConfiguration& other);
    QelConfiguration& operator=(const QelConfiguration& other);
    virtual ~QelConfiguration();

    /// Replaces the content with a copy of the message, with or without its envelope; null empties the configuration.
    void reset(QelMessage* message, bool withEnvelope);

    /// The message itself, owned by this object; may be null.
    [[nodiscard]] QelMessage* getMessage() const { return m_message.get(); }
    /// Returns a new iterator over a copy of the tree, owned by the caller; null if the configuration is empty.
    /// Changes made through the iterator do not affect this object.
    [[nodiscard]] QelConfigurationIterator* getIterator() const;

    [[nodiscard]] int saveToFile(const std::string& path) const;
    /// If the file cannot be read, the configuration is unchanged.
    [[nodiscard]] int readFromFile(const std::string& path);

    /// This agent's identity.  The setter fails if the section `agent` is missing.
    int getEID(QelEID& eid) const;
    int setEID(const QelEID& eid);

    int getBuiltinRealmID(QelGUID& id) const;
    /// The realm with the ID that getBuiltinRealmID() returns; null if there is none.
    [[nodiscard]] boost::shared_ptr<QelRealm> getBuiltinRealm() const;

    /// The master of the server group.  An agent is a member of a group if it has a master.  The setter creates missing
    /// elements.
    int getMaster(QelEID& eid) const;
    int setMaster(const QelEID& eid);
    /// Leaves the group.
    int delMaster();
    [[nodiscard]] bool isInServerGroup() const;
    /// An agent outside a group counts as its own master.
    [[nodiscard]] bool isMaster() const;
    [[nodiscard]] bool isSlave() const;

    /// Creates the list of slaves if it is missing.
    int setMasterness();
    /// Removes the list of slaves; -1 if it has entries.
    int unsetMasterness();
    /// Adds a slave, without checking for duplicates.
    int addClientEnv(const QelEID& eid);
    /// Removes the first entry of a slave; -1 if there is none.
    int delClientEnv(const QelEID& eid);
    /// Adds the slaves to the set.
    void getGroupSlaves(std::set<QelEID, QelEnvIDComparator>& slaves) const;

    /// Looks up how to reach an agent; -1 if the table has no entry for it.  If the entry's connection cannot be read,
    /// returns 0 and leaves `info` unchanged.
    int findMapping(const QelEID& eid, QelConnectionInfo& info) const;
    /// Adds a mapping.  An existing one is kept: to change it, remove it first.
    int setMapping(const QelEID& eid, const QelConnectionInfo& info);
    /// Returns 0 even if there is no mapping; -1 if there is no table.
    int removeMapping(const QelEID& eid);
    /// Adds the mappings to `table`, replacing those of the same agents.
    int getMappingTable(std::map<QelEID, QelConnectionInfo>& table) const;

    /// The configuration of the process, initially empty.  These functions are thread-safe.
    static int setLocalConfig(QelMessage* message);
    [[nodiscard]] static QelConfiguration getLocalConfig();
    /// The identity in that configuration; invalid if it contains none.
    [[nodiscard]] static const QelEID& getLocalEID();

private:
    /// Moves the cursor from the root along a path of elements.
    int walk(std::initializer_list<int> path) const;
    /// Moves the cursor to the options of the server group, creating missing elements.
    int walkToGroup();
    /// Moves the cursor from a list to its entry with this EID.  If there is none, returns false and stays at the list.
    [[nodiscard]] bool seekEntry(const QelEID& eid) const;
    template <class Visit> void forEachEntry(const Visit& visit) const;

    boost::shared_ptr<QelMessage> m_message;
    boost::shared_ptr<QelMessageIterator> m_iterator; ///< cursor of m_message, moved by all accessors

    static boost::shared_ptr<QelMessage> m_localConf;
    static QelEID m_localEID;  ///< EID in m_localConf; invalid until getLocalEID() reads it
    static QelLock m_confLock; ///< protects m_localConf and m_localEID
};

/// Copies the whole message of the cursor, with its envelope; -1 if the cursor has no message.
struct QEL_EXPORT QelConfiguration::Reader {
    int operator()(const QelMessageIterator& cursor, QelConfiguration& configuration) const;
};

/// Adds the data element as a child of the current element; -1 if there is no data element.
struct QEL_EXPORT QelConfiguration::Writer : QelWriterBaseT<Writer> {
    int operator()(QelMessageIterator& cursor, const QelConfiguration& configuration) const;
};

extern template class QelDerivedParserFactory<QelConfiguration>;

QEL_EXPORT extern QelDerivedParserFactoryT<QelConfiguration, QelConfiguration> factoryQelConfiguration;

} // namespace Qel
