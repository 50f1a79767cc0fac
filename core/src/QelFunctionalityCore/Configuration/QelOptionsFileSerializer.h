#pragma once

#include <string>
#include <utility>
#include <vector>

#include "QelCommon/Export.h"

namespace boost::program_options {
template <class charT> class basic_option;
} // namespace boost::program_options

namespace Qel {

/// The options of a command-line tool.
class QEL_EXPORT QelProgramOptions {
public:
    using Options = std::vector<boost::program_options::basic_option<char>>;

    /// Storage for sets of options.  Operations return 0 on success and -1 on failure.
    class serializer {
    public:
        virtual int read(Options& options) const = 0;
        virtual int write(const Options& options) const = 0;
        virtual ~serializer() = default;
    };
};

/// Stores a set of options in a file, as a message:
///
///     <option><name>to</name><value>text</value></option>     a named option, with one or more values
///     <option><value>server.xml</value></option>              a positional option, with one value
///
/// Only names, values and their order are stored.
class QEL_EXPORT QelOptionsFileSerializer : public QelProgramOptions::serializer {
public:
    explicit QelOptionsFileSerializer(std::string path) : m_path(std::move(path)) {}

    /// Replaces `options` with the content of the file.  Values of options with the same name are merged into the first
    /// of them.  On failure, `options` is unchanged.
    [[nodiscard]] int read(QelProgramOptions::Options& options) const override;
    /// Replaces the file.  Fails if an option has no value; the file is then unchanged.
    [[nodiscard]] int write(const QelProgramOptions::Options& options) const override;

private:
    std::string m_path;
};

} // namespace Qel
