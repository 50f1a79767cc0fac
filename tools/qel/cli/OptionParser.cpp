#include "qel/cli/OptionParser.h"

#include <limits>
#include <ostream>

#include <boost/lexical_cast.hpp>
#include <boost/program_options/errors.hpp>
#include <boost/program_options/options_description.hpp>
#include <boost/program_options/parsers.hpp>
#include <boost/program_options/value_semantic.hpp>
#include <boost/program_options/variables_map.hpp>

namespace po = boost::program_options;

namespace Qel::Tool {

namespace {

// Abbreviated long options are rejected: one that is unique today becomes ambiguous when an option is added.
constexpr int parsingStyle = po::command_line_style::default_style & ~po::command_line_style::allow_guessing;

template <class Number> Number toNumber(const std::string& string) {
    try {
        return boost::lexical_cast<Number>(string);
    } catch (const boost::bad_lexical_cast&) {
        throw po::invalid_option_value(string);
    }
}

/// Value semantics for every OptionKind.  A single class, because the library's typed_value template takes seconds to
/// compile for each type.
class ValueReader : public po::value_semantic_codecvt_helper<char> {
public:
    explicit ValueReader(const Option& option) : m_option(option) {}

    [[nodiscard]] std::string name() const override {
        return m_option.byDefault.empty() ? m_option.value : m_option.value + " (=" + m_option.byDefault + ')';
    }
    [[nodiscard]] unsigned min_tokens() const override { return 1; }
    [[nodiscard]] unsigned max_tokens() const override {
        return m_option.kind == OptionKind::words ? std::numeric_limits<unsigned>::max() : 1;
    }
    [[nodiscard]] bool is_composing() const override { return false; }
    [[nodiscard]] bool is_required() const override { return m_option.isRequired; }
    bool apply_default(boost::any& value) const override {
        if (!m_option.byDefault.empty())
            read(value, {m_option.byDefault});
        return !m_option.byDefault.empty();
    }
    void notify(const boost::any&) const override {}

protected:
    void xparse(boost::any& value, const std::vector<std::string>& tokens) const override { read(value, tokens); }

private:
    void read(boost::any& value, const std::vector<std::string>& tokens) const {
        if (m_option.kind == OptionKind::strings || m_option.kind == OptionKind::words) {
            if (value.empty())
                value = OptionValue(std::vector<std::string>());
            auto& texts = std::get<std::vector<std::string>>(*boost::any_cast<OptionValue>(&value));
            texts.insert(texts.end(), tokens.begin(), tokens.end());
            return;
        }
        po::validators::check_first_occurrence(value);
        value = readSingle(po::validators::get_single_string(tokens));
    }
    [[nodiscard]] OptionValue readSingle(const std::string& string) const {
        if (m_option.kind == OptionKind::integer)
            return toNumber<int>(string);
        if (m_option.kind == OptionKind::real)
            return toNumber<double>(string);
        return string;
    }

    const Option& m_option;
};

po::options_description describe(const Options& options) {
    po::options_description description("Options");
    for (const Option& option : options) {
        const std::string names = option.letter == '\0' ? option.name : option.name + ',' + option.letter;
        if (option.value.empty())
            description.add_options()(names.c_str(), option.help.c_str());
        else
            description.add_options()(names.c_str(), new ValueReader(option), option.help.c_str());
    }
    return description;
}

OptionValue valueOf(const po::variable_value& value) {
    const auto* const read = boost::any_cast<OptionValue>(&value.value());
    return read ? *read : OptionValue();
}

} // namespace

std::optional<std::string> parseWords(const std::vector<std::string>& words, const Options& options, OptionSet& given) {
    try {
        const po::options_description description = describe(options);
        given = po::command_line_parser(words).options(description).style(parsingStyle).run().options;
        return std::nullopt;
    } catch (const po::error& error) {
        return error.what();
    }
}

std::optional<std::string> makeInvocation(const OptionSet& given, const Options& options, Invocation& invocation) {
    try {
        const po::options_description description = describe(options);
        po::parsed_options named(&description);
        for (const po::option& option : given) {
            if (option.string_key.empty())
                invocation.arguments.push_back(option.value.front());
            else
                named.options.push_back(option);
        }
        po::variables_map values;
        po::store(named, values);
        // notify() checks required options, which --help does not need.
        if (values.count("help") == 0)
            po::notify(values);
        for (const Option& option : options) {
            if (values.count(option.name) != 0)
                invocation.options.emplace(option.name, valueOf(values[option.name]));
        }
        return std::nullopt;
    } catch (const po::error& error) {
        return error.what();
    }
}

void printOptions(std::ostream& out, const Options& options) {
    out << describe(options);
}

} // namespace Qel::Tool
