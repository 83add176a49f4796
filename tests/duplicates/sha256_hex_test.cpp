#include "duplicates/sha256.h"
#include "duplicates/sha256_hex.h"
#include "support/temporary_tree.h"

#include <algorithm>
#include <filesystem>
#include <random>
#include <string_view>

#include <gtest/gtest.h>
#include <sys/stat.h>

namespace kestavon {
namespace {

using Kind = FileError::Kind;

TEST(Sha256Hex, GivesTheStandardsDigests)
{
    struct {
        std::string content;
        const char* digest;
    } const cases[] = {
        // FIPS 180-4's own examples; the last does not end with a piece.
        {"", "e3b0c44298fc1c149afbf4c8996fb92427ae41e4649b934ca495991b7852b855"},
        {"abc", "ba7816bf8f01cfea414140de5dae2223b00361a396177a9cb410ff61f20015ad"},
        {"abcdbcdecdefdefgefghfghighijhijkijkljklmklmnlmnomnopnopq",
            "248d6a61d20638b8e5c026930c3e6039a33ce45964ff2167f6ecedd419db06c1"},
        {std::string(1'000'000, 'a'),
            "cdc76e5c9914fb9281a1c7e284d73e67f1809a48a497200e046d39ccc7112cd0"},
    };
    const test::TemporaryFolder folder;
    for (const auto& row : cases) {
        const auto digest = sha256Hex(folder.writeFile("file", row.content));
        ASSERT_TRUE(digest);
        EXPECT_EQ(*digest, row.digest);
    }
}

TEST(Sha256Hex, DoesNotDependOnHowTheReadingIsCut)
{
    const test::TemporaryFolder folder;
    for (const std::size_t size : {1'048'575, 1'048'576, 1'048'577, 2'097'152, 3'000'001}) {
        std::string content(size, '\0');
        for (std::size_t i = 0; i < size; ++i)
            content[i] = static_cast<char>(i * 131 >> 3);
        Sha256 whole;
        whole.update(content);
        EXPECT_EQ(*sha256Hex(folder.writeFile("file", content)), hexText(whole.finish())) << size;
    }
}

std::string digestOf(std::string_view content)
{
    Sha256 sha256;
    sha256.update(content);
    return hexText(sha256.finish());
}

TEST(Sha256, TwoComputationsTogetherGiveEachItsOwnDigest)
{
    std::mt19937 random(7);
    std::string a(3000, '\0');
    std::string b(3000, '\0');
    for (auto* content : {&a, &b})
        std::ranges::generate(*content, [&random] { return static_cast<char>(random()); });
    for (int round = 0; round < 2000; ++round) {
        const auto lengthOfA = random() % (round < 1000 ? 200 : a.size());
        const auto lengthOfB = random() % (round < 1000 ? 200 : b.size());
        const std::string_view wholeA(a.data(), lengthOfA);
        const std::string_view wholeB(b.data(), lengthOfB);
        Sha256 first;
        Sha256 second;
        // In two pieces: the second may begin in the middle of a block.
        const auto cut = [](std::string_view whole) { return whole.size() / 3 * 2; };
        Sha256::updateBoth(
            first, wholeA.substr(0, cut(wholeA)), second, wholeB.substr(0, cut(wholeB)));
        Sha256::updateBoth(first, wholeA.substr(cut(wholeA)), second, wholeB.substr(cut(wholeB)));
        ASSERT_EQ(hexText(first.finish()), digestOf(wholeA)) << lengthOfA << ' ' << lengthOfB;
        ASSERT_EQ(hexText(second.finish()), digestOf(wholeB)) << lengthOfA << ' ' << lengthOfB;
    }
}

TEST(Sha256, TwoComputationsTogetherCountBeyond32BitsOfLength)
{
    const std::string mebibyte(std::size_t{1} << 20, 'k');
    Sha256 alone;
    for (int i = 0; i < 511; ++i)
        alone.update(mebibyte);
    auto first = alone;
    auto second = alone;
    for (int i = 0; i < 2; ++i) {
        alone.update(mebibyte);
        Sha256::updateBoth(first, mebibyte, second, mebibyte);
    }
    const auto digest = alone.finish();
    EXPECT_EQ(first.finish(), digest);
    EXPECT_EQ(second.finish(), digest);
}

TEST(Sha256Hex, RefusesWhatIsNoRegularFileWithoutWaiting)
{
    const test::TemporaryTree tree;
    ASSERT_EQ(::mkfifo((tree / "pipe").c_str(), 0600), 0);
    tree.writeFile("file", "content");
    tree.link("link", "file");
    tree.folder("folder");
    for (const auto* name : {"pipe", "link", "folder"})
        EXPECT_FALSE(sha256Hex(tree / name)) << name;
    EXPECT_FALSE(sha256Hex("/dev/zero"));

    const auto missing = sha256Hex(tree / "missing");
    ASSERT_FALSE(missing);
    EXPECT_EQ(missing.error().kind, Kind::noSuchFile);
    EXPECT_EQ(missing.error().message, "“missing” couldn’t be read because it doesn’t exist.");
}

TEST(Sha256Hex, StopsBetweenTwoPieces)
{
    const test::TemporaryTree tree;
    tree.file("endless", std::int64_t{1} << 40);
    std::stop_source stop;
    stop.request_stop();
    EXPECT_EQ(sha256Hex(tree / "endless", stop.get_token()).error().kind, Kind::cancelled);
}

} // namespace
} // namespace kestavon
