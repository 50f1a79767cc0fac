#pragma once

#include "QelCommon/Export.h"
#include "QelFunctionalityCore/Environment/QelEnvConfig.h"

namespace Qel {

/// The configuration of a virtual environment: adds limits and the disabled flag to those of any environment.
class QEL_EXPORT QelVEnvConfig : public QelRecordAs<QelEnvConfig, 292, 121> {
public:
    QelVEnvConfig() : QelVEnvConfig(static_cast<const QelMessageIterator*>(nullptr)) {}
    explicit QelVEnvConfig(const QelMessageIterator* cursor) : QelRecordAs(cursor, EnvConfigType::virtualised) {}
    explicit QelVEnvConfig(boost::shared_ptr<QelEnvCoreBasic> core)
        : QelRecordAs(std::move(core), EnvConfigType::virtualised) {}
    explicit QelVEnvConfig(const QelEnvConfig& other) : QelRecordAs(other) {}

    /// Whether the environment must not be started; false if the configuration does not specify it.
    int getDisabled(bool& disabled) const;
    int setDisabled(bool disabled);

    int getQoSes(QelQoSListOptionalProperty& limits) const;
    int setQoSes(const QelQoSListOptionalProperty& limits);
    /// Looks up the limit of the resource whose identifier is in the property's value; unspecified if there is none.
    int getQoS(QelOptionalProperty<QelQoS>& limit) const;
    /// Replaces the limit of one resource, whether or not the property is specified.
    int setQoS(const QelOptionalProperty<QelQoS>& limit);

private:
    template <class Limits> int getQoSLikeListExT(QelOptionalProperty<Limits>& limits, int id) const;
};

} // namespace Qel
