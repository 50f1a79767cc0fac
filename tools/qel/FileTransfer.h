#pragma once

#include <cstdint>
#include <functional>

#include "QelFunctionalityCore/Files/QelFileDownloadInfo.h"
#include "QelFunctionalityCore/Files/QelFileUploadInfo.h"

namespace Qel::Tool {

/// How a transfer ended, and how far it came.
struct TransferResult {
    enum class End : std::uint8_t {
        complete,
        stopped,           ///< by who watched it
        sourceFailed,      ///< the error message tells why, as for the next
        destinationFailed, ///< what came so far stays there
    };

    End end;
    bool isBegun;    ///< both ends were opened
    long long moved; ///< bytes that reached the destination in whole blocks
};

/// Moves the bytes of one end to the other in blocks, as two agents do.  Both ends are finished afterwards; the
/// destination isn't started if the source fails to.
///
/// `watch` is told how many bytes have been moved, before the first block and behind each; false stops the transfer.
[[nodiscard]] TransferResult transfer(QelFileUploadInfo& source, QelFileDownloadInfo& destination,
                                      const std::function<bool(long long moved)>& watch);

} // namespace Qel::Tool
