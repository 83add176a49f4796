#include "core/domain/path_text.h"

#include <random>

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

namespace kestavon {
namespace {

TEST(PathText, LeavesOrdinaryNamesAsTheyAre)
{
    for (const std::string path : {"", "/a b/%20#?\n\x7F", "/\u00C9t\u00E9/\u4E2D/\U0001F600",
             "/\uEF7F\uF000\uE000\uFFFD\uFEFF"}) {
        EXPECT_EQ(pathToText(path), path);
        EXPECT_EQ(pathFromText(path), path);
    }
}

TEST(PathText, WritesEachStrayByteAsOneCharacter)
{
    EXPECT_EQ(pathToText("/caf\xE9"), "/caf\uEFE9");
    EXPECT_EQ(pathToText("\x80\xFF"), "\uEF80\uEFFF");
    EXPECT_EQ(pathToText("\xC3"), "\uEFC3") << "cut short";
    EXPECT_EQ(pathToText("\xC0\xAF"), "\uEFC0\uEFAF") << "longer than needed";
    EXPECT_EQ(pathToText("\xE0\x80\xAF"), "\uEFE0\uEF80\uEFAF") << "longer than needed";
    EXPECT_EQ(pathToText("\xED\xA0\x80"), "\uEFED\uEFA0\uEF80") << "a surrogate";
    EXPECT_EQ(pathToText("\xF4\x90\x80\x80"), "\uEFF4\uEF90\uEF80\uEF80") << "beyond Unicode";
    EXPECT_EQ(pathToText("\xE9\u00E9"), "\uEFE9\u00E9");
}

TEST(PathText, WritesThePrivateCharactersThemselvesByteByByte)
{
    EXPECT_EQ(pathToText("\uEF80"), "\uEFEE\uEFBE\uEF80");
    EXPECT_EQ(pathToText("\uEFFF"), "\uEFEE\uEFBF\uEFBF");
    EXPECT_EQ(pathFromText(pathToText("\uEFE9")), "\uEFE9");
    EXPECT_EQ(pathFromText(pathToText("\xE9")), "\xE9");
}

TEST(PathText, LeadsBackFromAnyBytes)
{
    std::mt19937 random(20261116);
    // Mostly the bytes around which the rules turn.
    const std::string alphabet = "a/\xEE\xBE\xBF\x80\x81\xC2\xC3\xE0\xED\xEF\xF0\xF4\xFF";
    for (int round = 0; round < 20'000; ++round) {
        std::string bytes(random() % 12, '\0');
        for (auto& byte : bytes)
            byte = random() % 4 == 0 ? static_cast<char>(random())
                                     : alphabet[random() % alphabet.size()];
        const auto text = pathToText(bytes);
        ASSERT_EQ(pathFromText(text), bytes);
        // The strict writer throws for anything that is not UTF-8.
        const nlohmann::json document = text;
        ASSERT_EQ(nlohmann::json::parse(document.dump()).get<std::string>(), text);
    }
}

} // namespace
} // namespace kestavon
