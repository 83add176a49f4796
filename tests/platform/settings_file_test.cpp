#include "platform/settings_file.h"
#include "support/temporary_folder.h"

#include <gmock/gmock.h>
#include <sys/stat.h>

namespace kestavon {
namespace {

using test::TemporaryFolder;
using ::testing::ElementsAre;

std::vector<std::string> namesIn(const std::string& folder)
{
    std::vector<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(folder))
        names.push_back(entry.path().filename());
    std::ranges::sort(names);
    return names;
}

TEST(FileSettings, RemembersFlagsAcrossRuns)
{
    const TemporaryFolder folder;
    const auto path = folder / "config/Kestavon/settings.json";
    EXPECT_FALSE(FileSettings(path).flag("kv.fda.onboardingShown"));
    EXPECT_FALSE(std::filesystem::exists(folder / "config")) << "asking writes nothing";

    FileSettings(path).setFlag("kv.fda.onboardingShown", true);
    EXPECT_TRUE(FileSettings(path).flag("kv.fda.onboardingShown"));
    EXPECT_FALSE(FileSettings(path).flag("kv.fda.onboarding"));
    FileSettings(path).setFlag("kv.fda.onboardingShown", false);
    EXPECT_FALSE(FileSettings(path).flag("kv.fda.onboardingShown"));
    EXPECT_THAT(namesIn(folder / "config/Kestavon"), ElementsAre("settings.json"));
}

TEST(FileSettings, BelongToTheirOwnerOnly)
{
    const TemporaryFolder folder;
    FileSettings(folder / "Kestavon/settings.json").setFlag("a", true);
    struct stat status { };
    ASSERT_EQ(::stat((folder / "Kestavon/settings.json").c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 07777U, 0600U);
    ASSERT_EQ(::stat((folder / "Kestavon").c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 07777U, 0700U);
}

TEST(FileSettings, KeepWhatElseTheFileSays)
{
    const TemporaryFolder folder;
    const auto path
        = folder.writeFile("settings.json", R"({"z": [1, {"b": null}], "flag": "yes", "a": 0.5})");
    FileSettings settings(path);
    EXPECT_FALSE(settings.flag("flag")) << "a text is no Boolean";
    settings.setFlag("new", true);
    EXPECT_EQ(folder.readFile("settings.json"), R"({
  "z": [
    1,
    {
      "b": null
    }
  ],
  "flag": "yes",
  "a": 0.5,
  "new": true
}
)");
}

TEST(FileSettings, PutABrokenFileAside)
{
    for (const std::string broken : {"", "{\"a\": tru", "[true]", "{\"a\": \"\xFF\"}"}) {
        const TemporaryFolder folder;
        const auto path = folder.writeFile("settings.json", broken);
        FileSettings settings(path);
        EXPECT_FALSE(settings.flag("a")) << broken;
        EXPECT_EQ(folder.readFile("settings.json"), broken) << "asking changes nothing";
        settings.setFlag("a", true);
        EXPECT_TRUE(settings.flag("a")) << broken;
        EXPECT_EQ(folder.readFile("settings.json.broken"), broken);
    }
}

TEST(FileSettings, LeaveAloneWhatCannotBeRead)
{
    const TemporaryFolder folder;
    const auto pipe = folder / "settings.json";
    ASSERT_EQ(::mkfifo(pipe.c_str(), 0600), 0);
    FileSettings settings(pipe);
    EXPECT_FALSE(settings.flag("a")) << "nobody writes into the pipe: asking must not wait";
    settings.setFlag("a", true);
    EXPECT_TRUE(std::filesystem::is_fifo(pipe));

    const auto large = folder.writeFile("large.json", std::string(1 << 20, ' ') + "{}");
    FileSettings(large).setFlag("a", true);
    EXPECT_EQ(std::filesystem::file_size(large), (1U << 20) + 2);

    FileSettings(folder / "large.json/settings.json").setFlag("a", true);
    EXPECT_THAT(namesIn(folder.path()), ElementsAre("large.json", "settings.json"));
}

TEST(FileSettings, WriteThroughALink)
{
    const TemporaryFolder folder;
    folder.writeFile("dotfiles/kestavon.json", "{}");
    std::filesystem::create_symlink("dotfiles/kestavon.json", folder / "settings.json");
    FileSettings(folder / "settings.json").setFlag("a", true);
    EXPECT_TRUE(std::filesystem::is_symlink(folder / "settings.json"));
    EXPECT_TRUE(FileSettings(folder / "dotfiles/kestavon.json").flag("a"));
}

} // namespace
} // namespace kestavon
