#pragma once

#include <string>
#include <utility>
#include <vector>

namespace boost::program_options {
template <class charT> class basic_option;
} // namespace boost::program_options

namespace Qel {

/// The options of a command-line tool.
class QelProgramOptions {
public:
    using Options = std::vector<boost::program_options::basic_option<char>>;

    /// Where sets of options are kept.  0 for success, -1 for failure.
    class serializer {
    public:
        virtual int read(Options& options) const = 0;
        virtual int write(const Options& options) const = 0;
        virtual ~serializer() = default;
    };
};

/// Keeps a set of options in a file, as a message:
///
///     <option><name>to</name><value>text</value></option>     a named option, with one or more values
///     <option><value>server.xml</value></option>              a positional option, with one value
///
/// Names and values are kept, and the order; nothing else of an option is.
class QelOptionsFileSerializer : public QelProgramOptions::serializer {
public:
    explicit QelOptionsFileSerializer(std::string path) : m_path(std::move(path)) {}

    /// Replaces `options` by what the file holds.  Values of one name that stands there several times are joined in the
    /// place of the first.  On failure `options` stays as it was.
    [[nodiscard]] int read(QelProgramOptions::Options& options) const override;
    /// Replaces what was in the file.  An option without a value can't be written: then the file stays as it was.
    [[nodiscard]] int write(const QelProgramOptions::Options& options) const override;

private:
    std::string m_path;
};

} // namespace Qel
