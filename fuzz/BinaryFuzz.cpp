// Parses arbitrary bytes as a message in binary form.
//
// Random bytes rarely have a valid checksum.  The input is therefore also parsed as the body of a buffer with a valid
// head: of an element if the first byte is even, of a whole message if it is odd.

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "MessageForms.h"
#include "SealedMessage.h"

namespace {

void read(const std::string& bytes) {
    using namespace MessageForms;
    const auto length = static_cast<int>(bytes.size());
    const Qel::auto_destroy<Qel::QelMessage> message(Qel::QelMessage::getFactory()->createNew(bytes.data(), length));
    if (message.get()) {
        demandFixedPoint(*message);
        demandPartsFixed(*message);
    }

    const Qel::auto_destroy<Qel::QelMessage> parent(newMessage());
    const std::unique_ptr<Qel::QelMessageIterator> cursor(parent->rootIterator());
    const bool isRead = cursor->deserializeToChild(bytes.data(), length) == 0;
    demand(isRead == (message.get() != nullptr));
    demand(isRead == (cursor->firstChild() == 0));
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string input(reinterpret_cast<const char*>(data), size);
    read(input);
    if (size != 0) {
        using namespace Qel::QelBinaryFormat;
        read(sealedMessage(data[0] % 2 == 0 ? oneElement : wholeMessage, std::string_view(input).substr(1)));
    }
    return 0;
}
