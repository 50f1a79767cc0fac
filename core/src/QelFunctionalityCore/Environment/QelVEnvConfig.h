#pragma once

#include "QelFunctionalityCore/Environment/QelEnvConfig.h"

namespace Qel {

/// The configuration of a virtual environment: adds limits and the disabled flag to that of any environment.
class QelVEnvConfig : public QelEnvConfig {
public:
    using Reader = QelReaderAs<QelEnvConfig>;
    using Writer = QelWriterAs<QelEnvConfig, 292, 121>;
    using reader_type = Reader;
    using writer_type = Writer;

    QelVEnvConfig() : QelVEnvConfig(static_cast<const QelMessageIterator*>(nullptr)) {}
    explicit QelVEnvConfig(const QelMessageIterator* cursor) : QelEnvConfig(cursor, EnvConfigType::virtualised) {}
    explicit QelVEnvConfig(boost::shared_ptr<QelEnvCoreBasic> core)
        : QelEnvConfig(std::move(core), EnvConfigType::virtualised) {}
    explicit QelVEnvConfig(const QelEnvConfig& other) : QelEnvConfig(other) {}

    /// Whether the environment may not be started; false when the configuration doesn't tell.
    int getDisabled(bool& disabled) const;
    int setDisabled(bool disabled);

    int getQoSes(QelQoSListOptionalProperty& limits) const;
    int setQoSes(const QelQoSListOptionalProperty& limits);
    /// The limit of the resource that the property's value names; unspecified when there is none.
    int getQoS(QelOptionalProperty<QelQoS>& limit) const;
    /// Replaces the limit of one resource.  Whether the property is specified has no effect.
    int setQoS(const QelOptionalProperty<QelQoS>& limit);

private:
    template <class Limits> int getQoSLikeListExT(QelOptionalProperty<Limits>& limits, int id) const;
};

} // namespace Qel
