#pragma once

#include <string>
#include <vector>

#include <boost/intrusive_ptr.hpp>

#include "QelCommon/Export.h"
#include "QelCore/QelRefCounter.h"

namespace Qel {

class QelMessageIterator;
class QelMsgFactory;

/// A message: a tree of elements below the root "/", and an envelope. Destroy it with destroy(), never with `delete`;
/// see auto_destroy. It must be used by one thread at a time.
class QEL_EXPORT QelMessage {
public:
    /// Result of a parse that ran out of memory. The message is unchanged.
    static constexpr int outOfMemory = -3;

    QelMessage(const QelMessage&) = delete;
    QelMessage& operator=(const QelMessage&) = delete;

    /// Initialises a message returned by QelMsgFactory::createNew() with an empty tree. The argument must be 0.
    virtual int create(int) = 0;
    /// Frees the message and its tree. Cursors on it become invalid.
    virtual void destroy() = 0;
    /// If `buf` is null, stores the size in bytes of the binary form of the subtree at the cursor in `*len` and returns
    /// -2. Otherwise writes the binary form to `buf`, which must have at least that size, stores its length in `*len`
    /// and returns 0. Returns -1 on failure.
    virtual int measureOrFlatten(char* buf, int* len, const QelMessageIterator* cursor) const = 0;
    /// The whole message in text form, allocated with malloc and owned by the caller; null on failure. The arguments
    /// are ignored, since there is only one text form.
    [[nodiscard]] virtual char* toTextEx(int format, const std::string& encoding, int version) const = 0;
    /// Writes the whole message in text form with QelMessageFile::replace(). Guard a read-modify-write with
    /// QelFileLock.
    virtual int saveToFile(const std::string& path) const = 0;
    /// Replaces tree and envelope with the content of `text`. On failure the message is unchanged, and
    /// setErrorMessage() reports the reason and the location.
    virtual int fromTextEx(const char* text, int version) = 0;
    /// Like fromTextEx(), with the content of a file.
    virtual int loadFromFile(const std::string& path) = 0;
    /// A new cursor at the root. The caller deletes it.
    [[nodiscard]] virtual QelMessageIterator* rootIterator() = 0;

    /// The envelope. Gets return nonzero if the field is unset.
    virtual int getTime(long* time) const = 0;
    virtual int getRequestId(std::string& id) const = 0;
    /// The sending agent's identifier, a GUID in its string form; empty if unset.
    [[nodiscard]] virtual std::string getSenderEID() const = 0;
    virtual int addSubscription(const char* name) = 0;
    virtual int getSession(std::string& session) const = 0;

    virtual int getOrigin(std::string& origin) const = 0;
    /// Subscription names in the order in which they were added.
    [[nodiscard]] virtual const std::vector<std::string>& getSubscriptions() const = 0;
    virtual void setTime(long time) = 0;
    /// An empty string unsets the field.
    virtual void setRequestId(const std::string& id) = 0;
    virtual void setSenderEID(const std::string& eid) = 0;
    virtual void setSession(const std::string& session) = 0;
    virtual void setOrigin(const std::string& origin) = 0;

    /// Returns a new message with a deep copy of the tree and, if `withEnvelope` is set, of the envelope.
    [[nodiscard]] virtual QelMessage* copy(bool withEnvelope) const = 0;

    /// Encodes or decodes the whole message, including the envelope, in binary form. A failed fromBinary() leaves the
    /// message unchanged.
    virtual int toBinary(std::string& bytes) const = 0;
    virtual int fromBinary(const char* buf, int len) = 0;

    /// The process-wide factory.
    [[nodiscard]] static boost::intrusive_ptr<QelMsgFactory> getFactory();

protected:
    QelMessage() = default;
    virtual ~QelMessage() = default;
};

/// Creates messages.
class QEL_EXPORT QelMsgFactory : public QelRefCounter {
public:
    /// Returns a message that must be initialised with create(0); never null.
    [[nodiscard]] virtual QelMessage* createNew() = 0;
    /// Returns a message decoded from a buffer that measureOrFlatten() filled; null if the buffer is malformed. The
    /// encoded element becomes a child of the root, unless it was itself the root.
    [[nodiscard]] virtual QelMessage* createNew(const char* buf, int len) = 0;
};

/// Calls destroy() on an object; null is allowed.
template <class T> void ifDestroy(T* object) {
    if (object)
        object->destroy();
}

/// Owns an object and calls its destroy().
template <class T> class auto_destroy {
public:
    explicit auto_destroy(T* object = nullptr) noexcept : m_object(object) {}
    auto_destroy(const auto_destroy&) = delete;
    auto_destroy& operator=(const auto_destroy&) = delete;
    ~auto_destroy() { ifDestroy(m_object); }

    [[nodiscard]] T* get() const noexcept { return m_object; }
    /// Returns the object without destroying it.
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
