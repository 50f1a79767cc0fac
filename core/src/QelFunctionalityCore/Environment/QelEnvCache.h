#pragma once

#include <string>

#include <boost/smart_ptr/intrusive_ptr.hpp>
#include <boost/smart_ptr/shared_ptr.hpp>

#include "QelCore/QelCacheLogic.h"
#include "QelCore/QelMappedMemoryManager.h"
#include "QelFunctionalityCore/Environment/QelEnv.h"
#include "QelFunctionalityCore/Environment/QelEnvUpdater.h"

namespace Qel {

extern template class QelCacheLogic<QelEID, QelEnvCoreBasic, QelMappedMemoryManager>;

/// The environments that all processes of the agent share, in one mapped file.
///
/// Every change is offered to the environment's updater first (PreProcess), outside the file's lock; two writers of one
/// environment can therefore reach the updater in one order and the file in the other.
///
/// Results of the operations are those of QelCacheResult, or what an updater answered.
class QelEnvCache : public QelCacheLogic<QelEID, QelEnvCoreBasic, QelMappedMemoryManager> {
public:
    /// The stage that a change passes before it reaches the file.  This one asks the updater of the environment's type,
    /// if it has one and that wants to hear of the environment.  Anything but 0 stops the change.
    class PreProcess {
    public:
        virtual int insert(const QelEnv& env);
        virtual int update(const QelEnv& env);
        virtual int remove(const QelEnv& env);

        PreProcess() = default;
        PreProcess(const PreProcess&) = delete;
        PreProcess& operator=(const PreProcess&) = delete;
        virtual ~PreProcess();
    };

    class EnvValuesList;
    using EnvValuesListPtr = boost::intrusive_ptr<EnvValuesList>;

    /// Limits of the cache: bytes of the largest record, lists that one object may hold at once, bytes of the file.
    static constexpr unsigned maxRecordSize = 0x1000000;
    static constexpr unsigned maxLiveLists = 16;
    static constexpr unsigned maxFileSize = 0x40000000;

    /// Keeps the name; nothing is opened.
    explicit QelEnvCache(const std::string& fileName);

    /// A cache attached to the file, or null with a log record.  An unusable file is marked so and stays where it is:
    /// it is removed by an administrator, or by initEnvCache.
    [[nodiscard]] static boost::intrusive_ptr<QelEnvCache> createInstance(const std::string& fileName,
                                                                          boost::shared_ptr<PreProcess> preProcess);

    /// A list of the current state; null when too many are alive or none can be had.
    [[nodiscard]] EnvValuesListPtr getEnvList();
    /// A private, writable copy of an environment, or null.
    [[nodiscard]] boost::shared_ptr<QelEnv> getEnvCopy(const QelEID& eid);

    /// -1 for an environment without an EID.
    int insert(const QelEnv& env);
    /// As `insert`.  When the file refuses an update that the updater agreed to, the updater is told to forget the
    /// environment, as after a refused insert: it then hears of it anew with the next update.
    int update(const QelEnv& env);
    /// Removing what isn't there is success.
    int remove(const QelEID& eid);

    /// Tells the updater of the generic type which children an environment has.
    void syncEnvListOf(const QelEID& eid);
    /// Tells the updater of the generic type which slaves the agent has, as the children of no environment.
    void syncSlaveList(const QelEnvIDList& list);

private:
    template <class Store>
    int change(const char* operation, const QelEnv& env, int (PreProcess::*ask)(const QelEnv&), const Store& store);

    boost::shared_ptr<PreProcess> m_preProcess;
};

using QelEnvCacheSP = boost::intrusive_ptr<QelEnvCache>;

/// A snapshot of all environments, ordered by EID.  Environments made from it read straight from the file: they live no
/// longer than the list and are not written to.
class QelEnvCache::EnvValuesList : public QelEnvCache::ValuesList {
public:
    using ValuesList::ValuesList;

    /// Walks the records and makes an environment for each that is looked at.
    class const_iterator {
    public:
        const_iterator() = default;
        explicit const_iterator(const record_t* record) : m_record(record) {}

        const_iterator& operator++() {
            ++m_record;
            return *this;
        }
        bool operator==(const const_iterator& other) const { return m_record == other.m_record; }

        /// The environment at this place; null for a record without data.
        QelEnvCSP operator->() const;

    private:
        const record_t* m_record = nullptr;
        mutable QelEnvCSP m_env; // of the place where it was last asked for
    };

    /// The environment, or null.
    [[nodiscard]] QelEnvCSP getEnv(const QelEID& eid) const;

    [[nodiscard]] const_iterator begin() const { return const_iterator(ValuesList::begin()); }
    [[nodiscard]] const_iterator end() const { return const_iterator(ValuesList::end()); }
};

/// Names the file of the process's cache and with `removeOld` removes it first.  Comes before the first envCache(), and
/// before threads start.  Always 0.
int initEnvCache(const std::string& path, bool removeOld);

/// The process's cache, attached at the first call and again at the first call after a fork.  Null, with a log record,
/// if the file can't be used or none was named; each call tries again.  The attaching calls come while one thread runs.
[[nodiscard]] QelEnvCacheSP envCache();

/// Drops the process's cache.
void finiEnvCache();

} // namespace Qel
