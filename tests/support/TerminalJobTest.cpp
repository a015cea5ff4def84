#include <signal.h>

#include <gtest/gtest.h>

#include "tests/support/TerminalJob.h"

namespace Corvel::Testing {
namespace {

TEST(TerminalJob, RunsAProgramOnATerminal) {
    TerminalJob job({"/bin/sh", "-c", "test -t 0 && test -t 1 && read line && echo got $line"});
    EXPECT_TRUE(job.Echoes());
    job.Type("word\n");
    EXPECT_EQ(job.ReadToEnd(), "word\r\ngot word\r\n");
    EXPECT_EQ(job.Wait(), "exited 0");
}

TEST(TerminalJob, ShowsWhetherTheTerminalEchoes) {
    TerminalJob job(
        {"/bin/sh", "-c", "stty -echo; echo off; read line; stty echo; echo on; read x"});
    EXPECT_EQ(job.ReadUntil("off\r\n"), "off\r\n");
    EXPECT_FALSE(job.Echoes());
    job.Type("hidden\n");
    EXPECT_EQ(job.ReadUntil("on\r\n"), "on\r\n");
    EXPECT_TRUE(job.Echoes());
}

TEST(TerminalJob, TellsHowTheProgramEnded) {
    EXPECT_EQ(TerminalJob({"/bin/sh", "-c", "exit 3"}).Wait(), "exited 3");
    EXPECT_EQ(TerminalJob({"/bin/sh", "-c", "kill -TERM $$"}).Wait(), "killed 15");
    EXPECT_EQ(TerminalJob({"/nonexistent"}).Wait(), "exited 127");
}

TEST(TerminalJob, PassesTheKeysOfJobControl) {
    TerminalJob job({"/bin/sh", "-c", "echo ready; exec cat"});
    job.ReadUntil("ready\r\n");
    job.Type("\x1a");
    EXPECT_EQ(job.Wait(), "stopped 20");
    job.ContinueInBackground();
    EXPECT_EQ(job.Wait(), "stopped 21");  // it read the terminal, which it does not have
    job.ContinueInForeground();
    job.Signal(SIGINT);
    EXPECT_EQ(job.Wait(), "killed 2");
}

TEST(TerminalJob, KeepsTheSettingsWhenTheProgramHasEnded) {
    TerminalJob job({"/bin/sh", "-c", "stty -echo; kill -KILL $$"});
    EXPECT_EQ(job.Wait(), "killed 9");
    EXPECT_EQ(job.ReadToEnd(), "");
    EXPECT_FALSE(job.Echoes());
}

TEST(TerminalJob, HasWhatNobodyRead) {
    TerminalJob job({"/bin/sh", "-c", "stty -echo; echo off; exec sleep 100"});
    job.ReadUntil("off\r\n");
    EXPECT_EQ(job.TakeUnread(), "");
    job.Type("line\nhalf");
    job.Signal(SIGTERM);
    EXPECT_EQ(job.Wait(), "killed 15");
    EXPECT_EQ(job.TakeUnread(), "line\nhalf");
    EXPECT_EQ(job.TakeUnread(), "");
}

TEST(TerminalJob, HoldsTheProgramUntilItIsReleased) {
    TerminalJob job({"/bin/sh", "-c", "echo $$"}, FixedEnvironment(), TerminalJob::Start::Held);
    job.Release();
    EXPECT_EQ(job.ReadToEnd(), std::to_string(job.Process()) + "\r\n");
    EXPECT_EQ(job.Wait(), "exited 0");
}

TEST(TerminalJob, FailsWhereTheTextNeverAppears) {
    TerminalJob job({"/bin/sh", "-c", "printf other"});
    EXPECT_THROW(job.ReadUntil("expected"), std::runtime_error);
}

}  // namespace
}  // namespace Corvel::Testing
