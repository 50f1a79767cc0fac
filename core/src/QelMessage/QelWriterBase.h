#pragma once

namespace Qel {

namespace Internal {

/// True if both arguments are one function.  Their addresses aren't compared, since g++ doesn't take that for a
/// constant where it checks pointers (-fsanitize=null).
template <auto f, auto g> inline constexpr bool isSameFunction = false;
template <auto f> inline constexpr bool isSameFunction<f, f> = true;

} // namespace Internal

/// The statics that tell how a writer marks the element it writes into, and their defaults: no namespace, and type 50,
/// which lies below the first complex type and so marks nothing.
struct QelWriterBase {
    static constexpr int getNSID() { return 0; }
    static constexpr int getTypeID() { return 50; }
    static constexpr const char* getStrNSID() { return ""; }
    static constexpr const char* getStrTypeID() { return ""; }
};

/// Forwards the four statics to `Self`, so that a template that knows only the outer writer reaches the writer's own
/// values.  What `Self` doesn't declare keeps the default.
///
/// A record's writer derives from QelWriterBaseT of itself and hides what it wants to tell:
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
