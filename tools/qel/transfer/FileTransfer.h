#pragma once

#include <cstdint>
#include <functional>

#include "qel/transfer/FileDestination.h"
#include "qel/transfer/FileSource.h"

namespace Qel::Tool {

/// Outcome of a transfer.
struct TransferResult {
    enum class End : std::uint8_t {
        complete,
        stopped,           ///< by `watch`
        sourceFailed,      ///< the error message contains the reason
        destinationFailed, ///< the error message contains the reason; the bytes already written remain
    };

    End end;
    long long moved; ///< number of bytes copied to the destination
};

/// Copies the source piece by piece up to its end and finishes the destination.  Both must be open.
///
/// `watch` is called with the number of bytes copied so far, before the first piece and after each piece.  It stops the
/// transfer by returning false.
[[nodiscard]] TransferResult transfer(FileSource& source, FileDestination& destination,
                                      const std::function<bool(long long moved)>& watch);

} // namespace Qel::Tool
