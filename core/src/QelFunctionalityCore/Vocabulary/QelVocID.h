#pragma once

#include <set>
#include <string_view>

#include "QelCommon/Export.h"
#include "QelCore/QelContainers.h"
#include "QelMessage/QelMessageIterator.h"
#include "QelMessage/QelRecord.h"

namespace Qel {

/// Identifies a vocabulary by name and version.
struct QEL_EXPORT QelVocID {
    /// ID of the parameter that contains the version of its vocabulary.
    static constexpr std::string_view versionParameter = "vocversion";

    limited_length_string<256> name;
    limited_length_string<256> version;

    friend bool operator==(const QelVocID& a, const QelVocID& b) { return a.name == b.name && a.version == b.version; }
    /// Orders by name, then by version.
    friend bool operator<(const QelVocID& a, const QelVocID& b) {
        const int order = a.name.compare(b.name);
        return (order != 0 ? order : a.version.compare(b.version)) < 0;
    }

    struct Reader;
    struct Writer;
    using reader_type = Reader;
    using writer_type = Writer;

    static const QelWireLayout& wire;
};

/// -1 if the name or the version is missing.  A name or version of 256 or more characters terminates the process.
struct QEL_EXPORT QelVocID::Reader {
    /// `hasVersionElement`: the version is stored in an element of its own, the form that the writer produces.
    /// Otherwise the current element is a vocabulary, and its first parameter with ID `versionParameter` contains the
    /// version.
    explicit Reader(bool hasVersionElement = false) : versionElement(hasVersionElement) {}

    int operator()(const QelMessageIterator& cursor, QelVocID& vocID) const;

    bool versionElement;
};

struct QEL_EXPORT QelVocID::Writer : QelWriterBaseT<Writer> {
    int operator()(QelMessageIterator& cursor, const QelVocID& vocID) const;
};

/// Ordering by name only, for sets that contain at most one version of each name.
struct QelVocIDSortUniqueName {
    bool operator()(const QelVocID& a, const QelVocID& b) const { return a.name < b.name; }
};

/// A selection of vocabularies, at most one version of each name.
using QelVocIDSet = std::set<QelVocID, QelVocIDSortUniqueName>;

} // namespace Qel
