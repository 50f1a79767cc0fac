#pragma once

#include "QelFunctionalityCore/Events/QelInfo.h"
#include "QelFunctionalityCore/Values/QelEID.h"

namespace Qel {

class QelEnv;

/// An info named "env" that names an environment: its text is the title, and it has the parameters "eid", "title" and
/// "type".
struct QelEnvInfo : QelInfo {
    explicit QelEnvInfo(const QelEnv& env);
    /// Asks the process's cache.  An environment that isn't there, or without a cache, has its identifier as its title,
    /// so that something is shown, and no type.
    explicit QelEnvInfo(const QelEID& eid);

    /// Sets the three parameters.
    void fill(const QelEnv& env);

    using Reader = QelReaderAs<QelInfo>;
    using Writer = QelWriterAs<QelInfo, 292, 161>;
    using reader_type = Reader;
    using writer_type = Writer;

private:
    void set(const char* parameterName, std::string parameterText);
};

} // namespace Qel
