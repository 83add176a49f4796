#include "platform/host_layout.h"
#include "smartclean/removal_advice.h"
#include "support/temporary_folder.h"

#include <algorithm>

#include <gmock/gmock.h>

namespace kestavon {
namespace {

std::string_view adviceFor(const std::string& reason, const std::string& path = "/home/alice/x")
{
    CleanupCandidate item;
    item.record.path = path;
    item.reason = reason;
    return removalAdvice(item);
}

TEST(RemovalAdvice, IsOneSentenceForWhateverIsListed)
{
    const test::TemporaryFolder folder;
    folder.makeFolder("mac/Library");
    const auto unknown = adviceFor("something else");
    EXPECT_TRUE(unknown.ends_with('.'));
    for (const auto* home : {"mac", "native"}) {
        for (const auto& location : makeHostLayout({.home = folder / home}).junkLocations) {
            const auto advice = adviceFor(location.label);
            EXPECT_NE(advice, unknown) << location.label;
            EXPECT_TRUE(advice.ends_with('.') && std::ranges::count(advice, '.') == 1) << advice;
        }
    }
}

TEST(RemovalAdvice, WarnsOfAWholeProfileThatIsListedAsACache)
{
    const auto cache = adviceFor("Firefox profile cache", "/home/alice/.cache/mozilla/firefox/a");
    const auto profile = adviceFor("Firefox profile cache",
        "/Users/alice/Library/Application Support/Firefox/Profiles/x.default");
    EXPECT_NE(cache, profile);
    EXPECT_THAT(std::string(profile), testing::HasSubstr("passwords"));
}

} // namespace
} // namespace kestavon
