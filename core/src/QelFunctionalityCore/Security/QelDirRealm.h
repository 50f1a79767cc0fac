#pragma once

#include <string>

#include "QelCommon/Export.h"
#include "QelFunctionalityCore/Configuration/QelRealm.h"
#include "QelFunctionalityCore/Values/QelProperty.h"
#include "QelMessage/QelRecord.h"

namespace Qel {

/// A realm whose users are stored in an LDAP directory, with the parameters for accessing the directory.
struct QEL_EXPORT QelDirRealm : QelRealm {
    /// QelRealm::type of this class.
    static constexpr int directoryType = 1;

    /// Identity under which the agent logs in to the directory.  All fields are optional.
    struct LoginType : QelRecord<LoginType> {
        QelOptionalProperty<std::string> loginName;
        QelOptionalProperty<std::string> domain;
        QelOptionalProperty<QelGUID> realm; ///< identifier of a QelRealm

        static const QelWireLayout& wire;
    };

    QelDirRealm() { type = directoryType; }

    /// Whether `address` and `port` are set, and `searchDN` is within `baseDN` (ends with it, case-insensitive).
    [[nodiscard]] bool isValid() const;

    /// Copies the name and the directory parameters from `other`.  If the login of `other` does not specify a realm,
    /// the login realm becomes `other` itself.  Sets an error message and returns -1, without changes, if `other` is
    /// not a valid QelDirRealm or QelRealm::set() fails.
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

    static const QelWireLayout& wire;
};

/// -1 if the realm has another type or is not valid.  Fields read before the failure are kept.
struct QEL_EXPORT QelDirRealm::Reader {
    int operator()(const QelMessageIterator& cursor, QelDirRealm& realm) const;
};

/// Writes nothing and returns -1 if the realm is not valid.
struct QEL_EXPORT QelDirRealm::Writer : QelRecordWriter<QelDirRealm> {
    int operator()(QelMessageIterator& cursor, const QelDirRealm& realm) const;
};

QEL_EXPORT extern QelDerivedParserFactoryT<QelDirRealm, QelRealm> factoryQelDirRealm;

} // namespace Qel
