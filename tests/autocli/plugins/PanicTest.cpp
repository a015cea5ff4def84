#include <signal.h>

#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "corvel/autocli/plugins/Panic.h"

namespace Corvel::AutoCli {

namespace {

TEST(PanicDeathTest, WritesTheFormattedMessageAndAborts) {
    EXPECT_EXIT(Panic("%s in state %d", "parser", 7),
                testing::KilledBySignal(SIGABRT),
                testing::Eq("panic: parser in state 7"));
}

TEST(PanicDeathTest, CutsTheMessageTo255Bytes) {
    EXPECT_EXIT(Panic("%s", std::string(300, 'x').c_str()),
                testing::KilledBySignal(SIGABRT),
                testing::Eq("panic: " + std::string(255, 'x')));
}

}  // namespace
}  // namespace Corvel::AutoCli
