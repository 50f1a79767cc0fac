#pragma once

#include <string>

#include "QelCommon/Export.h"
#include "QelFunctionalityCore/Events/QelInfo.h"
#include "QelFunctionalityCore/Values/QelEIDList.h"
#include "QelMessage/QelDerivedParsers.h"
#include "QelMessage/QelRecord.h"

namespace Qel {

/// A session and the agent that owns it.
struct QelSessionID {
    std::string session;
    QelEID eid; ///< of the agent that owns the session
};

/// Progress of a long-running request.  The values of `progress` and `state` are defined by the agent and its clients.
///
/// Unset fields are not sent; the reader takes missing ones from the message envelope.  A sender therefore omits what
/// the envelope already contains.
struct QEL_EXPORT QelRequestProgressData {
    explicit QelRequestProgressData(std::string text = std::string());
    virtual ~QelRequestProgressData() = default;

    std::string requestId; ///< a path: the part before its last slash is the parent request
    std::string parentId;
    std::string operation;
    QelInfo info; ///< current activity, for a user
    int progress = 0;
    int state = 0;
    long time = 0; ///< seconds since the epoch; 0 if unset
    QelEIDList eids;
    QelSessionID session; ///< only the session is sent; the agent is the sender of the message

    /// Returns -1 if neither the record nor the envelope contains the request ID, or if the parent contradicts the
    /// path.
    struct Reader {
        int operator()(const QelMessageIterator& cursor, QelRequestProgressData& data) const;
    };
    /// Always returns 0: an update with a missing field is more useful to an observer than none.
    struct Writer : QelWriterBaseT<Writer> {
        int operator()(QelMessageIterator& cursor, const QelRequestProgressData& data) const;
    };
    using reader_type = Reader;
    using writer_type = Writer;

    static const QelWireLayout& wire;
};

extern template class QelDerivedParserFactory<QelRequestProgressData>;

QEL_EXPORT extern QelDerivedParserFactoryT<QelRequestProgressData, QelRequestProgressData>
    factoryQelRequestProgressData;

} // namespace Qel
