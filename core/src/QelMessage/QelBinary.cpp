#include "QelMessage/QelBinary.h"

#include <limits>

#include "QelCommon/ErrorMessage.h"
#include "QelMessage/QelBinaryCodec.h"
#include "QelMessage/QelBinaryIterator.h"
#include "QelMessage/QelEnvelope.h"
#include "QelMessage/QelMallocText.h"
#include "QelMessage/QelMessageFile.h"
#include "QelMessage/QelMessageTree.h"
#include "QelMessage/QelParseGuard.h"
#include "QelMessage/QelTextCodec.h"

namespace Qel {

namespace {

int getField(const std::string& field, std::string& value) {
    if (field.empty())
        return -1;
    value = field;
    return 0;
}

} // namespace

bool QelBinary::looksBinary(std::string_view bytes) noexcept {
    return QelBinaryCodec::looksBinary(bytes);
}

QelBinary::QelBinary() : m_tree(std::make_unique<QelMessageTree>()), m_envelope(std::make_unique<QelEnvelope>()) {}

QelBinary::~QelBinary() = default;

int QelBinary::create(int argument) {
    if (argument != 0)
        return -1;
    replace(m_tree->successor(), QelEnvelope{});
    return 0;
}

void QelBinary::destroy() {
    delete this;
}

void QelBinary::replace(QelMessageTree&& tree, QelEnvelope&& envelope) {
    *m_tree = std::move(tree);
    *m_envelope = std::move(envelope);
}

int QelBinary::measureOrFlatten(char* buf, int* len, const QelMessageIterator* cursor) const {
    const auto* const own = dynamic_cast<const QelBinaryIterator*>(cursor);
    return own && len ? own->flatten(buf, *len) : -1;
}

char* QelBinary::toTextEx(int, const std::string&, int) const {
    std::string text;
    return QelTextCodec::writeMessage(*m_tree, *m_envelope, text) == 0 ? mallocText(text) : nullptr;
}

int QelBinary::saveToFile(const std::string& path) const {
    std::string text;
    if (QelTextCodec::writeMessage(*m_tree, *m_envelope, text) != 0) {
        setErrorMessage("%s: %s", path.c_str(), getErrorMessage().c_str());
        return -1;
    }
    return QelMessageFile::replace(path, text);
}

int QelBinary::fromText(std::string_view text) {
    QelMessageTree tree = m_tree->successor();
    QelEnvelope envelope;
    if (QelTextCodec::readMessage(text, tree, envelope) != 0)
        return -1;
    replace(std::move(tree), std::move(envelope));
    return 0;
}

int QelBinary::fromTextEx(const char* text, int) {
    return text ? guardParse([&] { return fromText(text); }) : -1;
}

int QelBinary::loadFromFile(const std::string& path) {
    return guardParse([&] {
        std::string text;
        if (QelMessageFile::read(path, text) != 0)
            return -1;
        if (fromText(text) == 0)
            return 0;
        setErrorMessage("%s: %s", path.c_str(), getErrorMessage().c_str());
        return -1;
    });
}

QelMessageIterator* QelBinary::rootIterator() {
    return new QelBinaryIterator(this);
}

int QelBinary::getTime(long* time) const {
    if (!m_envelope->time || !time)
        return -1;
    *time = *m_envelope->time;
    return 0;
}

int QelBinary::getRequestId(std::string& id) const {
    return getField(m_envelope->requestId, id);
}

std::string QelBinary::getSenderEID() const {
    return m_envelope->sender;
}

int QelBinary::addSubscription(const char* name) {
    if (!name || !QelEnvelope::isSubscription(name))
        return -1;
    m_envelope->subscriptions.emplace_back(name);
    return 0;
}

int QelBinary::getSession(std::string& session) const {
    return getField(m_envelope->session, session);
}

int QelBinary::getOrigin(std::string& origin) const {
    return getField(m_envelope->origin, origin);
}

const std::vector<std::string>& QelBinary::getSubscriptions() const {
    return m_envelope->subscriptions;
}

void QelBinary::setTime(long time) {
    m_envelope->time = time;
}

void QelBinary::setRequestId(const std::string& id) {
    m_envelope->requestId = id;
}

void QelBinary::setSenderEID(const std::string& eid) {
    m_envelope->sender = eid;
}

void QelBinary::setSession(const std::string& session) {
    m_envelope->session = session;
}

void QelBinary::setOrigin(const std::string& origin) {
    m_envelope->origin = origin;
}

QelMessage* QelBinary::copy(bool withEnvelope) const {
    auto_destroy<QelBinary> duplicate(new QelBinary);
    duplicate->m_tree->copyContent(QelMessageTree::root, *m_tree, QelMessageTree::root);
    if (withEnvelope)
        *duplicate->m_envelope = *m_envelope;
    return duplicate.release();
}

int QelBinary::toBinary(std::string& bytes) const {
    std::size_t size = 0;
    if (QelBinaryCodec::measure(*m_tree, QelMessageTree::root, m_envelope.get(), size) != 0)
        return -1;
    bytes.resize(size);
    return QelBinaryCodec::write(*m_tree, QelMessageTree::root, m_envelope.get(), bytes.data(), size);
}

int QelBinary::fromBinary(const char* buf, int len) {
    if (!buf || len < 0)
        return -1;
    return guardParse([&] {
        QelMessageTree tree = m_tree->successor();
        QelEnvelope envelope;
        if (QelBinaryCodec::readMessage({buf, static_cast<std::size_t>(len)}, tree, envelope) != 0)
            return -1;
        replace(std::move(tree), std::move(envelope));
        return 0;
    });
}

} // namespace Qel
