#pragma once

#include <map>

#include <boost/shared_ptr.hpp>

#include "QelCommon/Export.h"
#include "QelFunctionalityCore/Environment/QelEnvCoreBasic.h"

namespace Qel {

class QelEnv;
class QelEnvUpdater;
class QelVEnvConfig;

/// Base class of the environments that child factories create.
class QEL_EXPORT QelEnvBase {
public:
    virtual ~QelEnvBase() = default;

protected:
    QelEnvBase() = default;
    QelEnvBase(const QelEnvBase&) = default;
    QelEnvBase& operator=(const QelEnvBase&) = default;
};

/// Creates the environments of one virtualisation technology.
class QEL_EXPORT QelEnvChildFactory {
public:
    /// A new, empty environment.
    [[nodiscard]] virtual boost::shared_ptr<QelEnvBase> createEnv() = 0;
    /// An environment over an existing record.
    [[nodiscard]] virtual boost::shared_ptr<QelEnvBase> createEnv(boost::shared_ptr<QelEnvCoreBasic> core) = 0;
    /// A virtual configuration over an existing record.
    [[nodiscard]] virtual boost::shared_ptr<QelVEnvConfig>
    createVEnvConfig(boost::shared_ptr<QelEnvCoreBasic> core) = 0;

    QelEnvChildFactory() = default;
    QelEnvChildFactory(const QelEnvChildFactory&) = delete;
    QelEnvChildFactory& operator=(const QelEnvChildFactory&) = delete;
    virtual ~QelEnvChildFactory() = default;
};

/// Finds the virtualisation technology of an environment by its type.  The technologies' libraries register factories
/// and updaters while they load.  Registration must be complete before the first lookup: lookups take no lock.
class QEL_EXPORT QelEnvFactory {
public:
    [[nodiscard]] static QelEnvFactory& getInstance();

    QelEnvFactory(const QelEnvFactory&) = delete;
    QelEnvFactory& operator=(const QelEnvFactory&) = delete;

    /// Registers an object for a type, replacing an earlier one; a null pointer unregisters it.
    void setChildFactory(const QelEnvType& type, boost::shared_ptr<QelEnvChildFactory> factory);
    void setEnvUpdater(const QelEnvType& type, boost::shared_ptr<QelEnvUpdater> updater);

    /// The updater for a type, or null.
    [[nodiscard]] boost::shared_ptr<QelEnvUpdater> getEnvUpdater(const QelEnvType& type) const;

    /// A new environment of a type; null if the type is unknown or its factory creates an object of another class.
    [[nodiscard]] boost::shared_ptr<QelEnv> createEnv(const QelEnvType& type) const;
    /// An environment over a record, of the record's type; a plain one if the type is unknown.
    [[nodiscard]] boost::shared_ptr<QelEnv> createEnv(const boost::shared_ptr<QelEnvCoreBasic>& core) const;
    /// A virtual configuration over a record, of the record's type; a plain one if the type is unknown.
    [[nodiscard]] boost::shared_ptr<QelVEnvConfig>
    createVEnvConfig(const boost::shared_ptr<QelEnvCoreBasic>& core) const;

private:
    QelEnvFactory() = default;
    ~QelEnvFactory() = default;

    [[nodiscard]] QelEnvChildFactory* findChildFactory(const QelEnvType& type) const;

    std::map<QelEnvType, boost::shared_ptr<QelEnvChildFactory>> m_childFactories;
    std::map<QelEnvType, boost::shared_ptr<QelEnvUpdater>> m_updaters;
};

} // namespace Qel
