#include <dirent.h>
#include <dlfcn.h>
#include <errno.h>

#include <string>
#include <string_view>
#include <vector>

#include <boost/regex.hpp>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "corvel/autocli/Dispatcher.h"
#include "corvel/autocli/RootNamespace.h"
#include "corvel/autocli/plugins/PluginFileCheck.h"
#include "corvel/platform/Platform.h"
#include "tests/support/TemporaryDirectory.h"
#include "tests/support/ThrownText.h"

namespace {

/// Where directories of the system are looked for while a test says so; they are never opened.
constexpr std::string_view kSystemFolder = "/usr/lib/orvane/";
std::vector<std::string>* systemFoldersAskedFor = nullptr;

/// Whether opening a directory fails, because descriptors have run out. Really to run out of them would
/// also stop the sanitizers, which need some.
bool openingFails = false;
/// Whether reading a directory fails.
bool readingBreaks = false;

}  // namespace

// These two stand before those of the system, also for the library.
extern "C" DIR* opendir(const char* name) {
    if (systemFoldersAskedFor != nullptr && std::string_view(name).starts_with(kSystemFolder)) {
        systemFoldersAskedFor->emplace_back(name);
        errno = ENOENT;
        return nullptr;
    }
    if (openingFails) {
        errno = EMFILE;
        return nullptr;
    }
    static const auto system = reinterpret_cast<DIR* (*)(const char*)>(dlsym(RTLD_NEXT, "opendir"));
    return system(name);
}

extern "C" dirent* readdir(DIR* directory) {
    if (readingBreaks) {
        errno = EIO;
        return nullptr;
    }
    static const auto system = reinterpret_cast<dirent* (*)(DIR*)>(dlsym(RTLD_NEXT, "readdir"));
    return system(directory);
}

namespace Corvel::Testing {
namespace {

using AutoCli::Dispatcher;
using testing::ElementsAre;

/// A descriptor that brings one namespace.
std::string Descriptor(const std::string& name) {
    return "<plugin><version>1.0.0</version><namespaces><namespace path=\"" + name +
           "\"><description>Of a test.</description></namespace></namespaces></plugin>";
}

class PluginLoadingTest : public testing::Test {
protected:
    /// What the action writes to standard error.
    template <typename Action>
    std::string ErrorsOf(Action action) {
        testing::internal::CaptureStderr();
        action();
        return testing::internal::GetCapturedStderr();
    }

    std::vector<std::string> Namespaces() const {
        return _dispatcher.GetRootNamespace()->GetNamespaceNodeNames();
    }

    TemporaryDirectory _directory;
    Dispatcher _dispatcher;
};

TEST_F(PluginLoadingTest, AddPluginLoadsADescriptor) {
    const std::string file = _directory.Write("a.xml", Descriptor("first"));
    _dispatcher.AddPlugin(file);
    EXPECT_THAT(_dispatcher.GetPluginNames(), ElementsAre("Internal", file));
    EXPECT_THAT(Namespaces(), ElementsAre("first", "quorcli"));
}

TEST_F(PluginLoadingTest, AddPluginLetsFailuresOfLoadingPass) {
    EXPECT_EQ(ThrownText([&] { _dispatcher.AddPlugin("/nonexistent/a.xml"); }),
              "Unable to parse XML descriptor: /nonexistent/a.xml");
    EXPECT_EQ(ThrownText([&] { _dispatcher.AddPlugin("/nonexistent/a.so"); }),
              "Unable to load plugin from /nonexistent/a.so: /nonexistent/a.so: cannot open shared "
              "object file: No such file or directory");
}

TEST_F(PluginLoadingTest, AddPluginLetsFailuresOfRegisteringPass) {
    const std::string file = _directory.Write("a.xml", Descriptor("quorcli"));
    EXPECT_EQ(ThrownText([&] { _dispatcher.AddPlugin(file); }),
              "Error while trying to register the plugin " + file +
                  " Duplicate top-level namespaces must have the same description: quorcli The "
                  "functionality in " +
                  file + " will not be available until this issue is resolved.");
}

TEST_F(PluginLoadingTest, AddPluginTellsKindsOfFilesApartAsTheExpressionsDo) {
    const boost::regex library(".+\\.so$");
    const boost::regex descriptor(".+\\.xml$");
    for (const std::string& path : {std::string("/nonexistent/a.so"),
                                    std::string("/nonexistent/a.xml"),
                                    std::string("/nonexistent/.so"),
                                    std::string("/nonexistent/a.so.xml"),
                                    std::string("/nonexistent/a.xml.so"),
                                    std::string("/nonexistent/a.so\n"),
                                    std::string("/nonexistent/a\n.xml"),
                                    std::string("/nonexistent/a\0.xml", 19),
                                    std::string("/nonexistent/a.SO"),
                                    std::string("/nonexistent/aso"),
                                    std::string("/nonexistent/a.so.1"),
                                    std::string(".so"),
                                    std::string(".xml"),
                                    std::string("so"),
                                    std::string("")}) {
        SCOPED_TRACE(testing::PrintToString(path));
        const std::string failure = ThrownText([&] { _dispatcher.AddPlugin(path); });
        const bool isLibrary = boost::regex_match(path, library);
        EXPECT_EQ(failure.starts_with("Unable to load plugin from "), isLibrary);
        EXPECT_EQ(failure.starts_with("Unable to parse XML descriptor: "),
                  !isLibrary && boost::regex_match(path, descriptor));
    }
}

TEST_F(PluginLoadingTest, NullIsTheEmptyName) {
    const char* const none = nullptr;
    _dispatcher.AddPlugin(none);
    EXPECT_EQ(ErrorsOf([&] { _dispatcher.AddExternalDirectoryInt(none, true); }),
              "Unable to open directory  for plugin registration\n");
    EXPECT_EQ(ErrorsOf([&] { _dispatcher.AddExternalDirectory(none); }),
              "Unable to open directory  for plugin registration\n");
    EXPECT_THAT(_dispatcher.GetPluginNames(), ElementsAre("Internal"));
}

TEST_F(PluginLoadingTest, DirectoryIsLoadedInByteWiseOrderOfTheNames) {
    const std::string folder = _directory.Path();
    for (const char* name : {"b.xml", "a.so", "notes.txt", ".hidden.so"}) {
        _directory.Write(name, "");
    }
    const std::string tooShort = ": file too short";
    const auto failure = [&](const std::string& name, const std::string& reason) {
        return "Error loading plugin " + folder + "/" + name + " skipping.  Error was: " + reason +
               "\n";
    };
    const auto libraryFailure = [&](const std::string& name) {
        const std::string path = folder + "/" + name;
        return failure(name, "Unable to load plugin from " + path + ": " + path + tooShort);
    };
    EXPECT_EQ(ErrorsOf([&] { _dispatcher.AddExternalDirectory(folder); }),
              libraryFailure(".hidden.so") + libraryFailure("a.so") +
                  failure("b.xml", "Unable to parse XML descriptor: " + folder + "/b.xml"));
}

TEST_F(PluginLoadingTest, FilesAfterAFailedOneAreStillLoaded) {
    const std::string folder = _directory.Path();
    _directory.Write("a.xml", "no descriptor");
    _directory.Write("b.xml", Descriptor("second"));
    EXPECT_EQ(ErrorsOf([&] { _dispatcher.AddExternalDirectory(folder); }),
              "Error loading plugin " + folder +
                  "/a.xml skipping.  Error was: Unable to parse XML descriptor: " + folder +
                  "/a.xml\n");
    EXPECT_THAT(Namespaces(), ElementsAre("quorcli", "second"));
}

TEST_F(PluginLoadingTest, DirectoryWithoutLib64WritesNothingAboutIt) {
    EXPECT_EQ(ErrorsOf([&] { _dispatcher.AddExternalDirectory(_directory.Path()); }), "");
}

TEST_F(PluginLoadingTest, Lib64IsLoadedBeforeTheDirectoryItself) {
    const std::string folder = _directory.Path();
    _directory.Write("a.xml", Descriptor("first"));
    _directory.Write("lib64/b.xml", Descriptor("second"));
    EXPECT_EQ(ErrorsOf([&] { _dispatcher.AddExternalDirectory(folder); }), "");
    EXPECT_THAT(_dispatcher.GetPluginNames(),
                ElementsAre("Internal", folder + "/lib64/b.xml", folder + "/a.xml"));
}

TEST_F(PluginLoadingTest, DirectoryThatCannotBeOpenedIsReportedOnRequestOnly) {
    EXPECT_EQ(ErrorsOf([&] { _dispatcher.AddExternalDirectory("/nonexistent"); }),
              "Unable to open directory /nonexistent for plugin registration\n");
    EXPECT_EQ(ErrorsOf([&] { _dispatcher.AddExternalDirectoryInt("/nonexistent", false); }), "");
    EXPECT_EQ(ErrorsOf([&] { _dispatcher.AddExternalDirectoryInt("/nonexistent", true); }),
              "Unable to open directory /nonexistent for plugin registration\n");
}

/// What is in it would be lost without a word.
TEST_F(PluginLoadingTest, Lib64ThatIsOutOfReachIsReported) {
    const std::string folder = _directory.Path();
    _directory.Write("lib64/a.xml", Descriptor("a"));
    openingFails = true;
    EXPECT_EQ(ErrorsOf([&] { _dispatcher.AddExternalDirectory(folder); }),
              "Unable to open directory " + folder + "/lib64 for plugin registration\n" +
                  "Unable to open directory " + folder + " for plugin registration\n");
    openingFails = false;
}

TEST_F(PluginLoadingTest, DirectoryThatCannotBeReadIsAlwaysReported) {
    const std::string folder = _directory.Path();
    readingBreaks = true;
    EXPECT_EQ(ErrorsOf([&] { _dispatcher.AddExternalDirectoryInt(folder, false); }),
              "Unable to read directory " + folder + " for plugin registration\n");
    readingBreaks = false;
}

TEST_F(PluginLoadingTest, DefaultDirectoriesAreBothLookedThroughEachAfterItsLib64) {
    std::vector<std::string> asked;
    systemFoldersAskedFor = &asked;
    EXPECT_EQ(ErrorsOf([&] { _dispatcher.AddDefaultDirectories(); }),
              "Unable to open directory /usr/lib/orvane/quorcli for plugin registration\n"
              "Unable to open directory /usr/lib/orvane/quorcli/ext for plugin registration\n");
    systemFoldersAskedFor = nullptr;
    EXPECT_THAT(asked,
                ElementsAre("/usr/lib/orvane/quorcli/lib64",
                            "/usr/lib/orvane/quorcli",
                            "/usr/lib/orvane/quorcli/ext/lib64",
                            "/usr/lib/orvane/quorcli/ext"));
}

TEST_F(PluginLoadingTest, FeatureSwitchesDecideAboutTwoDescriptors) {
    const std::string folder = _directory.Path();
    _directory.Write("quorcli-syslog.xml", Descriptor("syslog"));
    _directory.Write("dwelquorcmd.xml", Descriptor("dwelquor"));
    const unsigned char off = 0;
    const unsigned char on = 2;
    struct Case {
        const unsigned char* feature326;
        const unsigned char* feature405;
        std::vector<std::string> expected;
    };
    for (const Case& test : std::vector<Case>{{&off, &off, {"quorcli", "syslog"}},
                                              {&on, &off, {"quorcli"}},
                                              {&off, &on, {"dwelquor", "quorcli", "syslog"}},
                                              {&on, &on, {"dwelquor", "quorcli"}},
                                              {nullptr, nullptr, {"quorcli", "syslog"}}}) {
        Dispatcher dispatcher;
        FeatureList[326] = test.feature326;
        FeatureList[405] = test.feature405;
        dispatcher.AddExternalDirectory(folder);
        EXPECT_EQ(dispatcher.GetRootNamespace()->GetNamespaceNodeNames(), test.expected);
    }
    FeatureState_InitDeltaMode();
}

/// Sets a check of plug-in files that refuses paths with "bad" in their names, and takes it away.
class PluginFileCheckTest : public PluginLoadingTest {
protected:
    PluginFileCheckTest() { AutoCli::SetPluginFileCheck(&RefuseBad); }
    ~PluginFileCheckTest() override { AutoCli::SetPluginFileCheck(nullptr); }

    static bool RefuseBad(const std::string& path, std::string& reason) {
        _sAskedFor.push_back(path);
        EXPECT_EQ(reason, "");
        if (path.find("bad") == std::string::npos) {
            return true;
        }
        reason = "it is bad";
        return false;
    }

    inline static std::vector<std::string> _sAskedFor;

    void SetUp() override { _sAskedFor.clear(); }
};

TEST_F(PluginFileCheckTest, RefusedFileIsNotLoaded) {
    const std::string descriptor = _directory.Write("bad.xml", Descriptor("first"));
    EXPECT_EQ(ThrownText([&] { _dispatcher.AddPlugin(descriptor); }),
              "Unable to load plugin from " + descriptor + ": it is bad");
    EXPECT_THAT(_dispatcher.GetPluginNames(), ElementsAre("Internal"));
    EXPECT_THAT(Namespaces(), ElementsAre("quorcli"));
}

/// A missing file is refused like any other: it was not even looked for.
TEST_F(PluginFileCheckTest, RefusalComesBeforeTheFileIsTouched) {
    for (const std::string path : {"/nonexistent/bad.so", "/nonexistent/bad.xml"}) {
        EXPECT_EQ(ThrownText([&] { _dispatcher.AddPlugin(path.c_str()); }),
                  "Unable to load plugin from " + path + ": it is bad");
    }
}

TEST_F(PluginFileCheckTest, AllowedFileIsLoadedAsEver) {
    const std::string descriptor = _directory.Write("good.xml", Descriptor("first"));
    _dispatcher.AddPlugin(descriptor);
    EXPECT_THAT(Namespaces(), ElementsAre("first", "quorcli"));
    EXPECT_EQ(ThrownText([&] { _dispatcher.AddPlugin("/nonexistent/a.xml"); }),
              "Unable to parse XML descriptor: /nonexistent/a.xml");
    EXPECT_THAT(_sAskedFor, ElementsAre(descriptor, "/nonexistent/a.xml"));
}

TEST_F(PluginFileCheckTest, FilesThatAreNoPluginsAreNotAskedAbout) {
    _dispatcher.AddPlugin("/nonexistent/bad.txt");
    _dispatcher.AddPlugin("");
    EXPECT_THAT(_sAskedFor, ElementsAre());
}

TEST_F(PluginFileCheckTest, RefusedFileOfADirectoryIsToldAndPassedOver) {
    const std::string folder = _directory.Path();
    const std::string refused = _directory.Write("bad.xml", Descriptor("first"));
    _directory.Write("good.xml", Descriptor("second"));
    EXPECT_EQ(ErrorsOf([&] { _dispatcher.AddExternalDirectory(folder); }),
              "Error loading plugin " + refused +
                  " skipping.  Error was: Unable to load plugin "
                  "from " +
                  refused + ": it is bad\n");
    EXPECT_THAT(Namespaces(), ElementsAre("quorcli", "second"));
}

TEST_F(PluginFileCheckTest, WhatTheCheckThrowsPasses) {
    AutoCli::SetPluginFileCheck(
        [](const std::string& /*path*/, std::string& /*reason*/) -> bool { throw 7; });
    EXPECT_THROW(_dispatcher.AddPlugin("/nonexistent/a.xml"), int);
}

TEST_F(PluginFileCheckTest, RefusalWithoutAReasonIsOne) {
    AutoCli::SetPluginFileCheck(
        [](const std::string& /*path*/, std::string& /*reason*/) { return false; });
    EXPECT_EQ(ThrownText([&] { _dispatcher.AddPlugin("/nonexistent/a.xml"); }),
              "Unable to load plugin from /nonexistent/a.xml: ");
}

TEST_F(PluginFileCheckTest, HostCanAskForPluginsOfItsOwnMaking) {
    EXPECT_EQ(ThrownText([] { AutoCli::RequireAllowedPluginFile("bad"); }),
              "Unable to load plugin from bad: it is bad");
    EXPECT_NO_THROW(AutoCli::RequireAllowedPluginFile("good"));
    AutoCli::SetPluginFileCheck(nullptr);
    EXPECT_NO_THROW(AutoCli::RequireAllowedPluginFile("bad"));
}

TEST_F(PluginFileCheckTest, ReadyMadeCheckRefusesWhatOthersCanChange) {
    AutoCli::SetPluginFileCheck(&AutoCli::OnlyRootCanChangePluginFile);
    const TemporaryDirectory folder("/tmp");
    const std::string path = folder.Write("a.xml", Descriptor("first"));
    EXPECT_EQ(ThrownText([&] { _dispatcher.AddPlugin(path); }),
              "Unable to load plugin from " + path + ": /tmp: can be written by its group");
}

TEST(PluginLoading, FeatureSwitchesAreSetUpByTheDispatcher) {
    FeatureList[326] = nullptr;
    const Dispatcher dispatcher;
    ASSERT_NE(FeatureList[326], nullptr);
    EXPECT_EQ(*FeatureList[326], 0);
}

}  // namespace
}  // namespace Corvel::Testing
