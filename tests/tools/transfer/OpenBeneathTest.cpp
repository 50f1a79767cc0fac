#include "qel/transfer/OpenBeneath.h"

#include <array>
#include <atomic>
#include <cerrno>
#include <cstddef>
#include <filesystem>
#include <ostream>
#include <system_error>
#include <thread>

#include <fcntl.h>
#include <gtest/gtest.h>
#include <linux/filter.h>
#include <linux/seccomp.h>
#include <sys/prctl.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

#include "QelFunctionalityCore/Files/QelFile.h"
#include "support/ChildProcess.h"
#include "support/TempFolder.h"

namespace {

using namespace Qel::Tool;
namespace fs = std::filesystem;
using Qel::QelFile;

struct Way {
    const char* name;
    int (*open)(int directory, const std::string& path, int flags, mode_t mode);
};

void PrintTo(const Way& way, std::ostream* out) {
    *out << way.name;
}

/// A directory "in", and files outside it that must not be reachable.
class OpenBeneathTest : public testing::TestWithParam<Way> {
protected:
    OpenBeneathTest()
        : m_in((fs::create_directories(folder.path("in/sub")), ::open(folder.path("in").c_str(), O_PATH))) {
        folder.write("secret", "secret");
        folder.write("in/file", "inside");
    }

    void SetUp() override {
        if (open("file", O_RDONLY) == ENOSYS || open("file", O_RDONLY) == EPERM)
            GTEST_SKIP() << "openat2 is not available";
    }

    /// Returns 0 or an errno value.
    [[nodiscard]] int open(const std::string& path, int flags) const {
        const QelFile file(GetParam().open(m_in.descriptor(), path, flags | O_CLOEXEC, 0640));
        return file.isOpened() ? 0 : errno;
    }
    [[nodiscard]] int create(const std::string& path) const { return open(path, O_WRONLY | O_CREAT); }

    void link(const std::string& target, const std::string& name) const {
        fs::create_symlink(target, folder.path("in/" + name));
    }
    [[nodiscard]] bool isIn(const std::string& name) const { return fs::is_regular_file(folder.path("in/" + name)); }

    /// Expects that nothing was created, changed or removed outside.
    void expectOutsideUnchanged() const {
        EXPECT_EQ(folder.read("secret"), "secret");
        EXPECT_EQ(std::distance(fs::directory_iterator(folder.path("")), fs::directory_iterator()), 2);
    }

    Qel::TestSupport::TempFolder folder;

private:
    QelFile m_in;
};

TEST_P(OpenBeneathTest, OpensFilesInTheDirectoryAndBelow) {
    for (const char* const path :
         {"file", "/file", "//file", "./file", "sub/../file", "sub/.././/file", "sub/./../file"})
        EXPECT_EQ(open(path, O_RDONLY), 0) << path;
    EXPECT_EQ(create("sub/new"), 0);
    EXPECT_TRUE(isIn("sub/new"));
}

TEST_P(OpenBeneathTest, DescriptorRefersToTheFile) {
    const QelFile directory(::open(folder.path("in").c_str(), O_PATH));
    const QelFile file(GetParam().open(directory.descriptor(), "sub/../file", O_RDONLY, 0));
    char content[7]{};
    EXPECT_EQ(read(file.descriptor(), content, 6), 6);
    EXPECT_STREQ(content, "inside");
}

TEST_P(OpenBeneathTest, NewFileHasModeModifiedByUmask) {
    const mode_t before = umask(027);
    EXPECT_EQ(create("new"), 0);
    umask(before);
    struct stat status {};
    ASSERT_EQ(stat(folder.path("in/new").c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 07777U, 0640U & ~027U);
}

TEST_P(OpenBeneathTest, RejectsDotDotOutOfTheDirectory) {
    for (const char* const path : {"..", "../secret", "sub/../../secret", "/..", "./../secret", "sub/../.."}) {
        EXPECT_EQ(open(path, O_RDONLY), EXDEV) << path;
        EXPECT_EQ(create(path), EXDEV) << path;
    }
    expectOutsideUnchanged();
}

TEST_P(OpenBeneathTest, RejectsLinkOutOfTheDirectoryWhetherOrNotItsTargetExists) {
    link("../secret", "relative");
    link("../new", "dangling");
    link(folder.path("secret"), "absolute");
    link(folder.path("new"), "danglingAbsolute");
    link("dangling", "chain");
    link("..", "parent");
    link("sub/../../new", "detour");
    for (const char* const path : {"relative", "dangling", "absolute", "danglingAbsolute", "chain", "parent/new",
                                   "parent", "detour", "sub/../chain"}) {
        EXPECT_EQ(open(path, O_RDONLY), EXDEV) << path;
        for (const int flags : {0, O_TRUNC, O_APPEND})
            EXPECT_EQ(open(path, O_WRONLY | O_CREAT | flags), EXDEV) << path;
    }
    expectOutsideUnchanged();
}

TEST_P(OpenBeneathTest, RejectsAbsoluteLinkToTargetInside) {
    link(folder.path("in/file"), "absolute");
    EXPECT_EQ(open("absolute", O_RDONLY), EXDEV);
}

TEST_P(OpenBeneathTest, FollowsLinksThatStayInside) {
    link("file", "direct");
    link("sub/../direct", "chain");
    link("sub", "directory");
    link("sub/", "slash");
    EXPECT_EQ(open("direct", O_RDONLY), 0);
    EXPECT_EQ(open("chain", O_RDONLY), 0);
    EXPECT_EQ(create("directory/a"), 0);
    EXPECT_EQ(create("slash/b"), 0);
    EXPECT_EQ(open("directory/../file", O_RDONLY), 0);
    EXPECT_TRUE(isIn("sub/a"));
    EXPECT_TRUE(isIn("sub/b"));
}

TEST_P(OpenBeneathTest, CreatesTargetOfDanglingLinkInside) {
    link("sub/new", "dangling");
    EXPECT_EQ(create("dangling"), 0);
    EXPECT_TRUE(isIn("sub/new"));
}

TEST_P(OpenBeneathTest, ExclusiveOpenDoesNotFollowLinks) {
    link("new", "dangling");
    link("../secret", "outside");
    EXPECT_EQ(open("dangling", O_WRONLY | O_CREAT | O_EXCL), EEXIST);
    EXPECT_EQ(open("outside", O_WRONLY | O_CREAT | O_EXCL), EEXIST);
    EXPECT_FALSE(isIn("new"));
}

TEST_P(OpenBeneathTest, PathDescriptorRefersToTheTargetOfALink) {
    link("file", "direct");
    link("../secret", "outside");
    const QelFile directory(::open(folder.path("in").c_str(), O_PATH));
    const QelFile file(GetParam().open(directory.descriptor(), "direct", O_PATH, 0));
    struct stat status {};
    ASSERT_EQ(fstat(file.descriptor(), &status), 0);
    EXPECT_TRUE(S_ISREG(status.st_mode));
    EXPECT_EQ(open("outside", O_PATH), EXDEV);
}

TEST_P(OpenBeneathTest, RejectsCycleOfLinks) {
    link("b", "a");
    link("a", "b");
    EXPECT_EQ(open("a", O_RDONLY), ELOOP);
    EXPECT_EQ(open("a/file", O_RDONLY), ELOOP);
    EXPECT_EQ(create("a"), ELOOP);
}

TEST_P(OpenBeneathTest, ReportsReasonOfOtherFailures) {
    EXPECT_EQ(open("none", O_RDONLY), ENOENT);
    EXPECT_EQ(open("none/../file", O_RDONLY), ENOENT);
    EXPECT_EQ(create("none/new"), ENOENT);
    EXPECT_EQ(open("file/x", O_RDONLY), ENOTDIR);
    EXPECT_EQ(open("file/", O_RDONLY), ENOTDIR);
    EXPECT_EQ(open("file/../file", O_RDONLY), ENOTDIR);
    EXPECT_EQ(open("sub", O_WRONLY), EISDIR);
    EXPECT_EQ(create("sub"), EISDIR);
    EXPECT_EQ(open(std::string(300, 'x'), O_RDONLY), ENAMETOOLONG);
}

TEST_P(OpenBeneathTest, OpensTheDirectoryItselfForReadingOnly) {
    for (const char* const path : {"", "/", ".", "sub/.."}) {
        EXPECT_EQ(open(path, O_RDONLY), 0) << path;
        EXPECT_EQ(create(path), EISDIR) << path;
    }
}

TEST_P(OpenBeneathTest, LeavesNoDescriptorOpen) {
    link("../secret", "outside");
    link("sub", "directory");
    const auto count = [] { return std::distance(fs::directory_iterator("/proc/self/fd"), fs::directory_iterator()); };
    const auto before = count();
    for (const char* const path : {"sub/../sub/../file", "outside", "directory/../outside", "sub/none", ".."})
        (void)open(path, O_RDONLY);
    EXPECT_EQ(count(), before);
}

TEST_P(OpenBeneathTest, StaysInsideWhileAnotherThreadReplacesComponents) {
    link("sub", "link");
    constexpr unsigned enough = 500;
    std::atomic<unsigned> round = 0;
    std::thread replacer([&] {
        // The name alternates between a link to the inside, a link to the outside, and a directory.
        const fs::path name = folder.path("in/link");
        const fs::path next = folder.path("in/next");
        std::error_code ignored;
        for (; round < enough; ++round) {
            fs::create_directory_symlink(round % 2 == 0 ? ".." : "sub", next, ignored);
            fs::rename(next, name, ignored);
            if (round % 8 == 7) {
                fs::remove(name, ignored);
                fs::create_directory(name, ignored);
                fs::remove_all(name, ignored);
            }
        }
    });
    while (round < enough) {
        EXPECT_NE(open("link/secret", O_RDONLY), 0);
        (void)create("link/new");
    }
    replacer.join();
    expectOutsideUnchanged();
}

INSTANTIATE_TEST_SUITE_P(BothWays, OpenBeneathTest,
                         testing::Values(Way{"InKernel", openBeneathInKernel},
                                         Way{"ByComponents", openBeneathByComponents}, Way{"Either", openBeneath}),
                         [](const auto& tested) { return tested.param.name; });

/// Makes openat2(2) fail with this error in the calling process, as a container's seccomp filter does.  Returns false
/// if filters are not supported.
bool refuseOpenat2(unsigned error) {
    std::array<sock_filter, 4> rules{{
        {BPF_LD | BPF_W | BPF_ABS, 0, 0, offsetof(seccomp_data, nr)},
        {BPF_JMP | BPF_JEQ | BPF_K, 0, 1, SYS_openat2},
        {BPF_RET | BPF_K, 0, 0, SECCOMP_RET_ERRNO | error},
        {BPF_RET | BPF_K, 0, 0, SECCOMP_RET_ALLOW},
    }};
    const sock_fprog filter{static_cast<unsigned short>(rules.size()), rules.data()};
    return prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0) == 0 && prctl(PR_SET_SECCOMP, SECCOMP_MODE_FILTER, &filter) == 0;
}

TEST(OpenBeneathFallbackTest, FallsBackToWalkingComponentsIfOpenat2Fails) {
    const Qel::TestSupport::TempFolder folder;
    folder.write("in/file", "inside");
    folder.write("secret", "secret");
    for (const int error : {ENOSYS, EPERM, EAGAIN}) {
        const int result = Qel::TestSupport::inChild([&] {
            if (!refuseOpenat2(static_cast<unsigned>(error)))
                return 1;
            const QelFile in(::open(folder.path("in").c_str(), O_PATH | O_CLOEXEC));
            if (openBeneathInKernel(in.descriptor(), "file", O_RDONLY, 0) != -1 || errno != error)
                return 2;
            if (openBeneath(in.descriptor(), "../secret", O_RDONLY, 0) != -1 || errno != EXDEV)
                return 3;
            return QelFile(openBeneath(in.descriptor(), "file", O_RDONLY, 0)).isOpened() ? 0 : 4;
        });
        if (result == 1)
            GTEST_SKIP() << "seccomp filters are not available";
        EXPECT_EQ(result, 0) << error;
    }
}

} // namespace
