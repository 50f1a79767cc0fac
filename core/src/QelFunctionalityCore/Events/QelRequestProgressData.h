#pragma once

#include <string>

#include "QelFunctionalityCore/Events/QelInfo.h"
#include "QelFunctionalityCore/Values/QelEIDList.h"
#include "QelMessage/QelDerivedParsers.h"
#include "QelMessage/QelRecord.h"

namespace Qel {

/// A session, and whose it is.
struct QelSessionID {
    std::string session;
    QelEID eid; ///< of the agent that has the session
};

/// How far a long request has come.  What `progress` and `state` mean is between the agent and its clients.
///
/// A field that isn't set isn't sent, and what is missing is taken from the message that carries the record, so a
/// sender leaves out what the envelope tells already.
struct QelRequestProgressData {
    explicit QelRequestProgressData(std::string text = std::string());
    virtual ~QelRequestProgressData() = default;

    std::string requestId; ///< a path: what stands before its last slash is the request that this one is a part of
    std::string parentId;
    std::string operation;
    QelInfo info; ///< what is being done, for a user
    int progress = 0;
    int state = 0;
    long time = 0; ///< seconds since the epoch; 0 for none
    QelEIDList eids;
    QelSessionID session; ///< of which only the session is sent: the agent is the sender of the message

    /// -1 if neither the record nor the message tells the request, or the parent that is told isn't that of the path.
    struct Reader {
        int operator()(const QelMessageIterator& cursor, QelRequestProgressData& data) const;
    };
    /// Always 0: an observer that misses a field is better off than one that hears nothing.
    struct Writer : QelWriterBaseT<Writer> {
        int operator()(QelMessageIterator& cursor, const QelRequestProgressData& data) const;
    };
    using reader_type = Reader;
    using writer_type = Writer;
};

extern template class QelDerivedParserFactory<QelRequestProgressData>;

extern QelDerivedParserFactoryT<QelRequestProgressData, QelRequestProgressData> factoryQelRequestProgressData;

} // namespace Qel
