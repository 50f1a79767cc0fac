#include "QelFunctionalityCore/Host/QelProcessMExec.h"

#include "QelMessage/QelWireTable.h"

namespace Qel {

template <> struct Wire<QelProgCredentials> : WireWords<QelProgCredentials> {
    static constexpr QelWireField fields[] = {
        base<QelUserCredentials>(),
        field<&QelProgCredentials::login>(1393, ignored, always, base64),
        field<&QelProgCredentials::secret>(1394, ignored, always, base64),
    };
};
template <> const QelWireLayout& qelWireLayout<QelProgCredentials>() {
    return wireLayoutOf<QelProgCredentials>;
}

template <> struct Wire<QelProcessMExecParams> : WireWords<QelProcessMExecParams> {
    static constexpr QelWireField streams[] = {
        field<&QelProcessMExecParams::stdinData>(1054, ignored, always, base64),
        flag<&QelProcessMExecParams::wantStdout>(1057),
        flag<&QelProcessMExecParams::wantStderr>(1396),
        flag<&QelProcessMExecParams::wantExtra>(2085),
    };
    static constexpr QelWireField fields[] = {
        list<&QelProcessMExecParams::args>(1390, optional, base64),
        list<&QelProcessMExecParams::env>(1391, optional, base64),
        grouped<streams>("streams", 1395, optional),
        field<&QelProcessMExecParams::credentials>(1158, optional, always),
    };
};
template <> const QelWireLayout& qelWireLayout<QelProcessMExecParams>() {
    return wireLayoutOf<QelProcessMExecParams>;
}

namespace {

constexpr const QelWireLayout& streamsLayout =
    Internal::groupLayout<QelProcessMExecParams, Wire<QelProcessMExecParams>::streams, 0>;

} // namespace

int QelProcessMExecParams::ReaderStdio::operator()(const QelMessageIterator& cursor,
                                                   QelProcessMExecParams& params) const {
    return readByLayout(streamsLayout, &params, cursor);
}
int QelProcessMExecParams::WriterStdio::operator()(QelMessageIterator& cursor,
                                                   const QelProcessMExecParams& params) const {
    return writeByLayout(streamsLayout, &params, cursor);
}

template <> struct Wire<QelProcessMExecOutput> : WireWords<QelProcessMExecOutput> {
    static constexpr QelWireField fields[] = {
        field<&QelProcessMExecOutput::code>(1192, required, always),
        field<&QelProcessMExecOutput::out>(1057, ignored, always, base64),
        field<&QelProcessMExecOutput::err>(1396, ignored, always, base64),
    };
};
template <> const QelWireLayout& qelWireLayout<QelProcessMExecOutput>() {
    return wireLayoutOf<QelProcessMExecOutput>;
}

} // namespace Qel
