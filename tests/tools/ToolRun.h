#pragma once

#include <filesystem>
#include <fstream>
#include <span>
#include <sstream>
#include <string>
#include <vector>

#include <gtest/gtest.h>
#include <unistd.h>

#include "qel/cli/CommandLine.h"

/// The result of an in-process run of the tool.
struct ToolRun {
    Qel::Tool::ExitCode code;
    std::string out;
    std::string err;
};

inline ToolRun runTool(const std::vector<std::string>& arguments, const std::string& input = {}) {
    std::istringstream in(input);
    std::ostringstream out;
    std::ostringstream err;
    const Qel::Tool::ExitCode code = Qel::Tool::runCommandLine(arguments, {in, out, err});
    return {code, out.str(), err.str()};
}

/// Checks that a command on several files returns the worst of their exit codes.  `bad` is an unreadable file,
/// `failing` a file for which the operation fails.
inline void expectWorstExitCode(const std::vector<std::string>& words, const std::string& good, const std::string& bad,
                                const std::string& failing) {
    using Qel::Tool::ExitCode;
    const auto code = [&](const std::vector<std::string>& files) {
        std::vector<std::string> all = words;
        all.insert(all.end(), files.begin(), files.end());
        return runTool(all).code;
    };
    EXPECT_EQ(code({good, good}), ExitCode::success);
    EXPECT_EQ(code({bad, good}), ExitCode::badInput);
    EXPECT_EQ(code({good, bad}), ExitCode::badInput);
    EXPECT_EQ(code({failing, bad, good}), ExitCode::failed);
    EXPECT_EQ(code({bad, failing, good}), ExitCode::failed);
}

/// A test with a temporary directory.
class ToolTest : public testing::Test {
protected:
    ToolTest() {
        std::string name = testing::TempDir() + "qeltoolXXXXXX";
        if (mkdtemp(name.data()))
            m_folder = name;
    }
    ~ToolTest() override {
        std::error_code ignored;
        std::filesystem::remove_all(m_folder, ignored);
    }

    [[nodiscard]] std::string path(const std::string& name) const { return m_folder / name; }

    [[nodiscard]] std::string write(const std::string& name, std::span<const std::byte> content) const {
        std::ofstream file(path(name), std::ios::binary);
        file << std::string(reinterpret_cast<const char*>(content.data()), content.size());
        return path(name);
    }

    [[nodiscard]] std::string write(const std::string& name, const std::string& content) const {
        return write(name, std::as_bytes(std::span(content)));
    }

    [[nodiscard]] static std::string read(const std::string& path) {
        std::ifstream file(path, std::ios::binary);
        std::ostringstream content;
        content << file.rdbuf();
        return content.str();
    }

private:
    std::filesystem::path m_folder;
};
