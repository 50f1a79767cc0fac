#pragma once

#include <set>
#include <string>

#include <boost/shared_ptr.hpp>

#include "QelCommon/Export.h"
#include "QelFunctionalityCore/Values/QelGUID.h"
#include "QelFunctionalityCore/Values/QelNamedOpStrListProperty.h"
#include "QelFunctionalityCore/Values/QelProperty.h"
#include "QelMessage/QelRecord.h"

namespace Qel {

/// A login name and the realm that defines it.
struct QEL_EXPORT QelAuthName : QelRecord<QelAuthName> {
    QelOptionalProperty<std::string> name;
    QelOptionalProperty<std::string> domain;
    QelGUID realm; ///< ID of a QelRealm

    /// Orders by domain, then by name.  The realm is not compared, so a set holds a name only once even if it exists in
    /// two realms.
    friend bool operator<(const QelAuthName& a, const QelAuthName& b) {
        const int order = a.domain.compare(b.domain);
        return (order != 0 ? order : a.name.compare(b.name)) < 0;
    }

    static const QelWireLayout& wire;
};

/// A login name with three sets of related names, whose meaning the agent defines, and named lists of strings.
struct QEL_EXPORT QelSecurityPrincipal : QelAuthName {
    using Properties = std::set<boost::shared_ptr<QelNamedOpStrListProperty>, QelLessNamedOpStrListPropertyPtr>;

    std::set<QelAuthName> namesFirst;
    std::set<QelAuthName> namesSecond;
    std::set<QelAuthName> namesThird;
    Properties properties; ///< no null elements

    /// Which elements hold the properties.  The enclosing record determines it.
    enum class PropertyForm : bool { attributes, properties };

    struct Reader;
    struct Writer;
    using reader_type = Reader;
    using writer_type = Writer;

    static const QelWireLayout& wire;
};

/// Returns -1 if a name or a property cannot be read or the realm is missing.
struct QEL_EXPORT QelSecurityPrincipal::Reader {
    explicit Reader(PropertyForm propertyForm = PropertyForm::attributes) : form(propertyForm) {}

    int operator()(const QelMessageIterator& cursor, QelSecurityPrincipal& principal) const;

    PropertyForm form;
};

struct QEL_EXPORT QelSecurityPrincipal::Writer : QelWriterBaseT<Writer> {
    explicit Writer(PropertyForm propertyForm = PropertyForm::attributes) : form(propertyForm) {}

    int operator()(QelMessageIterator& cursor, const QelSecurityPrincipal& principal) const;

    PropertyForm form;
};

} // namespace Qel
