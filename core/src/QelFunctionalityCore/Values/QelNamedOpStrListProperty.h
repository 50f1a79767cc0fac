#pragma once

#include <string>
#include <vector>

#include <boost/shared_ptr.hpp>

#include "QelCommon/Export.h"
#include "QelFunctionalityCore/Values/QelProperty.h"
#include "QelMessage/QelWriterBase.h"

namespace Qel {

class QelMessageIterator;

/// A named list of strings with the operation to apply to it.
class QEL_EXPORT QelNamedOpStrListProperty : public QelNamedProperty<std::vector<std::string>, QelOperationProperty> {
public:
    struct Reader;
    struct Writer;
    using reader_type = Reader;
    using writer_type = Writer;

    using QelNamedProperty::QelNamedProperty;
    using QelNamedProperty::operator=;
    QelNamedOpStrListProperty(const QelNamedOpStrListProperty&) = default;
    QelNamedOpStrListProperty& operator=(const QelNamedOpStrListProperty&) = default;
    virtual ~QelNamedOpStrListProperty() = default;
};

/// -1 if the name is missing or a list item cannot be read.
struct QEL_EXPORT QelNamedOpStrListProperty::Reader {
    int operator()(const QelMessageIterator& cursor, QelNamedOpStrListProperty& property) const;
};

struct QEL_EXPORT QelNamedOpStrListProperty::Writer : QelWriterBaseT<Writer> {
    /// Always 0.
    int operator()(QelMessageIterator& cursor, const QelNamedOpStrListProperty& property) const;
};

/// Ordering by name, case-insensitive.  Neither pointer may be null; only two null pointers are detected, and terminate
/// the process.
struct QEL_EXPORT QelLessNamedOpStrListPropertyPtr {
    bool operator()(const boost::shared_ptr<QelNamedOpStrListProperty>& a,
                    const boost::shared_ptr<QelNamedOpStrListProperty>& b) const;
};

} // namespace Qel
