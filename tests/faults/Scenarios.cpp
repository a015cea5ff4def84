#include "tests/faults/Scenarios.h"

#include <signal.h>
#include <unistd.h>

#include <algorithm>
#include <cstddef>
#include <ostream>
#include <sstream>
#include <stdexcept>
#include <string_view>

#include "tests/support/ProcessRunner.h"
#include "tests/support/TemporaryDirectory.h"
#include "tests/support/TerminalJob.h"

namespace Corvel::Testing {

namespace {

constexpr unsigned kSecondsToLive = 20;
constexpr std::string_view kHeading = "Errors: ";

const std::string kPlugins = CORVEL_FAULTS_DATA "/plugins";
const std::string kCalls = kPlugins + "/calls.xml";
const std::string kLibrary = CORVEL_TEST_PLUGINS "/Greeting.so";

Scenario CommandListAs(const std::string& formatter) {
    return {"command list as " + formatter,
            {"--formatter", formatter, "--screen-width", "60", "quorcli", "command", "list"}};
}

std::vector<Scenario> MakeScenarios() {
    return {
        {"listing", {}},
        CommandListAs("table"),
        CommandListAs("simple"),
        CommandListAs("xml"),
        CommandListAs("json"),
        CommandListAs("python"),
        {"help", {"quorcli", "command", "list", "--help"}},
        {"three descriptors and a library",
         {"--plugin-dir",
          kPlugins,
          "--plugin",
          kLibrary,
          "--formatter",
          "simple",
          "quorcli",
          "command",
          "list"}},
        {"command of a library", {"--plugin", kLibrary, "--formatter", "json", "greeting", "say"}},
        {"extension command with every token",
         {"--plugin",
          kCalls,
          "call",
          "tokens",
          "--name",
          "it's a name",
          "--label",
          "a;b",
          "--force",
          "--tag",
          "red",
          "--tag",
          "dark blue",
          "--path",
          "/a",
          "--path=/b"}},
        {"table of structures", {"--plugin", kPlugins + "/disks.xml", "disk", "list"}},
        {"error lines", {"--plugin", kCalls, "call", "refuse"}},
        {"bad XML from a command", {"--plugin", kCalls, "call", "garbage"}},
        {"validation errors",
         {"--plugin",
          kCalls,
          "call",
          "check",
          "--level",
          "7",
          "--count",
          "3",
          "--mode",
          "sideways",
          "--code",
          "a1",
          "--really",
          "perhaps",
          "--unknown",
          "x"}},
        {.name = "five lines of input",
         .arguments = {"--plugin-dir", kPlugins, "--input", "STDIN"},
         .input = "call echo --text one\n"
                  "call echo -t \"and a second one that no small string holds\"\n"
                  "call tokens --name three --label x --force --tag a --path p\n"
                  "--formatter python call echo --text=four\n"
                  "call echo -t last\n",
         .lineCount = 5},
        {.name = "secret prompt",
         .arguments = {"--plugin", kCalls, "call", "secret", "--password"},
         .typed = "geheimnis\n"},
        {"unknown path", {"--plugin", kCalls, "call", "nobody"}},
        {"missing plug-in",
         {"--plugin",
          kPlugins + "/missing.so",
          "--plugin",
          kPlugins + "/missing.xml",
          "--formatter",
          "simple",
          "quorcli",
          "command",
          "list"}},
    };
}

std::vector<std::string> CommandLine(const Scenario& scenario, const Intervention& intervention) {
    std::vector<std::string> words = intervention.prefix;
    words.emplace_back(CORVEL_QUORCLI);
    words.insert(words.end(), scenario.arguments.begin(), scenario.arguments.end());
    return words;
}

std::vector<std::string> Environment(const Intervention& intervention) {
    std::vector<std::string> variables = FixedEnvironment();
    variables.insert(
        variables.end(), intervention.environment.begin(), intervention.environment.end());
    return variables;
}

Ending RunWithFiles(const Scenario& scenario, const Intervention& intervention) {
    const Result result = RunProcess({.arguments = CommandLine(scenario, intervention),
                                      .input = scenario.input,
                                      .environment = Environment(intervention),
                                      .prepare = [] { ::alarm(kSecondsToLive); }});
    Ending ending{.status = result.status, .out = result.out, .err = result.err};
    if (result.status > 128) {
        ending.status = -1;
        ending.signal = result.status - 128;
    }
    return ending;
}

/// Waits for the prompt, types, and reads what can be seen up to the end of the program.
std::string Converse(TerminalJob& job, const std::string& keys) {
    std::string prompt;
    try {
        prompt = job.ReadUntil("': ");
    } catch (const std::runtime_error&) {
        // It ended before, or hangs, which shows at once.
        return job.ReadToEnd();
    }
    job.Type(keys);
    return prompt + job.ReadToEnd();
}

Ending RunOnATerminal(const Scenario& scenario, const Intervention& intervention) {
    const TemporaryDirectory folder;
    const std::string errors = folder.File("err");
    std::vector<std::string> words = {"/bin/sh", "-c", "exec \"$@\" 2>'" + errors + "'", "sh"};
    const std::vector<std::string> line = CommandLine(scenario, intervention);
    words.insert(words.end(), line.begin(), line.end());

    Ending ending;
    try {
        TerminalJob job(words, Environment(intervention));
        ending.out = Converse(job, *scenario.typed);
        std::istringstream event(job.Wait());
        std::string kind;
        event >> kind >> (kind == "exited" ? ending.status : ending.signal);
        ending.echoes = job.Echoes();
    } catch (const std::runtime_error& e) {
        ending.signal = SIGKILL;
        ending.out += std::string("(no end: ") + e.what() + ")";
    }
    ending.err = ReadFile(errors);
    return ending;
}

std::vector<std::string> Lines(const std::string& text) {
    std::vector<std::string> lines;
    std::istringstream stream(text);
    for (std::string line; std::getline(stream, line);) {
        lines.push_back(line);
    }
    return lines;
}

/// Whether every message says something, the reason at its end included.
bool HasWholeErrorText(const std::string& text) {
    const std::vector<std::string> lines = Lines(text);
    std::size_t messages = 0;
    for (std::size_t i = 0; i < lines.size(); ++i) {
        const bool isHeading = lines[i] == kHeading;
        if (isHeading ? i + 1 == lines.size() : lines[i].empty() || lines[i].ends_with(": ")) {
            return false;
        }
        messages += isHeading ? 0 : 1;
    }
    return messages > 0 && text.ends_with('\n');
}

/// Whether the lines are some of these others, in their order, the last one among them.
bool AreSomeOf(const std::vector<std::string>& lines, const std::vector<std::string>& all) {
    auto at = all.begin();
    for (const std::string& line : lines) {
        at = std::find(at, all.end(), line);
        if (at == all.end()) {
            return false;
        }
        ++at;
    }
    return !lines.empty() && lines.back() == all.back();
}

/// Whether each line of the input led to its result or to an error text, and the last to its result.
bool TellsOfEachLine(const Ending& whole, const Ending& ending) {
    const std::vector<std::string> results = Lines(ending.out);
    const std::vector<std::string> errors = Lines(ending.err);
    const auto told = std::count(errors.begin(), errors.end(), kHeading);
    const std::vector<std::string> all = Lines(whole.out);
    return AreSomeOf(results, all) && results.size() + static_cast<std::size_t>(told) == all.size();
}

}  // namespace

const std::vector<Scenario>& Scenarios() {
    static const std::vector<Scenario> scenarios = MakeScenarios();
    return scenarios;
}

std::ostream& operator<<(std::ostream& stream, const Scenario& scenario) {
    return stream << scenario.name;
}

std::ostream& operator<<(std::ostream& stream, const Ending& ending) {
    return stream << "status " << ending.status << ", signal " << ending.signal << ", "
                  << (ending.echoes ? "" : "no ") << "echo\n--- out\n"
                  << ending.out << "--- err\n"
                  << ending.err;
}

Ending RunScenario(const Scenario& scenario, const Intervention& intervention) {
    return scenario.typed ? RunOnATerminal(scenario, intervention)
                          : RunWithFiles(scenario, intervention);
}

std::string Complaint(const Scenario& scenario, const Ending& whole, const Ending& ending) {
    if (ending == whole) {
        return {};
    }
    if (!ending.echoes) {
        return "the terminal is left without echo";
    }
    if (ending.signal != 0) {
        return "ended by a signal";
    }
    if (!HasWholeErrorText(ending.err)) {
        return "no error text, or one that says nothing";
    }
    if (ending.status == 1) {
        return {};
    }
    if (ending.status == 0 && scenario.lineCount > 0 && TellsOfEachLine(whole, ending)) {
        return {};
    }
    return "not the result, and not status 1";
}

}  // namespace Corvel::Testing
