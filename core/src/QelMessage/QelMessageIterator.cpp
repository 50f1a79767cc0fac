#include "QelMessage/QelMessageIterator.h"

#include "QelMessage/QelMessage.h"

namespace Qel {

QelMessageIterator::~QelMessageIterator() = default;

int QelMessageIterator::getOrigin(std::string& origin) const {
    return getMessage()->getOrigin(origin);
}

int QelMessageIterator::setNamespaceChild(int ns) {
    if (firstChild() != 0)
        return 0;
    int result = 0;
    do {
        if (const int failure = setNamespace(ns))
            result = failure;
    } while (nextSibling() == 0);
    seekUp();
    return result;
}

} // namespace Qel
