#include <signal.h>

#include <set>
#include <stdexcept>

#include <gtest/gtest.h>

#include "tests/faults/Scenarios.h"

namespace Corvel::Testing {
namespace {

const Scenario& Named(const std::string& name) {
    for (const Scenario& scenario : Scenarios()) {
        if (scenario.name == name) {
            return scenario;
        }
    }
    throw std::invalid_argument(name);
}

Ending Success(const std::string& out) {
    return {.status = 0, .out = out};
}

Ending Failure(const std::string& errors) {
    return {.status = 1, .err = "Errors: \n" + errors};
}

// --- The scenarios -----------------------------------------------------------------------------

TEST(Scenarios, HaveNamesOfTheirOwn) {
    std::set<std::string> names;
    for (const Scenario& scenario : Scenarios()) {
        EXPECT_TRUE(names.insert(scenario.name).second) << scenario.name;
    }
}

TEST(Scenarios, EndTheSameEachTime) {
    for (const Scenario& scenario : Scenarios()) {
        const Ending first = RunScenario(scenario);
        EXPECT_EQ(first.signal, 0) << scenario.name;
        EXPECT_EQ(first, RunScenario(scenario)) << scenario.name;
    }
}

TEST(Scenarios, TokensReachTheShell) {
    EXPECT_EQ(RunScenario(Named("extension command with every token")),
              Success("[its a name][a;b][--force][red,dark blue][--path][/a][--path][/b]"
                      "it's a name: red dark blue.\n"));
}

TEST(Scenarios, EachLineOfInputHasALineOfOutput) {
    EXPECT_EQ(RunScenario(Named("five lines of input")),
              Success("one\n"
                      "and a second one that no small string holds\n"
                      "[three][x][--force][a][--path][p]three: a.\n"
                      "\"\"\"four\"\"\"\n"
                      "last\n"));
}

TEST(Scenarios, SecretIsTypedAtAPrompt) {
    EXPECT_EQ(RunScenario(Named("secret prompt")),
              Success("Enter value for 'password': \r\neheimnis\r\n"));
}

TEST(Scenarios, WhatIsPutBeforeTheCommandLineRuns) {
    const Intervention shell = {.prefix = {"/bin/sh", "-c", "echo $GIVEN; exit 3", "sh"},
                                .environment = {"GIVEN=this"}};
    for (const char* name : {"listing", "secret prompt"}) {
        const Ending ending = RunScenario(Named(name), shell);
        EXPECT_EQ(ending.status, 3);
        EXPECT_EQ(ending.out.substr(0, 4), "this");
    }
}

TEST(Scenarios, SignalIsNoStatus) {
    for (const char* name : {"listing", "secret prompt"}) {
        const Ending ending =
            RunScenario(Named(name), {.prefix = {"/bin/sh", "-c", "kill -TERM $$", "sh"}});
        EXPECT_EQ(ending, (Ending{.status = -1, .signal = SIGTERM})) << name;
    }
}

TEST(Scenarios, EchoThatIsLeftOffIsSeen) {
    EXPECT_FALSE(
        RunScenario(Named("secret prompt"), {.prefix = {"/bin/sh", "-c", "stty -echo", "sh"}})
            .echoes);
}

// --- What is wrong with an ending --------------------------------------------------------------

TEST(Complaint, ResultOrAnErrorTextIsRight) {
    const Scenario any = {"any", {}};
    EXPECT_EQ(Complaint(any, Success("one\n"), Success("one\n")), "");
    EXPECT_EQ(Complaint(any, Failure("a\n"), Failure("a\n")), "");
    EXPECT_EQ(Complaint(any, Success("one\n"), Failure("std::bad_alloc\n")), "");
    EXPECT_EQ(Complaint(any, Success("one\n"), {.status = 1, .out = "on", .err = "broken\n"}), "");
}

TEST(Complaint, AnythingElseIsWrong) {
    struct {
        Ending ending;
        const char* complaint;
    } const cases[] = {
        {Success(""), "no error text, or one that says nothing"},
        {Success("two\n"), "no error text, or one that says nothing"},
        {{.status = 1}, "no error text, or one that says nothing"},
        {Failure(""), "no error text, or one that says nothing"},
        {Failure("\n"), "no error text, or one that says nothing"},
        {Failure("Unable to read: \n"), "no error text, or one that says nothing"},
        {Failure("std::bad_al"), "no error text, or one that says nothing"},
        {{.status = 0, .err = "Errors: \nbroken\n"}, "not the result, and not status 1"},
        {{.status = 127, .err = "sh: not found\n"}, "not the result, and not status 1"},
        {{.signal = SIGSEGV}, "ended by a signal"},
        {{.status = 0, .out = "one\n", .echoes = false}, "the terminal is left without echo"},
    };
    for (const auto& [ending, complaint] : cases) {
        EXPECT_EQ(Complaint({"any", {}}, Success("one\n"), ending), complaint) << ending;
    }
}

TEST(Complaint, StatusOfAStreamIsThatOfItsLastLine) {
    const Scenario stream = {.name = "stream", .arguments = {}, .lineCount = 3};
    const Ending whole = Success("one\ntwo\nthree\n");
    const std::string error = "Errors: \nbroken\n";
    EXPECT_EQ(Complaint(stream, whole, {.status = 0, .out = "one\nthree\n", .err = error}), "");
    EXPECT_EQ(Complaint(stream, whole, {.status = 0, .out = "three\n", .err = error + error}), "");
    EXPECT_EQ(Complaint(stream, whole, {.status = 1, .out = "one\ntwo\n", .err = error}), "");

    const std::string wrong = "not the result, and not status 1";
    EXPECT_EQ(Complaint(stream, whole, {.status = 0, .out = "three\n", .err = error}), wrong);
    EXPECT_EQ(Complaint(stream, whole, {.status = 0, .out = "one\ntwo\n", .err = error}), wrong);
    EXPECT_EQ(Complaint(stream, whole, {.status = 0, .out = "o\nthree\n", .err = error}), wrong);
}

}  // namespace
}  // namespace Corvel::Testing
