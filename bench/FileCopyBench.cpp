// Copies a file of 1 GiB alternately with the tool and with cp, and compares time and memory.
//
// The exit code is 1 if the tool takes more than 1.3 times as long as cp, or uses more than 8 MiB on top of its idle
// memory.  The first argument that is not an option is the working directory (default: the current one); it needs 3
// GiB.

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <vector>

#include <fcntl.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

constexpr std::size_t fileSize = std::size_t{1} << 30U;
constexpr int rounds = 5;
constexpr double allowedRatio = 1.3;
constexpr long allowedKiB = 8 * 1024;

/// Resource usage of a process.
struct Usage {
    double seconds; ///< wall time
    double cpuSeconds;
    long peakKiB;
};

double secondsOf(const timeval& time) {
    return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_usec) / 1e6;
}

Usage run(std::vector<std::string> words) {
    std::vector<char*> arguments;
    for (std::string& word : words)
        arguments.push_back(word.data());
    arguments.push_back(nullptr);
    const auto start = std::chrono::steady_clock::now();
    const pid_t process = fork();
    if (process == 0) {
        const int nowhere = open("/dev/null", O_WRONLY);
        dup2(nowhere, STDOUT_FILENO);
        execvp(arguments[0], arguments.data());
        _exit(127);
    }
    int status = 0;
    rusage usage{};
    wait4(process, &status, 0, &usage);
    const std::chrono::duration<double> elapsed = std::chrono::steady_clock::now() - start;
    if (status != 0) {
        std::fprintf(stderr, "%s failed\n", words[0].c_str());
        std::exit(2);
    }
    return {elapsed.count(), secondsOf(usage.ru_utime) + secondsOf(usage.ru_stime), usage.ru_maxrss};
}

/// Writes a file of distinct blocks, so that no file system can deduplicate them.
void writeSource(const std::string& path) {
    std::FILE* const file = std::fopen(path.c_str(), "wb");
    std::vector<unsigned> block(1 << 18U);
    unsigned random = 1;
    for (std::size_t left = fileSize; file && left > 0; left -= block.size() * sizeof block[0]) {
        for (unsigned& word : block)
            word = random = random * 1664525U + 1013904223U; // Numerical Recipes' generator
        if (std::fwrite(block.data(), sizeof block[0], block.size(), file) != block.size())
            break;
    }
    if (!file || std::fclose(file) != 0 || std::filesystem::file_size(path) != fileSize) {
        std::fprintf(stderr, "cannot write %s\n", path.c_str());
        std::exit(2);
    }
}

/// A temporary directory that is removed with its content.
class WorkFolder {
public:
    explicit WorkFolder(const std::string& parent) : m_path(parent + "/qel-copy-XXXXXX") {
        if (!mkdtemp(m_path.data())) {
            std::perror(m_path.c_str());
            std::exit(2);
        }
    }
    WorkFolder(const WorkFolder&) = delete;
    WorkFolder& operator=(const WorkFolder&) = delete;
    ~WorkFolder() {
        std::error_code ignored;
        std::filesystem::remove_all(m_path, ignored);
    }

    [[nodiscard]] std::string path(const char* name) const { return m_path + '/' + name; }

private:
    std::string m_path;
};

bool byTime(const Usage& a, const Usage& b) {
    return a.seconds < b.seconds;
}

Usage median(std::vector<Usage> usages) {
    std::nth_element(usages.begin(), usages.begin() + rounds / 2, usages.end(), byTime);
    return usages[rounds / 2];
}

int compare(const std::string& parent) {
    const WorkFolder folder(parent);
    const std::string source = folder.path("source");
    const std::string copy = folder.path("copy");
    writeSource(source);
    const long baseKiB = run({QEL_PROGRAM, "--version"}).peakKiB;

    // Alternate, so that both programs run under the same conditions.  Each copy is a new file, and none is a reflink.
    std::vector<Usage> ours;
    std::vector<Usage> theirs;
    for (int round = 0; round < rounds; ++round) {
        theirs.push_back(run({"cp", "--reflink=never", source, copy}));
        std::filesystem::remove(copy);
        ours.push_back(run({QEL_PROGRAM, "file", "copy", source, copy}));
        std::filesystem::remove(copy);
        std::printf("round %d: qel %.2f s (cpu %.2f s), cp %.2f s (cpu %.2f s)\n", round + 1, ours.back().seconds,
                    ours.back().cpuSeconds, theirs.back().seconds, theirs.back().cpuSeconds);
    }
    const double ratio = median(ours).seconds / median(theirs).seconds;
    const long peakKiB = std::max_element(ours.begin(), ours.end(), [](const Usage& a, const Usage& b) {
                             return a.peakKiB < b.peakKiB;
                         })->peakKiB;
    std::printf("median time, 1 GiB: qel %.2f s, cp %.2f s, ratio %.2f (required: %.2f)\n", median(ours).seconds,
                median(theirs).seconds, ratio, allowedRatio);
    std::printf("peak memory: %ld KiB above the %ld KiB of an idle process (required: %ld KiB)\n", peakKiB - baseKiB,
                baseKiB, allowedKiB);
    return ratio <= allowedRatio && peakKiB - baseKiB <= allowedKiB ? 0 : 1;
}

} // namespace

int main(int argc, char** argv) {
    std::string parent = ".";
    for (int i = argc - 1; i > 0; --i)
        if (argv[i][0] != '-')
            parent = argv[i];
    return compare(parent);
}
