#pragma once

#include "QelCommon/Export.h"
#include "QelFunctionalityCore/Vocabulary/QelVocPrototype.h"

namespace Qel {

/// The vocabulary of the local agent, loaded lazily from "qelagent.voc.linux" in the instance's `etc` folder.  Each
/// request for an iterator tries to load the file until a load succeeds.
class QEL_EXPORT QelVocLocalPrototype : public QelVocPrototype {
public:
    [[nodiscard]] QelVocIterator* newIteratorWithInit() override;
};

} // namespace Qel
