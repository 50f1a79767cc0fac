#pragma once

#include <string>
#include <string_view>

#include "QelCommon/Export.h"

namespace Qel {

class QelMessageIterator;

/// Common to the requests of the file service.
struct QelFilerBase {
    /// As the start of a path: the upload folder of the client that sent the message.
    static constexpr std::string_view SESSION_DIR = "$SESSION$";
};

/// Reads a base64-encoded path from the current element.  SESSION_DIR at its start is replaced by the client's upload
/// folder, which is created if necessary.  The session of the message identifies the client; without a session, its
/// origin does.
///
/// Returns 0, or -1 with `path` unchanged if the element has no path or the client has no folder.  In the latter case
/// the error message is set.
///
/// The rest of the path is not checked: "$SESSION$/.." leads out of the folder.  A caller that grants access by such a
/// path must check where it leads.
struct QEL_EXPORT QelFilePathReader {
    int operator()(const QelMessageIterator& cursor, std::string& path) const;
};

} // namespace Qel
