#include "QelFunctionalityCore/Profile/QelTextBool.h"

namespace Qel {

std::string QelTextBool::toString() const {
    return value ? "true" : "false";
}

int QelTextBool::fromString(std::string_view text) {
    const bool isTrue = text.starts_with("true") || text.starts_with('0');
    if (!isTrue && !text.starts_with("false") && !text.starts_with('1'))
        return -1;
    value = isTrue;
    return 0;
}

} // namespace Qel
