#pragma once

#include <string>

#include <boost/shared_ptr.hpp>

#include "QelCommon/Export.h"
#include "QelFunctionalityCore/Environment/QelEnvCoreBasicMaintainer.h"
#include "QelFunctionalityCore/Environment/QelEnvFactory.h"
#include "QelMessage/QelRecord.h"

namespace Qel {

template <class Record> struct Wire;

/// An environment: a server, a virtual machine or a container.  A flat record holds its identity, status and alert
/// levels; its two configurations are views of that record.  Not thread-safe.
///
/// An environment from a list of the cache reads directly from the mapped file: it is read-only and must not outlive
/// the list.
class QEL_EXPORT QelEnv : public QelEnvBase {
public:
    /// The type of an environment that has no more specific one: "generic".
    static const QelEnvType type;

    /// Returns -1 if either EID is missing.
    struct Reader {
        int operator()(const QelMessageIterator& cursor, QelEnv& env) const;
    };
    struct Writer : QelWriterBaseT<Writer> {
        static constexpr int getNSID() { return 292; }
        static constexpr int getTypeID() { return 122; }
        int operator()(QelMessageIterator& cursor, const QelEnv& env) const;
    };
    /// Reads an environment into an object of the class that the factory for its type creates.
    struct EnvSPReader {
        int operator()(const QelMessageIterator& cursor, boost::shared_ptr<QelEnv>& env) const;
    };
    using reader_type = Reader;
    using writer_type = Writer;

    static const QelWireLayout& wire;

    /// A blank record and empty configurations.
    QelEnv();
    /// A view of a record, which must not be null.
    explicit QelEnv(boost::shared_ptr<QelEnvCoreBasic> core);
    // From configurations, which must not be null.
    QelEnv(const QelEID& eid, const boost::shared_ptr<QelEnvConfig>& config,
           const boost::shared_ptr<QelVEnvConfig>& vconfig);
    QelEnv(const QelEID& eid, const boost::shared_ptr<QelVEnvConfig>& vconfig);
    QelEnv(const QelEID& eid, const boost::shared_ptr<QelEnvConfig>& config);
    ~QelEnv() override;

    /// The key by which environments are ordered if the process sorts by key instead of EID; 32 bits.
    [[nodiscard]] virtual unsigned getSortKey() const;
    /// The configuration that only virtual environments use.  The non-const overload marks it as changed.
    [[nodiscard]] virtual boost::shared_ptr<QelVEnvConfig> getVirtualConfig();
    [[nodiscard]] virtual boost::shared_ptr<const QelVEnvConfig> getVirtualConfig() const;
    /// The name to display: the name, else the host name, else an address, each from the virtual configuration before
    /// the base one; else the EID.  A name that is specified but empty counts as a name.
    [[nodiscard]] virtual std::string getTitle() const;

    [[nodiscard]] const QelEnvType& getType() const { return getCoreBasic()->type; }
    [[nodiscard]] const QelEID& getEID() const { return getCoreBasic()->eid; }
    [[nodiscard]] const QelEID& getParentEID() const { return getCoreBasic()->parentEID; }
    [[nodiscard]] const QelEnvStatus& getStatus() const { return getCoreBasic()->status; }
    /// `reason` must be below qelAlertReasonCount; this is not checked.
    [[nodiscard]] QelAlertType getAlertType(QelAlertReason reason) const;
    /// The highest of the alert levels.
    [[nodiscard]] QelAlertType getMaxAlertType() const;
    [[nodiscard]] boost::shared_ptr<const QelEnvConfig> getConfig() const { return m_maintainer.m_config; }
    /// The flat record; never null.
    [[nodiscard]] boost::shared_ptr<QelEnvCoreBasic> getCoreBasic() const;

    // These write to the record in place: use them only on a private copy.
    void setParentEID(const QelEID& eid) { getCoreBasic()->parentEID = eid; }
    void setStatus(const QelEnvStatus& status) { getCoreBasic()->status = status; }
    void setAlertType(QelAlertReason reason, QelAlertType alertType);
    /// The base configuration, for modification: marks it as changed.
    [[nodiscard]] boost::shared_ptr<QelEnvConfig> getConfig();

    /// Serialises changed configurations into the record, then returns its address and length.  Returns -1 if a
    /// configuration cannot be serialised.  The third argument is ignored.
    int getBuffer(const void** out, unsigned& length, const void* old) const;
    /// Serialises changed configurations into the record.
    void syncBuffer();

private:
    struct WireSteps;
    friend struct Wire<QelEnv>;

    mutable QelEnvCoreBasicMaintainer m_maintainer;
};

using QelEnvCSP = boost::shared_ptr<const QelEnv>;

extern template class QelDerivedParserFactory<QelEnv>;

} // namespace Qel
