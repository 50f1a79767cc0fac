#pragma once

#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>
#include <system_error>

#include <stdlib.h>

namespace Qel::TestSupport {

/// A file name in a new temporary directory. The destructor removes the directory with its contents.
class TempFile {
public:
    TempFile() : m_directory((std::filesystem::temp_directory_path() / "qel-XXXXXX").string()) {
        if (!mkdtemp(m_directory.data()))
            std::abort();
        m_path = m_directory + "/cache";
    }
    TempFile(const TempFile&) = delete;
    TempFile& operator=(const TempFile&) = delete;
    ~TempFile() {
        std::error_code ignored;
        std::filesystem::remove_all(m_directory, ignored);
    }

    [[nodiscard]] const std::string& path() const { return m_path; }
    [[nodiscard]] bool exists() const { return std::filesystem::exists(m_path); }
    [[nodiscard]] std::uint64_t size() const { return std::filesystem::file_size(m_path); }

    void write(const std::string& bytes) const { std::ofstream(m_path, std::ios::binary) << bytes; }
    [[nodiscard]] std::string read() const {
        std::ostringstream bytes;
        bytes << std::ifstream(m_path, std::ios::binary).rdbuf();
        return bytes.str();
    }
    [[nodiscard]] std::uint32_t word(unsigned offset) const {
        std::uint32_t value = 0;
        std::ifstream file(m_path, std::ios::binary);
        file.seekg(offset);
        file.read(reinterpret_cast<char*>(&value), sizeof value);
        return value;
    }
    void setWord(unsigned offset, std::uint32_t value) const {
        std::fstream file(m_path, std::ios::binary | std::ios::in | std::ios::out);
        file.seekp(offset);
        file.write(reinterpret_cast<const char*>(&value), sizeof value);
    }

private:
    std::string m_directory;
    std::string m_path;
};

} // namespace Qel::TestSupport
