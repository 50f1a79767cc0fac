#pragma once

#include <string>

#include "QelCommon/Export.h"
#include "QelFunctionalityCore/Backup/QelDSLocation.h"
#include "QelFunctionalityCore/Files/QelURI.h"
#include "QelFunctionalityCore/Values/QelProperty.h"

namespace Qel {

/// The name of a backup, or of a path inside one, as a single string:
///
///     backup://PART1/PART2/SUBPATH
///     backup://STORAGE&PART1/PART2/SUBPATH
///
/// PART1/PART2 is the backup.  STORAGE is a message in binary form, hex-encoded, with the fields of a QelDSLocation
/// under its root.  It contains the storage's password, so treat such a URI as a secret.  Nothing is escaped: a backup
/// whose name does not contain exactly one slash does not survive a round trip.
class QEL_EXPORT QelBackupURI {
public:
    /// The URI type: "backup".
    static const std::string TYPE;

    /// Refers to no backup.
    QelBackupURI() = default;
    QelBackupURI(const std::string& backup, const std::string& subPath) : m_backup(backup), m_subPath(subPath) {}
    /// Parses `uri`.  If that fails, the object refers to no backup.
    explicit QelBackupURI(const std::string& uri);

    /// Whether the object refers to a backup.
    [[nodiscard]] bool isValid() const { return !m_backup.empty(); }
    [[nodiscard]] const std::string& backup() const { return m_backup; }
    /// Path inside the backup; empty for the whole backup.
    [[nodiscard]] const std::string& subPath() const { return m_subPath; }

    /// The location of the backup; unspecified if the URI does not contain it.
    [[nodiscard]] const QelOptionalProperty<QelDSLocation>& storage() const { return m_storage; }
    void storage(const QelDSLocation& location) { m_storage = location; }

    /// Returns 0, or 1 if the object refers to no backup or the storage cannot be encoded; `out` is then unchanged.
    [[nodiscard]] int uri(QelURI& out) const;

private:
    std::string m_backup;
    std::string m_subPath;
    QelOptionalProperty<QelDSLocation> m_storage;
};

} // namespace Qel
