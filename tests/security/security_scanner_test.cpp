#include "core/domain/record_list.h"
#include "duplicates/sha256_hex.h"
#include "platform/host_layout.h"
#include "security/security_scanner.h"
#include "support/temporary_tree.h"

#include <algorithm>

#include <gmock/gmock.h>

namespace kestavon {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

const std::string persistence = "Persistence location — review recommended";
const std::string signature = "Matched local SHA-256 signature database";

std::vector<SecurityFinding> review(const std::string& root, const std::vector<FileRecord>& records,
    const std::unordered_set<std::string>& signatures = {})
{
    return SecurityScanner(makeHostLayout({.home = "/nowhere"}).persistenceMarkers)
        .scan(*RecordList::fromRecords(root, records), signatures);
}

std::vector<std::string> pathsOf(const std::vector<SecurityFinding>& findings)
{
    std::vector<std::string> paths;
    std::ranges::transform(findings, std::back_inserter(paths), &SecurityFinding::path);
    return paths;
}

TEST(SecurityScanner, FindsWhatLiesInAPersistenceFolderOfAnyDisk)
{
    const auto findings = review("/",
        {{.path = "/Library/LaunchDaemons"}, // a file, whatever it is called
            {.path = "/Users/a/Library/LaunchAgents", .isDirectory = true},
            {.path = "/Users/a/Library/LaunchAgents/.DS_Store"},
            {.path = "/Users/a/Library/LaunchAgents/sub", .isDirectory = true},
            {.path = "/Users/a/Library/LaunchAgents/sub/x"},
            {.path = "/Users/a/Library/LaunchAgentsOld/x"},
            {.path = "/Users/a/MyLibrary/LaunchAgents/x"},
            {.path = "/mnt/Backup/Library/LaunchDaemons/Library/LaunchAgents/both"},
            {.path = "/users/a/library/launchagents/x"}});
    EXPECT_THAT(pathsOf(findings),
        ElementsAre("/Users/a/Library/LaunchAgents/.DS_Store",
            "/Users/a/Library/LaunchAgents/sub/x",
            "/mnt/Backup/Library/LaunchDaemons/Library/LaunchAgents/both"));
    for (const auto& finding : findings) {
        EXPECT_EQ(finding.level, ThreatLevel::unknown);
        EXPECT_EQ(finding.reason, persistence);
    }
    EXPECT_NE(findings[0].id, findings[1].id);
    EXPECT_THAT(review("/", {}), IsEmpty());
}

TEST(SecurityScanner, KnowsWhereALinuxDesktopStartsSoftware)
{
    const auto layout = makeHostLayout({.home = "/home/a", .xdgConfigHome = "/settings/a"});
    std::vector<FileRecord> records;
    std::vector<std::string> expected;
    for (const std::string path : {"/etc/cron.d/job", "/etc/crontab", "/etc/ld.so.preload",
             "/etc/systemd/system/x.wants/y.service", "/home/a/.config/autostart/x.desktop",
             "/home/b/.config/systemd/user/x.service", "/settings/a/autostart/x.desktop",
             "/settings/a/systemd/user/x.service", "/var/spool/cron/crontabs/a"}) {
        records.push_back({.path = path});
        expected.push_back(path);
    }
    for (const std::string path : {"/etc/crontab.d/x", "/etc/ld.so.preload/x", "/x/crontab",
             "/home/a/.config/autostart.old/x", "/home/a/.bashrc", "/settings/b/autostart/x",
             "/usr/lib/systemd/system/x.service"})
        records.push_back({.path = path});
    const auto findings
        = SecurityScanner(layout.persistenceMarkers).scan(*RecordList::fromRecords("/", records));
    EXPECT_EQ(pathsOf(findings), expected);
}

TEST(SecurityScanner, TheScannedFolderMayLieInAPersistenceFolderItself)
{
    const std::string agents = "/Users/a/Library/LaunchAgents";
    EXPECT_THAT(
        pathsOf(review(agents, {{.path = agents + "/x.plist"}})), ElementsAre(agents + "/x.plist"));
}

TEST(SecurityScanner, ConfirmedOnesComeFirstAndOthersInTheOrderOfTheScan)
{
    const test::TemporaryTree tree;
    const auto plain = tree.writeFile("a/plain", "harmless");
    const auto agent = tree.writeFile("Library/LaunchAgents/agent.plist", "harmless too");
    const auto bad = tree.writeFile("Library/LaunchAgents/bad.plist", "bad");
    const auto copy = tree.writeFile("z/copy", "bad");
    const auto gone = tree / "Library/LaunchAgents/gone.plist";
    const auto digest = *sha256Hex(bad);
    auto upperCase = digest;
    std::ranges::transform(
        upperCase, upperCase.begin(), [](unsigned char c) { return std::toupper(c); });

    std::vector<FileRecord> records;
    for (const auto& path : {plain, agent, bad, gone, copy})
        records.push_back({.path = path});
    const auto findings = review(tree.path(), records, {digest});
    EXPECT_THAT(pathsOf(findings), ElementsAre(bad, copy, agent, bad, gone));
    EXPECT_EQ(findings[0].level, ThreatLevel::confirmed);
    EXPECT_EQ(findings[0].reason, signature);
    EXPECT_EQ(findings[3].level, ThreatLevel::unknown);

    EXPECT_THAT(pathsOf(review(tree.path(), records, {upperCase})), ElementsAre(agent, bad, gone));
    EXPECT_THAT(pathsOf(review(tree.path(), records)), ElementsAre(agent, bad, gone));
}

} // namespace
} // namespace kestavon
