#pragma once

#include <string>

#include "QelFunctionalityCore/Backup/QelDSLocation.h"
#include "QelFunctionalityCore/Files/QelURI.h"
#include "QelFunctionalityCore/Values/QelProperty.h"

namespace Qel {

/// The name of a backup, or of something in it, as one text for places that carry nothing else:
///
///     backup://PART1/PART2/SUBPATH
///     backup://STORAGE&PART1/PART2/SUBPATH
///
/// PART1/PART2 is the backup.  STORAGE is a message in binary form in hexadecimal, with the fields of a QelDSLocation
/// below its root; so whoever sees such a name has the password of the storage.  Nothing is escaped: a backup without a
/// slash of its own, or with more than one, doesn't come back as it was.
class QelBackupURI {
public:
    /// The type of the URIs: "backup".
    static const std::string TYPE;

    /// Names nothing.
    QelBackupURI() = default;
    QelBackupURI(const std::string& backup, const std::string& subPath) : m_backup(backup), m_subPath(subPath) {}
    /// Parses a text.  One that can't be parsed names nothing.
    explicit QelBackupURI(const std::string& uri);

    /// Whether it names a backup.
    [[nodiscard]] bool isValid() const { return !m_backup.empty(); }
    [[nodiscard]] const std::string& backup() const { return m_backup; }
    /// A path in the backup; empty for the whole of it.
    [[nodiscard]] const std::string& subPath() const { return m_subPath; }

    /// Where the backup lies; unspecified if the name doesn't tell.
    [[nodiscard]] const QelOptionalProperty<QelDSLocation>& storage() const { return m_storage; }
    void storage(const QelDSLocation& location) { m_storage = location; }

    /// 0, or 1 if it names nothing or the storage can't be encoded; then `out` is as it was.
    [[nodiscard]] int uri(QelURI& out) const;

private:
    std::string m_backup;
    std::string m_subPath;
    QelOptionalProperty<QelDSLocation> m_storage;
};

} // namespace Qel
