#include "QelFunctionalityCore/Events/QelEnvInfo.h"

#include "QelFunctionalityCore/Environment/QelEnvCache.h"

namespace Qel {

QelEnvInfo::QelEnvInfo(const QelEnv& env) : QelRecordAs("%title%", "env", true) {
    fill(env);
}

QelEnvInfo::QelEnvInfo(const QelEID& eid) : QelRecordAs("%title%", "env", true) {
    const QelEnvCacheSP cache = envCache();
    if (const boost::shared_ptr<QelEnv> env = cache ? cache->getEnvCopy(eid) : nullptr) {
        fill(*env);
        return;
    }
    set("eid", eid.toString());
    set("title", eid.toString());
}

void QelEnvInfo::fill(const QelEnv& env) {
    set("eid", env.getEID().toString());
    set("title", env.getTitle());
    set("type", env.getType().c_str());
}

void QelEnvInfo::set(const char* parameterName, std::string parameterText) {
    setParameter(QelInfo(std::move(parameterText), parameterName, true));
}

} // namespace Qel
