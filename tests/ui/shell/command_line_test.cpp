#include "ui/command_line.h"

#include <gmock/gmock.h>

namespace kestavon {

namespace {

TEST(CommandLine, ReadsOptionsAndAFolder)
{
    const auto line = readCommandLine({"--theme", "dark", "--system-root=/mnt/mac", "/srv/a b"});
    EXPECT_EQ(line.error, "");
    EXPECT_EQ(line.theme, "dark");
    EXPECT_EQ(line.systemRoot, "/mnt/mac");
    EXPECT_EQ(line.folder, "/srv/a b");
    EXPECT_EQ(readCommandLine({"--", "--help"}).folder, "--help");
    EXPECT_TRUE(readCommandLine({"--help"}).help);
    EXPECT_TRUE(readCommandLine({"--version"}).version);
}

TEST(CommandLine, RefusesWhatItDoesNotKnow)
{
    const std::vector<std::string> rows[] = {{"--colour"}, {"--theme"}, {"--theme", "blue"},
        {"--system-root="}, {"--colour=blue"}, {"/a", "/b"}, {""}};
    for (const auto& arguments : rows)
        EXPECT_NE(readCommandLine(arguments).error, "") << testing::PrintToString(arguments);
}

} // namespace

} // namespace kestavon
