#pragma once

#include <string>
#include <string_view>

namespace Qel {

class QelMessageIterator;

/// What the requests to the file service have in common.
struct QelFilerBase {
    /// At the start of a path: the folder for the uploads of the client that sent the message.
    static constexpr std::string_view SESSION_DIR = "$SESSION$";
};

/// Reads a path from the current element, in base64.  SESSION_DIR at its start gives way to the client's upload folder,
/// which is created if need be.  The client is the message's session, or without one its origin.
///
/// 0, or -1 with the path as it was: without a path, or, with the error message set, without a client that has a
/// folder.
///
/// The replacement is one of text: what follows is not looked at, so that "$SESSION$/.." leads out of the folder.  Who
/// gives access by such a path has to look where it leads.
struct QelFilePathReader {
    int operator()(const QelMessageIterator& cursor, std::string& path) const;
};

} // namespace Qel
