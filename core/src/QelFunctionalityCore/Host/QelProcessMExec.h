#pragma once

#include <string>
#include <vector>

#include "QelFunctionalityCore/Files/QelUserCredentials.h"

namespace Qel {

/// Credentials under which a program runs.
struct QelProgCredentials : QelUserCredentials {
    std::string login;
    std::string secret; ///< any bytes; must never be logged

    using Reader = QelRecordReader<QelProgCredentials>;
    using Writer = QelRecordWriter<QelProgCredentials>;
    using reader_type = Reader;
    using writer_type = Writer;
};

/// Parameters for running a program on another host.
struct QelProcessMExecParams {
    struct ReaderStdio;
    struct WriterStdio;

    std::vector<std::string> args;
    std::vector<std::string> env;

    std::string stdinData;   ///< content of the program's standard input; any bytes
    bool wantStdout = false; ///< whether to return its standard output
    bool wantStderr = false;
    bool wantExtra = false;

    QelProgCredentials credentials;

    using Reader = QelRecordReader<QelProcessMExecParams>;
    using Writer = QelRecordWriter<QelProcessMExecParams>;
    using reader_type = Reader;
    using writer_type = Writer;
};

/// Reads the fields that describe the standard streams: the input, and which output to return.
struct QelProcessMExecParams::ReaderStdio {
    int operator()(const QelMessageIterator& cursor, QelProcessMExecParams& params) const;
};

struct QelProcessMExecParams::WriterStdio : QelWriterBase {
    int operator()(QelMessageIterator& cursor, const QelProcessMExecParams& params) const;
};

/// Result of a program that ran on another host.
struct QelProcessMExecOutput {
    int code = 0;    ///< the exit code
    std::string out; ///< content of its standard output; any bytes
    std::string err;

    using Reader = QelRecordReader<QelProcessMExecOutput>;
    using Writer = QelRecordWriter<QelProcessMExecOutput>;
    using reader_type = Reader;
    using writer_type = Writer;
};

} // namespace Qel
