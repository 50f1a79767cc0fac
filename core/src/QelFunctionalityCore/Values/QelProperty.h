#pragma once

#include <compare>
#include <concepts>
#include <string>
#include <utility>

namespace Qel {

/// A value of a record.
template <class T> class QelProperty {
public:
    [[nodiscard]] const T& get() const { return m_value; }
    [[nodiscard]] T& get() { return m_value; }
    void set(const T& value) { m_value = value; }

    const T* operator->() const { return &m_value; }
    T* operator->() { return &m_value; }

    QelProperty& operator=(const T& value) {
        set(value);
        return *this;
    }

    [[nodiscard]] bool operator<(const std::string& other) const requires std::same_as<T, std::string> {
        return m_value < other;
    }

private:
    T m_value{};
};

/// A value that may be unspecified, which is the initial state.  An unspecified property keeps its last value, which
/// get() returns.
///
/// Unspecified properties compare equal regardless of their values, and less than specified ones.  Specified properties
/// compare by value.
template <class T> class QelOptionalProperty : public QelProperty<T> {
public:
    [[nodiscard]] bool isSpecified() const { return m_specified; }
    /// Leaves the value unchanged.
    void specify(bool specified) { m_specified = specified; }

    /// Stores the value and marks it specified.
    void set(const T& value) {
        QelProperty<T>::set(value);
        m_specified = true;
    }
    QelOptionalProperty& operator=(const T& value) {
        set(value);
        return *this;
    }

    /// Three-way comparison: -1, 0 or 1.
    [[nodiscard]] int compare(const QelOptionalProperty& other) const {
        if (!m_specified || !other.m_specified)
            return int(m_specified) - int(other.m_specified);
        return this->get() < other.get() ? -1 : other.get() < this->get() ? 1 : 0;
    }

    friend bool operator==(const QelOptionalProperty& a, const QelOptionalProperty& b) {
        return a.m_specified == b.m_specified && (!a.m_specified || a.get() == b.get());
    }
    friend std::weak_ordering operator<=>(const QelOptionalProperty& a, const QelOptionalProperty& b) {
        return a.compare(b) <=> 0;
    }

private:
    bool m_specified = false;
};

/// A value with the code of an operation to apply to it.
template <class T> class QelOperationProperty : public QelProperty<T> {
public:
    /// Sentinel: no operation.
    static constexpr int noOperation = -1;

    using QelProperty<T>::operator=;

    [[nodiscard]] int getOperation() const { return m_operation; }
    void setOperation(int operation) { m_operation = operation; }

private:
    int m_operation = noOperation;
};

/// A property with a name.
template <class T, template <class> class Base> class QelNamedProperty : public Base<T> {
public:
    explicit QelNamedProperty(std::string name = std::string()) : m_name(std::move(name)) {}

    using Base<T>::operator=;

    [[nodiscard]] const std::string& getName() const { return m_name; }
    void setName(const std::string& name) { m_name = name; }

private:
    std::string m_name;
};

} // namespace Qel
