#pragma once

#include <set>
#include <string>

#include <boost/intrusive_ptr.hpp>

#include "QelCore/QelLock.h"
#include "QelCore/QelRefCounter.h"
#include "QelFunctionalityCore/Vocabulary/QelVocIterator.h"
#include "QelMessage/QelMessageIterator.h"

namespace Qel {

/// One vocabulary in a message of its own (see VocabularyElements.h), or none yet.
///
/// Operations give 0 for success and -1 for failure, or a new iterator that is the caller's, null for failure.  An
/// iterator must not outlive the message that it was made on.
///
/// The message may be replaced, saved and asked for iterators by any thread.  The tree itself isn't guarded: an
/// iterator works on it without a lock.
class QelVocPrototype : public virtual QelRefCounter {
public:
    using Categories = QelVocIterator::Categories;

    struct Reader;
    struct Writer;
    using reader_type = Reader;
    using writer_type = Writer;

    /// Owns the message.
    explicit QelVocPrototype(QelMessage* message = nullptr) : m_message(message) {}
    ~QelVocPrototype() override;

    /// Puts this message, which it then owns, in place of the former one, which is destroyed.
    void reset(QelMessage* message);
    /// The message, which stays the prototype's; null if there is none.
    [[nodiscard]] QelMessage* getMessage() const { return m_message; }

    [[nodiscard]] int saveToFile(const std::string& path) const;
    /// A file that can't be read leaves the vocabulary as it was.
    [[nodiscard]] int readFromFile(const std::string& path);

    /// Null without a message.
    [[nodiscard]] QelVocIterator* newIterator() const;
    /// The same for a prototype that can load itself when it has no message.
    [[nodiscard]] virtual QelVocIterator* newIteratorWithInit() { return newIterator(); }

    // The forms that aren't const load the vocabulary of a prototype that can.

    [[nodiscard]] QelVocIterator* read() { return newIteratorWithInit(); }
    [[nodiscard]] QelVocIterator* read() const { return newIterator(); }
    /// Restricted to what belongs to each of the categories.
    [[nodiscard]] QelVocIterator* readCategory(const Categories& categories);
    [[nodiscard]] QelVocIterator* readCategory(const Categories& categories) const;
    [[nodiscard]] QelVocIterator* readCategory(const std::string& category);
    [[nodiscard]] QelVocIterator* readCategory(const std::string& category) const;
    /// At the parameter of that ID; null if there is none.
    [[nodiscard]] QelVocIterator* readParameter(const std::string& id);
    [[nodiscard]] QelVocIterator* readParameter(const std::string& id) const;

    /// What readCategory() and readParameter() do with a new iterator, which they take over.  Null stays null.
    [[nodiscard]] QelVocIterator* processCategory(QelVocIterator* iterator, const Categories& categories) const;
    [[nodiscard]] QelVocIterator* processParameter(QelVocIterator* iterator, const std::string& id) const;

    /// The version.  It is kept from the first time that it is found, even if the message is then replaced; empty as
    /// long as there is none.
    const std::string& readVersion();
    /// Whether there is a parameter of that ID.  A prototype that hasn't loaded itself yet has none.
    [[nodiscard]] bool isFeatureEnabled(const std::string& id) const;

    /// The vocabulary of the local agent.  It is the same object at every call, without a message if its file can't be
    /// read.
    [[nodiscard]] static boost::intrusive_ptr<QelVocPrototype> getVoc();

protected:
    /// Guards `m_message`.
    [[nodiscard]] QelLock& lock() const { return m_lock; }

private:
    QelMessage* m_message;
    mutable QelLock m_lock;
    std::string m_version;
};

/// Takes the children of the current element as a new vocabulary.  -1, and without a message, if one can't be copied.
struct QelVocPrototype::Reader {
    int operator()(const QelMessageIterator& cursor, QelVocPrototype& voc) const;
};

/// Appends the categories and parameters to the children of the current element, all of which then are in namespace
/// 292. -1 without a vocabulary, or if one of its elements can't be copied.
struct QelVocPrototype::Writer : QelWriterBaseT<Writer> {
    int operator()(QelMessageIterator& cursor, const QelVocPrototype& voc) const;
};

} // namespace Qel
