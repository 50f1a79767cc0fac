#pragma once

#include <memory>
#include <string>

#include "QelMessage/QelMessage.h"
#include "QelMessage/QelMessageIterator.h"

namespace Qel {

class QelConfiguration;

/// Walks a configuration tree by paths of element names, and can make the path that it walks.
///
/// A path names a section, an option below it, and whatever the option keeps: "/system/log_level".  One with a leading
/// slash begins at the data element, which "/" alone names; any other begins at the present position.  There is no
/// escape, no "." and no "..".  The `configuration` element, in which every section keeps its options, is never named:
/// to a plain cursor the same element is "/data/system/configuration/log_level".
///
/// Operations give 0 for success and -1 for failure.  An iterator belongs to one thread; even reading a value moves it
/// for a moment.
class QelConfigurationIterator {
public:
    /// Owns the message, and stands at the data element if there is one.
    explicit QelConfigurationIterator(QelMessage* message);
    QelConfigurationIterator(const QelConfigurationIterator&) = delete;
    QelConfigurationIterator& operator=(const QelConfigurationIterator&) = delete;
    ~QelConfigurationIterator();

    /// The message itself, which stays the iterator's.
    [[nodiscard]] QelMessage* getMessage() const { return m_message.get(); }
    /// A new iterator at the data element of a copy of the tree; the caller's.
    [[nodiscard]] QelConfigurationIterator* getIterator() const;
    /// A new configuration with a copy of the tree; the caller's.
    [[nodiscard]] QelConfiguration* getConfig() const;

    /// To the data element.
    int seekRoot();
    /// One named step up: from an option to its section it passes the `configuration` element.  -1 at the data element.
    int seekUp();
    /// Stays where it was if the path leads nowhere.
    int seek(const std::string& path);

    /// The iterator comes back whatever the result; nothing is made.
    int getValue(int& value, const std::string& path);
    int getValue(std::string& value, const std::string& path);
    int getValueBase64(std::string& value, const std::string& path);
    /// Makes what is missing of the path; the iterator comes back whatever the result.
    int putValue(int value, const std::string& path);
    int putValue(const std::string& value, const std::string& path);
    int putValueBase64(const std::string& value, const std::string& path);

    /// One step down.  After a failure at a section, go on with seekRoot() or an absolute path: see adjustLevel().
    int firstChild(const std::string& name);
    int firstChild();
    int newChild(const std::string& name);

    /// The steps that the operations above are made of.  Those that move may fail half way, with the cursor deeper than
    /// the level tells, so each wants a savePath() before and a restorePath() after a failure.
    int seekSubPath(const std::string& name);
    int createSubPath(const std::string& name);
    /// Saves the position, then walks.
    int followPath(const std::string& path, bool create);
    /// Enters the `configuration` element of a section, saves the position and counts the step to come.
    int adjustLevel();
    /// Keeps the present position in place of the one kept before.
    void savePath();
    /// Goes back to the kept position, and forgets it.  Ends the process if none is kept.
    void restorePath();

private:
    /// Enters the `configuration` element, if the next step down leads from a section to an option.
    int enterOptions(bool create);

    template <class Action> int comeBackAfter(const std::string& path, bool create, const Action& action);
    template <class Move> int stepDown(const Move& move);

    // The cursors go before the tree that they stand on.
    auto_destroy<QelMessage> m_message;
    std::unique_ptr<QelMessageIterator> m_iterator;
    std::unique_ptr<QelMessageIterator> m_savedIterator; ///< null while nothing is kept
    int m_level = 0; ///< named steps below the data element: 1 at a section, 2 and more at and in an option
    int m_savedLevel = 0;
};

} // namespace Qel
