// Compares the output of the example request-road with its documentation.

#include <cstdio>
#include <fstream>
#include <memory>
#include <sstream>
#include <string>

#include <gtest/gtest.h>

#include "support/TempFile.h"

namespace Qel {

namespace {

using TestSupport::TempFile;

std::string outputOf(const std::string& command) {
    const std::unique_ptr<FILE, int (*)(FILE*)> pipe(popen(command.c_str(), "r"), &pclose);
    std::string output;
    for (int c = std::getc(pipe.get()); c != EOF; c = std::getc(pipe.get()))
        output += static_cast<char>(c);
    return output;
}

/// The output shown after the command in the page's first code block, without indentation.
std::string shownOutput() {
    const std::string indentation(4, ' ');
    std::ifstream page(QEL_SOURCE "/docs/road-of-a-request.md");
    std::string line;
    while (std::getline(page, line) && !line.starts_with(indentation + "$ request-road")) {
    }
    std::string output;
    while (std::getline(page, line) && line.starts_with(indentation))
        output += line.substr(indentation.size()) + '\n';
    return output;
}

std::string road(const std::string& cache, const std::string& message) {
    return outputOf("'" QEL_REQUEST_ROAD "' '" + cache + "' '" QEL_SOURCE "/examples/" + message +
                    "' '" QEL_SOURCE "/examples/agent.conf' 2>&1");
}

TEST(RequestRoadTest, PrintsOutputShownInTheDocumentation) {
    const TempFile cache;
    const std::string shown = shownOutput();
    EXPECT_FALSE(shown.empty());
    EXPECT_EQ(road(cache.path(), "messages/virtual-machines.xml"), shown);
    EXPECT_EQ(road(cache.path(), "messages/virtual-machines.xml"), shown)
        << "with a cache that already contains the environments";
}

TEST(RequestRoadTest, FailsIfTheMessageContainsNoEnvironment) {
    const TempFile cache;
    EXPECT_EQ(road(cache.path(), "events/started.xml"),
              "request-road: /event: cannot read QelEnv: element parent_eid (parentEID) is missing\n");
}

} // namespace

} // namespace Qel
