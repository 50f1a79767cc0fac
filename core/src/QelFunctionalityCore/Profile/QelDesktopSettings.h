#pragma once

#include <string>
#include <vector>

#include "QelFunctionalityCore/Profile/QelProfileRecord.h"
#include "QelFunctionalityCore/Profile/QelTextBool.h"
#include "QelMessage/QelRecord.h"

namespace Qel {

/// An action that the interface's desktop offers.
struct QelDesktopAction : QelProfileRecord {
    QelTextBool flag2206;
    std::string name;

    using Reader = QelRecordReader<QelDesktopAction>;
    using Writer = QelRecordWriter<QelDesktopAction>;
    using reader_type = Reader;
    using writer_type = Writer;
};

/// The interface's desktop.  The console gives the numbered options their meaning.
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
