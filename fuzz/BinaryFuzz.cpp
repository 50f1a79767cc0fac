// Reads any bytes as a message in binary form.
//
// Few random bytes have a checksum that is right, so besides the input as it is a buffer is read that has it as its
// body: an even first byte makes it an element, an odd one a whole message.

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "MessageForms.h"
#include "QelMessage/QelBinaryCodec.h"
#include "QelMessage/QelBinaryFormat.h"

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

std::string sealed(unsigned char content, std::string_view body) {
    using namespace Qel::QelBinaryFormat;
    std::string bytes(magic);
    bytes += static_cast<char>(version);
    bytes += static_cast<char>(content);
    bytes.resize(headSize);
    bytes += body;
    storeWord(bytes.data() + checksumOffset, Qel::QelBinaryCodec::checksum(bytes));
    return bytes;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string input(reinterpret_cast<const char*>(data), size);
    read(input);
    if (size != 0) {
        using namespace Qel::QelBinaryFormat;
        read(sealed(data[0] % 2 == 0 ? oneElement : wholeMessage, std::string_view(input).substr(1)));
    }
    return 0;
}
