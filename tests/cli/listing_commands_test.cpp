#include "cli/model_run.h"
#include "cli/real_home.h"
#include "support/fake_platform.h"
#include "support/fake_scanner.h"

#include <csignal>
#include <thread>

#include <gmock/gmock.h>

namespace kestavon {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;
using testing::UnorderedElementsAre;

using ListingCommand = test::CommandTest;

std::vector<std::string> nullEnded(const std::string& text)
{
    std::vector<std::string> paths;
    std::istringstream stream(text);
    for (std::string path; std::getline(stream, path, '\0');)
        paths.push_back(path);
    return paths;
}

TEST_F(ListingCommand, ScanPrintsTotalsAndTheTenLargestFiles)
{
    for (int i = 1; i <= 12; ++i)
        home.file("files/file" + std::to_string(i), i * 1'000'000);
    home.file("files/.hidden\nline", 7'000'000'000);

    EXPECT_EQ(run({"scan", files()}), 0);
    const auto text = out.str();
    EXPECT_THAT(text, HasSubstr("Items   13\n"));
    EXPECT_THAT(text, HasSubstr("Total   7.08 GB\n"));
    EXPECT_THAT(text, HasSubstr("Hidden  7 GB\n"));
    EXPECT_THAT(text, HasSubstr("7 GB  " + files() + "/.hidden\\nline\n"));
    EXPECT_THAT(text, HasSubstr("4 MB  " + files() + "/file4\n"));
    EXPECT_THAT(text, Not(HasSubstr("file3\n"))); // the eleventh
    EXPECT_EQ(err.str(), "");
}

TEST_F(ListingCommand, ScanGivesEveryRecordInJsonAndEveryPathToXargs)
{
    home.writeFile("files/a/two\nlines", "12345");
    home.writeFile("files/caf\xE9");
    ASSERT_EQ(run({"scan", "--json", files()}), 0);
    const auto json = document();
    EXPECT_EQ(json["scanPhase"], "finished");
    EXPECT_EQ(json["selectedRoot"], files());
    EXPECT_EQ(json["storageSummary"]["count"], 3);
    EXPECT_EQ(json["storageSummary"]["bytes"], 5);
    EXPECT_EQ(json["history"][0]["title"], "Storage scan complete");
    ASSERT_EQ(json["records"].size(), 3U);
    EXPECT_EQ(json["records"][1]["path"], files() + "/a/two\nlines");
    EXPECT_TRUE(json["records"][2].contains("pathBase64"));

    ASSERT_EQ(run({"scan", "--null", files()}), 0);
    EXPECT_THAT(nullEnded(out.str()),
        ElementsAre(files() + "/a", files() + "/a/two\nlines", files() + "/caf\xE9"));
}

TEST_F(ListingCommand, TellsWhatCouldNotBeScanned)
{
    EXPECT_EQ(run({"scan", home / "nowhere\x1B[2J"}), 1);
    EXPECT_THAT(err.str(), StartsWith("kestavon: The folder \""));
    EXPECT_THAT(err.str(), HasSubstr("nowhere\\x1B[2J"));
    EXPECT_EQ(out.str(), "");

    EXPECT_EQ(run({"scan", "--json", home / "nowhere"}), 1);
    EXPECT_THAT(document()["scanNotice"], HasSubstr("does not exist"));

    for (int i = 0; i < 1100; ++i)
        home.writeFile("files/" + std::to_string(i));
    EXPECT_EQ(run({"scan", "--json", "--memory-limit", "1MiB", files()}), 1);
    EXPECT_EQ(document()["scanPhase"], "partial");
    EXPECT_EQ(document()["scanPhaseText"], "Stopped at 1 MB; results are partial");
}

TEST_F(ListingCommand, LargeListsTheHundredLargestFilesOnly)
{
    for (int i = 1; i <= 103; ++i)
        home.file("files/" + std::to_string(i), i);
    ASSERT_EQ(run({"large", "--json", files()}), 0);
    const auto json = document();
    ASSERT_EQ(json["records"].size(), 100U);
    EXPECT_EQ(json["records"][0]["size"], 103);
    EXPECT_EQ(json["records"][99]["size"], 4);
    EXPECT_EQ(json["storageSummary"]["count"], 103);
    ASSERT_EQ(run({"large", "--null", files()}), 0);
    EXPECT_EQ(nullEnded(out.str()).front(), files() + "/103");
}

TEST_F(ListingCommand, SuggestionsFollowTheLayoutThatWasAskedFor)
{
    home.writeFile("files/Library/Caches/app/blob", "123");
    home.writeFile("files/document");
    ASSERT_EQ(run({"suggestions", "--json", "--layout", "mac", files()}), 0);
    const auto json = document();
    ASSERT_EQ(json["cleanupCandidates"].size(), 1U);
    EXPECT_EQ(json["cleanupCandidates"][0]["record"]["path"], files() + "/Library/Caches/app/blob");
    EXPECT_EQ(json["cleanupCandidates"][0]["estimatedBytes"], 3);
    ASSERT_EQ(run({"suggestions", "--layout", "mac", files()}), 0);
    EXPECT_THAT(out.str(), HasSubstr("3 bytes  " + files() + "/Library/Caches/app/blob\n"));
}

TEST_F(ListingCommand, DuplicatesNeverNameTheKeptCopyToXargs)
{
    home.writeFile("files/old", std::string(5000, 'x'));
    home.writeFile("files/new", std::string(5000, 'x'));
    home.setModified("files/old", Timestamp(std::chrono::seconds(1'000'000'000)));
    home.writeFile("files/other", std::string(5000, 'y'));
    ASSERT_EQ(run({"duplicates", "--null", files()}), 0);
    EXPECT_THAT(nullEnded(out.str()), ElementsAre(files() + "/old"));
    ASSERT_EQ(run({"duplicates", "--json", files()}), 0);
    const auto json = document();
    EXPECT_EQ(json["duplicatePhase"], "finished");
    ASSERT_EQ(json["duplicates"].size(), 1U);
    EXPECT_EQ(json["duplicates"][0]["files"].size(), 2U);
    EXPECT_EQ(json["duplicates"][0]["hash"].get<std::string>().size(), 64U);
    ASSERT_EQ(run({"duplicates", files()}), 0);
    EXPECT_THAT(out.str(), HasSubstr("  keep  " + files() + "/new\n        " + files() + "/old\n"));
    EXPECT_THAT(out.str(), HasSubstr("1 groups · 5 KB reclaimable"));
}

TEST_F(ListingCommand, JunkListsTheCategoriesThatWereNamed)
{
    home.writeFile("Library/Logs/app.log", "1234");
    ASSERT_EQ(run({"junk", "--json", "system-logs", "crash-reports"}), 0);
    const auto json = document();
    ASSERT_EQ(json["junkGroups"].size(), 11U);
    EXPECT_EQ(json["junkGroups"][1]["category"], "System Logs");
    EXPECT_EQ(json["junkGroups"][1]["isScanned"], true);
    ASSERT_EQ(json["junkGroups"][1]["items"].size(), 1U);
    EXPECT_EQ(json["junkGroups"][0]["isScanned"], false) << "not asked for";
    ASSERT_EQ(run({"junk", "--null", "systemLogs"}), 0);
    EXPECT_THAT(nullEnded(out.str()), ElementsAre(home / "Library/Logs/app.log"));
    ASSERT_EQ(run({"junk"}), 0);
    EXPECT_THAT(out.str(), HasSubstr("System Logs"));
    EXPECT_THAT(out.str(), HasSubstr("4 bytes"));
}

TEST_F(ListingCommand, StartupListsWhatStartsByItself)
{
    home.writeFile("Library/LaunchAgents/two\nlines.plist",
        "<?xml version=\"1.0\"?><plist version=\"1.0\"><dict><key>Label</key><string>Clock</string>"
        "<key>Program</key><string>/usr/bin/clock</string></dict></plist>");
    ASSERT_EQ(run({"startup", "--json", "--layout", "mac"}), 0);
    const auto items = document()["startupItems"];
    const auto clock = std::find_if(
        items.begin(), items.end(), [](auto& item) { return item["label"] == "Clock"; });
    ASSERT_TRUE(clock != items.end());
    EXPECT_EQ((*clock)["isSystem"], false);
    EXPECT_EQ((*clock)["programPath"], "/usr/bin/clock");
    EXPECT_EQ((*clock)["plistURL"], home / "Library/LaunchAgents/two\nlines.plist");
    ASSERT_EQ(run({"startup"}), 0);
    EXPECT_THAT(out.str(), HasSubstr("two\\nlines.plist"));
}

TEST_F(ListingCommand, SecurityReviewsTheFolder)
{
    home.writeFile("files/Library/LaunchAgents/a.plist");
    home.writeFile("files/letter");
    ASSERT_EQ(run({"security", "--json", "--layout", "mac", files()}), 0);
    const auto json = document();
    EXPECT_EQ(json["securityPhase"], "finished");
    EXPECT_EQ(json["history"][0]["title"], "Security scan complete");
    ASSERT_EQ(json["findings"].size(), 1U);
    EXPECT_EQ(json["findings"][0]["path"], files() + "/Library/LaunchAgents/a.plist");
    ASSERT_EQ(run({"security", "--null", "--layout", "mac", files()}), 0);
    EXPECT_THAT(nullEnded(out.str()), ElementsAre(files() + "/Library/LaunchAgents/a.plist"));
}

TEST_F(ListingCommand, AppsListsWhatIsInstalledWithItsLeftovers)
{
    home.makeFolder("Library");
    home.writeFile("Applications/Paint.app/Contents/Info.plist",
        "<?xml version=\"1.0\"?><plist version=\"1.0\"><dict><key>CFBundleIdentifier</key>"
        "<string>org.paint.Paint</string></dict></plist>");
    home.writeFile("Library/Caches/org.paint.Paint/cached", "12345");
    ASSERT_EQ(run({"apps", "--json"}), 0);
    const auto apps = document()["installedApps"];
    const auto paint
        = std::ranges::find_if(apps, [](const auto& app) { return app["name"] == "Paint"; });
    ASSERT_NE(paint, apps.end());
    EXPECT_EQ((*paint)["bundleID"], "org.paint.Paint");
    EXPECT_EQ((*paint)["leftovers"][0]["kind"], "Cache");
    EXPECT_EQ((*paint)["leftovers"][0]["size"], 5);
}

TEST_F(ListingCommand, TellsOfTheMachine)
{

    ASSERT_EQ(run({"processes", "--json"}), 0);
    EXPECT_TRUE(document()["processes"].is_array());
    ASSERT_EQ(run({"memory", "--json"}), 0);
    EXPECT_GT(document()["memory"]["freeBytes"], 0);
    ASSERT_EQ(run({"disk", "--json", files()}), 0);
    EXPECT_GT(document()["diskTotal"], document()["diskFree"]);
    EXPECT_EQ(run({"disk", home / "nowhere"}), 1);
    EXPECT_EQ(out.str(), "") << "not the numbers of another volume";
}

class WatchedScan : public testing::Test {
protected:
    test::FakeMachine machine;
    std::shared_ptr<test::FakeScanner> scanner = std::make_shared<test::FakeScanner>();
    AppModel model{scanner, machine.platform()};
    std::ostringstream out;
    std::ostringstream err;
};

TEST_F(WatchedScan, StopsOnCtrlC)
{
    const Console console{.out = out, .err = err};
    ModelRun run(model, console);
    const std::jthread user([this] {
        scanner->waitForScans(1);
        std::raise(SIGINT);
    });
    EXPECT_FALSE(run.scan());
    EXPECT_EQ(run.exitCode(), 130);
    EXPECT_EQ(model.scanPhase(), ScanPhase::idle());
}

TEST_F(WatchedScan, ShowsHowFarItIsOnATerminalOnly)
{
    for (const int width : {0, 20}) {
        err.str({});
        const Console console{.out = out, .err = err, .width = width};
        ModelRun run(model, console);
        const std::jthread scan([this, begun = scanner->scansBegun()] {
            scanner->waitForScans(begun + 1);
            scanner->reportLiveCount(2000);
            scanner->finishWith("/home/alice", {});
        });
        EXPECT_TRUE(run.scan());
        if (width == 0)
            EXPECT_EQ(err.str(), "");
        else
            EXPECT_THAT(err.str(), HasSubstr("\r2000 files found so\x1B[K")) << "cut to the line";
    }
}

} // namespace
} // namespace kestavon
