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

TEST(TerminalJob, FailsWhereTheTextNeverAppears) {
    TerminalJob job({"/bin/sh", "-c", "printf other"});
    EXPECT_THROW(job.ReadUntil("expected"), std::runtime_error);
}

}  // namespace
}  // namespace Corvel::Testing
