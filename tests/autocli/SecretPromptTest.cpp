// The prompt for a secret, on a terminal and off one, by a program that does nothing else.
#include <signal.h>
#include <termios.h>

#include <chrono>
#include <initializer_list>
#include <stdexcept>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "tests/support/ProcessRunner.h"
#include "tests/support/TerminalJob.h"

namespace Corvel::AutoCli {
namespace {

using Testing::TerminalJob;

constexpr char kPrompt[] = "Enter value for 'password': ";
constexpr char kInterruptKey[] = "\x03";
constexpr char kQuitKey[] = "\x1c";
constexpr char kStopKey[] = "\x1a";
constexpr char kEndOfInputKey[] = "\x04";

std::vector<std::string> CommandLine(std::initializer_list<std::string> options) {
    std::vector<std::string> arguments = {CORVEL_SECRET_PROMPT_PROGRAM, "run"};
    arguments.insert(arguments.end(), options);
    return arguments;
}

/// The program, waiting for the password.
struct Prompt {
    TerminalJob job{CommandLine({"--password"})};

    Prompt() {
        EXPECT_EQ(job.ReadUntil(kPrompt), kPrompt);
        EXPECT_FALSE(job.Echoes());
    }

    /// Nothing on the screen tells when a program that goes on has the terminal again.
    void AwaitSilence() const {
        const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(30);
        while (job.Echoes()) {
            if (std::chrono::steady_clock::now() > deadline) {
                throw std::runtime_error("the terminal still echoes");
            }
            std::this_thread::yield();
        }
    }

    void ExpectToGoOn(const std::string& keys = "s3cret\n") {
        AwaitSilence();
        job.Type(keys);
        EXPECT_EQ(job.ReadToEnd(), "\r\npassword=s3cret\r\n");
        EXPECT_EQ(job.Wait(), "exited 0");
        EXPECT_TRUE(job.Echoes());
    }
};

TEST(SecretPrompt, ShowsNothingOfTheSecretAndPutsTheEchoBack) {
    Prompt prompt;
    prompt.job.Type("s3cret\n");
    EXPECT_EQ(prompt.job.ReadToEnd(), "\r\npassword=s3cret\r\n");
    EXPECT_EQ(prompt.job.Wait(), "exited 0");
    EXPECT_TRUE(prompt.job.Echoes());
}

TEST(SecretPrompt, AsksOncePerOccurrenceByTheFullName) {
    TerminalJob job(CommandLine({"-p", "--token", "--password"}));
    EXPECT_EQ(job.ReadUntil(": "), "Enter value for 'password': ");
    job.Type("one\n");
    EXPECT_EQ(job.ReadUntil(": "), "\r\nEnter value for 'token': ");
    job.Type("two\n");
    EXPECT_EQ(job.ReadUntil(": "), "\r\nEnter value for 'password': ");
    job.Type("three\n");
    EXPECT_EQ(job.ReadToEnd(), "\r\np=one\r\ntoken=two\r\npassword=three\r\n");
    EXPECT_EQ(job.Wait(), "exited 0");
}

TEST(SecretPrompt, IsNotShownForASecretWithValue) {
    TerminalJob job(CommandLine({"--password", "given"}));
    EXPECT_EQ(job.ReadToEnd(), "password=given\r\n");
    EXPECT_EQ(job.Wait(), "exited 0");
}

TEST(SecretPrompt, TakesTheEndOfInputAsAnEmptyValue) {
    Prompt prompt;
    prompt.job.Type(kEndOfInputKey);
    EXPECT_EQ(prompt.job.ReadToEnd(), "\r\npassword=\r\n");
    EXPECT_TRUE(prompt.job.Echoes());
}

TEST(SecretPrompt, GivesTheTerminalBackWhenAKeyEndsTheProgram) {
    for (const auto& [key, event] :
         {std::pair(kInterruptKey, "killed 2"), {kQuitKey, "killed 3"}}) {
        Prompt prompt;
        prompt.job.Type(std::string("s3c") + key);
        EXPECT_EQ(prompt.job.Wait(), event);
        EXPECT_TRUE(prompt.job.Echoes());
        EXPECT_EQ(prompt.job.ReadToEnd(), "");
    }
}

TEST(SecretPrompt, GivesTheTerminalBackWhenASignalEndsTheProgram) {
    for (const int signal : {SIGINT, SIGTERM, SIGHUP, SIGQUIT}) {
        Prompt prompt;
        prompt.job.Signal(signal);
        EXPECT_EQ(prompt.job.Wait(), "killed " + std::to_string(signal));
        EXPECT_TRUE(prompt.job.Echoes()) << signal;
        EXPECT_EQ(prompt.job.ReadToEnd(), "") << signal;
    }
}

TEST(SecretPrompt, GivesTheTerminalBackWhileStoppedAndGoesOnSilently) {
    Prompt prompt;
    for (int i = 0; i < 2; ++i) {
        prompt.job.Type(kStopKey);
        EXPECT_EQ(prompt.job.Wait(), "stopped 20");
        EXPECT_TRUE(prompt.job.Echoes());
        prompt.job.ContinueInForeground();
        prompt.AwaitSilence();
    }
    prompt.job.Signal(SIGTSTP);
    EXPECT_EQ(prompt.job.Wait(), "stopped 20");
    EXPECT_TRUE(prompt.job.Echoes());
    prompt.job.ContinueInForeground();
    prompt.ExpectToGoOn();
}

TEST(SecretPrompt, LeavesNothingOfTheSecretToTheShellWhenStopped) {
    Prompt prompt;
    prompt.job.Type("half");
    prompt.job.Signal(SIGTSTP);
    EXPECT_EQ(prompt.job.Wait(), "stopped 20");
    prompt.job.ContinueInForeground();
    prompt.ExpectToGoOn();
}

TEST(SecretPrompt, StopsInTheBackgroundWithoutTouchingTheTerminal) {
    Prompt prompt;
    prompt.job.Type(kStopKey);
    EXPECT_EQ(prompt.job.Wait(), "stopped 20");
    prompt.job.ContinueInBackground();
    EXPECT_EQ(prompt.job.Wait(), "stopped 22");
    EXPECT_TRUE(prompt.job.Echoes());
    prompt.job.ContinueInForeground();
    prompt.ExpectToGoOn();
}

TEST(SecretPrompt, CanBeEndedWhileStopped) {
    for (const bool inBackgroundBefore : {false, true}) {
        Prompt prompt;
        prompt.job.Type(kStopKey);
        EXPECT_EQ(prompt.job.Wait(), "stopped 20");
        if (inBackgroundBefore) {
            prompt.job.ContinueInBackground();
            EXPECT_EQ(prompt.job.Wait(), "stopped 22");
        }
        prompt.job.Signal(SIGTERM);
        prompt.job.ContinueInBackground();
        EXPECT_EQ(prompt.job.Wait(), "killed 15");
        EXPECT_TRUE(prompt.job.Echoes());
    }
}

/// The shell's own settings, as it edits a line, when it has the terminal.
termios LineEditing(termios settings) {
    settings.c_lflag &= ~static_cast<tcflag_t>(ECHO | ICANON);
    settings.c_iflag &= ~static_cast<tcflag_t>(ICRNL);
    return settings;
}

TEST(SecretPrompt, StartedInTheBackgroundTakesNoSettingsOfTheShell) {
    TerminalJob job({"/bin/sh",
                     "-c",
                     "kill -TSTP $$; exec \"$@\"",
                     "sh",
                     CORVEL_SECRET_PROMPT_PROGRAM,
                     "run",
                     "--password"});
    EXPECT_EQ(job.Wait(), "stopped 20");
    const termios before = job.Settings();
    job.SetSettings(LineEditing(before));
    job.ContinueInBackground();
    EXPECT_EQ(job.Wait(), "stopped 22");
    job.SetSettings(before);
    job.ContinueInForeground();
    EXPECT_EQ(job.ReadUntil(kPrompt), kPrompt);
    EXPECT_FALSE(job.Echoes());
    job.Type("s3cret\r");
    EXPECT_EQ(job.ReadToEnd(), "\r\npassword=s3cret\r\n");
    EXPECT_EQ(job.Wait(), "exited 0");
    EXPECT_TRUE(job.Echoes());
}

TEST(SecretPrompt, ContinuedInTheBackgroundTakesNoSettingsOfTheShell) {
    Prompt prompt;
    prompt.job.Type(kStopKey);
    EXPECT_EQ(prompt.job.Wait(), "stopped 20");
    const termios before = prompt.job.Settings();
    prompt.job.SetSettings(LineEditing(before));
    prompt.job.ContinueInBackground();
    EXPECT_EQ(prompt.job.Wait(), "stopped 22");
    prompt.job.SetSettings(before);
    prompt.job.ContinueInForeground();
    prompt.ExpectToGoOn();
}

TEST(SecretPrompt, KeepsWhatIsSetWhileItIsStopped) {
    Prompt prompt;
    prompt.job.Type(kStopKey);
    EXPECT_EQ(prompt.job.Wait(), "stopped 20");
    termios changed = prompt.job.Settings();
    changed.c_cc[VERASE] = '#';
    prompt.job.SetSettings(changed);
    prompt.job.ContinueInForeground();
    prompt.AwaitSilence();
    prompt.job.Type("s3x#");
    prompt.ExpectToGoOn("cret\n");
    EXPECT_EQ(prompt.job.Settings().c_cc[VERASE], '#');
}

/// Nothing can be done before such a stop. A shell makes the terminal echo then.
TEST(SecretPrompt, IsSilentAgainAfterAStopThatNobodyCatches) {
    Prompt prompt;
    prompt.job.Signal(SIGSTOP);
    EXPECT_EQ(prompt.job.Wait(), "stopped 19");
    termios settings = prompt.job.Settings();
    settings.c_lflag |= ECHO;
    prompt.job.SetSettings(settings);
    prompt.job.ContinueInForeground();
    prompt.ExpectToGoOn();
}

TEST(SecretPrompt, PutsTheEchoBackWhenNobodyReadsThePrompt) {
    TerminalJob job({"/bin/sh",
                     "-c",
                     "{ trap '' PIPE; while echo; do :; done 2>/dev/null; trap - PIPE;"
                     " exec \"$0\" run --password; } | true",
                     CORVEL_SECRET_PROMPT_PROGRAM});
    EXPECT_EQ(job.Wait(), "exited 0");
    EXPECT_TRUE(job.Echoes());
}

TEST(SecretPrompt, OffATerminalReadsALine) {
    const Testing::Result result = Testing::RunProcess(
        {.arguments = CommandLine({"--password", "--token"}), .input = "one\ntwo"});
    EXPECT_EQ(result,
              (Testing::Result{.status = 0,
                               .out = "Enter value for 'password': \n"
                                      "Enter value for 'token': \n"
                                      "password=one\n"
                                      "token=two\n",
                               .err = ""}));
}

}  // namespace
}  // namespace Corvel::AutoCli
