#include "system/leftover_matcher.h"

#include <gmock/gmock.h>

namespace kestavon {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

using Owners = std::vector<std::size_t>;

/// Whether the one application owns what is called so.
bool owns(const LeftoverMatcher& matcher, const std::string& name,
    LeftoverRule rule = LeftoverRule::anyEntry)
{
    return matcher.ownersOf(name, rule) == Owners{0};
}

LeftoverMatcher matcherOf(const std::string& name, const std::optional<std::string>& bundleID)
{
    LeftoverMatcher matcher;
    matcher.add(0, name, bundleID);
    return matcher;
}

TEST(LeftoverMatcher, ComparesNamesWithTheTermsOfAnApplication)
{
    const auto editor = matcherOf("Editor", "com.example.Editor");
    for (const auto* name : {"Editor", "com.example.editor", "EXAMPLE.EDITOR", "Editor Tools",
             "editor.backup", "group.com.example.editor.shared", "x.editor.y"})
        EXPECT_TRUE(owns(editor, name)) << name;
    for (const auto* name : {"EditorData", "myeditor", "com.example", "example", "editor-x",
             "x.editor", "x.editor y", "com", ""})
        EXPECT_FALSE(owns(editor, name)) << name;
}

TEST(LeftoverMatcher, EachKindOfFolderHasItsOwnRule)
{
    const auto editor = matcherOf("Editor", "com.example.Editor");
    const auto list = LeftoverRule::propertyList;
    const auto state = LeftoverRule::savedState;
    EXPECT_TRUE(owns(editor, "com.example.editor.plist", list));
    EXPECT_TRUE(owns(editor, "com.example.editor.LSSharedFileList.plist", list));
    EXPECT_TRUE(owns(editor, "editor settings.plist", list));
    EXPECT_FALSE(owns(editor, "com.example.editor.txt", list));
    EXPECT_FALSE(owns(editor, "com.example.editor.PLIST", list));
    EXPECT_FALSE(owns(editor, "group.editor.x.plist", list));
    EXPECT_TRUE(owns(editor, "com.example.editor.savedState", state));
    EXPECT_FALSE(owns(editor, "Editor Data.savedState", state));
    EXPECT_FALSE(owns(editor, "group.editor.x.savedState", state));
    // Its last part is taken for the extension.
    EXPECT_FALSE(owns(matcherOf("Other", "com.acme.maps"), "com.acme.maps", state));
}

TEST(LeftoverMatcher, TermsFollowTheIdentifiersParts)
{
    const auto twoParts = matcherOf("Other", "example.editor");
    EXPECT_TRUE(owns(twoParts, "example.editor"));
    EXPECT_FALSE(owns(twoParts, "editor"));
    const auto fourParts = matcherOf("Other", "com.acme.maps.Atlas");
    EXPECT_TRUE(owns(fourParts, "acme.maps.atlas"));
    EXPECT_TRUE(owns(fourParts, "atlas"));
    EXPECT_FALSE(owns(fourParts, "maps.atlas"));
    EXPECT_TRUE(owns(matcherOf("Über", std::nullopt), "ÜBER"));
    // Empty terms match nothing, least of all names that begin with a dot.
    const auto dotted = matcherOf("Other", "com.acme.");
    EXPECT_FALSE(owns(dotted, ".hidden"));
    EXPECT_FALSE(owns(dotted, " x"));
}

TEST(LeftoverMatcher, AnEntryMayBelongToSeveralApplications)
{
    LeftoverMatcher matcher;
    matcher.add(0, "Editor", "com.example.Editor");
    matcher.add(1, "Viewer", std::nullopt);
    matcher.add(2, "editor", "org.other.editor");
    EXPECT_THAT(matcher.ownersOf("Editor", LeftoverRule::anyEntry), ElementsAre(0, 2));
    EXPECT_THAT(matcher.ownersOf("editor.viewer.x", LeftoverRule::anyEntry), ElementsAre(0, 1, 2));
    EXPECT_THAT(matcher.ownersOf("nobody", LeftoverRule::anyEntry), IsEmpty());
}

} // namespace
} // namespace kestavon
