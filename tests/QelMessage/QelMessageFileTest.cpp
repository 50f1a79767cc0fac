#include "QelMessage/QelMessageFile.h"

#include <array>
#include <csignal>
#include <cstring>
#include <filesystem>
#include <string>
#include <utility>
#include <vector>

#include <fcntl.h>
#include <grp.h>
#include <sys/inotify.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "QelCommon/ErrorMessage.h"
#include "support/ChildProcess.h"
#include "support/TempFolder.h"

namespace Qel {
namespace {

using QelMessageFile::NewFile;
using testing::ElementsAre;
using testing::StartsWith;
using TestSupport::inChild;
using TestSupport::TempFolder;

/// Sets the umask for its lifetime.
class Umask {
public:
    explicit Umask(mode_t mask) : m_before(::umask(mask)) {}
    Umask(const Umask&) = delete;
    Umask& operator=(const Umask&) = delete;
    ~Umask() { ::umask(m_before); }

private:
    mode_t m_before;
};

/// The changes to the files of a directory, in order.
class FolderEvents {
public:
    explicit FolderEvents(const std::string& folder) : m_events(inotify_init1(IN_NONBLOCK | IN_CLOEXEC)) {
        inotify_add_watch(m_events, folder.c_str(), IN_CREATE | IN_ATTRIB | IN_MODIFY | IN_MOVED_FROM);
    }
    FolderEvents(const FolderEvents&) = delete;
    FolderEvents& operator=(const FolderEvents&) = delete;
    ~FolderEvents() { ::close(m_events); }

    [[nodiscard]] std::vector<std::string> taken() const {
        alignas(inotify_event) std::array<char, 4096> bytes{};
        std::vector<std::string> names;
        const ssize_t length = ::read(m_events, bytes.data(), bytes.size());
        for (ssize_t at = 0; at < length;) {
            inotify_event event{};
            std::memcpy(&event, bytes.data() + at, sizeof event);
            names.emplace_back(nameOf(event.mask));
            at += static_cast<ssize_t>(sizeof event + event.len);
        }
        return names;
    }

private:
    static const char* nameOf(std::uint32_t mask) {
        constexpr std::array<std::pair<unsigned, const char*>, 4> names{
            {{IN_CREATE, "create"}, {IN_ATTRIB, "attributes"}, {IN_MODIFY, "write"}, {IN_MOVED_FROM, "rename"}}};
        for (const auto& [bit, name] : names)
            if (mask & bit)
                return name;
        return "other";
    }

    int m_events;
};

mode_t modeOf(const std::string& path) {
    struct stat status {};
    return ::lstat(path.c_str(), &status) == 0 ? status.st_mode & 07777 : 0;
}

class QelMessageFileTest : public testing::Test {
protected:
    [[nodiscard]] std::ptrdiff_t files() const {
        return std::distance(std::filesystem::directory_iterator(folder.path("")), {});
    }

    TempFolder folder;
    std::string file = folder.path("file");
};

// ---- Mode and owner. Without an "attributes" event, the mode of a file is the one that it was created with.

TEST_F(QelMessageFileTest, NewFileIsAccessibleToItsOwnerOnly) {
    const Umask none(0);
    const FolderEvents events(folder.path(""));
    ASSERT_EQ(QelMessageFile::replace(file, "secret"), 0) << getErrorMessage();
    EXPECT_THAT(events.taken(), ElementsAre("create", "write", "rename"));
    EXPECT_EQ(modeOf(file), 0600U);
    EXPECT_EQ(folder.read("file"), "secret");
}

TEST_F(QelMessageFileTest, TemporaryFileIsAccessibleToItsOwnerOnly) {
    const Umask none(0);
    folder.write("file", "old");
    ASSERT_EQ(::chmod(file.c_str(), 0600), 0);
    const FolderEvents events(folder.path(""));
    ASSERT_EQ(QelMessageFile::replace(file, "secret"), 0) << getErrorMessage();
    EXPECT_THAT(events.taken(), ElementsAre("create", "write", "rename"));
    EXPECT_EQ(modeOf(file), 0600U);
}

TEST_F(QelMessageFileTest, PermissionsOfTheOldFileAreSetBeforeTheFirstByte) {
    const Umask most(077);
    folder.write("file", "old");
    ASSERT_EQ(::chmod(file.c_str(), 0664), 0);
    const FolderEvents events(folder.path(""));
    ASSERT_EQ(QelMessageFile::replace(file, "new"), 0) << getErrorMessage();
    EXPECT_THAT(events.taken(), ElementsAre("create", "attributes", "write", "rename"));
    EXPECT_EQ(modeOf(file), 0664U);
}

TEST_F(QelMessageFileTest, UmaskAppliesIfRequested) {
    const Umask mask(027);
    ASSERT_EQ(QelMessageFile::replace(file, "page", NewFile::umaskAllows), 0);
    EXPECT_EQ(modeOf(file), 0640U);
    ASSERT_EQ(::chmod(file.c_str(), 0600), 0);
    ASSERT_EQ(QelMessageFile::replace(file, "page", NewFile::umaskAllows), 0);
    EXPECT_EQ(modeOf(file), 0600U);
}

TEST_F(QelMessageFileTest, RootKeepsOwnerAndGroup) {
    folder.write("file", "old");
    if (::chown(file.c_str(), 1234, 2345) != 0)
        GTEST_SKIP() << "only root may give a file to another user";
    ASSERT_EQ(::chmod(file.c_str(), 0640), 0);
    ASSERT_EQ(QelMessageFile::replace(file, "new"), 0) << getErrorMessage();
    struct stat status {};
    ASSERT_EQ(::stat(file.c_str(), &status), 0);
    EXPECT_EQ(status.st_uid, 1234U);
    EXPECT_EQ(status.st_gid, 2345U);
    EXPECT_EQ(status.st_mode & 07777, 0640U);
}

/// Replaces a file in an unprivileged process that is a member of one group. Returns 0 on success.
int replaceAs(uid_t user, gid_t group, const std::string& file) {
    return inChild([&] {
        if (::setgroups(0, nullptr) != 0 || ::setgid(group) != 0 || ::setuid(user) != 0)
            return 2;
        return QelMessageFile::replace(file, "new") == 0 ? 0 : 1;
    });
}

TEST_F(QelMessageFileTest, GroupMemberKeepsTheGroupAndOthersDropItsPermissions) {
    if (::geteuid() != 0)
        GTEST_SKIP() << "only root may become another user";
    ASSERT_EQ(::chmod(folder.path("").c_str(), 0777), 0);
    for (const gid_t group : {2345U, 3456U}) {
        folder.write("file", "old");
        ASSERT_EQ(::chown(file.c_str(), 0, 2345), 0);
        ASSERT_EQ(::chmod(file.c_str(), 0666), 0);
        ASSERT_EQ(replaceAs(1234, group, file), 0);
        struct stat status {};
        ASSERT_EQ(::stat(file.c_str(), &status), 0);
        EXPECT_EQ(status.st_uid, 1234U);
        EXPECT_EQ(status.st_gid, group);
        EXPECT_EQ(status.st_mode & 07777, group == 2345 ? 0666U : 0606U);
        ASSERT_EQ(::unlink(file.c_str()), 0);
    }
}

TEST_F(QelMessageFileTest, RejectsAReadOnlyFile) {
    folder.write("file", "old");
    ASSERT_EQ(::chmod(file.c_str(), 0444), 0);
    EXPECT_NE(QelMessageFile::replace(file, "new"), 0);
    EXPECT_EQ(getErrorMessage(), file + ": Permission denied");
    EXPECT_EQ(folder.read("file"), "old");
    EXPECT_EQ(files(), 1);
}

TEST_F(QelMessageFileTest, RejectsAFileThatTheProcessMayNotWrite) {
    if (::geteuid() != 0)
        GTEST_SKIP() << "only root may become another user";
    folder.write("file", "old");
    ASSERT_EQ(::chmod(file.c_str(), 0644), 0);
    ASSERT_EQ(::chmod(folder.path("").c_str(), 0777), 0);
    EXPECT_EQ(replaceAs(1234, 2345, file), 1);
    EXPECT_EQ(folder.read("file"), "old");
}

TEST_F(QelMessageFileTest, FailedWriteLeavesTheOldFile) {
    folder.write("file", "old");
    const auto replace = [&] {
        const rlimit limit{3, 3};
        if (::setrlimit(RLIMIT_FSIZE, &limit) != 0 || ::signal(SIGXFSZ, SIG_IGN) == SIG_ERR)
            return 2;
        const bool failed = QelMessageFile::replace(file, "longer") != 0;
        return failed && getErrorMessage() == file + ": File too large" ? 0 : 1;
    };
    EXPECT_EQ(inChild(replace), 0);
    EXPECT_EQ(folder.read("file"), "old");
    EXPECT_EQ(files(), 1);
}

TEST_F(QelMessageFileTest, FileWithALongNameCanBeReplaced) {
    const std::string name(255, 'n');
    ASSERT_EQ(QelMessageFile::replace(folder.path(name), "one"), 0) << getErrorMessage();
    ASSERT_EQ(QelMessageFile::replace(folder.path(name), "two"), 0) << getErrorMessage();
    EXPECT_EQ(folder.read(name), "two");
    EXPECT_NE(QelMessageFile::replace(folder.path(name + 'n'), "three"), 0);
    EXPECT_THAT(getErrorMessage(), testing::EndsWith(": File name too long"));
    EXPECT_EQ(files(), 1);
}

// ---- Links

TEST_F(QelMessageFileTest, LinksAreFollowedAndKept) {
    folder.write("real/file", "old");
    std::filesystem::create_symlink("real/file", folder.path("relative"));
    std::filesystem::create_symlink(folder.path("relative"), folder.path("absolute"));
    ASSERT_EQ(QelMessageFile::replace(folder.path("absolute"), "new"), 0) << getErrorMessage();
    EXPECT_EQ(folder.read("real/file"), "new");
    EXPECT_TRUE(std::filesystem::is_symlink(folder.path("relative")));
    EXPECT_TRUE(std::filesystem::is_symlink(folder.path("absolute")));
    EXPECT_EQ(files(), 3);
}

TEST_F(QelMessageFileTest, DanglingLinkCreatesItsTarget) {
    std::filesystem::create_directory(folder.path("real"));
    std::filesystem::create_directory_symlink("real", folder.path("folder"));
    std::filesystem::create_symlink("../missing", folder.path("folder/link"));
    ASSERT_EQ(QelMessageFile::replace(folder.path("folder/link"), "new"), 0) << getErrorMessage();
    EXPECT_TRUE(std::filesystem::is_symlink(folder.path("real/link")));
    EXPECT_EQ(folder.read("missing"), "new");
    EXPECT_EQ(modeOf(folder.path("missing")), 0600U);
}

TEST_F(QelMessageFileTest, CircularLinksFail) {
    std::filesystem::create_symlink("two", folder.path("one"));
    std::filesystem::create_symlink("one", folder.path("two"));
    EXPECT_NE(QelMessageFile::replace(folder.path("one"), "new"), 0);
    EXPECT_EQ(getErrorMessage(), folder.path("one") + ": Too many levels of symbolic links");
    EXPECT_EQ(files(), 2);
}

TEST_F(QelMessageFileTest, RejectsDirectoryNames) {
    for (const std::string& name : {folder.path("none/"), folder.path("")}) {
        EXPECT_NE(QelMessageFile::replace(name, "new"), 0);
        EXPECT_EQ(getErrorMessage(), name + ": Is a directory");
    }
    EXPECT_NE(QelMessageFile::replace("", "new"), 0);
    EXPECT_EQ(getErrorMessage(), ": No such file or directory");
    EXPECT_EQ(files(), 0);
}

// ---- Streams

TEST_F(QelMessageFileTest, PipeIsWrittenToAndNotReplaced) {
    const std::string pipe = folder.path("pipe");
    ASSERT_EQ(::mkfifo(pipe.c_str(), 0600), 0);
    std::filesystem::create_symlink("pipe", file);
    const int reader = ::open(pipe.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC);
    ASSERT_GE(reader, 0);
    ASSERT_EQ(QelMessageFile::replace(pipe, "one "), 0) << getErrorMessage();
    ASSERT_EQ(QelMessageFile::replace(file, "two"), 0) << getErrorMessage();
    std::array<char, 100> bytes{};
    EXPECT_EQ(::read(reader, bytes.data(), bytes.size()), 7);
    EXPECT_STREQ(bytes.data(), "one two");
    ::close(reader);
    EXPECT_TRUE(std::filesystem::is_fifo(pipe));
    EXPECT_EQ(files(), 2);
}

TEST_F(QelMessageFileTest, OpenFileOfThisProcessIsWrittenAtItsOffset) {
    const int open = ::open(file.c_str(), O_WRONLY | O_CREAT | O_CLOEXEC, 0600);
    ASSERT_GE(open, 0);
    const auto writes = [&](const char* bytes) { return ::write(open, bytes, 2) == 2; };
    ASSERT_TRUE(writes("a,"));
    for (const char* const entries : {"/dev/fd/", "/proc/self/fd/"})
        ASSERT_EQ(QelMessageFile::replace(entries + std::to_string(open), "b,"), 0) << getErrorMessage();
    ASSERT_TRUE(writes("c,"));
    EXPECT_EQ(folder.read("file"), "a,b,b,c,");
    ::close(open);
    EXPECT_NE(QelMessageFile::replace("/dev/fd/" + std::to_string(open), "d"), 0);
    EXPECT_THAT(getErrorMessage(), StartsWith("/dev/fd/"));
    EXPECT_EQ(files(), 1);
}

} // namespace
} // namespace Qel
