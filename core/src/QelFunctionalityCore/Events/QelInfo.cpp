#include "QelFunctionalityCore/Events/QelInfo.h"

#include <algorithm>
#include <cstdlib>
#include <memory>

#include "QelCommon/ErrorMessage.h"
#include "QelMessage/QelCombinators.h"
#include "QelMessage/QelElementNames.h"
#include "QelMessage/QelMessage.h"
#include "QelMessage/QelWireTable.h"

namespace Qel {

namespace {

constexpr int textVersion = 40500;

// The map key of a parameter is its name, which the parameter itself contains, so it is not written a second time.
int readParameters(const QelMessageIterator& cursor, QelInfo& info) {
    info.parameters.clear();
    return QelReaderMap("parameter"_element, QelReaderOptional,
                        QelReaderID(QelReaderString(), "name"_element, QelReaderRequired),
                        QelInfo::Reader())(cursor, info.parameters);
}
int writeParameters(QelMessageIterator& cursor, const QelInfo& info) {
    return QelWriterMap("parameter"_element, QelWriterEmpty(), QelInfo::Writer())(cursor, info.parameters);
}

/// Expands placeholders recursively into a single output string, without intermediate copies.
class Substitution {
public:
    using FormatOf = std::string_view (*)(const QelInfo& info, std::string& storage);

    explicit Substitution(FormatOf formatOf) : m_formatOf(formatOf) {}

    void append(const QelInfo& info, std::string_view format) {
        if (!spend(format.size()))
            return;
        std::size_t copied = 0;
        for (std::size_t open = format.find('%'); open != npos; open = format.find('%', copied)) {
            const std::size_t close = format.find('%', open + 1);
            if (close == npos)
                break;
            m_text.append(format, copied, open - copied);
            copied = close + 1;
            appendParameters(info.parameters, format.substr(open + 1, close - open - 1));
        }
        m_text.append(format, copied);
    }

    /// Appends the expanded text of every parameter with this name, separated by commas.
    void appendParameters(const QelInfo::Parameters& parameters, std::string_view name) {
        auto at = parameters.lower_bound(name);
        for (bool isFirst = true; at != parameters.end() && at->first == name && !m_isTruncated; ++at) {
            if (!isFirst)
                m_text += ',';
            isFirst = false;
            std::string storage;
            append(at->second, m_formatOf(at->second, storage));
        }
    }

    [[nodiscard]] std::string take() && { return std::move(m_text); }

private:
    static constexpr std::size_t npos = std::string_view::npos;

    bool spend(std::size_t formatSize) {
        const std::size_t work = formatSize + 1;
        m_isTruncated = work > m_budget;
        if (m_isTruncated)
            setErrorMessage("expanding an info takes more than %zu characters; its text is truncated",
                            QelInfo::expansionLimit);
        else
            m_budget -= work;
        return !m_isTruncated;
    }

    FormatOf m_formatOf;
    std::string m_text;
    std::size_t m_budget = QelInfo::expansionLimit;
    bool m_isTruncated = false;
};

} // namespace

template <> struct Wire<QelInfo> : WireWords<QelInfo> {
    static constexpr int nsId = 292, typeId = 161;
    static constexpr QelWireField fields[] = {
        field<&R::text>(1224, required, always, base64),
        field<&R::name>("name"_element, required, always),
        flag<&R::translatable>(1912),
        step<&readParameters, &writeParameters>("parameters", "parameter"_element, optional),
    };
};
const QelWireLayout& QelInfo::wire = wireLayoutOf<QelInfo>;

// Not defaulted in the class: comparing the parameters requires the complete type QelInfo.
bool QelInfo::operator==(const QelInfo& other) const {
    return name == other.name && text == other.text && translatable == other.translatable &&
           parameters == other.parameters;
}

void QelInfo::swap(QelInfo& other) noexcept {
    name.swap(other.name);
    text.swap(other.text);
    std::swap(translatable, other.translatable);
    parameters.swap(other.parameters);
}

QelInfo& QelInfo::addParameter(QelInfo parameter) {
    std::string key = parameter.name;
    parameters.emplace(std::move(key), std::move(parameter));
    return *this;
}

QelInfo& QelInfo::setParameter(QelInfo parameter) {
    parameters.erase(parameter.name);
    return addParameter(std::move(parameter));
}

const QelInfo* QelInfo::getParameter(std::string_view parameterName) const {
    const auto first = parameters.lower_bound(parameterName);
    return first != parameters.end() && first->first == parameterName ? &first->second : nullptr;
}

std::string QelInfo::getParameterByPath(std::string_view path) const {
    const QelInfo* at = this;
    for (;;) {
        path.remove_prefix(std::min(path.find_first_not_of('/'), path.size()));
        if (path.empty())
            return at->toString();
        const std::size_t end = path.find('/');
        if (end == std::string_view::npos)
            break;
        at = at->getParameter(path.substr(0, end));
        if (!at)
            return {};
        path.remove_prefix(end);
    }
    Substitution substitution(&translatedFormat<QelNullTranslator>);
    substitution.appendParameters(at->parameters, path);
    return std::move(substitution).take();
}

std::string QelInfo::toString() const {
    return toStringWithTranslator<QelNullTranslator>();
}

std::string QelInfo::substitute(const QelInfo& info, std::string_view format, FormatOf formatOf) {
    Substitution substitution(formatOf);
    substitution.append(info, format);
    return std::move(substitution).take();
}

int QelInfo::serializeToString(std::string& out) const {
    const auto_destroy<QelMessage> message(QelMessage::getFactory()->createNew());
    if (!message.get())
        return outOfResources;
    if (message->create(0) != 0)
        return unusableMessage;
    const std::unique_ptr<QelMessageIterator> cursor(message->rootIterator());
    if (!cursor || cursor->putObj(*this, "info"_element) != 0)
        return outOfResources;
    const std::unique_ptr<char, decltype(&std::free)> messageText(message->toTextEx(0, std::string(), textVersion),
                                                                  &std::free);
    if (!messageText)
        return outOfResources;
    out = messageText.get();
    return 0;
}

int QelInfo::deserializeFromString(const char* message) {
    if (!message)
        return nullArgument;
    const auto_destroy<QelMessage> parsed(QelMessage::getFactory()->createNew());
    if (!parsed.get())
        return outOfResources;
    if (parsed->create(0) != 0)
        return unusableMessage;
    if (parsed->fromTextEx(message, 0) != 0)
        return badText;
    const std::unique_ptr<QelMessageIterator> cursor(parsed->rootIterator());
    if (!cursor)
        return outOfResources;
    QelInfo read;
    if (cursor->getObj(read, "info"_element) != 0)
        return badText;
    swap(read);
    return 0;
}

} // namespace Qel
