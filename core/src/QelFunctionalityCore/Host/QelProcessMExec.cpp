#include "QelFunctionalityCore/Host/QelProcessMExec.h"

#include "QelMessage/QelWireTable.h"

namespace Qel {

template <> struct Wire<QelProgCredentials> : WireWords<QelProgCredentials> {
    static constexpr QelWireField fields[] = {
        base<QelUserCredentials>(),
        field<&R::login>(1393, ignored, always, base64),
        field<&R::secret>(1394, ignored, always, base64),
    };
};
const QelWireLayout& QelProgCredentials::wire = wireLayoutOf<QelProgCredentials>;

template <> struct Wire<QelProcessMExecParams> : WireWords<QelProcessMExecParams> {
    static constexpr QelWireField streams[] = {
        field<&R::stdinData>(1054, ignored, always, base64),
        flag<&R::wantStdout>(1057),
        flag<&R::wantStderr>(1396),
        flag<&R::wantExtra>(2085),
    };
    static constexpr QelWireField fields[] = {
        list<&R::args>(1390, optional, base64),
        list<&R::env>(1391, optional, base64),
        grouped<streams>("streams", 1395, optional),
        field<&R::credentials>(1158, optional, always),
    };
};
const QelWireLayout& QelProcessMExecParams::wire = wireLayoutOf<QelProcessMExecParams>;

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
        field<&R::code>(1192, required, always),
        field<&R::out>(1057, ignored, always, base64),
        field<&R::err>(1396, ignored, always, base64),
    };
};
const QelWireLayout& QelProcessMExecOutput::wire = wireLayoutOf<QelProcessMExecOutput>;

} // namespace Qel
