#include <dlfcn.h>
#include <sys/stat.h>

#include <exception>
#include <filesystem>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "corvel/autocli/Command.h"
#include "corvel/autocli/RootNamespace.h"
#include "corvel/autocli/formatters/Formatter.h"
#include "corvel/autocli/plugins/SharedLibraryPlugin.h"
#include "corvel/callspec/Input.h"
#include "corvel/callspec/Output.h"
#include "corvel/metaobj/MetaObject.h"
#include "tests/autocli/VirtualSlot.h"
#include "tests/support/TemporaryDirectory.h"
#include "tests/support/ThrownText.h"

namespace Corvel::AutoCli {
namespace {

using Testing::TemporaryDirectory;
using Testing::ThrownText;
using Testing::VirtualSlot;

std::string TestPlugin(const std::string& name) {
    return CORVEL_TEST_PLUGINS "/" + name + ".so";
}

bool IsLoaded(const std::string& path) {
    void* handle = dlopen(path.c_str(), RTLD_LAZY | RTLD_NOLOAD);
    if (handle == nullptr) {
        return false;
    }
    dlclose(handle);
    return true;
}

std::string InitializeFailure(const std::string& path) {
    return ThrownText([&path] { SharedLibraryPlugin::New(path)->Initialize(); });
}

/// An initialised plug-in.
std::shared_ptr<SharedLibraryPlugin> Load(const std::string& name) {
    auto plugin = SharedLibraryPlugin::New(TestPlugin(name));
    plugin->Initialize();
    return plugin;
}

TEST(Plugin, VirtualOperationsStandInTheirOrder) {
    using Has = bool (Plugin::*)(const std::string&);
    using Get = std::shared_ptr<Formatter> (Plugin::*)(const std::string&);
    EXPECT_EQ(1u, VirtualSlot(&Plugin::Initialize));
    EXPECT_EQ(2u, VirtualSlot(&Plugin::GetName));
    EXPECT_EQ(3u, VirtualSlot(&Plugin::RegisterNamespaces));
    EXPECT_EQ(4u, VirtualSlot(static_cast<Has>(&Plugin::HasFormatter)));
    EXPECT_EQ(5u, VirtualSlot(static_cast<Get>(&Plugin::GetFormatter)));
    EXPECT_EQ(6u, VirtualSlot(&Plugin::GetFormatters));
}

TEST(SharedLibraryPlugin, NameIsThePathHoweverGiven) {
    const std::string path = "some/path.so";
    EXPECT_EQ("some/path.so", SharedLibraryPlugin::New(path)->GetName());
    EXPECT_EQ("some/path.so", SharedLibraryPlugin::New("some/path.so")->GetName());
    EXPECT_EQ("some/path.so", SharedLibraryPlugin::New(std::string(path))->GetName());
    EXPECT_EQ("", SharedLibraryPlugin::New(static_cast<const char*>(nullptr))->GetName());
}

TEST(SharedLibraryPlugin, NothingIsLoadedAtCreation) {
    const auto plugin = SharedLibraryPlugin::New(TestPlugin("Greeting"));
    EXPECT_FALSE(IsLoaded(TestPlugin("Greeting")));
}

TEST(SharedLibraryPlugin, LibraryRegistersItsCommandsBelowTheRoot) {
    const auto plugin = Load("Greeting");
    const auto root = RootNamespace::New(nullptr);
    plugin->RegisterNamespaces(root);
    std::list<std::string> path = {"greeting", "say"};
    const auto command = std::dynamic_pointer_cast<Command>(root->ResolveNode(path));
    ASSERT_NE(nullptr, command);
    EXPECT_EQ("Say hello.", command->GetDescription());
    const auto output = CallSpec::Output::New();
    command->Execute(CallSpec::Input::New(), output);
    EXPECT_EQ("hello", output->GetRootObject()->ToString());
}

TEST(SharedLibraryPlugin, LibraryStaysLoadedAsLongAsThePluginLives) {
    auto plugin = Load("Greeting");
    EXPECT_TRUE(IsLoaded(TestPlugin("Greeting")));
    plugin.reset();
    EXPECT_FALSE(IsLoaded(TestPlugin("Greeting")));
}

TEST(SharedLibraryPlugin, SecondInitializeChangesNothing) {
    auto plugin = Load("Greeting");
    plugin->Initialize();
    EXPECT_TRUE(IsLoaded(TestPlugin("Greeting")));
    plugin.reset();
    EXPECT_FALSE(IsLoaded(TestPlugin("Greeting")));
}

TEST(SharedLibraryPlugin, SymbolsOfTheLibraryServeTheWholeProcess) {
    EXPECT_EQ(nullptr, dlsym(RTLD_DEFAULT, "corvel_test_greeting_marker"));
    // A copy: the loader never unloads a library again in which somebody has found a symbol so.
    const TemporaryDirectory folder;
    const std::filesystem::path copy = folder.File("Greeting.so");
    std::filesystem::copy_file(TestPlugin("Greeting"), copy);
    const auto plugin = SharedLibraryPlugin::New(copy);
    plugin->Initialize();
    const void* marker = dlsym(RTLD_DEFAULT, "corvel_test_greeting_marker");
    ASSERT_NE(nullptr, marker);
    EXPECT_EQ(42, *static_cast<const int*>(marker));
}

TEST(SharedLibraryPlugin, MissingFileIsToldInTheWordsOfTheLoader) {
    EXPECT_EQ(
        "Unable to load plugin from /nonexistent/nosuch.so: /nonexistent/nosuch.so: cannot open "
        "shared object file: No such file or directory",
        InitializeFailure("/nonexistent/nosuch.so"));
}

TEST(SharedLibraryPlugin, LibraryWithoutEntryPointIsToldAndUnloadedAgain) {
    const std::string path = TestPlugin("NoEntryPoint");
    const auto plugin = SharedLibraryPlugin::New(path);
    EXPECT_EQ("Unable to get plugin registration point from " + path + ": " + path +
                  ": undefined symbol: AutoCli_RegisterNamespaces",
              ThrownText([&plugin] { plugin->Initialize(); }));
    EXPECT_FALSE(IsLoaded(path));
}

TEST(SharedLibraryPlugin, NullStandsWhereTheLoaderHasNoReason) {
    const std::string path = TestPlugin("NullEntryPoint");
    EXPECT_EQ("Unable to get plugin registration point from " + path + ": (null)",
              InitializeFailure(path));
    EXPECT_FALSE(IsLoaded(path));
}

TEST(SharedLibraryPlugin, EntryPointThatIsDataIsToldAndNotCalled) {
    for (const std::string name :
         {"DataEntryPoint", "ConstantEntryPoint", "ThreadEntryPoint", "ConstantAmongCode"}) {
        const std::string path = TestPlugin(name);
        EXPECT_EQ("Unable to get plugin registration point from " + path + ": " + path +
                      ": symbol is no function: AutoCli_RegisterNamespaces",
                  InitializeFailure(path));
        EXPECT_FALSE(IsLoaded(path)) << name;
    }
}

TEST(SharedLibraryPlugin, WorkingDirectoryThatTheLibraryChangesIsRestored) {
    const std::filesystem::path before = std::filesystem::current_path();
    ASSERT_NE("/", before);
    Load("ChangesDirectoryEarly");
    EXPECT_EQ(before, std::filesystem::current_path());
    Load("ChangesDirectoryLate")->RegisterNamespaces(RootNamespace::New(nullptr));
    EXPECT_EQ(before, std::filesystem::current_path());
}

TEST(SharedLibraryPlugin, RegistersNothingWithoutInitialize) {
    const auto root = RootNamespace::New(nullptr);
    SharedLibraryPlugin::New(TestPlugin("Greeting"))->RegisterNamespaces(root);
    EXPECT_EQ(std::vector<std::string>{}, root->GetNamespaceNodeNames());
}

TEST(SharedLibraryPlugin, RegistersNothingAfterAFailedInitialize) {
    for (const std::string name : {"NoSuchLibrary", "NoEntryPoint"}) {
        const auto plugin = SharedLibraryPlugin::New(TestPlugin(name));
        EXPECT_NE("(nothing was thrown)", ThrownText([&plugin] { plugin->Initialize(); })) << name;
        const auto root = RootNamespace::New(nullptr);
        plugin->RegisterNamespaces(root);
        EXPECT_EQ(std::vector<std::string>{}, root->GetNamespaceNodeNames()) << name;
    }
}

TEST(SharedLibraryPlugin, HasNoFormatters) {
    const auto plugin = SharedLibraryPlugin::New("x.so");
    EXPECT_FALSE(plugin->HasFormatter("table"));
    EXPECT_EQ(nullptr, plugin->GetFormatter("table"));
    EXPECT_FALSE(plugin->HasFormatter(static_cast<const char*>(nullptr)));
    EXPECT_EQ(nullptr, plugin->GetFormatter(std::string("table")));
    EXPECT_TRUE(plugin->GetFormatters().empty());
    EXPECT_EQ(&plugin->GetFormatters(), &SharedLibraryPlugin::New("y.so")->GetFormatters());
}

TEST(SharedLibraryPlugin, ExceptionsOfTheEntryPointPassUnchanged) {
    const auto root = RootNamespace::New(nullptr);
    const auto corvelException = Load("ThrowsCorvelException");
    EXPECT_EQ("no room", ThrownText([&] { corvelException->RegisterNamespaces(root); }));
    const auto runtimeError = Load("ThrowsRuntimeError");
    try {
        runtimeError->RegisterNamespaces(root);
        FAIL();
    } catch (const std::runtime_error& error) {
        EXPECT_STREQ("no luck", error.what());
    }
    const auto number = Load("ThrowsInt");
    try {
        number->RegisterNamespaces(root);
        FAIL();
    } catch (int thrown) {
        EXPECT_EQ(7, thrown);
    }
}

TEST(SharedLibraryPlugin, ExceptionOfALibrarysOwnClassArrivesWithTheLibraryStillLoaded) {
    const auto root = RootNamespace::New(nullptr);
    auto plugin = Load("ThrowsOwnClass");
    try {
        plugin->RegisterNamespaces(root);
        FAIL();
    } catch (const std::exception& error) {
        EXPECT_STREQ("of my own", error.what());
        EXPECT_TRUE(IsLoaded(TestPlugin("ThrowsOwnClass")));
    }
    EXPECT_EQ(std::vector<std::string>{"halfway"}, root->GetNamespaceNodeNames());
    plugin.reset();
    EXPECT_FALSE(IsLoaded(TestPlugin("ThrowsOwnClass")));
}

TEST(SharedLibraryPlugin, FilesThatAreNoLibrariesAreRefused) {
    const TemporaryDirectory folder;
    struct Case {
        const char* name;
        std::string content;
        const char* reason;
    };
    const std::vector<Case> cases = {
        {"empty.so", "", "file too short"},
        {"short.so", "hello\n", "file too short"},
        {"text.so", std::string(10000, 'x'), "invalid ELF header"},
    };
    for (const auto& [name, content, reason] : cases) {
        const std::string path = folder.Write(name, content);
        std::string expected = "Unable to load plugin from ";
        expected.append(path).append(": ").append(path).append(": ").append(reason);
        EXPECT_EQ(expected, InitializeFailure(path));
    }
}

TEST(SharedLibraryPlugin, DirectoryIsRefused) {
    const TemporaryDirectory folder;
    const std::string path = folder.File("directory.so");
    ASSERT_EQ(0, mkdir(path.c_str(), 0700));
    EXPECT_EQ("Unable to load plugin from " + path + ": " + path +
                  ": cannot read file data: Is a directory",
              InitializeFailure(path));
}

TEST(SharedLibraryPlugin, FifoIsRefusedWithoutWaiting) {
    const TemporaryDirectory folder;
    const std::string path = folder.File("fifo.so");
    ASSERT_EQ(0, mkfifo(path.c_str(), 0600));
    EXPECT_EQ("Unable to load plugin from " + path + ": " + path + ": not a regular file",
              InitializeFailure(path));
}

}  // namespace
}  // namespace Corvel::AutoCli
