#pragma once

#include <initializer_list>
#include <map>
#include <set>
#include <string>
#include <string_view>

#include <boost/shared_ptr.hpp>

#include "QelCore/QelLock.h"
#include "QelFunctionalityCore/Configuration/QelConnectionInfo.h"
#include "QelFunctionalityCore/Configuration/QelRealm.h"
#include "QelFunctionalityCore/Values/QelEID.h"
#include "QelFunctionalityCore/Values/QelEnvIDComparator.h"
#include "QelMessage/QelDerivedParsers.h"

namespace Qel {

class QelConfigurationIterator;

/// The configuration of an agent: a tree, and what of it the library itself needs to know.  That is who the agent is,
/// which agents it reaches and how, and its place in a server group, which has one master and any number of slaves.
///
/// It is empty, or owns a tree of its own; what is changed reaches the disk with saveToFile() only.  Operations give 0
/// for success and -1 for failure unless told otherwise.  It belongs to one thread at a time: reading moves its cursor.
class QelConfiguration {
public:
    /// The subscription by which clients hear of changes, and the tag of their events.
    static constexpr std::string_view subscriptionName = "qelconf_subscription";
    static constexpr int eventTag = 1044;

    struct Reader;
    struct Writer;
    using reader_type = Reader;
    using writer_type = Writer;

    /// With a copy of the message's tree; empty for null.
    explicit QelConfiguration(QelMessage* message = nullptr);
    QelConfiguration(const QelConfiguration& other);
    QelConfiguration& operator=(const QelConfiguration& other);
    virtual ~QelConfiguration();

    /// Takes a copy of the message, with its envelope or without; null empties the configuration.
    void reset(QelMessage* message, bool withEnvelope);

    /// The message itself, or null.
    [[nodiscard]] QelMessage* getMessage() const { return m_message.get(); }
    /// A new iterator on a copy of the tree, so that what it writes doesn't come here; the caller's.  Null if empty.
    [[nodiscard]] QelConfigurationIterator* getIterator() const;

    [[nodiscard]] int saveToFile(const std::string& path) const;
    /// A file that can't be read leaves the configuration as it was.
    [[nodiscard]] int readFromFile(const std::string& path);

    /// This agent's identity.  Setting it wants the section to be there.
    int getEID(QelEID& eid) const;
    int setEID(const QelEID& eid);

    int getBuiltinRealmID(QelGUID& id) const;
    /// The realm with that identifier, or an empty pointer.
    [[nodiscard]] boost::shared_ptr<QelRealm> getBuiltinRealm() const;

    /// The master of the server group; that there is one makes the agent a member.  Setting makes what is missing.
    int getMaster(QelEID& eid) const;
    int setMaster(const QelEID& eid);
    /// Leaves the group.
    int delMaster();
    [[nodiscard]] bool isInServerGroup() const;
    /// A lone agent counts as its own master.
    [[nodiscard]] bool isMaster() const;
    [[nodiscard]] bool isSlave() const;

    /// Makes the list of slaves, if it isn't there.
    int setMasterness();
    /// Removes the list of slaves; -1 if there are any.
    int unsetMasterness();
    /// Adds a slave, even one that is in the list.
    int addClientEnv(const QelEID& eid);
    /// Removes the first entry of a slave; -1 if there is none.
    int delClientEnv(const QelEID& eid);
    /// Adds the slaves to the set.
    void getGroupSlaves(std::set<QelEID, QelEnvIDComparator>& slaves) const;

    /// How to reach an agent; -1 if the table doesn't tell.  An unreadable connection leaves `info` as it was, and is
    /// 0.
    int findMapping(const QelEID& eid, QelConnectionInfo& info) const;
    /// Adds a mapping.  An existing one stays as it is: to change it, remove it first.
    int setMapping(const QelEID& eid, const QelConnectionInfo& info);
    /// 0 also if there was none; -1 without a table.
    int removeMapping(const QelEID& eid);
    /// Adds the table's mappings, in place of those of the same agents.
    int getMappingTable(std::map<QelEID, QelConnectionInfo>& table) const;

    /// The configuration of the process, which starts empty.  These are safe to call from any thread.
    static int setLocalConfig(QelMessage* message);
    [[nodiscard]] static QelConfiguration getLocalConfig();
    /// The identity that it tells; invalid as long as it tells none.
    [[nodiscard]] static const QelEID& getLocalEID();

private:
    /// To the element at the end of a path from the root.
    int walk(std::initializer_list<int> path) const;
    /// To the server group's options, which it makes if need be.
    int walkToGroup();
    /// From a list to its entry with this identifier; false, and at the list still, if there is none.
    [[nodiscard]] bool seekEntry(const QelEID& eid) const;
    template <class Visit> void forEachEntry(const Visit& visit) const;

    boost::shared_ptr<QelMessage> m_message;
    boost::shared_ptr<QelMessageIterator> m_iterator; ///< on m_message, used by all accessors

    static boost::shared_ptr<QelMessage> m_localConf;
    static QelEID m_localEID;  ///< of m_localConf, once it was asked for
    static QelLock m_confLock; ///< guards the two before it
};

/// Takes the whole message in which the cursor stands, with its envelope; -1 if there is none.
struct QelConfiguration::Reader {
    int operator()(const QelMessageIterator& cursor, QelConfiguration& configuration) const;
};

/// Adds the data element as a child of the current one; -1 if there is none.
struct QelConfiguration::Writer : QelWriterBaseT<Writer> {
    int operator()(QelMessageIterator& cursor, const QelConfiguration& configuration) const;
};

extern template class QelDerivedParserFactory<QelConfiguration>;

extern QelDerivedParserFactoryT<QelConfiguration, QelConfiguration> factoryQelConfiguration;

} // namespace Qel
