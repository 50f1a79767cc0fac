#include "QelFunctionalityCore/Configuration/QelConfigurationIterator.h"

#include "QelFunctionalityCore/Configuration/QelConfiguration.h"
#include "QelMessage/QelElementNames.h"

namespace Qel {

namespace {

constexpr const char* sourcePath = "core/src/QelFunctionalityCore/QelConfig";

constexpr char separator = '/';

constexpr int sectionLevel = 1;
constexpr int optionLevel = 2;

} // namespace

QelConfigurationIterator::QelConfigurationIterator(QelMessage* message)
    : m_message(message), m_iterator(message ? message->rootIterator() : nullptr) {
    // Ignore a missing data element here: every later operation fails.
    static_cast<void>(seekRoot());
}

QelConfigurationIterator::~QelConfigurationIterator() = default;

QelConfigurationIterator* QelConfigurationIterator::getIterator() const {
    return new QelConfigurationIterator(m_message.get() ? m_message->copy(false) : nullptr);
}

QelConfiguration* QelConfigurationIterator::getConfig() const {
    return new QelConfiguration(m_message.get());
}

int QelConfigurationIterator::seekRoot() {
    m_level = 0;
    return m_iterator && m_iterator->seek("/") == 0 && m_iterator->seek("data"_element) == 0 ? 0 : -1;
}

int QelConfigurationIterator::seekUp() {
    if (m_level == 0)
        return -1;
    if (m_iterator->seekUp() != 0)
        return -1;
    if (m_level == optionLevel && m_iterator->seekUp() != 0)
        return -1;
    --m_level;
    return 0;
}

int QelConfigurationIterator::enterOptions(bool create) {
    if (m_level != sectionLevel || m_iterator->seek("configuration"_element) == 0)
        return 0;
    return create && m_iterator->newChild("configuration"_element) == 0 ? 0 : -1;
}

int QelConfigurationIterator::seekSubPath(const std::string& name) {
    if (enterOptions(false) != 0 || m_iterator->seek(name) != 0)
        return -1;
    ++m_level;
    return 0;
}

int QelConfigurationIterator::createSubPath(const std::string& name) {
    if (enterOptions(true) != 0)
        return -1;
    if (m_iterator->seek(name) != 0 && m_iterator->newChild(name) != 0)
        return -1;
    ++m_level;
    return 0;
}

int QelConfigurationIterator::followPath(const std::string& path, bool create) {
    savePath();
    std::size_t from = 0;
    if (path.starts_with(separator)) {
        if (seekRoot() != 0)
            return -1;
        if (path.size() == 1)
            return 0;
        from = 1;
    }
    // The part after the last slash is also a name, even if it is empty.
    for (;;) {
        const std::size_t end = path.find(separator, from);
        const std::string name = path.substr(from, end == std::string::npos ? end : end - from);
        if ((create ? createSubPath(name) : seekSubPath(name)) != 0)
            return -1;
        if (end == std::string::npos)
            return 0;
        from = end + 1;
    }
}

int QelConfigurationIterator::seek(const std::string& path) {
    if (followPath(path, false) == 0)
        return 0;
    restorePath();
    return -1;
}

template <class Action>
int QelConfigurationIterator::applyAtPath(const std::string& path, bool create, const Action& action) {
    const int result = followPath(path, create) == 0 ? action(*m_iterator) : -1;
    restorePath();
    return result;
}

int QelConfigurationIterator::getValue(int& value, const std::string& path) {
    return applyAtPath(path, false, [&](const QelMessageIterator& at) { return at.getValue(value, getEmptyID()); });
}
int QelConfigurationIterator::getValue(std::string& value, const std::string& path) {
    return applyAtPath(path, false, [&](const QelMessageIterator& at) { return at.getValue(value, getEmptyID()); });
}
int QelConfigurationIterator::getValueBase64(std::string& value, const std::string& path) {
    return applyAtPath(path, false,
                       [&](const QelMessageIterator& at) { return at.getValueBase64(value, getEmptyID()); });
}
int QelConfigurationIterator::putValue(int value, const std::string& path) {
    return applyAtPath(path, true, [&](QelMessageIterator& at) { return at.putValue(value, getEmptyID()); });
}
int QelConfigurationIterator::putValue(const std::string& value, const std::string& path) {
    return applyAtPath(path, true, [&](QelMessageIterator& at) { return at.putValue(value, getEmptyID()); });
}
int QelConfigurationIterator::putValueBase64(const std::string& value, const std::string& path) {
    return applyAtPath(path, true, [&](QelMessageIterator& at) { return at.putValueBase64(value, getEmptyID()); });
}

template <class Move> int QelConfigurationIterator::stepDown(const Move& move) {
    if (adjustLevel() != 0)
        return -1;
    if (move(*m_iterator) == 0)
        return 0;
    restorePath();
    return -1;
}

int QelConfigurationIterator::firstChild(const std::string& name) {
    return stepDown([&](const QelMessageIterator& at) { return at.firstChild(name); });
}
int QelConfigurationIterator::firstChild() {
    return stepDown([](const QelMessageIterator& at) { return at.firstChild(); });
}
int QelConfigurationIterator::newChild(const std::string& name) {
    return stepDown([&](QelMessageIterator& at) { return at.newChild(name); });
}

int QelConfigurationIterator::adjustLevel() {
    if (enterOptions(false) != 0)
        return -1;
    // The position is saved after entering the `configuration` element, not before.  If firstChild() or newChild()
    // fails at a section, the level is 1 again, but the cursor remains at that element.  Existing callers rely on this
    // position; after such a failure they call seekRoot() or use an absolute path.
    savePath();
    ++m_level;
    return 0;
}

void QelConfigurationIterator::savePath() {
    QEL_CHECK(m_iterator != nullptr, sourcePath);
    m_savedIterator.reset(m_iterator->newIterator(false));
    m_savedLevel = m_level;
}

void QelConfigurationIterator::restorePath() {
    QEL_CHECK(m_savedIterator != nullptr, sourcePath);
    m_level = m_savedLevel;
    m_iterator = std::move(m_savedIterator);
}

} // namespace Qel
