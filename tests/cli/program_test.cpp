#include "support/temporary_tree.h"

#include <array>
#include <cstdio>
#include <string>

#include <gmock/gmock.h>
#include <nlohmann/json.hpp>
#include <sys/wait.h>

namespace kestavon {
namespace {

using testing::HasSubstr;
using testing::StartsWith;

/// What the program printed, and its exit code.
struct Ran {
    std::string out; ///< both outputs, where `line` sends the second to the first
    int code = -1;
};

/// The program as a shell runs it, with nobody at the keyboard.
class Program : public testing::Test {
protected:
    Ran run(const std::string& line)
    {
        const auto command = "env -u DISPLAY -u WAYLAND_DISPLAY -u QT_QPA_PLATFORM HOME='"
            + home.path() + "' " KESTAVON_PROGRAM " " + line + " </dev/null";
        return runShell(command);
    }

    static Ran runShell(const std::string& command)
    {
        Ran ran;
        auto* pipe = ::popen(command.c_str(), "r");
        std::array<char, 4096> piece{};
        while (const auto bytes = std::fread(piece.data(), 1, piece.size(), pipe))
            ran.out.append(piece.data(), bytes);
        const int status = ::pclose(pipe);
        ran.code = WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
        return ran;
    }

    test::TemporaryTree home;
};

TEST_F(Program, ScansItsHomeIntoOneDocument)
{
    home.writeFile("caf\xE9\n", "123");
    const auto ran = run("scan --json");
    EXPECT_EQ(ran.code, 0);
    const auto json = nlohmann::json::parse(ran.out);
    EXPECT_EQ(json["selectedRoot"], home.path());
    EXPECT_EQ(json["storageSummary"]["bytes"], 3);
    EXPECT_EQ(run("scan --null").out, home / "caf\xE9\n" + std::string(1, '\0'));
}

TEST_F(Program, SaysWhatIsWrongOnStandardErrorOnly)
{
    EXPECT_EQ(run("scan --nonsense 2>/dev/null").out, "");
    const auto wrong = run("scan --nonsense 2>&1");
    EXPECT_EQ(wrong.code, 2);
    EXPECT_THAT(wrong.out, StartsWith("kestavon: "));
    EXPECT_EQ(std::count(wrong.out.begin(), wrong.out.end(), '\n'), 1);
    EXPECT_EQ(run("scan /nowhere/at/all 2>/dev/null").code, 1);
    EXPECT_EQ(run("scan --json >/dev/full 2>/dev/null").code, 1) << "what could not be written";
}

TEST_F(Program, RemovesNothingWhenNobodyCanBeAsked)
{
    const auto file = home.writeFile("file");
    const auto refused = run("remove '" + file + "' --to permanent 2>&1");
    EXPECT_EQ(refused.code, 2);
    EXPECT_THAT(refused.out, HasSubstr("--yes"));
    EXPECT_TRUE(std::filesystem::exists(file));
    EXPECT_EQ(run("remove '" + file + "' --to permanent --yes").code, 0);
    EXPECT_FALSE(std::filesystem::exists(file));
}

TEST_F(Program, TakesNoRelativePathFromAFolderThatIsGone)
{
    const auto gone = home.makeFolder("gone");
    const auto runInGone = [&](const std::string& line) {
        home.makeFolder("gone");
        const auto command = "cd '" + gone + "' && rmdir '" + gone + "' && HOME='" + home.path()
            + "' " KESTAVON_PROGRAM " " + line + " 2>&1 </dev/null";
        return runShell(command);
    };
    // Each would do nothing, were it to begin.
    for (const char* line :
        {".", "merge tmp --to permanent --dry-run", "clean . --to trash --dry-run", "scan nowhere",
            "remove nowhere --to trash -n", "safe-area restore nowhere -n", "disk .",
            "safe-area restore --all --into nowhere -n", "memory --system-root nowhere"}) {
        const auto ran = runInGone(line);
        EXPECT_EQ(ran.out, "kestavon: The current folder no longer exists.\n") << line;
        EXPECT_EQ(ran.code, 1) << line;
    }
    EXPECT_EQ(runInGone("disk /").code, 0) << "a whole path needs no working folder";
}

TEST_F(Program, TakesAMistypedCommandForNeitherAFolderNorAnythingElse)
{
    const auto ran = run("scna 2>&1");
    EXPECT_EQ(ran.code, 2);
    EXPECT_THAT(ran.out, HasSubstr("neither a command nor a folder called scna. Try kestavon"));
    EXPECT_EQ(run("memory --system-root /nowhere/at/all 2>/dev/null").code, 1);
}

TEST_F(Program, TellsThatTheWindowNeedsADisplay)
{
    const auto ran = run("2>&1");
    EXPECT_EQ(ran.code, 1);
    EXPECT_THAT(ran.out, HasSubstr("no display"));
}

} // namespace
} // namespace kestavon
