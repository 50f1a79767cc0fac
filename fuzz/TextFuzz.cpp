// Parses arbitrary text as a message, as an element and as markup.

#include <cstddef>
#include <cstdint>
#include <string>

#include "MessageForms.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace MessageForms;
    const std::string text(reinterpret_cast<const char*>(data), size);

    const Qel::auto_destroy<Qel::QelMessage> message(newMessage());
    if (message->fromTextEx(text.c_str(), 0) == 0) {
        demandFixedPoint(*message);
        demandPartsFixed(*message);
    }

    const Qel::auto_destroy<Qel::QelMessage> parts(newMessage());
    const std::unique_ptr<Qel::QelMessageIterator> cursor(parts->rootIterator());
    const bool hasElement = cursor->fromTextToChild(text.c_str()) == 0;
    const bool hasMarkup = cursor->putValueXML(text, 1307) == 0;
    demand((cursor->firstChild() == 0) == (hasElement || hasMarkup));
    demandFixedPoint(*parts);
    return 0;
}
