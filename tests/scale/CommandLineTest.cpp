#include <sys/wait.h>

#include <algorithm>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "tests/scale/Measuring.h"
#include "tests/support/TemporaryDirectory.h"

namespace Corvel::Scale {
namespace {

constexpr const char* kAnyDisk =
    "<list type='structure'><structure typeName='Disk'>"
    "<field name='Blocks'><int/></field><field name='Device'><string/></field>"
    "<field name='FileSystem'><string/></field><field name='Identifier'><string/></field>"
    "<field name='MountPoint'><string/></field><field name='Removable'><bool/></field>"
    "<field name='SectorSize'><int/></field><field name='Serial'><int/></field>"
    "</structure></list>";

/// What is said where a command prints nothing that can be read.
constexpr const char* kUnreadable =
    "Errors: \n"
    "No root object set for output. The command did not provide proper output.\n"
    "Implementation error! The output of this command does not match the declared output type, "
    "see errors above.\n";

/// A folder with descriptors, and quorcli called with it.
class CommandLine : public testing::Test {
protected:
    /// Describes "<name> run", which takes a text.
    void Describe(const std::string& name,
                  const std::string& execute,
                  const std::string& outputSpec,
                  const std::string& standardInput = "",
                  const std::string& description = "Runs.") const {
        _directory.Write(
            name + ".xml",
            "<plugin><version>1.0.0</version>\n<namespaces><namespace path='" + name +
                "'><description>" + description +
                "</description></namespace></namespaces>\n<commands><command path='" + name +
                ".run'><description>" + description +
                "</description>\n<input-spec><parameter name='text' type='string' "
                "required='false'><description>" +
                description + "</description></parameter></input-spec>\n<output-spec>" +
                outputSpec + "</output-spec>\n<format-parameters><formatter>json</formatter>" +
                "</format-parameters>\n<execute>" + execute + "</execute>\n" +
                (standardInput.empty() ? "" : "<stdin>" + standardInput + "</stdin>\n") +
                "</command></commands></plugin>\n");
    }

    /// Describes a command that prints what the worker prints.
    void DescribePrinter(const std::string& printing,
                         std::size_t size,
                         const std::string& outputSpec) const {
        Describe("child",
                 "'" CORVEL_SCALE_WORKER "' print-" + printing + " " + std::to_string(size),
                 outputSpec);
    }

    Outcome Run(std::vector<std::string> words) const {
        words.insert(words.begin(), {CORVEL_QUORCLI, "--plugin-dir", _directory.Path().string()});
        return Measure(words);
    }

    Outcome RunPrinter(const std::string& printing,
                       std::size_t size,
                       const std::string& outputSpec) const {
        DescribePrinter(printing, size, outputSpec);
        return Run({"child", "run"});
    }

    /// Runs the lines as a file of command lines. Does not keep them: a process starts with the
    /// memory that this one has.
    Outcome RunLines(std::string&& lines) const {
        const std::string file = _directory.Write("lines", lines);
        std::string().swap(lines);
        return Run({"--input", file});
    }

    const Testing::TemporaryDirectory& Directory() const { return _directory; }

private:
    const Testing::TemporaryDirectory _directory;
};

void ExpectStatus(const Outcome& outcome, int status) {
    EXPECT_TRUE(WIFEXITED(outcome.status)) << outcome.status;
    EXPECT_EQ(WEXITSTATUS(outcome.status), status) << outcome.errors.substr(0, 500);
}

TEST_F(CommandLine, PrintsAllThatAChildPrints) {
    constexpr std::size_t kBytesOfOne = 450;
    const std::size_t count = ChosenSizes().bytes / kBytesOfOne;
    ExpectGrowth("child prints values", count, Growth::Linear, [&](std::size_t size) {
        Outcome outcome = RunPrinter("values", size, kAnyDisk);
        ExpectStatus(outcome, 0);
        EXPECT_EQ(outcome.outputLines, 11 * size + 3);
        return outcome;
    });
}

TEST_F(CommandLine, SaysThatALongTextIsNoDocument) {
    ExpectGrowth("child prints text", ChosenSizes().bytes, Growth::Linear, [&](std::size_t size) {
        Outcome outcome = RunPrinter("text", size, kAnyDisk);
        ExpectStatus(outcome, 1);
        EXPECT_EQ(outcome.errors, kUnreadable);
        return outcome;
    });
}

TEST_F(CommandLine, PrintsEveryErrorLineOfAChild) {
    ExpectGrowth(
        "child prints ERROR lines", ChosenSizes().bytes, Growth::Ordered, [&](std::size_t size) {
            Outcome outcome = RunPrinter("errors", size, kAnyDisk);
            ExpectStatus(outcome, 1);
            EXPECT_EQ(outcome.errorLines, 1 + (size + 63) / 64);
            return outcome;
        });
}

TEST_F(CommandLine, PrintsALongErrorLine) {
    ExpectGrowth(
        "child prints one ERROR line", ChosenSizes().line, Growth::Linear, [&](std::size_t size) {
            Outcome outcome = RunPrinter("error-line", size, kAnyDisk);
            ExpectStatus(outcome, 1);
            EXPECT_EQ(outcome.errorBytes, std::string("Errors: \n").size() + size + 1);
            return outcome;
        });
}

TEST_F(CommandLine, ReadsADocumentOfOneLine) {
    constexpr std::size_t kBytesOfOne = 65;
    constexpr const char* kAny =
        "<list type='structure'><structure typeName='S'><field name='n'><int/></field></structure>"
        "</list>";
    ExpectGrowth("child prints one line",
                 ChosenSizes().line / kBytesOfOne,
                 Growth::Linear,
                 [&](std::size_t size) {
                     Outcome outcome = RunPrinter("one-line", size, kAny);
                     ExpectStatus(outcome, 0);
                     EXPECT_EQ(outcome.outputLines, 4 * size + 3);
                     return outcome;
                 });
}

TEST_F(CommandLine, ReadsALongString) {
    ExpectGrowth(
        "child prints one string", ChosenSizes().line, Growth::Linear, [&](std::size_t size) {
            Outcome outcome = RunPrinter("string", size, "<string/>");
            ExpectStatus(outcome, 0);
            return outcome;
        });
}

/// The parser's own limit, for a text that it has to put together.
TEST_F(CommandLine, RefusesPiecesOfMoreThanTenMillionBytes) {
    const Outcome most = RunPrinter("pieces", 9'999'936, "<string/>");
    ExpectStatus(most, 0);
    Tell("child prints a string in pieces", 9'999'936, most, "complete");
    const Outcome refused = RunPrinter("pieces", 10'000'064, "<string/>");
    ExpectStatus(refused, 1);
    EXPECT_EQ(refused.errors, kUnreadable);
    Tell("child prints a string in pieces", 10'000'064, refused, "refused: no proper output");
}

/// The parser's own limit: 256 elements within each other, of which a level has two.
TEST_F(CommandLine, RefusesDocumentsOfMoreThanTheParsersDepth) {
    const auto nested = [](std::size_t depth) {
        std::string text = "<int/>";
        for (std::size_t i = 0; i < depth; ++i) {
            text = "<structure typeName='S'><field name='x'>" + text + "</field></structure>";
        }
        return text;
    };
    constexpr std::size_t kDeepest = 125;
    const Outcome deepest = RunPrinter("nested", kDeepest, nested(kDeepest));
    ExpectStatus(deepest, 0);
    EXPECT_EQ(deepest.outputLines, 3 * kDeepest + 1);
    Tell("child prints levels", kDeepest, deepest, "complete");
    for (const std::size_t depth : {std::size_t{128}, std::size_t{100'000}}) {
        const Outcome refused = RunPrinter("nested", depth, nested(kDeepest));
        ExpectStatus(refused, 1);
        EXPECT_EQ(refused.errors, kUnreadable);
        Tell("child prints levels", depth, refused, "refused: no proper output");
    }
}

TEST_F(CommandLine, TellsHowManyFieldsAreTooMany) {
    ExpectGrowth(
        "child prints fields", ChosenSizes().items, Growth::Ordered, [&](std::size_t size) {
            Outcome outcome = RunPrinter("fields", size, "<structure typeName='S'/>");
            ExpectStatus(outcome, 1);
            EXPECT_EQ(outcome.errors,
                      "Errors: \nMismatch on number of fields set in struct. Expected 0 found " +
                          std::to_string(size) +
                          "\nImplementation error! The output of this command does not match the "
                          "declared output type, see errors above.\n");
            return outcome;
        });
}

TEST_F(CommandLine, LoadsEveryDescriptorOfAFolder) {
    std::size_t written = 0;
    ExpectGrowth("descriptors", ChosenSizes().descriptors, Growth::Linear, [&](std::size_t size) {
        for (; written < size; ++written) {
            Describe("d" + std::to_string(written), "true", "<int/>");
        }
        Outcome outcome = Run({"quorcli", "command", "list"});
        ExpectStatus(outcome, 0);
        EXPECT_EQ(outcome.outputLines, 3 + size);
        return outcome;
    });
}

TEST_F(CommandLine, TellsEveryBrokenDescriptorOfAFolder) {
    std::size_t written = 0;
    ExpectGrowth(
        "broken descriptors", ChosenSizes().descriptors, Growth::Linear, [&](std::size_t size) {
            for (; written < size; ++written) {
                Directory().Write("d" + std::to_string(written) + ".xml", "<plugin>");
            }
            Outcome outcome = Run({"quorcli", "command", "list"});
            ExpectStatus(outcome, 0);
            EXPECT_EQ(outcome.errorLines, size);
            return outcome;
        });
}

TEST_F(CommandLine, RunsEveryLineOfAFile) {
    double peak = 0;
    ExpectGrowth("input lines", ChosenSizes().inputLines, Growth::Linear, [&](std::size_t size) {
        std::string lines;
        for (std::size_t i = 0; i < size; ++i) {
            lines += "--formatter json quorcli command list --command-filter nosuch\n";
        }
        Outcome outcome = RunLines(std::move(lines));
        ExpectStatus(outcome, 0);
        EXPECT_GE(outcome.outputLines, size);
        // No line leaves anything behind.
        peak = peak == 0 ? outcome.peakMegabytes : peak;
        EXPECT_LE(outcome.peakMegabytes, peak + ChosenSizes().megabytesOfNoise);
        return outcome;
    });
}

TEST_F(CommandLine, ReadsALongWord) {
    ExpectGrowth("input of one word", ChosenSizes().line, Growth::Linear, [&](std::size_t size) {
        Outcome outcome = RunLines(std::string(size, 'a') + "\n");
        ExpectStatus(outcome, 1);
        const std::string begin = "Errors: \nUnable to find a command or namespace with the name '";
        EXPECT_TRUE(outcome.errors.starts_with(begin + "a"));
        EXPECT_EQ(outcome.errorBytes,
                  begin.size() + size + std::string("' in namespace \n").size());
        return outcome;
    });
}

TEST_F(CommandLine, ReadsALongValue) {
    ExpectGrowth("input of one value", ChosenSizes().line, Growth::Linear, [&](std::size_t size) {
        Outcome outcome =
            RunLines("quorcli command list --command-filter \"" + std::string(size, ' ') + "a\"\n");
        ExpectStatus(outcome, 0);
        EXPECT_EQ(outcome.errorBytes, 0U);
        return outcome;
    });
}

TEST_F(CommandLine, ReadsManyWords) {
    ExpectGrowth(
        "input of many words", ChosenSizes().line / 2, Growth::Linear, [&](std::size_t size) {
            std::string line = "quorcli command list --command-filter a";
            for (std::size_t i = 0; i < size; ++i) {
                line += " b";
            }
            Outcome outcome = RunLines(std::move(line += '\n'));
            ExpectStatus(outcome, 1);
            EXPECT_TRUE(outcome.errors.starts_with(
                "Errors: \nFound Extra non-parameter arguments at the end of input: 'b' "));
            return outcome;
        });
}

TEST_F(CommandLine, ReadsLongOptionsAndFormatParameters) {
    const std::string text(ChosenSizes().text, 'a');
    DescribePrinter("values", 3, kAnyDisk);
    const Outcome option = RunLines("--" + text + "=1 child run\n");
    ExpectStatus(option, 1);
    EXPECT_EQ(option.errorBytes,
              std::string("Errors: \nUnknown dispatcher parameter: \n").size() + text.size());
    Tell("input of an unknown option", text.size(), option, "refused: unknown");
    const Outcome unknown = RunLines("child run --" + text + "=1\n");
    ExpectStatus(unknown, 1);
    EXPECT_EQ(unknown.errorBytes,
              std::string("Errors: \nUnknown parameter : \n").size() + text.size());
    Tell("input of an unknown parameter", text.size(), unknown, "refused: unknown");
    const Outcome header = RunLines("--formatter simple --format-param \"header:Disk=" + text +
                                    " %Device%\" "
                                    "--format-param printf:Disk.Blocks=" +
                                    text + "%9999999ld --screen-width 9999 child run\n");
    ExpectStatus(header, 0);
    EXPECT_EQ(header.outputLines, 3U * 10 + 1);
    Tell("input of a header and format", text.size(), header, "complete");
}

/// The system takes words of no more than 128 KB, and says so.
TEST_F(CommandLine, SaysThatACommandLineIsTooLongForTheSystem) {
    const std::string text(ChosenSizes().text, 'a');
    Describe("child", "echo '$val{text}'", "<int/>");
    const Outcome value = RunLines("child run --text " + text + "\n");
    ExpectStatus(value, 1);
    const std::string begin = "Errors: \nError on command child run : Failed to call process '";
    EXPECT_TRUE(value.errors.starts_with(begin)) << value.errors.substr(0, 200);
    EXPECT_EQ(value.errorBytes,
              (begin + "echo ''': Argument list too long\n").size() + text.size());
    Tell("value of a shell command", text.size(), value, "refused: Argument list too long");
    Describe("child", "echo " + text, "<int/>");
    const Outcome whole = Run({"child", "run"});
    ExpectStatus(whole, 1);
    EXPECT_TRUE(whole.errors.starts_with(begin)) << whole.errors.substr(0, 200);
    Tell("template of a shell command", text.size(), whole, "refused: Argument list too long");
}

TEST_F(CommandLine, DeliversALongValueOnStandardInput) {
    Describe("child",
             "printf '&lt;output>&lt;int>'; wc -c; printf '&lt;/int>&lt;/output>'",
             "<int/>",
             "$val{text}");
    ExpectGrowth(
        "value on standard input", ChosenSizes().text, Growth::Linear, [&](std::size_t size) {
            Outcome outcome = RunLines("child run --text " + std::string(size, 'a') + "\n");
            ExpectStatus(outcome, 0);
            EXPECT_EQ(outcome.outputLines, 1U);
            return outcome;
        });
}

TEST_F(CommandLine, ShowsLongDescriptions) {
    std::string description;
    while (description.size() < ChosenSizes().text) {
        description += "words of a long description ";
    }
    Describe("child", "true", "<int/>", "", description);
    const Outcome listing = Run({"--screen-width", "80"});
    ExpectStatus(listing, 1);
    EXPECT_GT(listing.outputLines, description.size() / 100);
    Tell("description in a listing", description.size(), listing, "complete");
    const Outcome help = Run({"--screen-width", "80", "child", "run", "--help"});
    ExpectStatus(help, 0);
    EXPECT_GT(help.outputLines, description.size() / 100);
    Tell("description in a help", description.size(), help, "complete");
}

}  // namespace
}  // namespace Corvel::Scale
