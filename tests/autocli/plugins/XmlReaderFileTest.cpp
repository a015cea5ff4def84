#include <sys/stat.h>

#include <climits>
#include <cstdint>
#include <filesystem>
#include <string>

#include <gtest/gtest.h>

#include "tests/autocli/plugins/XmlNotes.h"
#include "tests/support/TemporaryDirectory.h"

namespace Corvel::AutoCli {
namespace {

using Testing::NotesOfFile;
using Testing::TemporaryDirectory;

TEST(XmlReader, FileIsReadAsItsTextIs) {
    const TemporaryDirectory folder;
    EXPECT_EQ("{o {p |x}}", NotesOfFile(folder.Write("file.xml", "<o><p>x</p></o>")));
    for (const std::string& text : {std::string(), std::string("<o>"), std::string("<o/><p/>")}) {
        EXPECT_EQ("refused", NotesOfFile(folder.Write("bad.xml", text))) << text;
    }
}

TEST(XmlReader, WhatIsNoRegularFileIsRefused) {
    const TemporaryDirectory folder;
    const std::string fifo = folder.File("fifo");
    ASSERT_EQ(0, mkfifo(fifo.c_str(), 0600));
    for (const std::string& path : {fifo,
                                    folder.Path().string(),
                                    std::string("/dev/zero"),
                                    folder.File("nosuch"),
                                    std::string("-"),
                                    std::string()}) {
        EXPECT_EQ("refused", NotesOfFile(path)) << path;
    }
}

TEST(XmlReader, FileThatCannotBeReadIsRefused) {
    // A regular file whose reading fails from its first byte on: unmapped memory of this process.
    EXPECT_EQ("refused", NotesOfFile("/proc/self/mem"));
}

TEST(XmlReader, FileThatDoesNotKnowItsSizeIsReadToItsEnd) {
    // Regular files with a size of 0. This one's content is no XML, but it has some.
    EXPECT_EQ("refused", NotesOfFile("/proc/self/status"));
}

TEST(XmlReader, FileLongerThanTheParserCountsIsRefused) {
    const TemporaryDirectory folder;
    const std::string path = folder.Write("long.xml", "<o/>");
    std::filesystem::resize_file(path, static_cast<std::uintmax_t>(INT_MAX) + 1);
    EXPECT_EQ("refused", NotesOfFile(path));
}

}  // namespace
}  // namespace Corvel::AutoCli
