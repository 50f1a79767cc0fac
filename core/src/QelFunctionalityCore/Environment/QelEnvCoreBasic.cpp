#include "QelFunctionalityCore/Environment/QelEnvCoreBasic.h"

#include <algorithm>
#include <cstring>
#include <iterator>
#include <memory>
#include <new>
#include <string>

#include "QelMessage/QelElementNames.h"
#include "QelMessage/QelMessage.h"

namespace Qel {

namespace {

constexpr std::size_t dataOffset = 88;
constexpr int bufferTooSmall = -2; // result of measureOrFlatten for a null buffer

using Record = boost::shared_ptr<QelEnvCoreBasic>;

#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Winvalid-offsetof"
static_assert(offsetof(QelEnvCoreBasic, parentEID) == 4);
static_assert(offsetof(QelEnvCoreBasic, eid) == 20);
static_assert(offsetof(QelEnvCoreBasic, status) == 36 && sizeof(QelEnvStatus) == 8);
static_assert(offsetof(QelEnvCoreBasic, type) == 44 && sizeof(QelEnvType) == 16);
static_assert(offsetof(QelEnvCoreBasic, alertType) == 60 && sizeof(QelEnvCoreBasic::alertType) == 20);
static_assert(offsetof(QelEnvCoreBasic, configSize) == 80);
static_assert(offsetof(QelEnvCoreBasic, vconfigSize) == 84);
static_assert(offsetof(QelEnvCoreBasic, data) == dataOffset);
#pragma GCC diagnostic pop

// The configurations extend past the single declared byte of `data`, into the rest of the allocated block.
char* dataOf(QelEnvCoreBasic& record) {
    return reinterpret_cast<char*>(&record) + dataOffset;
}

template <class... Head> Record allocate(std::size_t dataSize, const Head&... head) {
    void* const block = QelCachedItem::allocator_free(qelEnvCoreBasicSize + dataSize);
    if (!block)
        return {};
    return {new (block) QelEnvCoreBasic(head...), &QelCachedItem::deleter_free};
}

/// The bytes of a configuration.
///
/// They always encode a single element.  Flattening the root of a message would encode the whole message with its
/// envelope; after parsing, the children of the root would be the fields of the configuration instead of the
/// configuration element.  Therefore a root is first copied to an element.
class FlatConfig {
public:
    explicit FlatConfig(const QelMessageIterator& it) : m_element(&it) {
        constexpr const char* rootName = "/";
        if (it.curName() != rootName)
            return;
        m_message.reset(QelMessage::getFactory()->createNew());
        m_message->create(0);
        m_copy.reset(m_message->rootIterator());
        m_element = m_copy->copyToChild(&it) == 0 && m_copy->firstChild() == 0 ? m_copy.get() : nullptr;
    }

    [[nodiscard]] bool measure(int& size) const {
        size = 0;
        return m_element && m_element->getMessage()->measureOrFlatten(nullptr, &size, m_element) == bufferTooSmall;
    }
    [[nodiscard]] bool write(char* buffer, int& size) const {
        return m_element->getMessage()->measureOrFlatten(buffer, &size, m_element) == 0;
    }

private:
    struct Destroy {
        void operator()(QelMessage* message) const { message->destroy(); }
    };

    std::unique_ptr<QelMessage, Destroy> m_message;
    std::unique_ptr<QelMessageIterator> m_copy; // in m_message
    const QelMessageIterator* m_element;
};

QelMessage* parse(const char* data, std::uint32_t size) {
    return size == 0 ? nullptr : QelMessage::getFactory()->createNew(data, static_cast<int>(size));
}

void readType(const QelMessageIterator& it, QelEnvType& type) {
    constexpr std::size_t longest = sizeof(QelEnvType) - 1;
    std::string text;
    if (it.getValue(text, "type"_element) == 0)
        type = text.substr(0, longest);
    else
        type = static_cast<const char*>(nullptr);
}

} // namespace

// The base is default-initialised, because the reference count must not be copied.
// NOLINTNEXTLINE(bugprone-copy-constructor-init)
QelEnvCoreBasic::QelEnvCoreBasic(const QelEnvCoreBasic& other)
    : QelCachedItem(), parentEID(other.parentEID), eid(other.eid), status(other.status), type(other.type),
      configSize(other.configSize), vconfigSize(other.vconfigSize) {
    std::copy(std::begin(other.alertType), std::end(other.alertType), std::begin(alertType));
}

std::uint32_t QelEnvCoreBasic::length() const {
    return qelEnvCoreBasicSize + configSize + vconfigSize;
}

int QelEnvCoreBasic::getBuffer(const void** out, unsigned& len, const void*) const {
    if (out)
        *out = this;
    len = length();
    return 0;
}

QelMessage* QelEnvCoreBasic::getConfig() const {
    return parse(configBytes(), configSize);
}

QelMessage* QelEnvCoreBasic::getVirtualConfig() const {
    return parse(virtualConfigBytes(), vconfigSize);
}

const char* QelEnvCoreBasic::configBytes() const {
    return reinterpret_cast<const char*>(this) + dataOffset;
}

const char* QelEnvCoreBasic::virtualConfigBytes() const {
    return configBytes() + configSize;
}

void QelEnvCoreBasic::resetVirtualConfigData() {
    vconfigSize = 0;
}

void QelEnvCoreBasic::resetConfigData() {
    // A virtual configuration that is shorter than the base one ends the record: do not read past it.
    std::memmove(dataOf(*this), virtualConfigBytes(), std::min(configSize, vconfigSize));
    configSize = 0;
}

Record QelEnvCoreBasic::createWithRoom(const QelEnvCoreBasic& head, std::size_t dataSize) {
    return allocate(dataSize, head);
}

Record QelEnvCoreBasic::createInstance(const QelEnvCoreBasic& a, const QelEnvCoreBasic& b) {
    Record record = allocate(std::size_t{a.configSize} + b.vconfigSize, a);
    if (!record)
        return record;
    if (b.type.isSpecified())
        record->type = b.type;
    record->vconfigSize = b.vconfigSize;
    std::memcpy(dataOf(*record), a.configBytes(), a.configSize);
    std::memcpy(dataOf(*record) + a.configSize, b.virtualConfigBytes(), b.vconfigSize);
    return record;
}

Record QelEnvCoreBasic::createInstance(const QelEnvCoreBasic& a) {
    return createInstance(a, a);
}

Record QelEnvCoreBasic::createInstance(const QelMessageIterator* it, EnvConfigType configType) {
    return it ? createInstance(*it, configType) : allocate(0);
}

Record QelEnvCoreBasic::createInstance(const QelMessageIterator& it, EnvConfigType configType) {
    const FlatConfig config(it);
    int size = 0;
    if (!config.measure(size))
        return allocate(0);
    Record record = allocate(static_cast<std::size_t>(size));
    if (!record)
        return record;
    if (!config.write(dataOf(*record), size))
        return allocate(0);
    auto& ownSize = configType == EnvConfigType::virtualised ? record->vconfigSize : record->configSize;
    ownSize = static_cast<std::uint32_t>(size);
    readType(it, record->type);
    return record;
}

Record QelEnvCoreBasic::createInstance(const QelMessageIterator* it, const QelEnvCoreBasic& old,
                                       EnvConfigType configType) {
    if (!it)
        return createInstance(old);
    const FlatConfig config(*it);
    int size = 0;
    if (!config.measure(size))
        return allocate(0);
    const bool isVirtual = configType == EnvConfigType::virtualised;
    const std::size_t kept = isVirtual ? old.configSize : old.vconfigSize;
    Record record = allocate(static_cast<std::size_t>(size) + kept, old);
    if (!record)
        return record;
    char* const fresh = dataOf(*record) + (isVirtual ? old.configSize : 0);
    if (!config.write(fresh, size))
        return allocate(0);
    if (isVirtual) {
        record->vconfigSize = static_cast<std::uint32_t>(size);
        std::memcpy(dataOf(*record), old.configBytes(), old.configSize);
    } else {
        record->configSize = static_cast<std::uint32_t>(size);
        std::memcpy(dataOf(*record) + size, old.virtualConfigBytes(), old.vconfigSize);
    }
    return record;
}

} // namespace Qel
