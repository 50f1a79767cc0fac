#pragma once

#include <string>
#include <vector>

#include "QelFunctionalityCore/Files/QelUserCredentials.h"

namespace Qel {

/// As whom a program runs.
struct QelProgCredentials : QelUserCredentials {
    std::string login;
    std::string secret; ///< any bytes; never to be logged

    using Reader = QelRecordReader<QelProgCredentials>;
    using Writer = QelRecordWriter<QelProgCredentials>;
    using reader_type = Reader;
    using writer_type = Writer;
};

/// How a program is run on another host.
struct QelProcessMExecParams {
    struct ReaderStdio;
    struct WriterStdio;

    std::vector<std::string> args;
    std::vector<std::string> env;

    std::string stdinData;   ///< what the program reads from its standard input; any bytes
    bool wantStdout = false; ///< whether its standard output is sent back
    bool wantStderr = false;
    bool wantExtra = false;

    QelProgCredentials credentials;

    using Reader = QelRecordReader<QelProcessMExecParams>;
    using Writer = QelRecordWriter<QelProcessMExecParams>;
    using reader_type = Reader;
    using writer_type = Writer;
};

/// Reads the streams of a program: what it reads and which of its output is sent back.
struct QelProcessMExecParams::ReaderStdio {
    int operator()(const QelMessageIterator& cursor, QelProcessMExecParams& params) const;
};

struct QelProcessMExecParams::WriterStdio : QelWriterBase {
    int operator()(QelMessageIterator& cursor, const QelProcessMExecParams& params) const;
};

/// What a program that ran on another host left.
struct QelProcessMExecOutput {
    int code = 0;    ///< the exit code
    std::string out; ///< what it wrote to its standard output; any bytes
    std::string err;

    using Reader = QelRecordReader<QelProcessMExecOutput>;
    using Writer = QelRecordWriter<QelProcessMExecOutput>;
    using reader_type = Reader;
    using writer_type = Writer;
};

} // namespace Qel
