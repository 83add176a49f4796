#include "smartclean/junk_catalogue.h"

#include <set>
#include <string>

#include <gtest/gtest.h>

namespace kestavon {
namespace {

TEST(JunkCatalogue, ShowsEveryCategoryInAWayOfItsOwn)
{
    std::set<std::string_view> titles;
    std::set<std::string_view> symbols;
    for (const auto& [category, raw] : allCases<JunkCategory>()) {
        EXPECT_EQ(lookOf(category).category, category) << raw;
        EXPECT_EQ(title(category), raw);
        EXPECT_FALSE(subtitle(category).empty()) << raw;
        EXPECT_FALSE(symbol(category).empty()) << raw;
        titles.insert(title(category));
        symbols.insert(symbol(category));
    }
    EXPECT_EQ(titles.size(), 11U);
    EXPECT_EQ(symbols.size(), 11U);
}

TEST(JunkCatalogue, SeparatesWithMiddleDots)
{
    // The dot takes two bytes.
    EXPECT_EQ(subtitle(JunkCategory::devTools).size(), 37U);
    EXPECT_EQ(subtitle(JunkCategory::xcodeArtifacts).size(), 25U);
    EXPECT_EQ(subtitle(JunkCategory::browserCaches).size(), 42U);
}

TEST(JunkCatalogue, ColoursMailByItsComponents)
{
    EXPECT_EQ(color(JunkCategory::mailAttachments), JunkColor(SrgbColor{0.9, 0.4, 0.2, 1}));
    EXPECT_EQ(color(JunkCategory::systemLogs), JunkColor(NamedColor::gray));
}

} // namespace
} // namespace kestavon
