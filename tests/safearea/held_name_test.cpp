#include "safearea/held_name.h"

#include <gtest/gtest.h>

namespace kestavon {
namespace {

std::string repeated(std::string_view text, int times)
{
    std::string all;
    for (int i = 0; i < times; ++i)
        all += text;
    return all;
}

TEST(HeldNameTests, TakeUserPerceivedCharacters)
{
    struct Row {
        const char* description;
        std::string_view character;
    };
    constexpr Row rows[]{
        {"one letter", "a"},
        {"letter and combining accent", "e\u0301"},
        {"a family of four joined", "👩‍👩‍👧‍👦"},
        {"two flags' worth of halves", "🇩🇪"},
        {"skin tone", "👍🏽"},
        {"Hangul from its parts", "\u1112\u1161\u11ab"},
        {"carriage return and line feed", "\r\n"},
        {"a byte that is no text", "\xff"},
        {"the beginning of a character that never ends", "\xe4"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.description);
        const auto five = repeated(row.character, 5);
        EXPECT_EQ(leadingCharacters(five, 5, 255), five);
        EXPECT_EQ(leadingCharacters(five, 3, 255), repeated(row.character, 3));
        EXPECT_EQ(leadingCharacters(five, 5, five.size() - 1), repeated(row.character, 4));
    }
    EXPECT_EQ(leadingCharacters("a\xff\xfe"
                                "b\u0301c",
                  4, 255),
        "a\xff\xfe"
        "b\u0301");
    EXPECT_EQ(leadingCharacters("", 80, 255), "");
}

TEST(HeldNameTests, KeepEightyCharactersOrWhatFits)
{
    const auto id = Uuid::random();
    const auto prefix = id.text() + "-";
    EXPECT_EQ(heldName(id, "report.pdf", 255), prefix + "report.pdf");
    EXPECT_EQ(heldName(id, repeated("x", 200), 255), prefix + repeated("x", 80));
    // 218 bytes are left: 72 characters of three bytes, 8 families of 25.
    EXPECT_EQ(heldName(id, repeated("字", 85), 255), prefix + repeated("字", 72));
    EXPECT_EQ(heldName(id, repeated("👩‍👩‍👧‍👦", 10), 255),
        prefix + repeated("👩‍👩‍👧‍👦", 8));
    // Where names are encrypted, 106 are left.
    EXPECT_EQ(heldName(id, repeated("字", 85), 143), prefix + repeated("字", 35));
    EXPECT_EQ(heldName(id, repeated("x", 85), 143), prefix + repeated("x", 80));
    EXPECT_EQ(idOfHeldName(heldName(id, "x", 255)), id);
    EXPECT_EQ(idOfHeldName(".kestavon-partial-" + id.text()), std::nullopt);
    EXPECT_EQ(idOfHeldName(id.text()), std::nullopt);
}

} // namespace
} // namespace kestavon
