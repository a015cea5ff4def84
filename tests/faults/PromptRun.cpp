#include "tests/faults/PromptRun.h"

#include <signal.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <iterator>
#include <ostream>
#include <stdexcept>
#include <thread>
#include <utility>

#include <gtest/gtest.h>

namespace Corvel::Testing {

namespace {

constexpr char kFirstHalf[] = "s3c";
constexpr char kSecondHalf[] = "ret\n";
constexpr char kLine[] = "s3cret\n";

bool SameSettings(const termios& a, const termios& b) {
    return a.c_iflag == b.c_iflag && a.c_oflag == b.c_oflag && a.c_cflag == b.c_cflag &&
           a.c_lflag == b.c_lflag && std::equal(std::begin(a.c_cc), std::end(a.c_cc), b.c_cc) &&
           cfgetispeed(&a) == cfgetispeed(&b) && cfgetospeed(&a) == cfgetospeed(&b);
}

}  // namespace

std::string PromptingProgram::Dialogue() const {
    std::string text;
    for (const std::string& prompt : prompts) {
        text += prompt + "\r\n";
    }
    return text;
}

void PrintTo(const PromptingProgram& program, std::ostream* stream) {
    *stream << program.name;
}

PromptRun::PromptRun(const PromptingProgram& program)
    : _program(program),
      _job(program.arguments, FixedEnvironment(), TerminalJob::Start::Held),
      _steps(_job.Process()),
      _before(_job.Settings()) {
    _job.Release();
}

bool PromptRun::TakeTo(int point) {
    while (!IsOver()) {
        const SystemCallSteps::Step step = NextStep();
        if (IsPoint(step) && point-- == 0) {
            return true;
        }
        if (IsReading(step)) {
            _job.Type(kFirstHalf);
            _halfTyped = true;
            if (point-- == 0) {
                return true;
            }
            _job.Type(kSecondHalf);
            _halfTyped = false;
        }
    }
    return false;
}

void PromptRun::TakeToReading() {
    while (!IsReading(NextStep())) {
    }
}

bool PromptRun::TakeOneCall() {
    std::optional<SystemCallSteps::Step> step;
    while ((step = _steps.Next()) && !step->isReturn) {
        if (IsReading(*step)) {
            return false;
        }
    }
    _ended = !step;
    return !_ended;
}

const char* PromptRun::Stage() const {
    if (_job.Echoes()) {
        return _writes == 0               ? "before the echo is off"
               : _writes < 2 * _linesRead ? "echo back, line not ended"
                                          : "after a prompt";
    }
    if (_halfTyped) {
        return "in the middle of typing";
    }
    return _writes == 2 * _linesRead  ? "silent, prompt not shown"
           : _writes > 2 * _linesRead ? "prompt shown"
                                      : "line read, still silent";
}

void PromptRun::TypeUnlessShown() {
    if (!_job.Echoes()) {
        _job.Type("x");
    }
}

void PromptRun::Send(const std::vector<int>& signals) {
    for (const int signal : signals) {
        if (!_ended) {
            _job.Signal(signal);
        }
    }
}

void PromptRun::ExpectEnd(int signal, bool afterStop) {
    std::string event = _job.Wait();
    if (afterStop && event == "stopped " + std::to_string(SIGTSTP)) {
        event = _job.Wait();
    }
    EXPECT_EQ(event, "killed " + std::to_string(signal));
    ExpectTerminalAsBefore();
    _screen += _job.ReadToEnd();
    EXPECT_EQ(_screen, _program.Dialogue().substr(0, _screen.size()));
}

void PromptRun::ExpectStop() {
    EXPECT_EQ(_job.Wait(), "stopped " + std::to_string(SIGTSTP));
    ExpectTerminalAsBefore();
    _halfTyped = false;
}

void PromptRun::ExpectToGoOn() {
    for (std::size_t i = _linesRead; i < _program.prompts.size(); ++i) {
        AwaitPrompt(i);
        AwaitSilence();
        _job.Type(std::exchange(_halfTyped, false) ? kSecondHalf : kLine);
    }
    _screen += _job.ReadToEnd();
    EXPECT_EQ(_screen, _program.Dialogue() + _program.output);
    EXPECT_EQ(_job.Wait(), "exited 0");
    ExpectTerminalAsBefore();
}

SystemCallSteps::Step PromptRun::NextStep() {
    const std::optional<SystemCallSteps::Step> step = _steps.Next();
    if (!step) {
        throw std::runtime_error("the program ended before its prompts were over");
    }
    _begun = _begun || (step->call == SYS_ioctl && step->first == STDIN_FILENO);
    return *step;
}

bool PromptRun::IsReading(const SystemCallSteps::Step& step) const {
    return _begun && !step.isReturn && step.call == SYS_read && step.first == STDIN_FILENO;
}

bool PromptRun::IsPoint(const SystemCallSteps::Step& step) {
    if (!_begun || !step.isReturn) {
        return IsReading(step) || (_begun && !_lastCall);
    }
    Notice(step);
    return std::exchange(_lastCall, step.call) != step.call;
}

void PromptRun::Notice(const SystemCallSteps::Step& step) {
    if (step.call == SYS_read && step.first == STDIN_FILENO) {
        ++_linesRead;
    }
    if (step.call == SYS_write && step.first == STDOUT_FILENO) {
        ++_writes;
    }
}

bool PromptRun::IsOver() const {
    return _linesRead == _program.prompts.size() && _writes == 2 * _linesRead;
}

void PromptRun::ExpectTerminalAsBefore() {
    const termios now = _job.Settings();
    EXPECT_TRUE(SameSettings(now, _before));
    EXPECT_EQ(_job.TakeUnread(), "");
}

void PromptRun::AwaitPrompt(std::size_t index) {
    std::string shown;
    for (std::size_t i = 0; i < index; ++i) {
        shown += _program.prompts[i] + "\r\n";
    }
    shown += _program.prompts[index];
    if (_screen.size() < shown.size()) {
        _screen += _job.ReadUntil(shown.substr(_screen.size()));
    }
    EXPECT_EQ(_screen, shown);
}

/// Nothing on the screen tells when a program that goes on has the terminal again.
void PromptRun::AwaitSilence() const {
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(30);
    while (_job.Echoes()) {
        if (std::chrono::steady_clock::now() > deadline) {
            throw std::runtime_error("the terminal still echoes");
        }
        std::this_thread::yield();
    }
}

}  // namespace Corvel::Testing
