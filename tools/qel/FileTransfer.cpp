#include "qel/FileTransfer.h"

#include <algorithm>

namespace Qel::Tool {

namespace {

using End = TransferResult::End;

TransferResult moveBlocks(QelFileUploadInfo& source, QelFileDownloadInfo& destination,
                          const std::function<bool(long long)>& watch) {
    long long moved = 0;
    while (moved < source.size) {
        if (!watch(moved))
            return {End::stopped, true, moved};
        const char* block = nullptr;
        int length = static_cast<int>(std::min<long long>(source.size - moved, QelFileInfo::maxBlockSize));
        if (source.fillBuffer(block, length) != 0)
            return {End::sourceFailed, true, moved};
        if (destination.saveBuffer(block, length) != 0)
            return {End::destinationFailed, true, moved};
        moved += length;
    }
    (void)watch(moved);
    return {End::complete, true, moved};
}

} // namespace

TransferResult transfer(QelFileUploadInfo& source, QelFileDownloadInfo& destination,
                        const std::function<bool(long long)>& watch) {
    if (source.start() != 0)
        return {End::sourceFailed, false, 0};
    TransferResult result{End::destinationFailed, false, 0};
    if (destination.start() == 0) {
        result = moveBlocks(source, destination, watch);
        destination.finish();
    }
    source.finish();
    return result;
}

} // namespace Qel::Tool
