// Checks that every record class of the library is in the list of record types.  The classes are found in the library's
// symbols: each table, each reader or writer of a class, and each factory exports one.

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

/// The demangled symbols that the library defines, exported or not.
std::set<std::string> librarySymbols() {
    std::set<std::string> symbols;
    FILE* const pipe = popen(QEL_NM " --defined-only " QEL_LIBRARY, "r");
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

/// The record class to which a symbol belongs.
std::optional<std::string> recordOfSymbol(const std::string& symbol) {
    static const std::regex forms[] = {
        std::regex(R"((Qel::.+)::wire)"),
        std::regex(R"((Qel::.+)::Reader::operator\(\)\(Qel::QelMessageIterator const&, (.+)&\) const)"),
        std::regex(R"((Qel::.+)::Writer::operator\(\)\(Qel::QelMessageIterator&, (.+) const&\) const)"),
        std::regex(R"(vtable for Qel::QelDerivedParserFactoryT<(Qel::\w+), .*>)"),
    };
    for (const std::regex& form : forms) {
        std::smatch match;
        if (!std::regex_match(symbol, match, form))
            continue;
        // A functor for a different class does not make the enclosing class a record.
        if (match.size() > 2 && match[1] != match[2])
            return std::nullopt;
        return match[1];
    }
    return std::nullopt;
}

std::set<std::string> listedClasses() {
    // Not records: QelAnyData is an opaque subtree whose owner chooses the element, and QelPerfMonBlock is the common
    // part of two records.
    std::set<std::string> classes{"Qel::QelAnyData", "Qel::QelPerfMonBlock"};
    for (const QelRecordType& type : recordTypes())
        classes.insert(demangled(type.record->name()));
    return classes;
}

TEST(RecordClassesTest, SymbolIdentifiesRecord) {
    EXPECT_EQ(recordOfSymbol("Qel::QelOS::wire"), "Qel::QelOS");
    EXPECT_EQ(recordOfSymbol("Qel::QelGUID::Reader::operator()(Qel::QelMessageIterator const&, Qel::QelGUID&) const"),
              "Qel::QelGUID");
    EXPECT_EQ(recordOfSymbol("Qel::A::B::Writer::operator()(Qel::QelMessageIterator&, Qel::A::B const&) const"),
              "Qel::A::B");
    EXPECT_EQ(recordOfSymbol("vtable for Qel::QelDerivedParserFactoryT<Qel::QelNetNIC, Qel::QelNetDevice, x>"),
              "Qel::QelNetNIC");
    EXPECT_EQ(recordOfSymbol("Qel::A::Reader::operator()(Qel::QelMessageIterator const&, unsigned int&) const"),
              std::nullopt);
    EXPECT_EQ(recordOfSymbol("Qel::recordTypes()"), std::nullopt);
}

TEST(RecordClassesTest, ListOfRecordTypesIsComplete) {
    const std::set<std::string> listed = listedClasses();
    std::set<std::string> found;
    for (const std::string& symbol : librarySymbols())
        if (const auto record = recordOfSymbol(symbol))
            found.insert(*record);
    EXPECT_THAT(found, testing::Contains("Qel::QelGUID"));
    EXPECT_THAT(found, testing::Contains("Qel::QelPackageRpm"));
    std::set<std::string> missing;
    std::set_difference(found.begin(), found.end(), listed.begin(), listed.end(),
                        std::inserter(missing, missing.end()));
    EXPECT_THAT(missing, testing::IsEmpty()) << "add one line for each to its family's list of record types";
}

} // namespace
} // namespace Qel
