// Whether each record class of the library is in the list of record types.  The library's own symbols tell the classes:
// a table, a reader or writer of a class's own, and a factory each leave one.

#include <cstdio>
#include <cstdlib>
#include <memory>
#include <optional>
#include <regex>
#include <set>
#include <string>

#include <cxxabi.h>
#include <gmock/gmock.h>

#include "QelFunctionalityCore/QelRecordTypes.h"

namespace Qel {
namespace {

std::string demangled(const char* symbol) {
    int status = 0;
    const std::unique_ptr<char, decltype(&std::free)> text(abi::__cxa_demangle(symbol, nullptr, nullptr, &status),
                                                           &std::free);
    return status == 0 ? text.get() : symbol;
}

/// The symbols that the library defines, demangled.
std::set<std::string> librarySymbols() {
    std::set<std::string> symbols;
    FILE* const pipe = popen(QEL_NM " --dynamic --defined-only " QEL_LIBRARY, "r");
    if (!pipe)
        return symbols;
    char* line = nullptr;
    std::size_t room = 0;
    while (getline(&line, &room, pipe) > 0) {
        const std::string text(line);
        const auto name = text.rfind(' ') + 1;
        symbols.insert(demangled(text.substr(name, text.find('\n') - name).c_str()));
    }
    std::free(line);
    EXPECT_EQ(pclose(pipe), 0) << QEL_NM;
    return symbols;
}

/// The class that a symbol tells to be a record.
std::optional<std::string> recordToldBy(const std::string& symbol) {
    static const std::regex forms[] = {
        std::regex(R"(Qel::QelWireLayout const& Qel::qelWireLayout<(.+?) ?>\(\))"),
        std::regex(R"((Qel::.+)::Reader::operator\(\)\(Qel::QelMessageIterator const&, (.+)&\) const)"),
        std::regex(R"((Qel::.+)::Writer::operator\(\)\(Qel::QelMessageIterator&, (.+) const&\) const)"),
        std::regex(R"(vtable for Qel::QelDerivedParserFactoryT<(Qel::\w+), .*>)"),
    };
    for (const std::regex& form : forms) {
        std::smatch match;
        if (!std::regex_match(symbol, match, form))
            continue;
        // A functor that reads something else than the class around it belongs to no record of that class.
        if (match.size() > 2 && match[1] != match[2])
            return std::nullopt;
        return match[1];
    }
    return std::nullopt;
}

std::set<std::string> listedClasses() {
    // No records: a subtree that nobody looks into, whose owner gives it the element that it stands in, and what two
    // records have in common.
    std::set<std::string> classes{"Qel::QelAnyData", "Qel::QelPerfMonBlock"};
    for (const QelRecordType& type : recordTypes())
        classes.insert(demangled(type.record->name()));
    return classes;
}

TEST(RecordClassesTest, ASymbolTellsItsRecord) {
    EXPECT_EQ(recordToldBy("Qel::QelWireLayout const& Qel::qelWireLayout<Qel::QelOS>()"), "Qel::QelOS");
    EXPECT_EQ(recordToldBy("Qel::QelGUID::Reader::operator()(Qel::QelMessageIterator const&, Qel::QelGUID&) const"),
              "Qel::QelGUID");
    EXPECT_EQ(recordToldBy("Qel::A::B::Writer::operator()(Qel::QelMessageIterator&, Qel::A::B const&) const"),
              "Qel::A::B");
    EXPECT_EQ(recordToldBy("vtable for Qel::QelDerivedParserFactoryT<Qel::QelNetNIC, Qel::QelNetDevice, x>"),
              "Qel::QelNetNIC");
    EXPECT_EQ(recordToldBy("Qel::A::Reader::operator()(Qel::QelMessageIterator const&, unsigned int&) const"),
              std::nullopt);
    EXPECT_EQ(recordToldBy("Qel::recordTypes()"), std::nullopt);
}

TEST(RecordClassesTest, EachIsInTheListOfRecordTypes) {
    const std::set<std::string> listed = listedClasses();
    std::set<std::string> told;
    for (const std::string& symbol : librarySymbols())
        if (const auto record = recordToldBy(symbol))
            told.insert(*record);
    EXPECT_THAT(told, testing::Contains("Qel::QelGUID"));
    EXPECT_THAT(told, testing::Contains("Qel::QelPackageRpm"));
    std::set<std::string> missing;
    std::set_difference(told.begin(), told.end(), listed.begin(), listed.end(), std::inserter(missing, missing.end()));
    EXPECT_THAT(missing, testing::IsEmpty()) << "one line in QelRecordTypes.cpp each";
}

} // namespace
} // namespace Qel
