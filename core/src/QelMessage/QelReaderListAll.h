#pragma once

#include "QelMessage/QelCombinators.h"

namespace Qel {

/// Reads every child of the current element, regardless of its ID, with a reader that adds one item to the container.
/// With QelReaderOptional, an element without children is not a failure.
template <class DataReader> struct QelReaderListAllT : QelReaderListT<int, DataReader> {
    QelReaderListAllT(const DataReader& reader, QelReaderFlags flags)
        : QelReaderListT<int, DataReader>(reader, getEmptyID(), flags) {}
};

} // namespace Qel
