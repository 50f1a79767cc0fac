#pragma once

#include <set>
#include <string_view>

#include "QelCore/QelContainers.h"
#include "QelMessage/QelMessageIterator.h"

namespace Qel {

/// The identity of a vocabulary: no two with one name and one version.
struct QelVocID {
    /// ID of the parameter whose value is the version of the vocabulary that it stands in.
    static constexpr std::string_view versionParameter = "vocversion";

    limited_length_string<256> name;
    limited_length_string<256> version;

    friend bool operator==(const QelVocID& a, const QelVocID& b) { return a.name == b.name && a.version == b.version; }
    /// By name, then by version.
    friend bool operator<(const QelVocID& a, const QelVocID& b) {
        const int order = a.name.compare(b.name);
        return (order != 0 ? order : a.version.compare(b.version)) < 0;
    }

    struct Reader;
    struct Writer;
    using reader_type = Reader;
    using writer_type = Writer;
};

/// -1 without a name or without a version.  A name or a version of 256 characters and more ends the process.
struct QelVocID::Reader {
    /// Where the version stands: in an element of its own, as the writer leaves it, or, at a vocabulary, in the first
    /// parameter whose ID is `versionParameter`.
    explicit Reader(bool hasVersionElement = false) : versionElement(hasVersionElement) {}

    int operator()(const QelMessageIterator& cursor, QelVocID& vocID) const;

    bool versionElement;
};

struct QelVocID::Writer : QelWriterBaseT<Writer> {
    int operator()(QelMessageIterator& cursor, const QelVocID& vocID) const;
};

/// The order of sets that hold one version of a name at most.
struct QelVocIDSortUniqueName {
    bool operator()(const QelVocID& a, const QelVocID& b) const { return a.name < b.name; }
};

/// A choice of vocabularies, one version of a name at most.
using QelVocIDSet = std::set<QelVocID, QelVocIDSortUniqueName>;

} // namespace Qel
