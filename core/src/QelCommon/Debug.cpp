#include "QelCommon/Debug.h"

#include <cstdio>
#include <cstdlib>

#include "QelCommon/Log.h"

namespace Qel {

void abort(const char* module, const char* file, int line, const char* function, const char* prettyFunction) {
    std::fprintf(stderr, "%s: fatal: check failed at %s:%d, %s\n", module, file, line, prettyFunction);
    std::fflush(stderr);
    Log2(module, file, line, function, prettyFunction).putLast("fatal: check failed");
    std::abort();
}

} // namespace Qel
