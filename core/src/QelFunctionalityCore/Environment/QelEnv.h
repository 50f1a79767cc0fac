#pragma once

#include <string>

#include <boost/shared_ptr.hpp>

#include "QelFunctionalityCore/Environment/QelEnvCoreBasicMaintainer.h"
#include "QelFunctionalityCore/Environment/QelEnvFactory.h"

namespace Qel {

template <class Record> struct Wire;

/// An environment: a server, a virtual machine or a container.  Its identity, status and alert levels lie in one flat
/// record, its two configurations are views on that record.  An object belongs to one thread at a time.
///
/// An environment that came from a list of the cache reads straight from the mapped file: it is read-only and lives no
/// longer than its list.
class QelEnv : public QelEnvBase {
public:
    /// The type of an environment of which no more particular one is known: "generic".
    static const QelEnvType type;

    /// -1 without the two EIDs.
    struct Reader {
        int operator()(const QelMessageIterator& cursor, QelEnv& env) const;
    };
    struct Writer : QelWriterBaseT<Writer> {
        static constexpr int getNSID() { return 292; }
        static constexpr int getTypeID() { return 122; }
        int operator()(QelMessageIterator& cursor, const QelEnv& env) const;
    };
    /// Reads an environment into an object of the class that its type's factory makes.
    struct EnvSPReader {
        int operator()(const QelMessageIterator& cursor, boost::shared_ptr<QelEnv>& env) const;
    };
    using reader_type = Reader;
    using writer_type = Writer;

    /// A fresh record and empty configurations.
    QelEnv();
    /// A view on a record, which must not be null.
    explicit QelEnv(boost::shared_ptr<QelEnvCoreBasic> core);
    // From configurations, which must not be null.
    QelEnv(const QelEID& eid, const boost::shared_ptr<QelEnvConfig>& config,
           const boost::shared_ptr<QelVEnvConfig>& vconfig);
    QelEnv(const QelEID& eid, const boost::shared_ptr<QelVEnvConfig>& vconfig);
    QelEnv(const QelEID& eid, const boost::shared_ptr<QelEnvConfig>& config);
    ~QelEnv() override;

    /// The key by which environments are ordered when the process orders by key and not by EID; unsigned 32 bits.
    [[nodiscard]] virtual unsigned getSortKey() const;
    /// The configuration that only virtual environments fill.  The form for changing marks it as changed.
    [[nodiscard]] virtual boost::shared_ptr<QelVEnvConfig> getVirtualConfig();
    [[nodiscard]] virtual boost::shared_ptr<const QelVEnvConfig> getVirtualConfig() const;
    /// The name shown to a user: name, else host name, else an address, each of the virtual configuration before the
    /// base one, else the EID.  A name that is specified and empty is a name.
    [[nodiscard]] virtual std::string getTitle() const;

    [[nodiscard]] const QelEnvType& getType() const { return getCoreBasic()->type; }
    [[nodiscard]] const QelEID& getEID() const { return getCoreBasic()->eid; }
    [[nodiscard]] const QelEID& getParentEID() const { return getCoreBasic()->parentEID; }
    [[nodiscard]] const QelEnvStatus& getStatus() const { return getCoreBasic()->status; }
    /// `reason` is below qelAlertReasonCount; it isn't checked.
    [[nodiscard]] QelAlertType getAlertType(QelAlertReason reason) const;
    /// The highest of the alert levels.
    [[nodiscard]] QelAlertType getMaxAlertType() const;
    [[nodiscard]] boost::shared_ptr<const QelEnvConfig> getConfig() const { return m_maintainer.m_config; }
    /// The flat record, which is never null.
    [[nodiscard]] boost::shared_ptr<QelEnvCoreBasic> getCoreBasic() const;

    // These write into the record as it is: on a private copy only.
    void setParentEID(const QelEID& eid) { getCoreBasic()->parentEID = eid; }
    void setStatus(const QelEnvStatus& status) { getCoreBasic()->status = status; }
    void setAlertType(QelAlertReason reason, QelAlertType alertType);
    /// The base configuration, for changing: marks it as changed.
    [[nodiscard]] boost::shared_ptr<QelEnvConfig> getConfig();

    /// Brings the record in step with the configurations and tells its address and length; -1 when a configuration
    /// can't be serialised.  The third argument has no effect.
    int getBuffer(const void** out, unsigned& length, const void* old) const;
    /// Brings the record in step with the configurations.
    void syncBuffer();

private:
    struct WireSteps;
    friend struct Wire<QelEnv>;

    mutable QelEnvCoreBasicMaintainer m_maintainer;
};

using QelEnvCSP = boost::shared_ptr<const QelEnv>;

extern template class QelDerivedParserFactory<QelEnv>;

} // namespace Qel
