#pragma once

#include <functional>
#include <map>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>

#include "QelCommon/Export.h"
#include "QelMessage/QelRecord.h"

namespace Qel {

/// A message text stored separately from its values: a format with `%name%` placeholders, and named parameters that are
/// infos themselves.  The text is expanded only when it is displayed, so that a client can show or translate it long
/// after the agent created it.
///
/// Expansion: a placeholder's key is the string between two `%`; it may be empty.  The placeholder is replaced by the
/// texts of all parameters with that name, in insertion order, separated by commas; without any it expands to nothing.
/// A `%` without a matching second one is copied unchanged.  The text of each parameter is expanded with its own
/// parameters.
struct QEL_EXPORT QelInfo : QelRecord<QelInfo> {
    /// Keyed by name; a name may occur more than once.
    using Parameters = std::multimap<std::string, QelInfo, std::less<>>;

    /// Budget of one expansion: format characters plus parameters, equal to the size limit of a message.  An info that
    /// references each parameter once never exceeds it.  One that repeats its parameters at every level grows
    /// exponentially; its text is truncated at this limit.
    static constexpr std::size_t expansionLimit = std::size_t{64} << 20;

    // Results of serializeToString() and deserializeFromString().
    static constexpr int badText = -5;
    static constexpr int nullArgument = -6;
    static constexpr int unusableMessage = -11;
    static constexpr int outOfResources = -13;

    std::string name; ///< key of the placeholders that refer to it
    std::string text; ///< the format
    bool translatable = true;
    Parameters parameters;

    QelInfo() = default;
    /// The text is the first argument, unlike the member order.
    QelInfo(std::string itsText, std::string itsName, bool isTranslatable)
        : name(std::move(itsName)), text(std::move(itsText)), translatable(isTranslatable) {}

    [[nodiscard]] bool operator==(const QelInfo& other) const;

    [[nodiscard]] bool empty() const { return text.empty(); }
    void swap(QelInfo& other) noexcept;

    /// Adds a parameter after those with the same name.
    QelInfo& addParameter(QelInfo parameter);
    /// Replaces all parameters with the same name by this one.
    QelInfo& setParameter(QelInfo parameter);
    /// Returns the first parameter with this name, or null.
    [[nodiscard]] const QelInfo* getParameter(std::string_view parameterName) const;

    /// Returns the text at a slash-separated path of parameter names.  Leading slashes are ignored; an empty path
    /// selects the info itself.  Every segment but the last selects the first parameter with its name; the last selects
    /// all of them, separated by commas.  Empty if a parameter is missing.
    [[nodiscard]] std::string getParameterByPath(std::string_view path) const;

    [[nodiscard]] std::string toString() const;
    /// Returns the text in another language.  A `Translator` is constructed for each translatable format and called
    /// with it; its result, anything convertible to a string_view, replaces the format.
    template <class Translator> [[nodiscard]] std::string toStringWithTranslator() const;
    /// Expands `format`, which is not translated, instead of the own format.
    template <class Translator> [[nodiscard]] std::string toStringWithTranslator(std::string_view format) const;

    /// Writes the info to `out` as the text form of a message with no other content.  On failure returns
    /// `unusableMessage` or `outOfResources` and leaves `out` unchanged.
    [[nodiscard]] int serializeToString(std::string& out) const;
    /// Inverse of serializeToString().  On failure returns `nullArgument`, `badText`, `unusableMessage` or
    /// `outOfResources` and leaves the info unchanged.
    [[nodiscard]] int deserializeFromString(const char* message);

    static const QelWireLayout& wire;

private:
    /// Returns the format of an info: a view of the info itself or of `storage`.
    using FormatOf = std::string_view (*)(const QelInfo& info, std::string& storage);

    [[nodiscard]] static std::string substitute(const QelInfo& info, std::string_view format, FormatOf formatOf);
    template <class Translator> static std::string_view translatedFormat(const QelInfo& info, std::string& storage);
};

/// The identity translation.
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
