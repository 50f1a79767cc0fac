#include "qel/transfer/FileTransfer.h"

namespace Qel::Tool {

namespace {

using End = TransferResult::End;

End copyPieces(FileSource& source, FileDestination& destination, const std::function<bool(long long)>& watch) {
    for (;;) {
        if (!watch(destination.written()))
            return End::stopped;
        FileSource::Piece piece;
        if (source.next(piece) != 0)
            return End::sourceFailed;
        if (piece.length == 0)
            return End::complete;
        if (destination.write(piece) != 0)
            return End::destinationFailed;
    }
}

} // namespace

TransferResult transfer(FileSource& source, FileDestination& destination, const std::function<bool(long long)>& watch) {
    End end = copyPieces(source, destination, watch);
    // A failure to finish replaces the error message of the source.
    if (destination.finish() != 0)
        end = End::destinationFailed;
    return {end, destination.written()};
}

} // namespace Qel::Tool
