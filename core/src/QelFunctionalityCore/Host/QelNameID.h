#pragma once

#include <string>

#include "QelMessage/QelRecord.h"

namespace Qel {

/// Somebody by name, by number, or both.  The number stands in an element `idElement`; `none` stands for no number.
template <class ID, ID none, int idElement> struct QelNameIDTmpl {
    std::string name;
    ID id = none;

    [[nodiscard]] bool isID() const { return id != none; }
    [[nodiscard]] bool isName() const { return !name.empty(); }
    [[nodiscard]] bool isEmpty() const { return !isID() && !isName(); }

    /// -1 when there is neither; without a readable number there is none.
    using Reader = QelRecordReader<QelNameIDTmpl>;
    using Writer = QelRecordWriter<QelNameIDTmpl>;
    using reader_type = Reader;
    using writer_type = Writer;
};

using QelGroupNameID = QelNameIDTmpl<unsigned, 4294967295U, 1027>;
using QelUserNameID = QelNameIDTmpl<unsigned, 4294967295U, 1030>;

} // namespace Qel
