#pragma once

namespace Qel {

/// What every record of an interface profile begins with.
struct QelProfileRecord {
    /// For the program that keeps the record, which may number it.  It is copied with the record and never marshalled.
    int localID = 0;

    /// The number of what nobody has numbered yet: a profile made for its owner, a browse list made from its name.
    static constexpr int noLocalID = -1;
};

} // namespace Qel
