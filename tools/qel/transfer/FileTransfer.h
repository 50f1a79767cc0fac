#pragma once

#include <cstdint>
#include <functional>

#include "qel/transfer/FileDestination.h"
#include "qel/transfer/FileSource.h"

namespace Qel::Tool {

/// How a transfer ended, and how far it came.
struct TransferResult {
    enum class End : std::uint8_t {
        complete,
        stopped,           ///< by `watch`
        sourceFailed,      ///< the error message contains the reason, as for the next
        destinationFailed, ///< what was written so far stays there
    };

    End end;
    long long moved; ///< bytes of the source that are in the destination
};

/// Copies the source up to its end, piece by piece, and finishes the destination.  Both are open.
///
/// `watch` is called with the number of bytes that were moved, before the first piece and after each; false stops the
/// transfer.
[[nodiscard]] TransferResult transfer(FileSource& source, FileDestination& destination,
                                      const std::function<bool(long long moved)>& watch);

} // namespace Qel::Tool
