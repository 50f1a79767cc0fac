#pragma once

#include <string>

#include <boost/smart_ptr/intrusive_ptr.hpp>
#include <boost/smart_ptr/shared_ptr.hpp>

#include "QelCommon/Export.h"
#include "QelCore/QelCacheLogic.h"
#include "QelCore/QelMappedMemoryManager.h"
#include "QelFunctionalityCore/Environment/QelEnv.h"
#include "QelFunctionalityCore/Environment/QelEnvUpdater.h"

namespace Qel {

// Not QEL_EXPORT: clang rejects an attribute in [[]] here.
extern template class __attribute__((visibility("default")))
QelCacheLogic<QelEID, QelEnvCoreBasic, QelMappedMemoryManager>;

/// The environments that all processes of the agent share, in one memory-mapped file.
///
/// Every change is first offered to the environment's updater (PreProcess), without holding the file lock.  Therefore
/// concurrent writers of one environment may reach the updater in one order and the file in the other.
///
/// Operations return a QelCacheResult or the result of an updater.
class QEL_EXPORT QelEnvCache : public QelCacheLogic<QelEID, QelEnvCoreBasic, QelMappedMemoryManager> {
public:
    /// Called before a change reaches the file.  The default implementation calls the updater of the environment's
    /// type, if there is one; for inserts and updates, only if its checkEnv() returns 0.  A nonzero result rejects the
    /// change.
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

    /// Limits: bytes of the largest record, lists alive at a time per cache object, bytes of the file.
    static constexpr unsigned maxRecordSize = 0x1000000;
    static constexpr unsigned maxLiveLists = 16;
    static constexpr unsigned maxFileSize = 0x40000000;

    /// Stores the name; opens nothing.
    explicit QelEnvCache(const std::string& fileName);

    /// Returns a cache attached to the file, or null after logging an error.  An unusable file is marked as such and
    /// kept, until an administrator or initEnvCache() removes it.
    [[nodiscard]] static boost::intrusive_ptr<QelEnvCache> createInstance(const std::string& fileName,
                                                                          boost::shared_ptr<PreProcess> preProcess);

    /// Returns a snapshot of the current state; null if too many lists are alive or no snapshot can be taken.
    [[nodiscard]] EnvValuesListPtr getEnvList();
    /// Returns a private, writable copy of an environment, or null.
    [[nodiscard]] boost::shared_ptr<QelEnv> getEnvCopy(const QelEID& eid);

    /// Returns -1 if the environment has no EID.
    int insert(const QelEnv& env);
    /// Like insert().  If the updater accepts an update but the file rejects it, the updater's removeEnv() is called,
    /// as after a rejected insert.  The next update offers the environment to the updater again.
    int update(const QelEnv& env);
    /// Removing a missing environment succeeds.
    int remove(const QelEID& eid);

    /// Passes the children of an environment to the updater of the generic type.
    void syncEnvListOf(const QelEID& eid);
    /// Passes the slaves of the agent to the updater of the generic type, with an invalid EID as their parent.
    void syncSlaveList(const QelEnvIDList& list);

private:
    template <class Store>
    int change(const char* operation, const QelEnv& env, int (PreProcess::*ask)(const QelEnv&), const Store& store);

    boost::shared_ptr<PreProcess> m_preProcess;
};

using QelEnvCacheSP = boost::intrusive_ptr<QelEnvCache>;

/// A snapshot of all environments, sorted by EID.  Environments created from it read directly from the file: they are
/// read-only and must not outlive the list.
class QEL_EXPORT QelEnvCache::EnvValuesList : public QelEnvCache::ValuesList {
public:
    using ValuesList::ValuesList;

    /// Iterates over the records.  Creates an environment only for a record that is dereferenced.
    class const_iterator {
    public:
        const_iterator() = default;
        explicit const_iterator(const record_t* record) : m_record(record) {}

        const_iterator& operator++() {
            ++m_record;
            return *this;
        }
        bool operator==(const const_iterator& other) const { return m_record == other.m_record; }

        /// The environment at this position; null for a record without data.
        QelEnvCSP operator->() const;

    private:
        const record_t* m_record = nullptr;
        mutable QelEnvCSP m_env; // of the position last dereferenced
    };

    /// Returns the environment, or null.
    [[nodiscard]] QelEnvCSP getEnv(const QelEID& eid) const;

    [[nodiscard]] const_iterator begin() const { return const_iterator(ValuesList::begin()); }
    [[nodiscard]] const_iterator end() const { return const_iterator(ValuesList::end()); }
};

/// Sets the path of the process's cache file; with `removeOld`, removes an existing file.  Call it before the first
/// envCache() and before threads start.  Always returns 0.
QEL_EXPORT int initEnvCache(const std::string& path, bool removeOld);

/// Returns the process's cache, attached on the first call and again on the first call after a fork.  Returns null and
/// logs an error if the file is unusable or no path is set; the next call tries again.  A call that attaches must be
/// made while the process has a single thread.
QEL_EXPORT [[nodiscard]] QelEnvCacheSP envCache();

/// Releases the process's cache.
QEL_EXPORT void finiEnvCache();

} // namespace Qel
