#pragma once

#include <memory>
#include <string>

#include "QelCommon/Export.h"
#include "QelMessage/QelMessage.h"
#include "QelMessage/QelMessageIterator.h"

namespace Qel {

class QelConfiguration;

/// Navigates a configuration tree by paths of element names, and can create the elements of a path.
///
/// A path consists of a section, one of its options, and elements inside the option: "/system/log_level".  A path with
/// a leading slash starts at the data element; "/" is the data element itself.  Any other path starts at the current
/// position.  There is no escaping, no "." and no "..".  The `configuration` element between a section and its options
/// is implicit: for a plain cursor the path above is "/data/system/configuration/log_level".
///
/// Operations return 0 on success and -1 on failure.  Not thread-safe: even reading a value moves the iterator
/// temporarily.
class QEL_EXPORT QelConfigurationIterator {
public:
    /// Takes ownership of the message and moves to its data element, if there is one.
    explicit QelConfigurationIterator(QelMessage* message);
    QelConfigurationIterator(const QelConfigurationIterator&) = delete;
    QelConfigurationIterator& operator=(const QelConfigurationIterator&) = delete;
    ~QelConfigurationIterator();

    /// The message, owned by the iterator.
    [[nodiscard]] QelMessage* getMessage() const { return m_message.get(); }
    /// Returns a new iterator at the data element of a copy of the tree, owned by the caller.
    [[nodiscard]] QelConfigurationIterator* getIterator() const;
    /// Returns a new configuration with a copy of the tree, owned by the caller.
    [[nodiscard]] QelConfiguration* getConfig() const;

    /// Moves to the data element.
    int seekRoot();
    /// Moves up one named level: from an option to its section it skips the `configuration` element.  Returns -1 at the
    /// data element.
    int seekUp();
    /// If the path does not exist, the position is unchanged.
    int seek(const std::string& path);

    /// Reads the value at a path.  The position is always restored, and no element is created.
    int getValue(int& value, const std::string& path);
    int getValue(std::string& value, const std::string& path);
    int getValueBase64(std::string& value, const std::string& path);
    /// Writes the value at a path, creating missing elements.  The position is always restored.
    int putValue(int value, const std::string& path);
    int putValue(const std::string& value, const std::string& path);
    int putValueBase64(const std::string& value, const std::string& path);

    /// Moves down one level.  After a failure at a section, continue with seekRoot() or an absolute path: see
    /// adjustLevel().
    int firstChild(const std::string& name);
    int firstChild();
    int newChild(const std::string& name);

    /// Building blocks of the operations above.  A move that fails halfway leaves the cursor deeper than the level
    /// indicates, so call savePath() before it and restorePath() after a failure.
    int seekSubPath(const std::string& name);
    int createSubPath(const std::string& name);
    /// Saves the position, then follows the path.
    int followPath(const std::string& path, bool create);
    /// Enters the `configuration` element of a section, saves the position and increments the level.
    int adjustLevel();
    /// Saves the current position, replacing the saved one.
    void savePath();
    /// Returns to the saved position and discards it.  Terminates the process if no position is saved.
    void restorePath();

private:
    /// Enters the `configuration` element if the next step down leads from a section to an option.
    int enterOptions(bool create);

    template <class Action> int applyAtPath(const std::string& path, bool create, const Action& action);
    template <class Move> int stepDown(const Move& move);

    // Declared before the cursors, which point into it and must be destroyed first.
    auto_destroy<QelMessage> m_message;
    std::unique_ptr<QelMessageIterator> m_iterator;
    std::unique_ptr<QelMessageIterator> m_savedIterator; ///< null if no position is saved
    int m_level = 0; ///< named levels below the data element: 1 at a section, >= 2 at or inside an option
    int m_savedLevel = 0;
};

} // namespace Qel
