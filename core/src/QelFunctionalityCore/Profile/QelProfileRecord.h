#pragma once

namespace Qel {

/// Common base of the records of an interface profile.
struct QelProfileRecord {
    /// An application-defined number, copied with the record but never sent.
    int localID = 0;

    /// Initial number of a profile created for its owner and of a browse list created from its name.
    static constexpr int noLocalID = -1;
};

} // namespace Qel
