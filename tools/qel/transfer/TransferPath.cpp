#include "qel/transfer/TransferPath.h"

#include <cerrno>
#include <cstring>

#include <fcntl.h>

#include "QelCommon/ErrorMessage.h"
#include "QelFunctionalityCore/Files/QelFile.h"
#include "qel/cli/SignalGuard.h"
#include "qel/transfer/OpenBeneath.h"

namespace Qel::Tool {

namespace {

int openOnce(const TransferPath& path, int flags, mode_t mode) {
    if (path.directory.empty())
        return open64(path.name.c_str(), flags, mode);
    const QelFile directory(open64(path.directory.c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC));
    return directory.isOpened() ? openBeneath(directory.descriptor(), path.beneath, flags, mode) : -1;
}

} // namespace

int TransferPath::open(int flags, mode_t mode) const {
    int descriptor = -1;
    do
        descriptor = openOnce(*this, flags | O_CLOEXEC, mode);
    while (descriptor == -1 && errno == EINTR && !NotesInterruption::isInterrupted());
    return descriptor;
}

ExitCode TransferPath::reportFailure(const char* end, ExitCode code) const {
    const int error = errno;
    if (error == EXDEV && !directory.empty()) {
        setErrorMessage("'%s' leads out of the upload folder", given.c_str());
        return ExitCode::badInput;
    }
    setErrorMessage("Cannot open %s file \"%s\": %s [%d]", end, name.c_str(), std::strerror(error), error);
    return code;
}

} // namespace Qel::Tool
