#pragma once

#include "QelMessage/QelBinaryIterator.h"

namespace Qel::TestSupport {

/// A cursor of another implementation of QelMessageIterator. It reads and writes, but QelBinaryIterator cannot copy
/// elements from it.
class ForeignCursor : public QelMessageIterator {
public:
    /// Starts at the element of `at`.
    explicit ForeignCursor(const QelMessageIterator& at) : m_cursor(dynamic_cast<const QelBinaryIterator*>(&at)) {}

    [[nodiscard]] QelMessage* getMessage() const override { return m_cursor.getMessage(); }
    [[nodiscard]] QelMessageIterator* newIterator(bool copy) const override { return m_cursor.newIterator(copy); }
    int seekRoot() const override { return m_cursor.seekRoot(); }
    int seekUp() const override { return m_cursor.seekUp(); }
    int seek(const std::string& name) const override { return m_cursor.seek(name); }
    int seekPresence(const std::string& name) const override { return m_cursor.seekPresence(name); }
    int setNamespace(const std::string& ns) override { return m_cursor.setNamespace(ns); }
    int saveNamespace(const std::string& ns) override { return m_cursor.saveNamespace(ns); }
    int setComplexType(const std::string& ns, const std::string& type) override {
        return m_cursor.setComplexType(ns, type);
    }
    int newChild(const std::string& name) override { return m_cursor.newChild(name); }
    int putChild(const std::string& name) override { return m_cursor.putChild(name); }
    int firstChild(const std::string& name) const override { return m_cursor.firstChild(name); }
    int nextSibling() const override { return m_cursor.nextSibling(); }
    int nextSibling(const std::string& name) const override { return m_cursor.nextSibling(name); }
    [[nodiscard]] std::string curName() const override { return m_cursor.curName(); }
    [[nodiscard]] std::string curType() const override { return m_cursor.curType(); }
    [[nodiscard]] int curNamespaceID() const override { return m_cursor.curNamespaceID(); }
    int firstChild() const override { return m_cursor.firstChild(); }
    int serializeFromChild(char** buf, int* len) const override { return m_cursor.serializeFromChild(buf, len); }
    int deserializeToChild(const char* buf, int len) override { return m_cursor.deserializeToChild(buf, len); }
    int copyToChild(const QelMessageIterator* from) override { return m_cursor.copyToChild(from); }
    [[nodiscard]] char* toTextFromChild() const override { return m_cursor.toTextFromChild(); }
    int fromTextToChild(const char* text) override { return m_cursor.fromTextToChild(text); }
    int deleteFromChild() override { return m_cursor.deleteFromChild(); }
    int deleteChild(int id) override { return m_cursor.deleteChild(id); }
    [[nodiscard]] char* toText() const override { return m_cursor.toText(); }
    int serialize(char** buf, int* len, int format) const override { return m_cursor.serialize(buf, len, format); }
    int getValueBase64(std::string& value, const std::string& name) const override {
        return m_cursor.getValueBase64(value, name);
    }
    int getValue(std::string& value, const std::string& name) const override { return m_cursor.getValue(value, name); }
    int getValue(int& value, const std::string& name) const override { return m_cursor.getValue(value, name); }
    int getValue(bool& value, const std::string& name) const override { return m_cursor.getValue(value, name); }
    int getValueLongLong(long long& value, const std::string& name) const override {
        return m_cursor.getValueLongLong(value, name);
    }
    int getValueDouble(double& value, const std::string& name) const override {
        return m_cursor.getValueDouble(value, name);
    }
    int getValueTime(long& value, const std::string& name) const override { return m_cursor.getValueTime(value, name); }
    int getValueTimeZone(long& value, int& zone, const std::string& name) const override {
        return m_cursor.getValueTimeZone(value, zone, name);
    }
    int putValueBase64(const std::string& value, const std::string& name) override {
        return m_cursor.putValueBase64(value, name);
    }
    int putValue(const std::string& value, const std::string& name) override { return m_cursor.putValue(value, name); }
    int putValueLongLong(long long value, const std::string& name) override {
        return m_cursor.putValueLongLong(value, name);
    }
    int putValueDouble(double value, const std::string& name) override { return m_cursor.putValueDouble(value, name); }
    int putValue(int value, const std::string& name) override { return m_cursor.putValue(value, name); }
    int putValueTime(long value, const std::string& name) override { return m_cursor.putValueTime(value, name); }
    int putValueTimeZone(long value, int zone, const std::string& name) override {
        return m_cursor.putValueTimeZone(value, zone, name);
    }
    int seek(int id) const override { return m_cursor.seek(id); }
    int newChild(int id) override { return m_cursor.newChild(id); }
    int setNamespace(int ns) override { return m_cursor.setNamespace(ns); }
    int saveNamespace(int ns) override { return m_cursor.saveNamespace(ns); }
    int setComplexType(int ns, int type) override { return m_cursor.setComplexType(ns, type); }
    int firstChild(int id) const override { return m_cursor.firstChild(id); }
    int nextSibling(int id) const override { return m_cursor.nextSibling(id); }
    int seekPresence(int id) const override { return m_cursor.seekPresence(id); }
    int putChild(int id) override { return m_cursor.putChild(id); }
    int getValueBase64(std::string& value, int id) const override { return m_cursor.getValueBase64(value, id); }
    int getValue(std::string& value, int id) const override { return m_cursor.getValue(value, id); }
    int getValue(int& value, int id) const override { return m_cursor.getValue(value, id); }
    int getValue(bool& value, int id) const override { return m_cursor.getValue(value, id); }
    int getValueLongLong(long long& value, int id) const override { return m_cursor.getValueLongLong(value, id); }
    int getValueDouble(double& value, int id) const override { return m_cursor.getValueDouble(value, id); }
    int getValueTime(long& value, int id) const override { return m_cursor.getValueTime(value, id); }
    int getValueTimeZone(long& value, int& zone, int id) const override {
        return m_cursor.getValueTimeZone(value, zone, id);
    }
    int putValueBase64(const char* data, int len, int id) override { return m_cursor.putValueBase64(data, len, id); }
    int putValue(const char* data, int len, int id) override { return m_cursor.putValue(data, len, id); }
    int putValueBase64(const std::string& value, int id) override { return m_cursor.putValueBase64(value, id); }
    int putValue(const std::string& value, int id) override { return m_cursor.putValue(value, id); }
    int putValueLongLong(long long value, int id) override { return m_cursor.putValueLongLong(value, id); }
    int putValueDouble(double value, int id) override { return m_cursor.putValueDouble(value, id); }
    int putValue(int value, int id) override { return m_cursor.putValue(value, id); }
    int putValueTime(long value, int id) override { return m_cursor.putValueTime(value, id); }
    int putValueTimeZone(long value, int zone, int id) override { return m_cursor.putValueTimeZone(value, zone, id); }
    void invalidate() const override { return m_cursor.invalidate(); }
    [[nodiscard]] int curID() const override { return m_cursor.curID(); }
    int getAttr(int& value, int id) const override { return m_cursor.getAttr(value, id); }
    int getAttr(std::string& value, int id) const override { return m_cursor.getAttr(value, id); }
    int getAttrTime(long& value, int id) const override { return m_cursor.getAttrTime(value, id); }
    int putAttr(const std::string& value, int id) override { return m_cursor.putAttr(value, id); }
    int putAttr(int value, int id) override { return m_cursor.putAttr(value, id); }
    int putAttrTime(long value, int id) override { return m_cursor.putAttrTime(value, id); }
    int getValueXML(std::string& markup, int id) const override { return m_cursor.getValueXML(markup, id); }
    int putValueXML(const std::string& markup, int id) override { return m_cursor.putValueXML(markup, id); }

private:
    QelBinaryIterator m_cursor;
};

} // namespace Qel::TestSupport
