#pragma once

#include <memory>
#include <string>

#include "QelMessage/QelMessage.h"
#include "QelMessage/QelMessageIterator.h"

/// Checks shared by the targets of both message forms: a parsed message must survive a round trip through either form
/// and through a conversion between them.
namespace MessageForms {

inline void demand(bool holds) {
    if (!holds)
        __builtin_trap();
}

inline std::string takeText(char* text) {
    demand(text != nullptr);
    const std::unique_ptr<char, decltype(&std::free)> owner(text, &std::free);
    return text;
}

struct Forms {
    explicit Forms(const Qel::QelMessage& message) : text(takeText(message.toTextEx(0, {}, 0))) {
        demand(message.toBinary(binary) == 0);
    }
    bool operator==(const Forms&) const = default;

    std::string text;
    std::string binary;
};

inline Qel::QelMessage* newMessage() {
    Qel::QelMessage* const message = Qel::QelMessage::getFactory()->createNew();
    demand(message->create(0) == 0);
    return message;
}

inline void demandFixedPoint(const Qel::QelMessage& message) {
    const Forms forms(message);
    const Qel::auto_destroy<Qel::QelMessage> fromText(newMessage());
    demand(fromText->fromTextEx(forms.text.c_str(), 0) == 0);
    demand(Forms(*fromText) == forms);
    const Qel::auto_destroy<Qel::QelMessage> fromBinary(newMessage());
    demand(fromBinary->fromBinary(forms.binary.data(), static_cast<int>(forms.binary.size())) == 0);
    demand(Forms(*fromBinary) == forms);
}

/// Checks the round trip of each child of the root, as an element and as markup.
inline void demandPartsFixed(Qel::QelMessage& message) {
    const std::unique_ptr<Qel::QelMessageIterator> cursor(message.rootIterator());
    if (cursor->firstChild() != 0)
        return;
    do {
        const Qel::auto_destroy<Qel::QelMessage> copy(newMessage());
        const std::unique_ptr<Qel::QelMessageIterator> target(copy->rootIterator());
        const std::string text = takeText(cursor->toTextFromChild());
        demand(target->fromTextToChild(text.c_str()) == 0 && target->firstChild() == 0);
        demand(takeText(target->toTextFromChild()) == text);
        std::string markup;
        if (cursor->getValueXML(markup, 0) != 0)
            continue; // a value that cannot be represented without its element
        demand(target->putValueXML(markup, 0) == 0);
        demand(takeText(target->toTextFromChild()) == text);
    } while (cursor->nextSibling() == 0);
}

} // namespace MessageForms
