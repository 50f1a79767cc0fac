#pragma once

namespace Qel {

namespace Internal {

/// True if both arguments are the same function. Their addresses are not compared, because with -fsanitize=null g++
/// does not treat that comparison as a constant expression.
template <auto f, auto g> inline constexpr bool isSameFunction = false;
template <auto f> inline constexpr bool isSameFunction<f, f> = true;

} // namespace Internal

/// Static functions that declare the namespace and type of the element that a writer fills, with defaults: no
/// namespace, and type 50, which is less than the first complex type and therefore sets no type.
struct QelWriterBase {
    static constexpr int getNSID() { return 0; }
    static constexpr int getTypeID() { return 50; }
    static constexpr const char* getStrNSID() { return ""; }
    static constexpr const char* getStrTypeID() { return ""; }
};

/// Forwards the four static functions to `Self`, so that a template that wraps the writer sees the writer's own values.
/// Those that `Self` does not declare keep their defaults.
///
/// A record's writer derives from QelWriterBaseT of itself and hides the functions that it needs to change:
///
///     struct Writer : QelWriterBaseT<Writer> {
///         static constexpr int getNSID() { return 292; }
///         static constexpr int getTypeID() { return 117; }
///         int operator()(QelMessageIterator& cursor, const QelOS& os) const;
///     };
template <class Self> struct QelWriterBaseT : QelWriterBase {
    static constexpr int getNSID() {
        if constexpr (Internal::isSameFunction<&Self::getNSID, &QelWriterBaseT::getNSID>)
            return QelWriterBase::getNSID();
        else
            return Self::getNSID();
    }
    static constexpr int getTypeID() {
        if constexpr (Internal::isSameFunction<&Self::getTypeID, &QelWriterBaseT::getTypeID>)
            return QelWriterBase::getTypeID();
        else
            return Self::getTypeID();
    }
    static constexpr const char* getStrNSID() {
        if constexpr (Internal::isSameFunction<&Self::getStrNSID, &QelWriterBaseT::getStrNSID>)
            return QelWriterBase::getStrNSID();
        else
            return Self::getStrNSID();
    }
    static constexpr const char* getStrTypeID() {
        if constexpr (Internal::isSameFunction<&Self::getStrTypeID, &QelWriterBaseT::getStrTypeID>)
            return QelWriterBase::getStrTypeID();
        else
            return Self::getStrTypeID();
    }
};

} // namespace Qel
