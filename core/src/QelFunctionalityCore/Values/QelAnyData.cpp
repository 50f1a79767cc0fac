#include "QelFunctionalityCore/Values/QelAnyData.h"

#include <utility>

namespace Qel {

QelAnyData::QelAnyData(QelMessageIterator* it, bool copy, int elementID) : m_elementID(elementID) {
    reset(it, copy);
}

QelAnyData::QelAnyData(const QelAnyData& other) : m_elementID(other.m_elementID) {
    reset(other.m_iterator.get(), other.m_message != nullptr);
}

QelAnyData& QelAnyData::operator=(const QelAnyData& other) {
    QelAnyData(other).swap(*this);
    return *this;
}

QelAnyData::QelAnyData(QelAnyData&& other) noexcept
    : m_message(std::move(other.m_message)), m_iterator(std::move(other.m_iterator)), m_elementID(other.m_elementID) {}

QelAnyData& QelAnyData::operator=(QelAnyData&& other) noexcept {
    QelAnyData(std::move(other)).swap(*this);
    return *this;
}

QelAnyData::~QelAnyData() = default;

QelAnyData& QelAnyData::operator=(QelMessageIterator* it) {
    reset(it, true);
    return *this;
}

void QelAnyData::reset(const QelMessageIterator* it, bool copy) {
    // Destroy the old tree last: `it` may point into it.
    std::unique_ptr<QelMessageIterator> iterator(it != nullptr ? it->newIterator(copy) : nullptr);
    m_iterator = std::move(iterator);
    m_message.reset(copy && m_iterator ? m_iterator->getMessage() : nullptr);
}

bool QelAnyData::isSpecified(int id) const {
    if (empty() || m_iterator->seek(id) != 0)
        return false;
    m_iterator->seekUp();
    return true;
}

const std::string& QelAnyData::get(int id, std::string& cache) const {
    if (cache.empty() && isSpecified(id))
        m_iterator->getValue(cache, id);
    return cache;
}

int QelAnyData::set(int id, const std::string& value, std::string& cache) {
    if (empty())
        return -1;
    cache = value;
    m_iterator->deleteChild(id);
    return m_iterator->putValue(value, id);
}

int QelAnyData::serialize(QelMessageIterator* to) const {
    return empty() ? 0 : to->copyToChild(m_iterator.get());
}

int QelAnyData::serialize(char** buf, int* len) const {
    return empty() ? -1 : m_iterator->serializeFromChild(buf, len);
}

int QelAnyData::deserialize(const char* buf, int len) {
    reset(nullptr, true);
    if (buf == nullptr || len == 0)
        return 0;
    makeTree();
    return settle(m_iterator->deserializeToChild(buf, len), m_elementID);
}

char* QelAnyData::toText() const {
    return empty() ? nullptr : m_iterator->toTextFromChild();
}

int QelAnyData::fromText(const char* text, int id) {
    reset(nullptr, true);
    if (text == nullptr || *text == '\0')
        return 0;
    makeTree();
    return settle(m_iterator->fromTextToChild(text), id);
}

int QelAnyData::fromText(const char* text) {
    return fromText(text, m_elementID);
}

void QelAnyData::checkMsg(int id, int ns) {
    if (!empty())
        return;
    makeTree();
    m_iterator->newChild(id);
    m_iterator->setNamespace(ns);
}

boost::shared_ptr<QelMessageIterator> QelAnyData::any() const {
    return boost::shared_ptr<QelMessageIterator>(empty() ? nullptr : m_iterator->newIterator(false));
}

boost::shared_ptr<QelMessageIterator> QelAnyData::any() {
    checkMsg(m_elementID, 0);
    return std::as_const(*this).any();
}

void QelAnyData::makeTree() {
    m_message.reset(QelMessage::getFactory()->createNew());
    m_message->create(0);
    m_iterator.reset(m_message->rootIterator());
}

int QelAnyData::settle(int parsed, int id) {
    if (parsed != 0 || m_iterator->seek(id) != 0)
        reset(nullptr, true);
    return parsed;
}

void QelAnyData::swap(QelAnyData& other) noexcept {
    m_message.swap(other.m_message);
    m_iterator.swap(other.m_iterator);
    std::swap(m_elementID, other.m_elementID);
}

int QelAnyData::Reader::operator()(const QelMessageIterator& cursor, QelAnyData& any) const {
    if (cursor.seek(any.m_elementID) != 0)
        return optional ? 0 : -1;
    any.reset(&cursor, true);
    cursor.seekUp();
    return 0;
}

int QelAnyData::Writer::operator()(QelMessageIterator& cursor, const QelAnyData& any) const {
    return any.serialize(&cursor);
}

} // namespace Qel
