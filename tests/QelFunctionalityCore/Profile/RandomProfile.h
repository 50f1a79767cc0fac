#pragma once

#include "support/RandomFills.h"

namespace Qel::TestSupport {

inline RandomFamily randomProfile() {
    return {.fields{{{"QelProfile", 1630}, inChild(1630, record("QelAuthName"))}}};
}

} // namespace Qel::TestSupport
