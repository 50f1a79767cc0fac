#include "QelFunctionalityCore/Vocabulary/QelVocPrototype.h"

#include <memory>
#include <utility>

#include "QelFunctionalityCore/Vocabulary/QelVocID.h"
#include "QelFunctionalityCore/Vocabulary/QelVocLocalPrototype.h"
#include "QelMessage/QelElementNames.h"
#include "QelMessage/QelMessage.h"

namespace Qel {

namespace {

constexpr int vocabularyNamespace = 292;

} // namespace

QelVocPrototype::~QelVocPrototype() {
    ifDestroy(m_message);
}

void QelVocPrototype::reset(QelMessage* message) {
    const QelGuardT<QelLock> guard(m_lock);
    ifDestroy(m_message);
    m_message = message;
}

int QelVocPrototype::saveToFile(const std::string& path) const {
    const QelGuardT<QelLock> guard(m_lock);
    return m_message ? m_message->saveToFile(path) : -1;
}

int QelVocPrototype::readFromFile(const std::string& path) {
    auto_destroy<QelMessage> message(QelMessage::getFactory()->createNew());
    if (message->loadFromFile(path) != 0)
        return -1;
    reset(message.release());
    return 0;
}

QelVocIterator* QelVocPrototype::newIterator() const {
    const QelGuardT<QelLock> guard(m_lock);
    return m_message ? new QelVocIterator(m_message) : nullptr;
}

QelVocIterator* QelVocPrototype::readCategory(const Categories& categories) {
    return processCategory(read(), categories);
}
QelVocIterator* QelVocPrototype::readCategory(const Categories& categories) const {
    return processCategory(read(), categories);
}
QelVocIterator* QelVocPrototype::readCategory(const std::string& category) {
    return readCategory(Categories{category});
}
QelVocIterator* QelVocPrototype::readCategory(const std::string& category) const {
    return readCategory(Categories{category});
}

QelVocIterator* QelVocPrototype::readParameter(const std::string& id) {
    return processParameter(read(), id);
}
QelVocIterator* QelVocPrototype::readParameter(const std::string& id) const {
    return processParameter(read(), id);
}

QelVocIterator* QelVocPrototype::processCategory(QelVocIterator* iterator, const Categories& categories) const {
    if (iterator)
        iterator->setRestrictSet(categories);
    return iterator;
}

QelVocIterator* QelVocPrototype::processParameter(QelVocIterator* iterator, const std::string& id) const {
    std::unique_ptr<QelVocIterator> owner(iterator);
    return owner && owner->seekParameter(id) == 0 ? owner.release() : nullptr;
}

const std::string& QelVocPrototype::readVersion() {
    if (m_version.empty()) {
        const std::string parameter(QelVocID::versionParameter);
        const std::unique_ptr<QelVocIterator> at(std::as_const(*this).readParameter(parameter));
        if (at)
            at->getValue(m_version, "data"_element);
    }
    return m_version;
}

bool QelVocPrototype::isFeatureEnabled(const std::string& id) const {
    return std::unique_ptr<QelVocIterator>(readParameter(id)) != nullptr;
}

boost::intrusive_ptr<QelVocPrototype> QelVocPrototype::getVoc() {
    static const boost::intrusive_ptr<QelVocPrototype> voc = [] {
        boost::intrusive_ptr<QelVocPrototype> local(new QelVocLocalPrototype);
        // Triggers the load, so that const operations find a message.
        const std::unique_ptr<QelVocIterator> loaded(local->read());
        return local;
    }();
    return voc;
}

int QelVocPrototype::Reader::operator()(const QelMessageIterator& cursor, QelVocPrototype& voc) const {
    QelMessage* const message = QelMessage::getFactory()->createNew();
    voc.reset(message);
    if (message->create(0) != 0)
        return -1;
    const std::unique_ptr<QelMessageIterator> to(message->rootIterator());
    to->newChild("data"_element);
    to->newChild("agent"_element);
    if (cursor.firstChild() != 0)
        return 0;
    int result = 0;
    do
        result = to->copyToChild(&cursor);
    while (result == 0 && cursor.nextSibling() == 0);
    cursor.seekUp();
    if (result == 0)
        return 0;
    voc.reset(nullptr);
    return -1;
}

int QelVocPrototype::Writer::operator()(QelMessageIterator& cursor, const QelVocPrototype& voc) const {
    const std::unique_ptr<QelVocIterator> from(voc.newIterator());
    if (!from || from->seekRoot() != 0)
        return -1;
    if (from->firstChild() != 0)
        return 0;
    int result = 0;
    do
        result = cursor.copyToChild(from.get());
    while (result == 0 && from->nextSibling() == 0);
    cursor.setNamespaceChild(vocabularyNamespace);
    return result == 0 ? 0 : -1;
}

} // namespace Qel
