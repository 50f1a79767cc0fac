#pragma once

#include <string>
#include <vector>

#include "QelCommon/Export.h"
#include "QelFunctionalityCore/Files/QelUserCredentials.h"
#include "QelMessage/QelRecord.h"

namespace Qel {

/// Credentials under which a program runs.
struct QEL_EXPORT QelProgCredentials : QelRecord<QelProgCredentials, QelUserCredentials> {
    std::string login;
    std::string secret; ///< any bytes; must never be logged

    static const QelWireLayout& wire;
};

/// Parameters for running a program on another host.
struct QEL_EXPORT QelProcessMExecParams : QelRecord<QelProcessMExecParams> {
    struct ReaderStdio;
    struct WriterStdio;

    std::vector<std::string> args;
    std::vector<std::string> env;

    std::string stdinData;   ///< content of the program's standard input; any bytes
    bool wantStdout = false; ///< whether to return its standard output
    bool wantStderr = false;
    bool wantExtra = false;

    QelProgCredentials credentials;

    static const QelWireLayout& wire;
};

/// Reads the fields that describe the standard streams: the input, and which output to return.
struct QEL_EXPORT QelProcessMExecParams::ReaderStdio {
    int operator()(const QelMessageIterator& cursor, QelProcessMExecParams& params) const;
};

struct QEL_EXPORT QelProcessMExecParams::WriterStdio : QelWriterBase {
    int operator()(QelMessageIterator& cursor, const QelProcessMExecParams& params) const;
};

/// Result of a program that ran on another host.
struct QEL_EXPORT QelProcessMExecOutput : QelRecord<QelProcessMExecOutput> {
    int code = 0;    ///< the exit code
    std::string out; ///< content of its standard output; any bytes
    std::string err;

    static const QelWireLayout& wire;
};

} // namespace Qel
