#include <dlfcn.h>
#include <sys/stat.h>
#include <sys/statvfs.h>
#include <sys/vfs.h>
#include <unistd.h>

#include <filesystem>
#include <linux/magic.h>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "corvel/platform/RootOnly.h"
#include "tests/support/TemporaryDirectory.h"

namespace {

/// The place that lies on a file system mounted nosuid, for a test; no other one does.
std::string nosuidPlace;  // NOLINT(cert-err58-cpp)

}  // namespace

// Stands before that of the system: how this machine mounts its disks is no matter of these tests.
extern "C" int statfs(const char* place, struct statfs* status) noexcept {
    static const auto system =
        reinterpret_cast<int (*)(const char*, struct statfs*)>(dlsym(RTLD_NEXT, "statfs"));
    const int result = system(place, status);
    if (status->f_type != PROC_SUPER_MAGIC) {
        status->f_flags = place == nosuidPlace ? ST_NOSUID : 0;
    }
    return result;
}

namespace Corvel::Platform {
namespace {

using Testing::TemporaryDirectory;

/// What speaks against the file; empty when nothing does.
std::string Objection(const std::string& path) {
    std::string reason;
    const bool passes = CanOnlyRootChange(path, reason);
    EXPECT_EQ(passes, reason.empty());
    return reason;
}

/// Somebody who is not root.
constexpr uid_t kSomebody = 12345;

const std::string kNobodysRule = ": belongs to user 12345, not to root";
const std::string kGroupsRule = ": can be written by its group";
const std::string kOthersRule = ": can be written by others";

/// As long as it lives the process works in another folder.
class WorkingDirectory {
public:
    explicit WorkingDirectory(const std::filesystem::path& folder)
        : _saved(std::filesystem::current_path()) {
        std::filesystem::current_path(folder);
    }
    WorkingDirectory(const WorkingDirectory&) = delete;
    WorkingDirectory& operator=(const WorkingDirectory&) = delete;
    ~WorkingDirectory() { std::filesystem::current_path(_saved); }

private:
    std::filesystem::path _saved;
};

// --- Files of the system, whoever runs the test --------------------------------------------------

TEST(RootOnly, FileOfTheSystemPasses) {
    EXPECT_EQ(Objection("/etc/passwd"), "");
    EXPECT_EQ(Objection("//etc/./../etc//passwd"), "");
}

TEST(RootOnly, FileInTheFolderOfTemporaryFilesDoesNot) {
    const TemporaryDirectory folder("/tmp");
    EXPECT_EQ(Objection(folder.Write("a.so", "")), "/tmp" + kGroupsRule);
}

TEST(RootOnly, PathMustNameTheFolder) {
    EXPECT_EQ(Objection("a.so"), "a.so: named without its folder");
    EXPECT_EQ(Objection(""), ": named without its folder");
}

TEST(RootOnly, PathIsNotCutAtANullCharacter) {
    EXPECT_EQ(Objection(std::string("/etc/passwd\0.so", 15)),
              "/etc/passwd: null character in the path");
}

TEST(RootOnly, PathsThroughProcAreRefused) {
    for (const char* const path :
         {"/proc/version", "/proc/self/exe", "/proc/self/root/etc/passwd"}) {
        EXPECT_EQ(Objection(path), "/proc: is not on a disk");
    }
}

TEST(RootOnly, PathFromAWorkingDirectoryThatIsGoneIsRefused) {
    const std::filesystem::path saved = std::filesystem::current_path();
    {
        const TemporaryDirectory folder;
        std::filesystem::current_path(folder.Path());
    }
    EXPECT_EQ(Objection("./etc/passwd"),
              "./etc/passwd: working directory: No such file or directory");
    std::filesystem::current_path(saved);
}

// --- Owners and modes, which only root can give ---------------------------------------------------

/// Has a file that root alone can change: folder/inner/a.so. Files that say so are root's own.
class RootOnlyTest : public testing::Test {
protected:
    void SetUp() override {
        if (::geteuid() != 0) {
            GTEST_SKIP() << "only root can give files away";
        }
        const mode_t saved = ::umask(022);
        _root = std::make_unique<TemporaryDirectory>("/var/lib");
        _file = _root->Write("inner/a.so", "");
        ::umask(saved);
        ::chmod(_root->Path().c_str(), 0755);
    }

    std::string At(const std::string& name) const { return _root->File(name); }

    static void Give(const std::string& path, uid_t user) {
        ASSERT_EQ(::lchown(path.c_str(), user, 0), 0);
    }
    static void SetMode(const std::string& path, mode_t mode) {
        ASSERT_EQ(::chmod(path.c_str(), mode), 0);
    }
    std::string Link(const std::string& target, const std::string& name) const {
        std::filesystem::create_symlink(target, At(name));
        return At(name);
    }

    std::unique_ptr<TemporaryDirectory> _root;
    std::string _file;
};

TEST_F(RootOnlyTest, FileOfRootPasses) {
    EXPECT_EQ(Objection(_file), "");
}

TEST_F(RootOnlyTest, ModeOfTheFileDecides) {
    const std::vector<std::pair<mode_t, std::string>> cases = {
        {0644, ""},
        {0755, ""},
        {0400, ""},
        {0000, ""},
        {04755, ""},
        {0664, _file + kGroupsRule},
        {0620, _file + kGroupsRule},
        {0646, _file + kOthersRule},
        {0602, _file + kOthersRule},
        {0666, _file + kGroupsRule},
    };
    for (const auto& [mode, expected] : cases) {
        SetMode(_file, mode);
        EXPECT_EQ(Objection(_file), expected) << std::oct << mode;
    }
}

TEST_F(RootOnlyTest, OwnerOfTheFileDecides) {
    Give(_file, kSomebody);
    EXPECT_EQ(Objection(_file), _file + kNobodysRule);
}

TEST_F(RootOnlyTest, EveryFolderOnTheWayDecides) {
    for (const std::string& place : {At("inner"), _root->Path().string()}) {
        Give(place, kSomebody);
        EXPECT_EQ(Objection(_file), place + kNobodysRule);
        Give(place, 0);
        SetMode(place, 0775);
        EXPECT_EQ(Objection(_file), place + kGroupsRule);
        SetMode(place, 01757);
        EXPECT_EQ(Objection(_file), place + kOthersRule);
        SetMode(place, 0755);
    }
    EXPECT_EQ(Objection(_file), "");
}

TEST_F(RootOnlyTest, OnlyARegularFilePasses) {
    EXPECT_EQ(Objection(At("inner")), At("inner") + ": not a regular file");
    EXPECT_EQ(Objection(At("inner/..")), _root->Path().string() + ": not a regular file");
    EXPECT_EQ(Objection("/"), "/: not a regular file");
    ASSERT_EQ(::mkfifo(At("fifo.so").c_str(), 0600), 0);
    EXPECT_EQ(Objection(At("fifo.so")), At("fifo.so") + ": not a regular file");
}

TEST_F(RootOnlyTest, MissingPlacesAreNamed) {
    EXPECT_EQ(Objection(At("b.so")), At("b.so") + ": No such file or directory");
    EXPECT_EQ(Objection(At("none/b.so")), At("none") + ": No such file or directory");
    EXPECT_EQ(Objection(_file + "/b.so"), _file + ": Not a directory");
    EXPECT_EQ(Objection(_file + "/../a.so"), _file + ": Not a directory");
}

TEST_F(RootOnlyTest, LinksAreFollowedWhoeverOwnsThem) {
    EXPECT_EQ(Objection(Link("inner/a.so", "relative.so")), "");
    EXPECT_EQ(Objection(Link(_file, "absolute.so")), "");
    EXPECT_EQ(Objection(Link("./inner/../inner/a.so", "winding.so")), "");
    Link("inner", "folder");
    EXPECT_EQ(Objection(At("folder/a.so")), "");
    EXPECT_EQ(Objection(Link("folder/a.so", "chain.so")), "");
    // Nobody can change a link, its owner included; and its folder is root's.
    Give(At("chain.so"), kSomebody);
    EXPECT_EQ(Objection(At("chain.so")), "");
}

TEST_F(RootOnlyTest, LinkIsAsSafeAsItsTarget) {
    const TemporaryDirectory elsewhere("/var/lib");
    Give(elsewhere.Path(), kSomebody);
    const std::string target = elsewhere.Write("b.so", "");
    EXPECT_EQ(Objection(Link(target, "out.so")), elsewhere.Path().string() + kNobodysRule);
    Link(elsewhere.Path(), "outside");
    EXPECT_EQ(Objection(At("outside/b.so")), elsewhere.Path().string() + kNobodysRule);
}

TEST_F(RootOnlyTest, LinkIsAsSafeAsItsFolder) {
    std::filesystem::create_directory(At("open"));
    SetMode(At("open"), 0777);
    EXPECT_EQ(Objection(Link("../inner/a.so", "open/a.so")), At("open") + kGroupsRule);
    Link("open", "hidden");
    EXPECT_EQ(Objection(At("hidden/a.so")), At("open") + kGroupsRule);
    // Also when the way only passes through it, there and back.
    EXPECT_EQ(Objection(At("open/../inner/a.so")), At("open") + kGroupsRule);
    EXPECT_EQ(Objection(Link("open/../inner/a.so", "through.so")), At("open") + kGroupsRule);
}

TEST_F(RootOnlyTest, CircleOfLinksEnds) {
    Link("right.so", "left.so");
    Link("left.so", "right.so");
    EXPECT_EQ(Objection(At("left.so")), At("left.so") + ": Too many levels of symbolic links");
}

TEST_F(RootOnlyTest, LinkThatLeadsNowhereIsNamed) {
    EXPECT_EQ(Objection(Link("none.so", "dangling.so")),
              At("none.so") + ": No such file or directory");
}

TEST_F(RootOnlyTest, RelativePathStartsInTheWorkingDirectory) {
    const WorkingDirectory here(At("inner"));
    EXPECT_EQ(Objection("./a.so"), "");
    EXPECT_EQ(Objection("../inner/a.so"), "");
    SetMode(_root->Path(), 0777);
    EXPECT_EQ(Objection("./a.so"), _root->Path().string() + kGroupsRule);
}

TEST_F(RootOnlyTest, OwnersOnAFileSystemMountedNosuidMeanNothing) {
    for (const std::string& place : {_file, At("inner"), std::string("/var")}) {
        nosuidPlace = place;
        EXPECT_EQ(Objection(_file),
                  place + ": is on a file system mounted nosuid, where owners mean nothing");
    }
    nosuidPlace.clear();
    EXPECT_EQ(Objection(_file), "");
}

}  // namespace
}  // namespace Corvel::Platform
