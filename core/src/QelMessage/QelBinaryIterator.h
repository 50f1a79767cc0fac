#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "QelCommon/Export.h"
#include "QelMessage/QelMessageIterator.h"

namespace Qel {

class QelBinary;
class QelMessageTree;

/// The cursor on a QelBinary.
///
/// A cursor becomes stale when its element is deleted through another cursor or the message is loaded again. Every
/// operation on a stale cursor, except seekRoot(), assignment and the destructor, ends the process, so it never
/// accesses an element that reuses the memory. A cursor at the root stays valid when the message is loaded again.
class QEL_EXPORT QelBinaryIterator : public QelMessageIterator {
public:
    /// Starts at the root.
    explicit QelBinaryIterator(QelBinary* message);
    /// Starts at the element of `other`. The saved namespace is not copied: each cursor has its own.
    explicit QelBinaryIterator(const QelBinaryIterator* other);
    /// Moves to the message and position of `other`.
    QelBinaryIterator& operator=(const QelBinaryIterator& other);

    [[nodiscard]] QelMessage* getMessage() const override;
    [[nodiscard]] QelMessageIterator* newIterator(bool copy) const override;

    int seekRoot() const override;
    int seekUp() const override;
    int seek(const std::string& name) const override;
    int seekPresence(const std::string& name) const override;
    int setNamespace(const std::string& ns) override;
    int saveNamespace(const std::string& ns) override;
    int setComplexType(const std::string& ns, const std::string& type) override;
    int newChild(const std::string& name) override;
    int putChild(const std::string& name) override;
    int firstChild(const std::string& name) const override;
    int nextSibling() const override;
    int nextSibling(const std::string& name) const override;
    [[nodiscard]] std::string curName() const override;
    [[nodiscard]] std::string curType() const override;
    [[nodiscard]] int curNamespaceID() const override;
    int firstChild() const override;
    int serializeFromChild(char** buf, int* len) const override;
    int deserializeToChild(const char* buf, int len) override;
    int copyToChild(const QelMessageIterator* from) override;
    [[nodiscard]] char* toTextFromChild() const override;
    int fromTextToChild(const char* text) override;
    int deleteFromChild() override;
    int deleteChild(int id) override;
    [[nodiscard]] char* toText() const override;
    int serialize(char** buf, int* len, int format) const override;

    int getValueBase64(std::string& value, const std::string& name) const override;
    int getValue(std::string& value, const std::string& name) const override;
    int getValue(int& value, const std::string& name) const override;
    int getValue(bool& value, const std::string& name) const override;
    int getValueLongLong(long long& value, const std::string& name) const override;
    int getValueDouble(double& value, const std::string& name) const override;
    int getValueTime(long& value, const std::string& name) const override;
    int getValueTimeZone(long& value, int& zone, const std::string& name) const override;
    int putValueBase64(const std::string& value, const std::string& name) override;
    int putValue(const std::string& value, const std::string& name) override;
    int putValueLongLong(long long value, const std::string& name) override;
    int putValueDouble(double value, const std::string& name) override;
    int putValue(int value, const std::string& name) override;
    int putValueTime(long value, const std::string& name) override;
    int putValueTimeZone(long value, int zone, const std::string& name) override;

    int seek(int id) const override;
    int newChild(int id) override;
    int setNamespace(int ns) override;
    int saveNamespace(int ns) override;
    int setComplexType(int ns, int type) override;
    int firstChild(int id) const override;
    int nextSibling(int id) const override;
    int seekPresence(int id) const override;
    int putChild(int id) override;

    int getValueBase64(std::string& value, int id) const override;
    int getValue(std::string& value, int id) const override;
    int getValue(int& value, int id) const override;
    int getValue(bool& value, int id) const override;
    int getValueLongLong(long long& value, int id) const override;
    int getValueDouble(double& value, int id) const override;
    int getValueTime(long& value, int id) const override;
    int getValueTimeZone(long& value, int& zone, int id) const override;

    int putValueBase64(const char* data, int len, int id) override;
    int putValue(const char* data, int len, int id) override;
    int putValueBase64(const std::string& value, int id) override;
    int putValue(const std::string& value, int id) override;
    int putValueLongLong(long long value, int id) override;
    int putValueDouble(double value, int id) override;
    int putValue(int value, int id) override;
    int putValueTime(long value, int id) override;
    int putValueTimeZone(long value, int zone, int id) override;

    void invalidate() const override;
    [[nodiscard]] int curID() const override;

    int getAttr(int& value, int id) const override;
    int getAttr(std::string& value, int id) const override;
    int getAttrTime(long& value, int id) const override;
    int putAttr(const std::string& value, int id) override;
    int putAttr(int value, int id) override;
    int putAttrTime(long value, int id) override;

    int getValueXML(std::string& markup, int id) const override;
    int putValueXML(const std::string& markup, int id) override;

    /// Like QelMessage::measureOrFlatten(), for the current element.
    int flatten(char* buf, int& len) const;

protected:
    /// Moves to the message and position of another cursor. Const, like all navigation, so that a derived cursor can
    /// iterate over several messages.
    void takePlaceOf(const QelBinaryIterator& other) const;
    /// Moves to the first child `element` whose first child `id` has the value `value`; -1 if there is none. Faster
    /// than a search with firstChild() and getValue(), since it copies no values and moves the cursor only once.
    int seekChildByValue(int element, int id, std::string_view value) const;

private:
    using Index = std::uint32_t;

    /// A namespace, identified by its ID, or by its name if `id` is 0. No namespace if both are unset.
    struct SavedNamespace {
        int id = 0;
        std::string name;
    };

    QelMessageTree& tree() const;
    Index current() const;
    int moveTo(Index node) const;
    int enter(Index child) const;

    Index child(int id) const;
    Index child(const std::string& name) const;
    bool find(int id, Index& node) const;
    bool find(const std::string& name, Index& node) const;
    Index append(int symbol);
    Index append(const std::string& name);
    int put(std::string_view value, int id);
    int put(std::string_view value, const std::string& name);
    int putAttribute(std::string_view value, int id);
    template <class Key, class Parse> int get(const Key& key, Parse&& parse) const;
    template <class Parse> int getAttribute(int id, Parse&& parse) const;

    mutable QelBinary* m_message; // null after invalidate()
    mutable Index m_node;
    mutable std::uint32_t m_generation;
    SavedNamespace m_savedNamespace;
};

} // namespace Qel
