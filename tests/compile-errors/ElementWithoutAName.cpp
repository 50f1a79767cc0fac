// error: no element has this name
#include "QelMessage/QelElementNames.h"

int element() {
    using Qel::operator""_element;
    return "no_such_element"_element;
}
