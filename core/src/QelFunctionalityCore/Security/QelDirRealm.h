#pragma once

#include <string>

#include "QelFunctionalityCore/Configuration/QelRealm.h"
#include "QelFunctionalityCore/Values/QelProperty.h"

namespace Qel {

/// A realm whose users an LDAP directory knows, and how the directory is reached.
struct QelDirRealm : QelRealm {
    /// The type of realms of this class.
    static constexpr int directoryType = 1;

    /// As whom the agent logs in to the directory.  Each part may be left out.
    struct LoginType {
        QelOptionalProperty<std::string> loginName;
        QelOptionalProperty<std::string> domain;
        QelOptionalProperty<QelGUID> realm; ///< identifier of a QelRealm

        using Reader = QelRecordReader<LoginType>;
        using Writer = QelRecordWriter<LoginType>;
        using reader_type = Reader;
        using writer_type = Writer;
    };

    QelDirRealm() { type = directoryType; }

    /// Whether a server is told, and `searchDN` lies within `baseDN` (ends in it, without regard to case).
    [[nodiscard]] bool isValid() const;

    /// Takes the name and all that tells the directory from a valid QelDirRealm.  Unless its login names a realm, the
    /// login is in that realm itself.  -1, an error message and nothing changed for a realm of another class, one that
    /// isn't valid, and as of QelRealm::set.
    [[nodiscard]] int set(const QelRealm& other) override;

    std::string address; ///< of the server
    int port = 0;
    std::string baseDN;
    std::string searchDN;
    LoginType loginType;

    struct Reader;
    struct Writer;
    using reader_type = Reader;
    using writer_type = Writer;
};

/// -1 for a realm of another type, and for one that isn't valid; what was read until then stays.
struct QelDirRealm::Reader {
    int operator()(const QelMessageIterator& cursor, QelDirRealm& realm) const;
};

/// -1, and nothing is written, for a realm that isn't valid.
struct QelDirRealm::Writer : QelRecordWriter<QelDirRealm> {
    int operator()(QelMessageIterator& cursor, const QelDirRealm& realm) const;
};

extern QelDerivedParserFactoryT<QelDirRealm, QelRealm> factoryQelDirRealm;

} // namespace Qel
