#include "QelCore/QelGUIDBase.h"

#include <cstring>

#include <uuid/uuid.h>

namespace Qel {

static_assert(sizeof(uuid_t) == QelGUIDBase::byteCount);

QelGUIDBase::QelGUIDBase(const void* bytes) noexcept {
    std::memcpy(m_words, bytes, sizeof m_words);
}

void QelGUIDBase::generate() noexcept {
    uuid_t bytes;
    uuid_generate(bytes);
    *this = QelGUIDBase(bytes);
}

std::string QelGUIDBase::toString() const {
    uuid_t bytes;
    std::memcpy(bytes, m_words, sizeof bytes);
    char text[UUID_STR_LEN];
    uuid_unparse_lower(bytes, text);
    return text;
}

int QelGUIDBase::fromString(const char* text) noexcept {
    uuid_t bytes;
    if (text == nullptr || uuid_parse(text, bytes) != 0)
        return -1;
    *this = QelGUIDBase(bytes);
    return 0;
}

} // namespace Qel
