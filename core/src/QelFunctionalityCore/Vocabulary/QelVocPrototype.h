#pragma once

#include <set>
#include <string>

#include <boost/intrusive_ptr.hpp>

#include "QelCommon/Export.h"
#include "QelCore/QelLock.h"
#include "QelCore/QelRefCounter.h"
#include "QelFunctionalityCore/Vocabulary/QelVocIterator.h"
#include "QelMessage/QelMessageIterator.h"

namespace Qel {

/// A single vocabulary in a message of its own (see VocabularyElements.h).  May have no message yet.
///
/// Operations return 0 on success and -1 on failure, or a new iterator owned by the caller, null on failure.  An
/// iterator must not outlive its message.
///
/// Thread safety: any thread may replace or save the message and create iterators.  The tree itself is not protected:
/// iterators access it without a lock.
class QEL_EXPORT QelVocPrototype : public virtual QelRefCounter {
public:
    using Categories = QelVocIterator::Categories;

    struct Reader;
    struct Writer;
    using reader_type = Reader;
    using writer_type = Writer;

    /// Takes ownership of the message.
    explicit QelVocPrototype(QelMessage* message = nullptr) : m_message(message) {}
    ~QelVocPrototype() override;

    /// Destroys the current message and takes ownership of the new one, which may be null.
    void reset(QelMessage* message);
    /// The message, owned by the prototype; null if there is none.
    [[nodiscard]] QelMessage* getMessage() const { return m_message; }

    [[nodiscard]] int saveToFile(const std::string& path) const;
    /// On failure the vocabulary is unchanged.
    [[nodiscard]] int readFromFile(const std::string& path);

    /// Null if there is no message.
    [[nodiscard]] QelVocIterator* newIterator() const;
    /// newIterator(); a derived class that can load its message does so first if there is none.
    [[nodiscard]] virtual QelVocIterator* newIteratorWithInit() { return newIterator(); }

    // The non-const overloads load the vocabulary first if the class supports it.

    [[nodiscard]] QelVocIterator* read() { return newIteratorWithInit(); }
    [[nodiscard]] QelVocIterator* read() const { return newIterator(); }
    /// An iterator restricted to elements that belong to every given category.
    [[nodiscard]] QelVocIterator* readCategory(const Categories& categories);
    [[nodiscard]] QelVocIterator* readCategory(const Categories& categories) const;
    [[nodiscard]] QelVocIterator* readCategory(const std::string& category);
    [[nodiscard]] QelVocIterator* readCategory(const std::string& category) const;
    /// An iterator at the parameter with that ID; null if there is none.
    [[nodiscard]] QelVocIterator* readParameter(const std::string& id);
    [[nodiscard]] QelVocIterator* readParameter(const std::string& id) const;

    /// Implement readCategory() and readParameter() for a given iterator, and take ownership of it.  Null if `iterator`
    /// is null.
    [[nodiscard]] QelVocIterator* processCategory(QelVocIterator* iterator, const Categories& categories) const;
    [[nodiscard]] QelVocIterator* processParameter(QelVocIterator* iterator, const std::string& id) const;

    /// The version; empty if there is none.  Cached once found, even if the message is replaced later.
    const std::string& readVersion();
    /// Whether there is a parameter with that ID.  Does not load the vocabulary; false if there is no message.
    [[nodiscard]] bool isFeatureEnabled(const std::string& id) const;

    /// The vocabulary of the local agent, a singleton.  It has no message if its file cannot be read.
    [[nodiscard]] static boost::intrusive_ptr<QelVocPrototype> getVoc();

protected:
    /// Protects `m_message`.
    [[nodiscard]] QelLock& lock() const { return m_lock; }

private:
    QelMessage* m_message;
    mutable QelLock m_lock;
    std::string m_version;
};

/// Replaces the vocabulary with a copy of the children of the current element.  If a child cannot be copied, returns -1
/// and leaves no message.
struct QEL_EXPORT QelVocPrototype::Reader {
    int operator()(const QelMessageIterator& cursor, QelVocPrototype& voc) const;
};

/// Appends the categories and parameters to the current element, and sets the namespace of all its children to 292.
/// -1 if there is no vocabulary or an element cannot be copied.
struct QEL_EXPORT QelVocPrototype::Writer : QelWriterBaseT<Writer> {
    int operator()(QelMessageIterator& cursor, const QelVocPrototype& voc) const;
};

} // namespace Qel
