#include "QelFunctionalityCore/Environment/QelEnvCache.h"

#include <cstdint>
#include <optional>
#include <utility>

#include "QelCommon/Log.h"
#include "QelCore/QelCacheLogicImpl.h"
#include "QelCore/QelFiles.h"
#include "QelCore/QelProcess.h"
#include "QelFunctionalityCore/Environment/QelEnvCacheIterators.h"

namespace Qel {

template class QelCacheLogic<QelEID, QelEnvCoreBasic, QelMappedMemoryManager>;

namespace {

constexpr const char* sourcePath = "core/src/QelFunctionalityCore/QelEnvCache";

QelEnvCacheSP processCache;
std::string cachePath;

Logger logger(int line, const char* function, const char* prettyFunction) {
    return Log2(QEL_MODULE, sourcePath, line, function, prettyFunction);
}

// Returns an environment that reads from the mapped file.  The record must not be written to.  The type cannot express
// that, because the environment classes are also used for private records.
boost::shared_ptr<QelEnv> envOverMappedRecord(const QelEnvCoreBasic* record) {
    const boost::shared_ptr<QelEnvCoreBasic> wrapped(const_cast<QelEnvCoreBasic*>(record), &deleter_fake);
    return QelEnvFactory::getInstance().createEnv(wrapped);
}

// Notifies the updater registered for the type of the environment, unless there is none or its checkEnv() excludes the
// environment.  A nonzero result rejects the change.
int offer(const QelEnv& env, int (QelEnvUpdater::*notify)(const QelEnv&)) {
    const auto updater = QelEnvFactory::getInstance().getEnvUpdater(env.getType());
    if (!updater) {
        logger(__LINE__, __func__, __PRETTY_FUNCTION__)
            .put(LogLevel::trace, "EnvUpdater is not found for '%s'.", env.getType().c_str());
        return 0;
    }
    return updater->checkEnv(env) == 0 ? (updater.get()->*notify)(env) : 0;
}

void logChange(const char* operation, const QelEID& eid, int result) {
    const int level = result == 0 ? LogLevel::trace : LogLevel::cacheFailure;
    logger(__LINE__, operation, operation)
        .put(level, "EnvCache::%s called for %s, returning %d.", operation, eid.toString().c_str(), result);
}

std::optional<std::uint32_t> sortKeyOf(const QelEID& eid) {
    const QelEnvCacheSP cache = envCache();
    const auto env = cache ? cache->getEnvCopy(eid) : boost::shared_ptr<QelEnv>();
    return env ? std::optional<std::uint32_t>(env->getSortKey()) : std::nullopt;
}

// Sets of EIDs are in a lower layer than the cache, which contains the sort keys.  Therefore the cache registers itself
// as the source of sort keys.
[[maybe_unused]] const bool isSortKeySourceSet = (QelEnvIDComparator::setSortKeySource(&sortKeyOf), true);

} // namespace

int QelEnvCache::PreProcess::insert(const QelEnv& env) {
    return offer(env, &QelEnvUpdater::insertEnv);
}

int QelEnvCache::PreProcess::update(const QelEnv& env) {
    return offer(env, &QelEnvUpdater::updateEnv);
}

int QelEnvCache::PreProcess::remove(const QelEnv& env) {
    const auto updater = QelEnvFactory::getInstance().getEnvUpdater(env.getType());
    return updater ? updater->removeEnv(env.getEID()) : 0;
}

QelEnvCache::PreProcess::~PreProcess() = default;

QelEnvCache::QelEnvCache(const std::string& fileName)
    : QelCacheLogic(fileName, maxRecordSize, maxLiveLists, maxFileSize), m_preProcess(new PreProcess) {}

QelEnvCacheSP QelEnvCache::createInstance(const std::string& fileName, boost::shared_ptr<PreProcess> preProcess) {
    QelEnvCacheSP cache(new QelEnvCache(fileName));
    if (const int code = cache->initialize(true, true)) {
        logger(__LINE__, __func__, __PRETTY_FUNCTION__)
            .put(LogLevel::error, "Environment cache unavailable for process %s, code is %d.", getproctitle().c_str(),
                 code);
        if (cache->initialize(true, false) != 0)
            return nullptr;
    }
    cache->m_preProcess = std::move(preProcess);
    return cache;
}

QelEnvCache::EnvValuesListPtr QelEnvCache::getEnvList() {
    return getList<EnvValuesListPtr>();
}

boost::shared_ptr<QelEnv> QelEnvCache::getEnvCopy(const QelEID& eid) {
    const auto copy = getCopy(eid);
    return copy ? QelEnvFactory::getInstance().createEnv(copy) : boost::shared_ptr<QelEnv>();
}

int QelEnvCache::insert(const QelEnv& env) {
    return change("insert", env, &PreProcess::insert,
                  [&](const QelEID& eid) { return QelCacheLogic::insert(eid, env); });
}

int QelEnvCache::update(const QelEnv& env) {
    return change("update", env, &PreProcess::update,
                  [&](const QelEID& eid) { return QelCacheLogic::update(eid, env); });
}

template <class Store>
int QelEnvCache::change(const char* operation, const QelEnv& env, int (PreProcess::*ask)(const QelEnv&),
                        const Store& store) {
    const QelEID eid = env.getEID();
    if (!eid.isValid())
        return -1;
    int rc = (m_preProcess.get()->*ask)(env);
    if (rc == 0) {
        rc = store(eid);
        if (rc != 0)
            m_preProcess->remove(env);
    }
    logChange(operation, eid, rc);
    return rc;
}

int QelEnvCache::remove(const QelEID& eid) {
    const boost::shared_ptr<QelEnv> env = getEnvCopy(eid);
    if (!env)
        return 0;
    int rc = m_preProcess->remove(*env);
    if (rc == 0)
        rc = QelCacheLogic::remove(eid);
    logChange("remove", eid, rc);
    return rc;
}

void QelEnvCache::syncEnvListOf(const QelEID& eid) {
    const auto updater = QelEnvFactory::getInstance().getEnvUpdater(QelEnv::type);
    if (!updater) {
        logger(__LINE__, __func__, __PRETTY_FUNCTION__)
            .put(LogLevel::trace, "[%s] EnvUpdater is not found for '%s'.", __func__, QelEnv::type.c_str());
        return;
    }
    const EnvValuesListPtr list = getEnvList();
    if (!list) {
        logger(__LINE__, __func__, __PRETTY_FUNCTION__)
            .put(LogLevel::error, "[%s]: failed to acquire environments list.", __func__);
        return;
    }
    const Cache::Iterator::Children::Keys keys(eid, list);
    updater->syncEnvList(eid, QelEnvIDList(keys.begin(), keys.end()));
}

void QelEnvCache::syncSlaveList(const QelEnvIDList& list) {
    const auto updater = QelEnvFactory::getInstance().getEnvUpdater(QelEnv::type);
    if (!updater) {
        logger(__LINE__, __func__, __PRETTY_FUNCTION__)
            .put(LogLevel::trace, "EnvUpdater is not found for '%s'.", QelEnv::type.c_str());
        return;
    }
    updater->syncEnvList(QelEID(), list);
}

QelEnvCSP QelEnvCache::EnvValuesList::getEnv(const QelEID& eid) const {
    if (!isAccessible())
        logger(__LINE__, __func__, __PRETTY_FUNCTION__)
            .put(LogLevel::cacheFailure, "Environment cache: failed to acquire snapshot. Running out of memory.");
    const QelEnvCoreBasic* const record = get(eid);
    return record ? QelEnvCSP(envOverMappedRecord(record)) : QelEnvCSP();
}

QelEnvCSP QelEnvCache::EnvValuesList::const_iterator::operator->() const {
    const QelEnvCoreBasic* const record = m_record->data.get();
    if (!record)
        return {};
    if (!m_env || m_env->getEID() != record->eid)
        m_env = envOverMappedRecord(record);
    return m_env;
}

int initEnvCache(const std::string& path, bool removeOld) {
    if (removeOld)
        removeFile(path);
    cachePath = path;
    return 0;
}

QelEnvCacheSP envCache() {
    if (!processCache || !processCache->isAccessible())
        processCache = QelEnvCache::createInstance(
            cachePath, boost::shared_ptr<QelEnvCache::PreProcess>(new QelEnvCache::PreProcess));
    return processCache;
}

void finiEnvCache() {
    processCache = nullptr;
}

} // namespace Qel
