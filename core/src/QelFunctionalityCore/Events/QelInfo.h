#pragma once

#include <functional>
#include <map>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>

#include "QelMessage/QelRecord.h"

namespace Qel {

/// A message text that is kept apart from its values until someone wants to read it: a format with `%name%`
/// placeholders, and named parameters, each of them an info again.  So a client can show, or translate, a text long
/// after the agent made it.
///
/// Text from an info.  The key of a placeholder is what stands between two `%`, be it nothing.  It is replaced by the
/// texts of all parameters of that name, in their order and joined by commas, and vanishes if there is none.  A `%`
/// that no other one follows, or that is the last character, stays.  Each parameter's text is made in the same way from
/// its own parameters.
struct QelInfo {
    /// By name; one name can occur many times.
    using Parameters = std::multimap<std::string, QelInfo, std::less<>>;

    /// The format characters and parameters that one text may take to make, as many as a message may have bytes.  An
    /// info that names its parameters once each stays below it whatever it is; one that names them over and over, level
    /// by level, could ask for more text than there is memory, and is cut off there.
    static constexpr std::size_t mostWork = std::size_t{64} << 20;

    // What serializeToString() and deserializeFromString() answer.
    static constexpr int badText = -5;
    static constexpr int nullArgument = -6;
    static constexpr int unusableMessage = -11;
    static constexpr int outOfResources = -13;

    std::string name; ///< under which a parent's placeholders find it
    std::string text; ///< the format
    bool translatable = true;
    Parameters parameters;

    QelInfo() = default;
    /// The text comes first.
    QelInfo(std::string itsText, std::string itsName, bool isTranslatable)
        : name(std::move(itsName)), text(std::move(itsText)), translatable(isTranslatable) {}

    [[nodiscard]] bool operator==(const QelInfo& other) const;

    [[nodiscard]] bool empty() const { return text.empty(); }
    void swap(QelInfo& other) noexcept;

    /// Adds a parameter behind those of its name.
    QelInfo& addParameter(QelInfo parameter);
    /// Puts a parameter in place of all those of its name.
    QelInfo& setParameter(QelInfo parameter);
    /// The first parameter of this name, or null.
    [[nodiscard]] const QelInfo* getParameter(std::string_view parameterName) const;

    /// The text of what a path of parameter names leads to.  Leading slashes don't count, and a path of nothing else
    /// gives the info's own text; all segments but the last take the first parameter of their name, the last one all of
    /// them, joined by commas.  Empty if a parameter is missing.
    [[nodiscard]] std::string getParameterByPath(std::string_view path) const;

    [[nodiscard]] std::string toString() const;
    /// The same in another language.  A `Translator` is made for each format that is translatable and called with it;
    /// it answers, as anything that converts to a string_view, the format to take in its place.
    template <class Translator> [[nodiscard]] std::string toStringWithTranslator() const;
    /// With another format than its own, which is taken as it is.
    template <class Translator> [[nodiscard]] std::string toStringWithTranslator(std::string_view format) const;

    /// The info as the text of a message that holds it alone.  `out` changes on success only; otherwise the result is
    /// `unusableMessage` or `outOfResources`.
    [[nodiscard]] int serializeToString(std::string& out) const;
    /// The reverse.  On failure the info stays as it was, and the result is `nullArgument`, `badText`,
    /// `unusableMessage` or `outOfResources`.
    [[nodiscard]] int deserializeFromString(const char* message);

    using Reader = QelRecordReader<QelInfo>;
    using Writer = QelRecordWriter<QelInfo>;
    using reader_type = Reader;
    using writer_type = Writer;

private:
    /// Tells the format of an info, which lies in the info or in `storage`.
    using FormatOf = std::string_view (*)(const QelInfo& info, std::string& storage);

    [[nodiscard]] static std::string substitute(const QelInfo& info, std::string_view format, FormatOf formatOf);
    template <class Translator> static std::string_view translatedFormat(const QelInfo& info, std::string& storage);
};

/// Translates nothing.
struct QelNullTranslator {
    const std::string& operator()(const std::string& format) const { return format; }
};

template <class Translator> std::string_view QelInfo::translatedFormat(const QelInfo& info, std::string& storage) {
    if (!info.translatable)
        return info.text;
    if constexpr (std::is_reference_v<decltype(Translator()(info.text))>)
        return Translator()(info.text);
    storage = Translator()(info.text);
    return storage;
}

template <class Translator> std::string QelInfo::toStringWithTranslator() const {
    std::string storage;
    return toStringWithTranslator<Translator>(translatedFormat<Translator>(*this, storage));
}

template <class Translator> std::string QelInfo::toStringWithTranslator(std::string_view format) const {
    return substitute(*this, format, &translatedFormat<Translator>);
}

} // namespace Qel
