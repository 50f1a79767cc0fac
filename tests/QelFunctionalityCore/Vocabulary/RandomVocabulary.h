#pragma once

#include "support/RandomFills.h"

namespace Qel::TestSupport {

inline void putVocabularyItem(RandomRecord& random, QelMessageIterator& cursor) {
    inChild(random.below(2) == 0 ? 1264 : 1017, inTurn({textIn(1010), textIn(1264)}))(random, cursor);
}

inline RandomFamily randomVocabulary() {
    return {.withoutTable{{"QelVocPrototype", several(4, putVocabularyItem)}}};
}

} // namespace Qel::TestSupport
