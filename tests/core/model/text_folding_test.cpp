#include "core/domain/ascii.h"
#include "core/model/text_finder.h"
#include "core/model/text_folding.h"

#include <random>
#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace kestavon {
namespace {

struct Containment {
    std::string text;
    std::string needle;
    bool contained;
};

class TextFolding : public testing::TestWithParam<Containment> { };

TEST_P(TextFolding, Contains)
{
    const auto& row = GetParam();
    EXPECT_EQ(containsFolded(row.text, row.needle), row.contained)
        << '"' << row.text << "\" and \"" << row.needle << '"';
}

INSTANTIATE_TEST_SUITE_P(Table, TextFolding,
    testing::Values( //
        Containment{"anything", "", true}, //
        Containment{"Report.PDF", "report.pdf", true}, //
        Containment{"report.pdf", "REPORT", true}, //
        Containment{"été", "É", true}, //
        Containment{"e\u0301te\u0301", "été", true}, // accents on their own, and composed
        Containment{"ÉTÉ", "e\u0301te\u0301", true}, //
        Containment{"ǰ", "J\u030C", true}, // composes only after folding
        Containment{"résumé", "resume", false}, //
        Containment{"re\u0301sume\u0301", "resume", false}, //
        Containment{"é", "e", false}, //
        Containment{"e\u0301", "e", false}, //
        Containment{"ΟΔΟΣ", "οδος", true}, //
        Containment{"οδός", "ΔΌΣ", true}, //
        Containment{"straße", "STRASSE", true}, //
        Containment{"STRASSE", "ß", true}, //
        Containment{"ﬁle", "FI", true}, //
        Containment{"300 \u212A", "k", true}, // the Kelvin sign is a K
        Containment{"milk", "\u212A", true}, //
        Containment{"DİYARBAKIR", "i\u0307yar", true}, //
        Containment{"DIR", "ı", false}, // no Turkish rules
        Containment{"привет", "ПРИВЕТ", true}, //
        Containment{"报告.txt", "告.T", true}, //
        Containment{"a  b", "  ", true}, // spaces count
        Containment{"ab", " ", false}, //
        Containment{"a.c", "a*c", false}, //
        Containment{"two\nlines", "O\nL", true}, //
        Containment{"bad\xFFname", "D\xFFN", true}, //
        Containment{"bad\xFFname", "\xFE", false}, //
        Containment{"\xC3\xA9", "\xA9", false}, // a byte of a character is not a text
        Containment{"x\xA9", "\xA9", true}, //
        Containment{"\xFF\xCC\x81", "\xCC", false}, //
        Containment{"\xC3x\xC3\x89", "\xC3X\xC3\xA9", true})); // broken and whole side by side

/// Random texts of a few letters, so that near misses are frequent; beside letters they hold bytes
/// that differ from them by the case bit only.
TEST(TextFinder, FindsTheSameByEveryMethod)
{
    std::mt19937 random(7);
    const std::string letters = "aAbB@`[{0P\x10\xC1\xE1";
    const auto text = [&](std::size_t length) {
        std::string result;
        while (result.size() < length)
            result += letters[random() % letters.size()];
        return result;
    };
    const auto firstMatch = [](std::string_view in, std::string_view needle) {
        for (std::size_t i = 0; i + needle.size() <= in.size(); ++i) {
            std::size_t same = 0;
            while (same < needle.size() && asciiLower(in[i + same]) == needle[same])
                ++same;
            if (same == needle.size())
                return static_cast<std::ptrdiff_t>(i);
        }
        return std::ptrdiff_t{-1};
    };
    int found = 0;
    for (int round = 0; round < 20'000; ++round) {
        auto needle = text(1 + random() % 5);
        for (auto& c : needle)
            c = asciiLower(c);
        // What may be read ahead is longer than what is searched, and holds matches as well.
        const auto readable = text(random() % 150);
        const auto searched = std::string_view(readable).substr(0, random() % 120);
        const auto expected = firstMatch(searched, needle);
        found += expected >= 0 ? 1 : 0;
        for (const auto method :
            {TextFinder::Method::bytewise, TextFinder::Method::sse2, TextFinder::Method::avx2}) {
            if (!TextFinder::isSupported(method))
                continue;
            const TextFinder finder(needle, method);
            // Memory of exactly this size, so that reading beyond it is seen.
            const std::vector<char> bytes(readable.begin(), readable.end());
            const auto* const begin = bytes.data();
            const auto* const match
                = finder.find(begin, begin + searched.size(), begin + bytes.size());
            ASSERT_EQ(match == nullptr ? -1 : match - begin, expected)
                << "method " << static_cast<int>(method) << ", needle " << needle << ", text "
                << searched;
        }
    }
    EXPECT_GT(found, 3'000);
}

} // namespace
} // namespace kestavon
