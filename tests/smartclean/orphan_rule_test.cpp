#include "smartclean/orphan_rule.h"

#include <gtest/gtest.h>

namespace kestavon {
namespace {

TEST(OrphanRule, AnApplicationOwnsWhatIsCalledLikeItOrItsMaker)
{
    OrphanRule rule;
    rule.addInstalled("editor pro", "com.example.editor");
    for (const auto* name : {"com.example.editor", "com.example.editor.agent", "com.example",
             "com.example.other", "com", "editor pro", "editor pro.savedstate"})
        EXPECT_TRUE(rule.isOwned(name)) << name;
    for (const auto* name : {"org.sample.tool", "com.examples.editor", "com.exampleeditor",
             "com.other.editor", "group.com.example.editor", "editor", "editor.pro", ".editor pro",
             "example.editor", ""})
        EXPECT_FALSE(rule.isOwned(name)) << name;
}

TEST(OrphanRule, AMakerIsNeverASingleWord)
{
    OrphanRule rule;
    rule.addInstalled("tool", "tool");
    rule.addInstalled("other", "org.other");
    EXPECT_TRUE(rule.isOwned("tool.plist"));
    EXPECT_TRUE(rule.isOwned("org.other.helper"));
    EXPECT_TRUE(rule.isOwned("org")) << "an identifier goes on where it ends";
    EXPECT_FALSE(rule.isOwned("org.sample"));
}

TEST(OrphanRule, AnIdentifierLongerThanAnyNameOwnsWhatItBeginsWith)
{
    std::string identifier = "com.example";
    for (int i = 0; i < 100'000; ++i) // all that it begins with would fill the memory
        identifier += ".a";
    OrphanRule rule;
    rule.addInstalled("editor", identifier);
    EXPECT_TRUE(rule.isOwned("com.example.a.a"));
    EXPECT_TRUE(rule.isOwned("com.example.other"));
    EXPECT_FALSE(rule.isOwned("com.other"));
}

TEST(OrphanRule, ARunningApplicationOwnsOnlyWhatIsCalledLikeItself)
{
    OrphanRule rule;
    rule.addRunning("Fancy Reader", "net.reader.app");
    EXPECT_TRUE(rule.isOwned("net.reader.app.cache"));
    EXPECT_TRUE(rule.isOwned("Fancy Reader.plist"));
    EXPECT_FALSE(rule.isOwned("net.reader.other"));
    rule.addRunning(std::nullopt, std::nullopt);
    rule.addRunning("", "");
    EXPECT_FALSE(rule.isOwned(".hidden")) << "nothing begins with no name at all";
}

} // namespace
} // namespace kestavon
