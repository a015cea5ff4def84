#include <signal.h>
#include <sys/stat.h>

#include <cstring>
#include <elf.h>
#include <filesystem>
#include <link.h>
#include <set>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "tests/support/ProcessRunner.h"
#include "tests/support/TemporaryDirectory.h"

namespace Corvel::Testing {
namespace {

/// A command whose child prints a structure with numbers and truth in it.
constexpr const char* kDescriptor = R"(<plugin><version>1.0.0</version>
<namespaces><namespace path="next"><description>After it.</description></namespace></namespaces>
<commands><command path="next.show"><description>Show.</description>
<input-spec>
  <parameter name="word" type="string" required="false"><description>A word.</description>
    <constraint type="regex"><regex>\w+</regex></constraint></parameter>
  <parameter name="number" type="int" required="false"><description>A number.</description>
    <constraint type="range"><range min="-2000000" max="2000000"/></constraint></parameter>
</input-spec>
<output-spec><list type="structure"><structure typeName="Next">
  <field name="Count"><int/></field><field name="On"><bool/></field><field name="Text"><string/></field>
</structure></list></output-spec>
<format-parameters><formatter>simple</formatter></format-parameters>
<execute>printf '&lt;output&gt;&lt;list type="structure"&gt;&lt;structure typeName="Next"&gt;&lt;field name="Count"&gt;&lt;int&gt;-1234567&lt;/int&gt;&lt;/field&gt;&lt;field name="On"&gt;&lt;bool&gt;true&lt;/bool&gt;&lt;/field&gt;&lt;field name="Text"&gt;&lt;string&gt;some text&lt;/string&gt;&lt;/field&gt;&lt;/structure&gt;&lt;/list&gt;&lt;/output&gt;'</execute>
</command></commands></plugin>)";

const std::string kShown =
    "\n"
    "Next:\n"
    "   Count: -1234567\n"
    "   On: true\n"
    "   Text: some text\n"
    "\n";

std::string TestPlugin(const std::string& name) {
    return CORVEL_TEST_PLUGINS "/" + name + ".so";
}

Result RunQuorcli(const std::vector<std::string>& arguments, const std::string& directory = {}) {
    Command command{{CORVEL_QUORCLI}};
    command.arguments.insert(command.arguments.end(), arguments.begin(), arguments.end());
    command.directory = directory;
    return RunProcess(command);
}

/// A folder of plug-ins: the library that a test is about, a.so, and the one after it, b.xml.
class HostilePlugin : public testing::Test {
protected:
    HostilePlugin() { _folder.Write("b.xml", kDescriptor); }

    void PutLibrary(const std::string& name) {
        std::filesystem::copy_file(TestPlugin(name), Library());
    }

    std::string Library() const { return _folder.File("a.so"); }

    Result RunNext(const std::vector<std::string>& more = {}) const {
        std::vector<std::string> arguments = {"--plugin-dir", _folder.Path(), "next", "show"};
        arguments.insert(arguments.end(), more.begin(), more.end());
        return RunQuorcli(arguments);
    }

    /// The next plug-in works as ever, and the failure of the library is told.
    void ExpectSkipped(const std::string& reason) const {
        EXPECT_EQ(RunNext(),
                  (Result{0,
                          kShown,
                          "Error loading plugin " + Library() + " skipping.  Error was: " + reason +
                              "\n"}));
    }

    void ExpectNotLoaded(const std::string& reason) const {
        ExpectSkipped("Unable to load plugin from " + Library() + ": " + Library() + ": " + reason);
    }

    void ExpectNoEntryPoint(const std::string& reason) const {
        ExpectSkipped("Unable to get plugin registration point from " + Library() + ": " + reason);
    }

    TemporaryDirectory _folder;
};

// --- Not a library -----------------------------------------------------------------------------

TEST_F(HostilePlugin, EmptyFile) {
    _folder.Write("a.so", "");
    ExpectNotLoaded("file too short");
}

TEST_F(HostilePlugin, Text) {
    _folder.Write("a.so", std::string(10000, 'x'));
    ExpectNotLoaded("invalid ELF header");
}

TEST_F(HostilePlugin, LibraryCutShort) {
    _folder.Write("a.so", ReadFile(TestPlugin("Greeting")).substr(0, 4096));
    ExpectNotLoaded("file too short");
}

/// A library that wants more memory for its last segment than there can be.
std::string Insatiable(std::string library) {
    ElfW(Ehdr) header;
    std::memcpy(&header, library.data(), sizeof header);
    for (std::size_t i = header.e_phnum; i-- > 0;) {
        char* const place = library.data() + header.e_phoff + i * sizeof(ElfW(Phdr));
        ElfW(Phdr) segment;
        std::memcpy(&segment, place, sizeof segment);
        if (segment.p_type == PT_LOAD) {
            segment.p_memsz = ElfW(Xword){1} << 62;
            std::memcpy(place, &segment, sizeof segment);
            break;
        }
    }
    return library;
}

TEST_F(HostilePlugin, LibraryThatWantsMoreMemoryThanThereIs) {
    _folder.Write("a.so", Insatiable(ReadFile(TestPlugin("Greeting"))));
    ExpectNotLoaded("failed to map segment from shared object");
}

TEST_F(HostilePlugin, Directory) {
    std::filesystem::create_directory(Library());
    ExpectNotLoaded("cannot read file data: Is a directory");
}

TEST_F(HostilePlugin, Fifo) {
    ASSERT_EQ(::mkfifo(Library().c_str(), 0600), 0);
    ExpectNotLoaded("not a regular file");
}

TEST_F(HostilePlugin, LinkThatLeadsNowhere) {
    std::filesystem::create_symlink("nowhere", Library());
    ExpectNotLoaded("cannot open shared object file: No such file or directory");
}

// --- No entry point ----------------------------------------------------------------------------

TEST_F(HostilePlugin, NoEntryPoint) {
    PutLibrary("NoEntryPoint");
    ExpectNoEntryPoint(Library() + ": undefined symbol: AutoCli_RegisterNamespaces");
}

TEST_F(HostilePlugin, EntryPointThatIsNull) {
    PutLibrary("NullEntryPoint");
    ExpectNoEntryPoint("(null)");
}

TEST_F(HostilePlugin, EntryPointThatIsAVariable) {
    PutLibrary("DataEntryPoint");
    ExpectNoEntryPoint(Library() + ": symbol is no function: AutoCli_RegisterNamespaces");
}

TEST_F(HostilePlugin, EntryPointThatIsAConstantAmongCode) {
    PutLibrary("ConstantAmongCode");
    ExpectNoEntryPoint(Library() + ": symbol is no function: AutoCli_RegisterNamespaces");
}

// --- An entry point that throws, having registered half ------------------------------------------

TEST_F(HostilePlugin, ThrowsOurException) {
    PutLibrary("ThrowsCorvelException");
    ExpectSkipped("Error while trying to register the plugin " + Library() +
                  " no room The functionality in " + Library() +
                  " will not be available until this issue is resolved.");
}

/// Foreign exceptions end the loading, and everything else.
TEST_F(HostilePlugin, ThrowsAStandardException) {
    PutLibrary("ThrowsRuntimeError");
    EXPECT_EQ(RunNext(), (Result{1, "", "Errors: \nno luck\n"}));
}

TEST_F(HostilePlugin, ThrowsANumber) {
    PutLibrary("ThrowsInt");
    EXPECT_EQ(RunNext(), (Result{1, "", "Errors: \nUnexpected exception\n"}));
}

TEST_F(HostilePlugin, ThrowsItsOwnClass) {
    PutLibrary("ThrowsOwnClass");
    EXPECT_EQ(RunNext(), (Result{1, "", "Errors: \nof my own\n"}));
}

// --- A library that ends the process -------------------------------------------------------------

/// When the library misbehaves: while it is initialised, or in its entry point.
class HostilePluginWhen : public HostilePlugin, public testing::WithParamInterface<const char*> {
protected:
    void PutLibraryThat(const std::string& behaviour) { PutLibrary(behaviour + GetParam()); }

    void ExpectNextWorks() const { EXPECT_EQ(RunNext(), (Result{0, kShown, ""})); }
};

INSTANTIATE_TEST_SUITE_P(,
                         HostilePluginWhen,
                         testing::Values("Early", "Late"),
                         [](const auto& test) { return std::string(test.param); });

TEST_P(HostilePluginWhen, ExitIsNoSuccess) {
    for (const char* const behaviour : {"Exits", "QuickExits"}) {
        PutLibraryThat(behaviour);
        EXPECT_EQ(
            RunNext(),
            (Result{
                1, "", "Unable to load plugin from " + Library() + ": it ended the process\n"}));
        std::filesystem::remove(Library());
    }
}

TEST_P(HostilePluginWhen, AbortIsNoSuccess) {
    PutLibraryThat("Aborts");
    EXPECT_EQ(RunNext(), (Result{128 + SIGABRT, "", ""}));
}

TEST_P(HostilePluginWhen, EndOfTheThreadIsNoSuccess) {
    PutLibraryThat("EndsItsThread");
    const Result result = RunNext();
    EXPECT_EQ("", result.out);
#ifdef __SANITIZE_ADDRESS__
    // The sanitizer loses track of a stack that is unwound through the loader, and may end the
    // process with a report of its own.
    EXPECT_NE(0, result.status);
    EXPECT_NE("", result.err);
#else
    EXPECT_EQ(128 + SIGABRT, result.status);
    // Which of the functions that are on the stack refuses to be unwound is up to the compiler.
    const std::set<std::string> refusals{
        "Errors: \nUnexpected exception\nFATAL: exception not rethrown\n",
        "terminate called without an active exception\n"};
    EXPECT_EQ(1U, refusals.count(result.err)) << result.err;
#endif
}

TEST_P(HostilePluginWhen, ItsChildrenEndAsTheyLike) {
    PutLibraryThat("ForksAndExits");
    ExpectNextWorks();
}

// --- A library that changes the process ----------------------------------------------------------

TEST_P(HostilePluginWhen, ClosedDescriptorsAreNotOurs) {
    PutLibraryThat("ClosesDescriptors");
    ExpectNextWorks();
}

TEST_P(HostilePluginWhen, ClosedStandardInputIsNotMissed) {
    PutLibraryThat("ClosesStandardInput");
    ExpectNextWorks();
}

TEST_P(HostilePluginWhen, ClosedStandardErrorIsNotMissed) {
    PutLibraryThat("ClosesStandardError");
    ExpectNextWorks();
}

TEST_P(HostilePluginWhen, ClosedStandardOutputIsNoSuccess) {
    PutLibraryThat("ClosesStandardOutput");
    EXPECT_EQ(RunNext(),
              (Result{1, "", "Unable to write to standard output: Bad file descriptor\n"}));
}

TEST_P(HostilePluginWhen, ChangedDirectoryDoesNotMoveLaterPaths) {
    PutLibraryThat("ChangesDirectory");
    ExpectNextWorks();
    _folder.Write("lines", "next show\n");
    EXPECT_EQ(RunQuorcli({"--plugin", "./a.so", "--plugin", "./b.xml", "--input", "lines"},
                         _folder.Path()),
              (Result{0, kShown, ""}));
}

TEST_P(HostilePluginWhen, ChangedLocaleDoesNotShowInResults) {
    const std::vector<const char*> formatters = {"simple", "table", "xml", "json", "python"};
    const std::vector<std::vector<std::string>> others = {
        {"--number", "1000000"}, {"--number", "9999999"}, {"--word", "a-b"}, {"--help"}};
    std::vector<Result> expected;
    for (const bool changed : {false, true}) {
        if (changed) {
            PutLibraryThat("ChangesLocale");
        }
        std::vector<Result> results;
        for (const char* const formatter : formatters) {
            results.push_back(RunQuorcli(
                {"--plugin-dir", _folder.Path(), "--formatter", formatter, "next", "show"}));
            EXPECT_EQ(results.back().status, 0) << results.back();
        }
        for (const std::vector<std::string>& arguments : others) {
            results.push_back(RunNext(arguments));
        }
        results.push_back(
            RunQuorcli({"--plugin-dir", _folder.Path(), "quorcli", "command", "list"}));
        results.push_back(RunQuorcli({"--plugin-dir", _folder.Path()}));
        if (!changed) {
            expected = results;
        }
        EXPECT_EQ(results, expected);
    }
}

}  // namespace
}  // namespace Corvel::Testing
