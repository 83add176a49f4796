#include "applications/application_names.h"
#include "applications/name_owners.h"

#include <gmock/gmock.h>

namespace kestavon {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

TEST(NameOwners, OwnWhatGoesOnAfterTheirNames)
{
    NameOwners owners;
    owners.add(0, "editor-pro");
    owners.add(0, "com.example.editor");
    owners.add(1, "mpv");
    for (const auto* name : {"editor-pro", "editor-pro.conf", "editor-pro_2", "editor-pro beta",
             "com.example.editor", "com.example.editor.helper", "x.com.example.editor.y"})
        EXPECT_THAT(owners.ownersByWords(name), ElementsAre(0)) << name;
    for (const auto* name :
        {"editor-protected", "editor", "xeditor-pro", "com.example", "x.mpv.y", "mpv-backup", ""})
        EXPECT_THAT(owners.ownersByWords(name), IsEmpty()) << name;
    EXPECT_THAT(owners.ownersByWords("mpv"), ElementsAre(1)) << "short names are whole names";
    EXPECT_THAT(owners.ownersOf("editor-pro.conf"), IsEmpty());
}

TEST(NameOwners, NameEveryoneWhoseItCouldBe)
{
    NameOwners owners;
    owners.add(0, "viewer-one");
    owners.add(1, "viewer-one");
    owners.add(1, "viewer-one.two");
    EXPECT_THAT(owners.ownersByWords("viewer-one.two"), ElementsAre(0, 1));
}

TEST(ApplicationNames, WordsThatManyShareSayNothing)
{
    std::vector<std::string> terms;
    for (const auto* name : {"Files", "Text Editor", "org.x.Settings", "R", "utilities-terminal"})
        addTermsOfIdentifier(name, terms);
    EXPECT_THAT(terms, ElementsAre("org.x.settings", "x.settings"));
    terms.clear();
    addTermsOf("Disk Usage", terms);
    EXPECT_THAT(terms, ElementsAre("disk usage", "disk-usage", "disk_usage", "diskusage"));
}

TEST(ApplicationNames, SettingsFilesHaveEndings)
{
    EXPECT_EQ(withoutSettingEnding("KateRC"), "kate");
    EXPECT_EQ(withoutSettingEnding("App.conf"), "app");
    EXPECT_EQ(withoutSettingEnding("app.json.yml"), "app.json");
    EXPECT_EQ(withoutSettingEnding("src"), "src");
    EXPECT_EQ(withoutSettingEnding(".conf"), ".conf");
}

} // namespace
} // namespace kestavon
