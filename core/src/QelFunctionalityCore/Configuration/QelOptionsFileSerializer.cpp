#include "QelFunctionalityCore/Configuration/QelOptionsFileSerializer.h"

#include <algorithm>
#include <memory>

#include <boost/program_options/option.hpp>

#include "QelMessage/QelCombinators.h"
#include "QelMessage/QelElementNames.h"
#include "QelMessage/QelMessage.h"

namespace Qel {

namespace {

using Option = boost::program_options::basic_option<char>;
using Options = QelProgramOptions::Options;

int readValues(const QelMessageIterator& cursor, Option& option) {
    return QelReaderList(QelReaderString(), "value"_element, QelReaderRequired)(cursor, option.value);
}

struct OptionWriter : QelWriterBase {
    int operator()(QelMessageIterator& cursor, const Option& option) const {
        if (!option.string_key.empty() && cursor.putValue(option.string_key, "name"_element) != 0)
            return -1;
        if (option.value.empty())
            return -1;
        return QelWriterList(QelWriterString(), "value"_element)(cursor, option.value);
    }
};

/// Reads one option and adds it to the set.
struct OptionReader {
    int operator()(const QelMessageIterator& cursor, Options& options) const {
        std::string name;
        cursor.getValue(name, "name"_element);
        return name.empty() ? readPositional(cursor, options) : readNamed(cursor, name, options);
    }

private:
    static int readPositional(const QelMessageIterator& cursor, Options& options) {
        Option option;
        if (readValues(cursor, option) != 0 || option.value.size() != 1)
            return -1;
        options.push_back(option);
        return 0;
    }

    static int readNamed(const QelMessageIterator& cursor, const std::string& name, Options& options) {
        auto found = std::find_if(options.begin(), options.end(),
                                  [&](const Option& option) { return option.string_key == name; });
        if (found == options.end())
            found = options.insert(options.end(), Option(name, {}));
        // A named option needs no values: its presence alone is meaningful.
        static_cast<void>(readValues(cursor, *found));
        return 0;
    }
};

} // namespace

int QelOptionsFileSerializer::write(const Options& options) const {
    const auto_destroy<QelMessage> message(QelMessage::getFactory()->createNew());
    if (!message.get() || message->create(0) != 0)
        return -1;
    if (!options.empty()) {
        const std::unique_ptr<QelMessageIterator> cursor(message->rootIterator());
        if (!cursor || QelWriterList(OptionWriter(), "option"_element)(*cursor, options) != 0)
            return -1;
    }
    return message->saveToFile(m_path);
}

int QelOptionsFileSerializer::read(Options& options) const {
    const auto_destroy<QelMessage> message(QelMessage::getFactory()->createNew());
    if (!message.get() || message->loadFromFile(m_path) != 0)
        return -1;
    const std::unique_ptr<QelMessageIterator> cursor(message->rootIterator());
    if (!cursor)
        return -1;
    Options fresh;
    if (QelReaderListEx(OptionReader(), "option"_element, QelReaderOptional)(*cursor, fresh) != 0)
        return -1;
    options.swap(fresh);
    return 0;
}

} // namespace Qel
