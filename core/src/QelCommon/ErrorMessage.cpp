#include "QelCommon/ErrorMessage.h"

#include <cstdarg>

#include "QelCommon/Strings.h"

namespace Qel {

namespace {

std::string& lastMessage() {
    thread_local std::string message;
    return message;
}

} // namespace

void setErrorMessage(const char* format, ...) {
    std::va_list arguments;
    va_start(arguments, format);
    lastMessage() = formatString(format, arguments);
    va_end(arguments);
}

const std::string& getErrorMessage() {
    return lastMessage();
}

void clearErrorMessage() {
    lastMessage().clear();
}

} // namespace Qel
