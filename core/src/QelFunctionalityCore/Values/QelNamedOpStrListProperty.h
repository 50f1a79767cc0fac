#pragma once

#include <string>
#include <vector>

#include <boost/shared_ptr.hpp>

#include "QelFunctionalityCore/Values/QelProperty.h"
#include "QelMessage/QelWriterBase.h"

namespace Qel {

class QelMessageIterator;

/// A named list of texts, with an operation to be done with it.
class QelNamedOpStrListProperty : public QelNamedProperty<std::vector<std::string>, QelOperationProperty> {
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

/// -1 if the name is missing or a text of the list is unreadable.
struct QelNamedOpStrListProperty::Reader {
    int operator()(const QelMessageIterator& cursor, QelNamedOpStrListProperty& property) const;
};

struct QelNamedOpStrListProperty::Writer : QelWriterBaseT<Writer> {
    /// Always 0.
    int operator()(QelMessageIterator& cursor, const QelNamedOpStrListProperty& property) const;
};

/// The order of a set of such properties: by name, without regard to case.  Neither pointer may be null; the process
/// ends if both are.
struct QelLessNamedOpStrListPropertyPtr {
    bool operator()(const boost::shared_ptr<QelNamedOpStrListProperty>& a,
                    const boost::shared_ptr<QelNamedOpStrListProperty>& b) const;
};

} // namespace Qel
