#pragma once

#include <string>
#include <vector>

#include "QelFunctionalityCore/Profile/QelProfileRecord.h"
#include "QelFunctionalityCore/Profile/QelTextBool.h"
#include "QelMessage/QelRecord.h"

namespace Qel {

/// An action on the desktop of the management interface.
struct QelDesktopAction : QelProfileRecord {
    QelTextBool flag2206;
    std::string name;

    using Reader = QelRecordReader<QelDesktopAction>;
    using Writer = QelRecordWriter<QelDesktopAction>;
    using reader_type = Reader;
    using writer_type = Writer;
};

/// Desktop of the management interface.  The console defines the numbered options.
struct QelDesktopSettings : QelProfileRecord {
    QelTextBool option2207;
    QelTextBool option2203;
    QelTextBool option2202;
    QelTextBool option2201;
    std::string option2208;
    std::vector<QelDesktopAction> actions;

    using Reader = QelRecordReader<QelDesktopSettings>;
    using Writer = QelRecordWriter<QelDesktopSettings>;
    using reader_type = Reader;
    using writer_type = Writer;
};

} // namespace Qel
