#include "smartclean/running_owners.h"

#include <gtest/gtest.h>

namespace kestavon {
namespace {

const RunningOwners owners(
    {{.identifier = "org.example.Editor", .name = "Écran", .program = "ecran-bin"},
        {.identifier = "net.Reader", .name = {}}, {.identifier = {}, .name = "firefox"},
        {.identifier = "", .name = ""}, {.identifier = "org.gnome.Logs", .name = "Logs"},
        {.identifier = {}, .name = "Library"}},
    "/Users/alice");

TEST(RunningOwners, AreFoundByNameAndIdentifierInAnyCase)
{
    const std::pair<const char*, const char*> rows[]{
        {"/Users/alice/Library/Caches/org.example.editor", "Écran"},
        {"/Users/alice/Library/Caches/ORG.EXAMPLE.Editor.Helper", "Écran"},
        {"/Users/alice/Library/Preferences/net.reader.plist", "net.Reader"},
        {"/Users/alice/Library/Logs/éCRAN", "Écran"},
        {"/Users/alice/.cache/ecran-bin/x", "Écran"},
        {"/Users/alice/Library/Application Support/Firefox/Profiles/x", "firefox"},
        {"/Users/alice/Library/Caches/org.example.editors", ""},
        {"/Users/alice/Library/Logs/other.log", ""},
        {"/Users/alice/.local/share/other/logs/a.log", ""},
        {"/Users/alice/Library/Caches/org.gnome.Logs", "Logs"},
        {"/Users/alice/Library/Caches/org.example", ""},
        {"/Users/alice/Library/Caches/firefox.old", ""},
        {"/Users/alice/Library/Caches/.hidden", ""},
        {"/Users/alicefirefox/net.reader", ""},
        {"/Library/Logs/net.reader", ""},
        {"/Users/alice", ""},
    };
    for (const auto& [path, owner] : rows)
        EXPECT_EQ(owners.ownerOf(path), owner) << path;
}

TEST(RunningOwners, OwnNothingThatWasThrownAwayOrDownloaded)
{
    EXPECT_TRUE(belongsToApplications(JunkCategory::appCaches));
    for (const auto category :
        {JunkCategory::trash, JunkCategory::oldDownloads, JunkCategory::iosBackups})
        EXPECT_FALSE(belongsToApplications(category)) << rawValue(category);
}

} // namespace
} // namespace kestavon
