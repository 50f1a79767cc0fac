// Parses arbitrary text as the URI of a backup.  A valid URI must be equal after a round trip.
//
// Random digits rarely encode a message with a valid checksum.  If the first byte is even, the rest is the path of a
// URI; if it is odd, the rest is the body of the message that encodes the storage in front of a backup path.

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include <boost/algorithm/hex.hpp>

#include "MessageForms.h"
#include "QelCommon/Log.h"
#include "QelFunctionalityCore/Backup/QelBackupURI.h"
#include "SealedMessage.h"

namespace {

using MessageForms::demand;

std::string written(const Qel::QelBackupURI& name) {
    Qel::QelURI uri;
    demand(name.uri(uri) == 0);
    return uri.getUri();
}

void read(const std::string& path) {
    const Qel::QelBackupURI name("backup://" + path);
    if (!name.isValid()) {
        demand(name.backup().empty() && name.subPath().empty() && !name.storage().isSpecified());
        return;
    }
    const std::string uri = written(name);
    const Qel::QelBackupURI again(uri);
    demand(again.backup() == name.backup() && again.subPath() == name.subPath());
    demand(again.storage().isSpecified() == name.storage().isSpecified());
    demand(written(again) == uri);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    Qel::debug_level = 0; // suppress an error log line for each invalid input
    if (size == 0)
        return 0;
    const std::string_view input(reinterpret_cast<const char*>(data), size);
    const std::string_view rest = input.substr(1);
    if (data[0] % 2 == 0)
        read(std::string(rest));
    else
        read(boost::algorithm::hex_lower(sealedMessage(Qel::QelBinaryFormat::wholeMessage, rest)) + "&a/b/c");
    return 0;
}
