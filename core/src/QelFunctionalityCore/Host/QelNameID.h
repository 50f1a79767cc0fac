#pragma once

#include <string>

#include "QelCommon/Export.h"
#include "QelMessage/QelRecord.h"

namespace Qel {

/// A user or group, identified by name, by number, or both.  The number is stored in element `idElement`.  `none` is
/// the sentinel for an unset number.
template <class ID, ID none, int idElement> struct QelNameIDTmpl : QelRecord<QelNameIDTmpl<ID, none, idElement>> {
    std::string name;
    ID id = none;

    [[nodiscard]] bool isID() const { return id != none; }
    [[nodiscard]] bool isName() const { return !name.empty(); }
    [[nodiscard]] bool isEmpty() const { return !isID() && !isName(); }

    /// Reader: an unreadable number counts as unset.  Reading returns -1 if both the name and the number are unset.
    static const QelWireLayout& wire;
};

using QelGroupNameID = QelNameIDTmpl<unsigned, 4294967295U, 1027>;
using QelUserNameID = QelNameIDTmpl<unsigned, 4294967295U, 1030>;

template <> QEL_EXPORT const QelWireLayout& QelGroupNameID::wire;
template <> QEL_EXPORT const QelWireLayout& QelUserNameID::wire;

} // namespace Qel
