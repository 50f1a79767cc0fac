#pragma once

#include "QelFunctionalityCore/Vocabulary/QelVocPrototype.h"

namespace Qel {

/// The vocabulary of the local agent: the file "qelagent.voc.linux" in the instance's folder of settings, which is read
/// when an iterator is first asked for, and again at each such call until that succeeds.
class QelVocLocalPrototype : public QelVocPrototype {
public:
    [[nodiscard]] QelVocIterator* newIteratorWithInit() override;
};

} // namespace Qel
