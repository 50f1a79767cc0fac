#pragma once

#include <set>
#include <string>

#include <boost/shared_ptr.hpp>

#include "QelFunctionalityCore/Values/QelGUID.h"
#include "QelFunctionalityCore/Values/QelNamedOpStrListProperty.h"
#include "QelFunctionalityCore/Values/QelProperty.h"
#include "QelMessage/QelRecord.h"

namespace Qel {

/// A login name, tied to the realm that knows it.
struct QelAuthName {
    QelOptionalProperty<std::string> name;
    QelOptionalProperty<std::string> domain;
    QelGUID realm; ///< identifier of a QelRealm

    /// By domain, then by name.  The realm takes no part: one name in two realms is one member of a set.
    friend bool operator<(const QelAuthName& a, const QelAuthName& b) {
        const int order = a.domain.compare(b.domain);
        return (order != 0 ? order : a.name.compare(b.name)) < 0;
    }

    using Reader = QelRecordReader<QelAuthName>;
    using Writer = QelRecordWriter<QelAuthName>;
    using reader_type = Reader;
    using writer_type = Writer;
};

/// A login name with what belongs to it: three sets of names, whose meaning the agent settles, and named lists of
/// texts.
struct QelSecurityPrincipal : QelAuthName {
    using Properties = std::set<boost::shared_ptr<QelNamedOpStrListProperty>, QelLessNamedOpStrListPropertyPtr>;

    std::set<QelAuthName> namesFirst;
    std::set<QelAuthName> namesSecond;
    std::set<QelAuthName> namesThird;
    Properties properties; ///< no null pointers

    /// Which elements hold the properties: the record around this one tells.
    enum class PropertyForm : bool { attributes, properties };

    struct Reader;
    struct Writer;
    using reader_type = Reader;
    using writer_type = Writer;
};

/// -1 if a name or a property is unreadable, or the realm is missing.
struct QelSecurityPrincipal::Reader {
    explicit Reader(PropertyForm propertyForm = PropertyForm::attributes) : form(propertyForm) {}

    int operator()(const QelMessageIterator& cursor, QelSecurityPrincipal& principal) const;

    PropertyForm form;
};

struct QelSecurityPrincipal::Writer : QelWriterBaseT<Writer> {
    explicit Writer(PropertyForm propertyForm = PropertyForm::attributes) : form(propertyForm) {}

    int operator()(QelMessageIterator& cursor, const QelSecurityPrincipal& principal) const;

    PropertyForm form;
};

} // namespace Qel
