// Values and attributes of the cursor: conversion to and from their string forms, and lookup of their elements.

#include "QelCommon/Strings.h"
#include "QelMessage/QelBase64.h"
#include "QelMessage/QelBinaryIterator.h"
#include "QelMessage/QelMessageTree.h"
#include "QelMessage/QelValueText.h"

namespace Qel {

namespace {

constexpr auto none = QelMessageTree::none;

bool toString(std::string_view text, std::string& value) {
    value = text;
    return true;
}

} // namespace

template <class Key, class Parse> int QelBinaryIterator::get(const Key& key, Parse&& parse) const {
    Index node = none;
    return find(key, node) && parse(tree().node(node).value.view()) ? 0 : -1;
}

int QelBinaryIterator::put(std::string_view value, int id) {
    if (id < 0)
        return -1;
    const Index node = isIdEmpty(id) ? current() : append(id);
    tree().setValue(node, value);
    return 0;
}

int QelBinaryIterator::put(std::string_view value, const std::string& name) {
    const Index node = append(name);
    tree().setValue(node, value);
    return 0;
}

// The overloads with a name and with an ID differ only in how they find their element.

int QelBinaryIterator::getValueBase64(std::string& value, const std::string& name) const {
    return get(name, [&](std::string_view text) { return QelBase64::decode(text, value); });
}
int QelBinaryIterator::getValueBase64(std::string& value, int id) const {
    return get(id, [&](std::string_view text) { return QelBase64::decode(text, value); });
}

int QelBinaryIterator::getValue(std::string& value, const std::string& name) const {
    return get(name, [&](std::string_view text) { return toString(text, value); });
}
int QelBinaryIterator::getValue(std::string& value, int id) const {
    return get(id, [&](std::string_view text) { return toString(text, value); });
}

int QelBinaryIterator::getValue(int& value, const std::string& name) const {
    return get(name, [&](std::string_view text) { return parseNumber(text, value); });
}
int QelBinaryIterator::getValue(int& value, int id) const {
    return get(id, [&](std::string_view text) { return parseNumber(text, value); });
}

int QelBinaryIterator::getValue(bool& value, const std::string& name) const {
    return get(name, [&](std::string_view text) { return QelValueText::toBool(text, value); });
}
int QelBinaryIterator::getValue(bool& value, int id) const {
    return get(id, [&](std::string_view text) { return QelValueText::toBool(text, value); });
}

int QelBinaryIterator::getValueLongLong(long long& value, const std::string& name) const {
    return get(name, [&](std::string_view text) { return parseNumber(text, value); });
}
int QelBinaryIterator::getValueLongLong(long long& value, int id) const {
    return get(id, [&](std::string_view text) { return parseNumber(text, value); });
}

int QelBinaryIterator::getValueDouble(double& value, const std::string& name) const {
    return get(name, [&](std::string_view text) { return parseNumber(text, value); });
}
int QelBinaryIterator::getValueDouble(double& value, int id) const {
    return get(id, [&](std::string_view text) { return parseNumber(text, value); });
}

int QelBinaryIterator::getValueTime(long& value, const std::string& name) const {
    return get(name, [&](std::string_view text) { return QelValueText::toTime(text, value); });
}
int QelBinaryIterator::getValueTime(long& value, int id) const {
    return get(id, [&](std::string_view text) { return QelValueText::toTime(text, value); });
}

int QelBinaryIterator::getValueTimeZone(long& value, int& zone, const std::string& name) const {
    return get(name, [&](std::string_view text) { return QelValueText::toTimeZone(text, value, zone); });
}
int QelBinaryIterator::getValueTimeZone(long& value, int& zone, int id) const {
    return get(id, [&](std::string_view text) { return QelValueText::toTimeZone(text, value, zone); });
}

int QelBinaryIterator::putValueBase64(const std::string& value, const std::string& name) {
    return put(QelBase64::encode(value), name);
}
int QelBinaryIterator::putValueBase64(const std::string& value, int id) {
    return put(QelBase64::encode(value), id);
}
int QelBinaryIterator::putValueBase64(const char* data, int len, int id) {
    if (len < 0 || (!data && len != 0))
        return -1;
    return put(QelBase64::encode({data, static_cast<std::size_t>(len)}), id);
}

int QelBinaryIterator::putValue(const std::string& value, const std::string& name) {
    return put(value, name);
}
int QelBinaryIterator::putValue(const std::string& value, int id) {
    return put(value, id);
}
int QelBinaryIterator::putValue(const char* data, int len, int id) {
    if (len < 0 || (!data && len != 0))
        return -1;
    return put({data, static_cast<std::size_t>(len)}, id);
}

int QelBinaryIterator::putValue(int value, const std::string& name) {
    return put(QelValueText::ofInteger(value).view(), name);
}
int QelBinaryIterator::putValue(int value, int id) {
    return put(QelValueText::ofInteger(value).view(), id);
}

int QelBinaryIterator::putValueLongLong(long long value, const std::string& name) {
    return put(QelValueText::ofInteger(value).view(), name);
}
int QelBinaryIterator::putValueLongLong(long long value, int id) {
    return put(QelValueText::ofInteger(value).view(), id);
}

int QelBinaryIterator::putValueDouble(double value, const std::string& name) {
    return put(QelValueText::ofDouble(value).view(), name);
}
int QelBinaryIterator::putValueDouble(double value, int id) {
    return put(QelValueText::ofDouble(value).view(), id);
}

int QelBinaryIterator::putValueTime(long value, const std::string& name) {
    return put(QelValueText::ofTime(value).view(), name);
}
int QelBinaryIterator::putValueTime(long value, int id) {
    return put(QelValueText::ofTime(value).view(), id);
}

int QelBinaryIterator::putValueTimeZone(long value, int zone, const std::string& name) {
    return put(QelValueText::ofTimeZone(value, zone).view(), name);
}
int QelBinaryIterator::putValueTimeZone(long value, int zone, int id) {
    return put(QelValueText::ofTimeZone(value, zone).view(), id);
}

// ----------------------------------------------------------------------------------------------------- attributes

template <class Parse> int QelBinaryIterator::getAttribute(int id, Parse&& parse) const {
    const Index node = current();
    const Index attribute = id > 0 ? tree().findAttribute(node, id) : none;
    return attribute != none && parse(tree().attribute(attribute).value.view()) ? 0 : -1;
}

int QelBinaryIterator::putAttribute(std::string_view value, int id) {
    const Index node = current();
    return id > 0 && tree().setAttribute(node, id, value) ? 0 : -1;
}

int QelBinaryIterator::getAttr(int& value, int id) const {
    return getAttribute(id, [&](std::string_view text) { return parseNumber(text, value); });
}

int QelBinaryIterator::getAttr(std::string& value, int id) const {
    return getAttribute(id, [&](std::string_view text) { return toString(text, value); });
}

int QelBinaryIterator::getAttrTime(long& value, int id) const {
    return getAttribute(id, [&](std::string_view text) { return QelValueText::toTime(text, value); });
}

int QelBinaryIterator::putAttr(const std::string& value, int id) {
    return putAttribute(value, id);
}

int QelBinaryIterator::putAttr(int value, int id) {
    return putAttribute(QelValueText::ofInteger(value).view(), id);
}

int QelBinaryIterator::putAttrTime(long value, int id) {
    return putAttribute(QelValueText::ofTime(value).view(), id);
}

} // namespace Qel
