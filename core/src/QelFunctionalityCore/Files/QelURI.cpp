#include "QelFunctionalityCore/Files/QelURI.h"

#include <string_view>

namespace Qel {

namespace {

constexpr std::string_view separator = "://";

} // namespace

bool QelURI::isValid() const {
    return !m_type.empty();
}

void QelURI::setUri(const std::string& uri) {
    m_type.clear();
    m_path.clear();
    const auto end = uri.find(separator);
    if (end == std::string::npos || end < 2)
        return;
    m_type = uri.substr(0, end);
    m_path = uri.substr(end + separator.size());
}

std::string QelURI::getUri() const {
    return isValid() ? m_type + std::string(separator) + m_path : std::string();
}

} // namespace Qel
