#include "cli/scan_command.h"
#include "support/fake_platform.h"
#include "support/fake_scanner.h"

#include <csignal>
#include <sstream>
#include <thread>

#include <gmock/gmock.h>

namespace kestavon {
namespace {

using testing::HasSubstr;
using testing::Not;

class ScanCommand : public testing::Test {
protected:
    int run(bool onTerminal = false) { return runScanCommand(model, out, progress, onTerminal); }

    test::FakeMachine machine;
    std::shared_ptr<test::FakeScanner> scanner = std::make_shared<test::FakeScanner>();
    AppModel model{scanner, machine.platform()};
    std::ostringstream out;
    std::ostringstream progress;
};

TEST_F(ScanCommand, PrintsTotalsAndTheTenLargestFiles)
{
    std::vector<FileRecord> records;
    for (int i = 1; i <= 12; ++i)
        records.push_back({.path = "/home/alice/file" + std::to_string(i), .size = i * 1'000'000});
    records.push_back(
        {.path = "/home/alice/.hidden\nline", .size = 7'000'000'000, .isHidden = true});
    scanner->finishWith("/home/alice", records);

    EXPECT_EQ(run(), 0);
    const auto text = out.str();
    EXPECT_THAT(text, HasSubstr("Items   13\n"));
    EXPECT_THAT(text, HasSubstr("Total   7.08 GB\n"));
    EXPECT_THAT(text, HasSubstr("Hidden  7 GB\n"));
    EXPECT_THAT(text, HasSubstr("7 GB  /home/alice/.hidden\\nline\n"));
    EXPECT_THAT(text, HasSubstr("4 MB  /home/alice/file4\n"));
    EXPECT_THAT(text, Not(HasSubstr("file3\n"))); // the eleventh
    EXPECT_EQ(progress.str(), "");
}

TEST_F(ScanCommand, TellsWhyARootCouldNotBeScanned)
{
    scanner->finishWith({.records = std::make_shared<const RecordList>(),
        .rootProblem = RootProblem::notPermitted});
    EXPECT_EQ(run(), 1);
    EXPECT_THAT(progress.str(), HasSubstr("permission"));
}

TEST_F(ScanCommand, StopsOnCtrlC)
{
    const std::jthread user([this] {
        scanner->waitForScans(1);
        std::raise(SIGINT);
    });
    EXPECT_EQ(run(true), 130);
    EXPECT_THAT(out.str(), Not(HasSubstr("Items")));
}

TEST_F(ScanCommand, ShowsTheLiveCountWhileItRuns)
{
    const std::jthread scan([this] {
        scanner->waitForScans(1);
        scanner->reportLiveCount(2000);
        scanner->finishWith("/home/alice", {});
    });
    EXPECT_EQ(run(true), 0);
    EXPECT_THAT(progress.str(), HasSubstr("\r2000 files found so far"));
}

TEST(PrintablePath, NeitherBreaksALineNorDrivesTheTerminal)
{
    EXPECT_EQ(printablePath("/plain été 日本 \U0001F600"), "/plain été 日本 \U0001F600");
    EXPECT_EQ(printablePath("a\n\tb\x1B[31m"), "a\\n\\tb\\x1B[31m");
    EXPECT_EQ(printablePath("c\xC2\x9B"
                            "31mred"),
        "c\\xC2\\x9B31mred")
        << "a control sequence too";
    EXPECT_EQ(printablePath("\x9B\xFF(\xC3"), "\\x9B\\xFF(\\xC3");
    EXPECT_EQ(printablePath("photo\u202Egpj.exe"), "photo\\xE2\\x80\\xAEgpj.exe");
    EXPECT_EQ(printablePath("a\u2028b"), "a\\xE2\\x80\\xA8b");
}

} // namespace
} // namespace kestavon
