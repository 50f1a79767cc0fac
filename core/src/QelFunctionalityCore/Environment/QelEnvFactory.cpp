#include "QelFunctionalityCore/Environment/QelEnvFactory.h"

#include <utility>

#include <boost/pointer_cast.hpp>

#include "QelFunctionalityCore/Environment/QelEnv.h"
#include "QelFunctionalityCore/Environment/QelEnvUpdater.h"

namespace Qel {

namespace {

constexpr const char* sourcePath = "core/src/QelFunctionalityCore/QelEnv";

template <class Registry, class Entry> void setEntry(Registry& registry, const QelEnvType& type, Entry entry) {
    if (entry)
        registry[type] = std::move(entry);
    else
        registry.erase(type);
}

} // namespace

QelEnvFactory& QelEnvFactory::getInstance() {
    static QelEnvFactory instance;
    return instance;
}

void QelEnvFactory::setChildFactory(const QelEnvType& type, boost::shared_ptr<QelEnvChildFactory> factory) {
    setEntry(m_childFactories, type, std::move(factory));
}

void QelEnvFactory::setEnvUpdater(const QelEnvType& type, boost::shared_ptr<QelEnvUpdater> updater) {
    setEntry(m_updaters, type, std::move(updater));
}

QelEnvChildFactory* QelEnvFactory::findChildFactory(const QelEnvType& type) const {
    const auto found = m_childFactories.find(type);
    return found == m_childFactories.end() ? nullptr : found->second.get();
}

boost::shared_ptr<QelEnvUpdater> QelEnvFactory::getEnvUpdater(const QelEnvType& type) const {
    const auto found = m_updaters.find(type);
    return found == m_updaters.end() ? boost::shared_ptr<QelEnvUpdater>() : found->second;
}

boost::shared_ptr<QelEnv> QelEnvFactory::createEnv(const QelEnvType& type) const {
    QelEnvChildFactory* const factory = findChildFactory(type);
    return factory ? boost::dynamic_pointer_cast<QelEnv>(factory->createEnv()) : boost::shared_ptr<QelEnv>();
}

boost::shared_ptr<QelEnv> QelEnvFactory::createEnv(const boost::shared_ptr<QelEnvCoreBasic>& core) const {
    QEL_CHECK(core != nullptr, sourcePath);
    QelEnvChildFactory* const factory = findChildFactory(core->type);
    if (!factory)
        return boost::shared_ptr<QelEnv>(new QelEnv(core));
    return boost::dynamic_pointer_cast<QelEnv>(factory->createEnv(core));
}

boost::shared_ptr<QelVEnvConfig> QelEnvFactory::createVEnvConfig(const boost::shared_ptr<QelEnvCoreBasic>& core) const {
    QEL_CHECK(core != nullptr, sourcePath);
    QelEnvChildFactory* const factory = findChildFactory(core->type);
    return factory ? factory->createVEnvConfig(core) : boost::shared_ptr<QelVEnvConfig>(new QelVEnvConfig(core));
}

} // namespace Qel
