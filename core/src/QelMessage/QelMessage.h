#pragma once

#include <string>
#include <vector>

#include <boost/intrusive_ptr.hpp>

#include "QelCore/QelRefCounter.h"

namespace Qel {

class QelMessageIterator;
class QelMsgFactory;

/// A message: a tree of elements below a root "/", and an envelope.  It is destroyed by its own operation and never by
/// `delete`; see auto_destroy.  It belongs to one thread at a time.
class QelMessage {
public:
    /// Result of a parse for which the memory doesn't suffice.  Nothing has changed.
    static constexpr int outOfMemory = -3;

    QelMessage(const QelMessage&) = delete;
    QelMessage& operator=(const QelMessage&) = delete;

    /// Makes a message fresh from QelMsgFactory::createNew() usable: an empty tree.  The argument is 0.
    virtual int create(int) = 0;
    /// Frees the message with its tree.  Cursors on it must not be used afterwards.
    virtual void destroy() = 0;
    /// With a null `buf` stores in `*len` the size of the subtree at the cursor in binary form and returns -2; with a
    /// buffer of at least that size writes it, stores its length and returns 0.
    virtual int measureOrFlatten(char* buf, int* len, const QelMessageIterator* cursor) const = 0;
    /// The whole message as text in malloc memory that the caller frees; null on failure.  The arguments are for
    /// format, encoding and protocol version; there is one text form, so they have no effect.
    [[nodiscard]] virtual char* toTextEx(int format, const std::string& encoding, int version) const = 0;
    /// Writes the whole message as text, as QelMessageFile::replace() does; QelFileLock guards a read-modify-write.
    virtual int saveToFile(const std::string& path) const = 0;
    /// Replaces tree and envelope by what the text holds; on failure nothing changes and setErrorMessage tells what is
    /// wrong and where.
    virtual int fromTextEx(const char* text, int version) = 0;
    /// The same with the content of a file.
    virtual int loadFromFile(const std::string& path) = 0;
    /// A new cursor at the root, the caller's to delete.
    [[nodiscard]] virtual QelMessageIterator* rootIterator() = 0;

    /// The envelope.  Gets answer nonzero when the field is unset.
    virtual int getTime(long* time) const = 0;
    virtual int getRequestId(std::string& id) const = 0;
    /// The sending agent's identifier, a GUID in text form; empty when unset.
    [[nodiscard]] virtual std::string getSenderEID() const = 0;
    virtual int addSubscription(const char* name) = 0;
    virtual int getSession(std::string& session) const = 0;

    virtual int getOrigin(std::string& origin) const = 0;
    /// Subscription names in the order they were added.
    [[nodiscard]] virtual const std::vector<std::string>& getSubscriptions() const = 0;
    virtual void setTime(long time) = 0;
    /// An empty text unsets the field.
    virtual void setRequestId(const std::string& id) = 0;
    virtual void setSenderEID(const std::string& eid) = 0;
    virtual void setSession(const std::string& session) = 0;
    virtual void setOrigin(const std::string& origin) = 0;

    /// A new message with a deep copy of the tree, and of the envelope if `withEnvelope`.
    [[nodiscard]] virtual QelMessage* copy(bool withEnvelope) const = 0;

    /// The whole message, envelope included, in binary form, and the reverse (which changes nothing on failure).
    virtual int toBinary(std::string& bytes) const = 0;
    virtual int fromBinary(const char* buf, int len) = 0;

    /// The process-wide factory.
    [[nodiscard]] static boost::intrusive_ptr<QelMsgFactory> getFactory();

protected:
    QelMessage() = default;
    virtual ~QelMessage() = default;
};

/// Makes messages.
class QelMsgFactory : public QelRefCounter {
public:
    /// An empty message, on which create(0) is to be called; never null.
    [[nodiscard]] virtual QelMessage* createNew() = 0;
    /// A message from a buffer that measureOrFlatten filled; null if the buffer is malformed.  The element stands below
    /// the root, unless the root itself had been flattened.
    [[nodiscard]] virtual QelMessage* createNew(const char* buf, int len) = 0;
};

/// Destroys an object through its own operation; null is allowed.
template <class T> void ifDestroy(T* object) {
    if (object)
        object->destroy();
}

/// Owner of an object that is destroyed through its own operation.
template <class T> class auto_destroy {
public:
    explicit auto_destroy(T* object = nullptr) noexcept : m_object(object) {}
    auto_destroy(const auto_destroy&) = delete;
    auto_destroy& operator=(const auto_destroy&) = delete;
    ~auto_destroy() { ifDestroy(m_object); }

    [[nodiscard]] T* get() const noexcept { return m_object; }
    /// Gives up the object.
    [[nodiscard]] T* release() noexcept {
        T* const object = m_object;
        m_object = nullptr;
        return object;
    }
    T& operator*() const noexcept { return *m_object; }
    T* operator->() const noexcept { return m_object; }

private:
    T* m_object;
};

} // namespace Qel
