#pragma once

#include <termios.h>

#include <cstddef>
#include <iosfwd>
#include <optional>
#include <string>
#include <vector>

#include "tests/support/SystemCallSteps.h"
#include "tests/support/TerminalJob.h"

namespace Corvel::Testing {

/// A program that prompts for secrets, and what it shows when nothing happens to it.
struct PromptingProgram {
    std::string name;
    std::vector<std::string> arguments;
    std::vector<std::string> prompts;
    /// Of the secret "s3cret", when all prompts are over.
    std::string output;

    /// The screen up to the last prompt's line end.
    std::string Dialogue() const;
};

void PrintTo(const PromptingProgram& program, std::ostream* stream);

/// One run of a program on a terminal, taken to some point of its prompts, where signals are sent to
/// it. It is told "s3cret" wherever it asks.
///
/// Failures: what is not as expected is a failure of the test; std::runtime_error where the program
///           does something else altogether.
class PromptRun {
public:
    explicit PromptRun(const PromptingProgram& program);

    /// Takes the program to a point of its prompts: the first of them is before its first system call
    /// on the terminal; then one follows each row of calls of one kind, and two are where it begins to
    /// read a line: with nothing typed, and with half a line.
    /// @return false where the prompts are over before that point.
    bool TakeTo(int point);
    /// Takes the program to where it reads the first line.
    void TakeToReading();
    /// Goes on to the next return from a system call.
    /// @return false where the program has ended, or reads the terminal again.
    bool TakeOneCall();
    /// In words.
    const char* Stage() const;

    /// Presses a key that ends no line, where the terminal does not show it.
    void TypeUnlessShown();
    /// Sends all these at once, to the place where the program waits, unless it has ended.
    void Send(const std::vector<int>& signals);
    /// From here on the program runs by itself.
    void LetGo() { _steps.LetGo(); }
    void Continue() { _job.ContinueInForeground(); }

    /// That it is ended by this signal, with the terminal as it was before and nothing of a secret on
    /// the screen or left to be read. With `afterStop` it may be stopped before.
    void ExpectEnd(int signal, bool afterStop = false);
    /// That it is stopped, with the terminal as it was before.
    void ExpectStop();
    /// That it prompts silently for what it lacks, and comes to its ordinary end.
    void ExpectToGoOn();

private:
    SystemCallSteps::Step NextStep();
    bool IsReading(const SystemCallSteps::Step& step) const;
    bool IsPoint(const SystemCallSteps::Step& step);
    void Notice(const SystemCallSteps::Step& step);
    bool IsOver() const;
    void ExpectTerminalAsBefore();
    void AwaitPrompt(std::size_t index);
    void AwaitSilence() const;

    const PromptingProgram& _program;
    TerminalJob _job;
    SystemCallSteps _steps;
    termios _before;
    /// All that has been read of it.
    std::string _screen;
    bool _begun = false;
    bool _ended = false;
    bool _halfTyped = false;
    std::size_t _linesRead = 0;
    /// Two for each prompt: its text, and its line end.
    std::size_t _writes = 0;
    std::optional<unsigned long> _lastCall;
};

}  // namespace Corvel::Testing
