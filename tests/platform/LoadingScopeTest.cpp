#include <fcntl.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cstddef>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <thread>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "corvel/platform/LoadingScope.h"
#include "tests/support/TemporaryDirectory.h"

namespace Corvel::Platform {
namespace {

using testing::Eq;
using testing::ExitedWithCode;
using Testing::TemporaryDirectory;

const std::string kPath = "some/path.so";
const std::string kInner = "some/other.so";

TEST(LoadingScopeDeathTest, ExitGivesStatusOneAndASentence) {
    const auto end = [](int status) {
        const LoadingScope scope(kPath);
        std::exit(status);
    };
    const auto endAtOnce = [] {
        const LoadingScope scope(kPath);
        std::quick_exit(0);
    };
    const std::string sentence = "Unable to load plugin from some/path.so: it ended the process\n";
    EXPECT_EXIT(end(0), ExitedWithCode(1), Eq(sentence));
    EXPECT_EXIT(end(3), ExitedWithCode(1), Eq(sentence));
    EXPECT_EXIT(endAtOnce(), ExitedWithCode(1), Eq(sentence));
}

TEST(LoadingScopeDeathTest, InnermostScopeIsNamed) {
    const auto end = [] {
        const LoadingScope scope(kPath);
        const LoadingScope inner(kInner);
        std::exit(0);
    };
    const auto endOutside = [] {
        const LoadingScope scope(kPath);
        { const LoadingScope inner(kInner); }
        std::exit(0);
    };
    EXPECT_EXIT(end(),
                ExitedWithCode(1),
                Eq("Unable to load plugin from some/other.so: it ended the process\n"));
    EXPECT_EXIT(endOutside(),
                ExitedWithCode(1),
                Eq("Unable to load plugin from some/path.so: it ended the process\n"));
}

TEST(LoadingScopeDeathTest, ExitIsFreeAgainAfterwards) {
    const auto end = [] {
        { const LoadingScope scope(kPath); }
        std::exit(0);
    };
    EXPECT_EXIT(end(), ExitedWithCode(0), Eq(""));
}

TEST(LoadingScopeDeathTest, ExitOfAnotherThreadIsItsOwnMatter) {
    const auto end = [] {
        const LoadingScope scope(kPath);
        std::thread([] { std::exit(0); }).join();
    };
    EXPECT_EXIT(end(), ExitedWithCode(0), Eq(""));
}

TEST(LoadingScope, ChildrenEndAsTheyLike) {
    const LoadingScope scope(kPath);
    const pid_t child = fork();
    if (child == 0) {
        std::exit(0);
    }
    int status = -1;
    ASSERT_EQ(waitpid(child, &status, 0), child);
    EXPECT_EQ(status, 0);
}

TEST(LoadingScope, WorkingDirectoryIsRestored) {
    const std::filesystem::path before = std::filesystem::current_path();
    const TemporaryDirectory folder;
    {
        const LoadingScope scope(kPath);
        std::filesystem::current_path(folder.Path());
    }
    EXPECT_EQ(std::filesystem::current_path(), before);
}

/// As long as it lives the standard streams can be closed; then they are as before.
class SavedStreams {
public:
    SavedStreams() {
        for (int stream = 0; stream < 3; ++stream) {
            _saved[static_cast<std::size_t>(stream)] = fcntl(stream, F_DUPFD_CLOEXEC, 100);
        }
    }
    SavedStreams(const SavedStreams&) = delete;
    SavedStreams& operator=(const SavedStreams&) = delete;
    ~SavedStreams() {
        for (int stream = 0; stream < 3; ++stream) {
            dup2(_saved[static_cast<std::size_t>(stream)], stream);
            close(_saved[static_cast<std::size_t>(stream)]);
        }
    }

private:
    std::array<int, 3> _saved = {};
};

/// "r" or "w" for each standard stream that is the null device, for reading or writing, "-" for one
/// that is closed, "?" for anything else.
std::string Streams() {
    struct stat null = {};
    stat("/dev/null", &null);
    std::string text;
    for (int stream = 0; stream < 3; ++stream) {
        struct stat status = {};
        const int flags = fcntl(stream, F_GETFL);
        if (flags == -1) {
            text += '-';
        } else if (fstat(stream, &status) != 0 || status.st_rdev != null.st_rdev ||
                   fcntl(stream, F_GETFD) != 0) {
            text += '?';
        } else {
            text += (flags & O_ACCMODE) == O_RDONLY ? 'r' : 'w';
        }
    }
    return text;
}

TEST(LoadingScope, ClosedStandardStreamsAreTheNullDevice) {
    std::string after;
    {
        const SavedStreams saved;
        {
            const LoadingScope scope(kPath);
            close(0);
            close(1);
            close(2);
        }
        after = Streams();
    }
    EXPECT_EQ(after, "rrw");
}

TEST(LoadingScope, StandardStreamsThatWereClosedBeforeStayClosed) {
    std::string after;
    {
        const SavedStreams saved;
        close(0);
        close(1);
        {
            const LoadingScope scope(kPath);
            close(2);
        }
        after = Streams();
    }
    EXPECT_EQ(after, "--w");
}

/// What cannot be restored is left as it is.
TEST(LoadingScope, WorkingDirectoryThatIsGoneStaysGone) {
    const std::filesystem::path before = std::filesystem::current_path();
    const TemporaryDirectory other;
    {
        const TemporaryDirectory folder;
        std::filesystem::current_path(folder.Path());
        const LoadingScope scope(kPath);
        std::filesystem::current_path(other.Path());
        std::filesystem::remove(folder.Path());
    }
    EXPECT_EQ(std::filesystem::current_path(), other.Path());
    std::filesystem::current_path(before);
}

}  // namespace
}  // namespace Corvel::Platform
