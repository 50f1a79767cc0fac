#pragma once

#include <memory>
#include <string>

#include "QelCommon/ErrorMessage.h"
#include "QelMessage/QelBinary.h"
#include "QelMessage/QelMessageIterator.h"
#include "qel/cli/Console.h"
#include "qel/records/MessageFiles.h"

namespace Qel::Tool {

/// Reads a message whose first element is a record from a file or standard input.
class RecordInMessage {
public:
    RecordInMessage() : m_message(new QelBinary) {}

    /// Reads the message and its record.  Returns ExitCode::badInput after printing an error with the position if that
    /// fails.
    template <class Record>
    [[nodiscard]] ExitCode read(const std::string& file, Record& record, const Console& console) {
        if (const ExitCode code = readMessage(file, *m_message, console); code != ExitCode::success)
            return code;
        m_cursor.reset(m_message->rootIterator());
        if (m_cursor->firstChild() != 0)
            return console.fail(ExitCode::badInput, shownName(file) + ": empty message");
        clearErrorMessage();
        if (m_cursor->getObj(record, getEmptyID()) != 0)
            return console.fail(ExitCode::badInput, shownName(file) + ": " + getErrorMessage());
        return ExitCode::success;
    }

    [[nodiscard]] const QelMessage& message() const { return *m_message; }
    /// Positioned at the record; valid after read().
    [[nodiscard]] const QelMessageIterator& cursor() const { return *m_cursor; }

private:
    auto_destroy<QelMessage> m_message;
    std::unique_ptr<QelMessageIterator> m_cursor;
};

/// Reads only the record, as RecordInMessage::read() does.
template <class Record>
[[nodiscard]] ExitCode readRecord(const std::string& file, Record& record, const Console& console) {
    return RecordInMessage().read(file, record, console);
}

} // namespace Qel::Tool
