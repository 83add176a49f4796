#include "platform/property_list.h"
#include "support/binary_list.h"
#include "support/moments.h"
#include "support/temporary_tree.h"

#include <filesystem>

#include <gmock/gmock.h>
#include <sys/stat.h>

namespace kestavon {
namespace {

using namespace std::string_literals;
using test::arrayObject;
using test::asciiObject;
using test::BinaryList;
using test::dictionaryObject;
using Problem = PropertyListProblem;
using Dictionary = PropertyValue::Dictionary;
using Array = PropertyValue::Array;

template <class T> PropertyValue value(T content)
{
    PropertyValue result;
    result.content = std::move(content);
    return result;
}

/// An XML list, as far as its document type goes the way a Mac writes it.
std::string xml(const std::string& content)
{
    return R"(<?xml version="1.0" encoding="UTF-8"?>
<!DOCTYPE plist PUBLIC "-//Apple//DTD PLIST 1.0//EN" "http://www.apple.com/DTDs/PropertyList-1.0.dtd">
<plist version="1.0">)"
        + content + "</plist>\n";
}

std::optional<PropertyValue> valueOf(const std::string& bytes)
{
    auto result = parsePropertyList(bytes);
    return result ? std::optional(std::move(*result)) : std::nullopt;
}

/// The problem of a list that has one.
std::optional<Problem> problemOf(const std::string& bytes, const PropertyListLimits& limits = {})
{
    const auto result = parsePropertyList(bytes, limits);
    return result ? std::nullopt : std::optional(result.error());
}

std::string repeated(const std::string& text, int times)
{
    std::string result;
    for (int i = 0; i < times; ++i)
        result += text;
    return result;
}

TEST(XmlPropertyList, HoldsEveryKindOfValue)
{
    const auto list = valueOf(xml(R"(
        <dict>
            <key>text</key> <string>R&amp;D &lt;1&gt; &#xE9;<![CDATA[<raw>]]></string>
            <key>empty</key> <string/>
            <key>number</key> <integer> -42 </integer>
            <key>hexadecimal</key> <integer>0xFF</integer>
            <key>huge</key> <integer>99999999999999999999999999</integer>
            <key>real</key> <real>1.5e3</real>
            <key>moment</key> <date>2026-11-16T14:05:07Z</date>
            <key>data</key> <data> aGVs
                bG8= </data>
            <!-- a remark --> <key>list</key> <array> <true/> <false/> <array/> </array>
        </dict>)"));
    ASSERT_TRUE(list);
    EXPECT_EQ(*list,
        value(Dictionary{
            {"text", value("R&D <1> é<raw>"s)},
            {"empty", value(""s)},
            {"number", value(std::int64_t{-42})},
            {"hexadecimal", value(std::int64_t{255})},
            {"huge", value(std::numeric_limits<std::int64_t>::max())},
            {"real", value(1500.0)},
            {"moment", value(test::utc(2026, 11, 16, 14, 5, 7))},
            {"data", value(PropertyValue::Data{"hello"})},
            {"list", value(Array{value(true), value(false), value(Array())})},
        }));
}

TEST(XmlPropertyList, TakesDatesThatNoMomentReachesForTheFurthest)
{
    EXPECT_EQ(*valueOf(xml("<date>4001-01-01T00:00:00Z</date>")), value(Timestamp::max()));
    EXPECT_EQ(*valueOf(xml("<date>0001-01-01T00:00:00Z</date>")), value(Timestamp::min()));
}

TEST(XmlPropertyList, MayBeginWithEmptyLines)
{
    EXPECT_EQ(*valueOf("\n \r\n" + xml("<true/>")), value(true));
}

TEST(XmlPropertyList, MayBeWrittenInUtf16)
{
    const std::string ascii
        = R"(<?xml version="1.0" encoding="UTF-16"?><plist><string>wide</string></plist>)";
    std::string wide = "\xFF\xFE";
    for (const char c : ascii)
        wide += std::string{c, '\0'};
    EXPECT_EQ(valueOf(wide), value("wide"s));
    EXPECT_EQ(valueOf("\xEF\xBB\xBF" + xml("<string>marked</string>")), value("marked"s));
}

TEST(PropertyList, TheLastOfEqualKeysCounts)
{
    const auto list
        = valueOf(xml("<dict><key>a</key><string>1</string><key>a</key><string>2</string></dict>"));
    ASSERT_TRUE(list);
    ASSERT_TRUE(list->textAt("a"));
    EXPECT_EQ(*list->textAt("a"), "2");
    EXPECT_FALSE(list->at("b"));
    EXPECT_FALSE(value("no dictionary"s).at("a"));
    EXPECT_FALSE(value(Dictionary{{"a", value(true)}}).textAt("a")) << "it is no text";
}

TEST(XmlPropertyList, WhatIsNotOneIsMalformed)
{
    const std::vector<std::string> lists{
        "",
        "b",
        "{ \"Label\": \"json\" }",
        "{ Label = \"old\"; }",
        xml(""),
        xml("<string>one</string><string>two</string>"),
        xml("<string>text").substr(0, xml("<string>text").size() - 10), // cut short
        xml("<dict><key>a</key></dict>"),
        xml("<dict><key>a</key><key>b</key><true/></dict>"),
        xml("<dict><true/></dict>"),
        xml("<array><key>a</key></array>"),
        xml("<array>stray text</array>"),
        xml("<string>a<true/></string>"),
        xml("<integer>12a</integer>"),
        xml("<integer></integer>"),
        xml("<real>much</real>"),
        xml("<date>yesterday</date>"),
        xml("<date>2026-13-01T00:00:00Z</date>"),
        xml("<data>*</data>"),
        xml("<number>7</number>"),
        xml("<string>a\0b</string>"s),
        xml("<string>&#0;</string>"),
        xml("<string>&#xD800;</string>"),
        xml("<string>\xFF</string>"),
        xml("<string>&other;</string>"),
        "<dict/>",
    };
    for (const auto& list : lists)
        EXPECT_EQ(problemOf(list), Problem::malformed) << list;
}

TEST(XmlPropertyList, MayNotDeclareEntities)
{
    const test::TemporaryFolder folder;
    const auto secret = folder.writeFile("secret", "from another file");
    const std::string declarations[]{
        R"(<!ENTITY a "short">)",
        R"(<!ENTITY a SYSTEM "file://)" + secret + R"(">)",
        R"(<!ENTITY a "ha"><!ENTITY b "&a;&a;&a;&a;&a;&a;&a;&a;&a;&a;">)",
    };
    for (const auto& declaration : declarations) {
        EXPECT_EQ(
            problemOf("<!DOCTYPE plist [" + declaration + "]><plist><string>&a;</string></plist>"),
            Problem::malformed)
            << declaration;
    }
}

TEST(BinaryPropertyList, HoldsEveryKindOfValue)
{
    using test::bigEndian;
    const BinaryList list{
        .objects = {
            dictionaryObject("\1\2\3\4\5\6"s, "\7\10\11\12\13\14"s),
            asciiObject("text"), // 1
            asciiObject("numbers"), asciiObject("real"), asciiObject("moment"), asciiObject("data"),
            asciiObject("set"),
            test::object(0x6, "\0\xE9\xD8\x3D\xDE\0\xDC\0"s, 4), // 7: é, 😀, half a pair
            arrayObject("\15\16\17\20"s), // 10
            "\x23" + bigEndian(0x3FF8000000000000, 8), // 11: 1.5
            "\x33" + bigEndian(0x41C4F1C480200000, 8), // 12
            test::object(0x4, "\0\1"s, 2), test::object(0xC, "\21\22"s, 2),
            "\x10\xFF"s, // 15: of one byte: without a sign
            "\x13" + bigEndian(static_cast<std::uint64_t>(-7), 8),
            "\x14" + bigEndian(0, 8) + bigEndian(5, 8),
            "\x14" + bigEndian(1, 8) + bigEndian(5, 8), // 20: beyond 64 bits
            "\x9"s, "\x22" + bigEndian(0x40200000, 4), // 22: 2.5 as a short one
        }};
    const auto result = valueOf(list.bytes());
    ASSERT_TRUE(result);
    const auto number = [](std::int64_t content) { return value(content); };
    EXPECT_EQ(*result,
        value(Dictionary{
            {"text", value("é😀\uFFFD"s)},
            {"numbers",
                value(Array{number(255), number(-7), number(5),
                    number(std::numeric_limits<std::int64_t>::max())})},
            {"real", value(1.5)},
            {"moment", value(test::utc(2023, 4, 10, 0, 0, 0, 250'000'000))},
            {"data", value(PropertyValue::Data{"\0\1"s})},
            {"set", value(Array{value(true), value(2.5)})},
        }));
}

TEST(BinaryPropertyList, ReadsCountsThatFollowTheirObject)
{
    const std::string long20(20, 'x');
    EXPECT_EQ(valueOf(BinaryList{.objects = {"\x5F\x10\x14" + long20}}.bytes()), value(long20));
    const auto wide = BinaryList{.objects = {"\x5F\x11" + test::bigEndian(20, 2) + long20},
        .offsetBytes = 8,
        .referenceBytes = 8};
    EXPECT_EQ(valueOf(wide.bytes()), value(long20));
}

TEST(BinaryPropertyList, IgnoresKeysThatAreNotTexts)
{
    const BinaryList list{
        .objects = {dictionaryObject("\1\2"s, "\3\3"s), "\x10\7"s, asciiObject("a"), "\x9"s}};
    EXPECT_EQ(valueOf(list.bytes()), value(Dictionary{{"a", value(true)}}));
}

TEST(BinaryPropertyList, MayNameAnObjectTwiceButNotFromWithin)
{
    const BinaryList shared{
        .objects = {arrayObject("\1\1"s), arrayObject("\2"s), asciiObject("a")}};
    const auto inner = value(Array{value("a"s)});
    EXPECT_EQ(valueOf(shared.bytes()), value(Array{inner, inner}));

    EXPECT_EQ(problemOf(BinaryList{.objects = {arrayObject("\0"s)}}.bytes()), Problem::malformed);
    const BinaryList roundabout{
        .objects = {arrayObject("\1"s), dictionaryObject("\2"s, "\0"s), asciiObject("a")}};
    EXPECT_EQ(problemOf(roundabout.bytes()), Problem::malformed);
}

TEST(BinaryPropertyList, WhatPointsOutsideItselfIsMalformed)
{
    const std::string yes = "\x9";
    const std::pair<const char*, std::string> lists[]{
        {"nothing but its mark", "bplist00"},
        {"no trailer", "bplist00\x9"},
        {"another version", "bplist15" + BinaryList{.objects = {yes}}.bytes().substr(8)},
        {"a top that is no object", BinaryList{.objects = {yes}, .top = 1}.bytes()},
        {"a top beyond everything", BinaryList{.objects = {yes}, .top = ~std::uint64_t{0}}.bytes()},
        {"more objects than offsets", BinaryList{.objects = {yes}, .objectCount = 2}.bytes()},
        {"objects beyond counting",
            BinaryList{.objects = {yes}, .objectCount = std::uint64_t{1} << 61U}.bytes()},
        {"no object", BinaryList{}.bytes()},
        {"a table beyond the end",
            BinaryList{.objects = {yes}, .tableStart = std::uint64_t{1} << 63U}.bytes()},
        {"a table in the mark", BinaryList{.objects = {yes}, .tableStart = 2}.bytes()},
        {"an object in the mark", BinaryList{.objects = {yes}, .firstOffset = 3}.bytes()},
        {"an object in the table", BinaryList{.objects = {yes}, .firstOffset = 9}.bytes()},
        {"offsets of nine bytes", BinaryList{.objects = {yes}, .offsetBytes = 9}.bytes()},
        {"references of no bytes",
            BinaryList{.objects = {arrayObject("\0"s)}, .referenceBytes = 0}.bytes()},
        {"a reference to nothing", BinaryList{.objects = {arrayObject("\5"s)}}.bytes()},
        {"a text that is too short",
            BinaryList{.objects = {"\x54"
                                   "abc"}}
                .bytes()},
        {"an array that is too short", BinaryList{.objects = {"\xA3\0"s}}.bytes()},
        {"a dictionary without its values",
            BinaryList{.objects = {"\xD1\1"s, asciiObject("a")}}.bytes()},
        {"a count that is negative",
            BinaryList{.objects = {"\x5F\x13" + test::bigEndian(~std::uint64_t{0}, 8)}}.bytes()},
        {"a count that wraps",
            BinaryList{.objects = {"\xDF\x13" + test::bigEndian(std::uint64_t{1} << 61U, 8)}}
                .bytes()},
        {"a count that is a text",
            BinaryList{.objects = {"\x5F\x51"
                                   "a"}}
                .bytes()},
        {"a count that is missing", BinaryList{.objects = {"\x5F"}}.bytes()},
        {"an integer of 32 bytes", BinaryList{.objects = {"\x15" + std::string(32, '\1')}}.bytes()},
        {"a real of two bytes", BinaryList{.objects = {"\x21\1\1"}}.bytes()},
        {"nothing at all", BinaryList{.objects = {"\0"s}}.bytes()},
        {"an unknown kind", BinaryList{.objects = {"\xF0"}}.bytes()},
        {"a NUL in a text", BinaryList{.objects = {asciiObject("a\0b"s)}}.bytes()},
        {"a NUL in a wide text", BinaryList{.objects = {test::object(0x6, "\0a\0\0"s, 2)}}.bytes()},
    };
    for (const auto& [what, list] : lists)
        EXPECT_EQ(problemOf(list), Problem::malformed) << what;
}

TEST(BinaryPropertyList, IsMalformedWhereverItIsCutShort)
{
    const auto whole = BinaryList{
        .objects = {dictionaryObject("\1"s, "\2"s), asciiObject("CFBundleIdentifier"),
            asciiObject(
                "b")}}.bytes();
    for (std::size_t length = 0; length < whole.size(); ++length)
        EXPECT_EQ(problemOf(whole.substr(0, length)), Problem::malformed) << length;
}

TEST(PropertyList, OfOneValueTooManyIsTooLarge)
{
    const PropertyListLimits limits{.fileBytes = 4096, .textBytes = 10, .values = 4, .depth = 3};
    const auto nested
        = [](int depth) { return xml(repeated("<array>", depth) + repeated("</array>", depth)); };
    // Arrays in one another: each names the next one, and the last is empty.
    const auto chain = [](int depth) {
        BinaryList list;
        for (int i = 1; i < depth; ++i)
            list.objects.push_back(arrayObject(std::string(1, static_cast<char>(i))));
        list.objects.push_back(arrayObject(""));
        return list.bytes();
    };
    for (const auto& list : {nested(4), chain(4), xml("<array><true/><true/><true/></array>"),
             xml("<string>1234567890</string>"),
             BinaryList{.objects = {asciiObject("1234567890")}}.bytes()})
        EXPECT_EQ(problemOf(list, limits), std::nullopt);
    for (const auto& list :
        {nested(5), chain(5), xml("<array><true/><true/><true/><true/></array>"),
            xml("<string>12345678901</string>"), xml("<data>MTIzNDU2Nzg5MDE=</data>"),
            xml("<dict><key>12345678901</key><true/></dict>"),
            BinaryList{.objects = {asciiObject("12345678901")}}.bytes(),
            xml(std::string(5000, ' '))})
        EXPECT_EQ(problemOf(list, limits), Problem::tooLarge) << list;
}

TEST(PropertyList, ThatStandsForGigabytesIsTooLargeAtOnce)
{
    // 40 arrays, each of which names the next one twice.
    BinaryList doubling;
    for (char i = 1; i <= 40; ++i)
        doubling.objects.push_back(arrayObject({i, i}));
    doubling.objects.emplace_back("\x9");
    EXPECT_EQ(problemOf(doubling.bytes()), Problem::tooLarge);

    // A text of a million bytes, named a thousand times.
    const auto references = std::string(1000, '\1');
    const BinaryList copied{
        .objects = {"\xAF\x11" + test::bigEndian(1000, 2) + references,
            "\x5F\x12" + test::bigEndian(1'000'000, 4) + std::string(1'000'000, 'x')}};
    EXPECT_EQ(problemOf(copied.bytes()), Problem::tooLarge);

    EXPECT_EQ(problemOf(xml(repeated("<array>", 500'000))), Problem::tooLarge);
    EXPECT_EQ(problemOf(xml(repeated("<dict><key>a</key>", 200'000))), Problem::tooLarge);
}

TEST(PropertyListFile, IsARegularFileOfModestSize)
{
    const test::TemporaryTree tree;
    tree.writeFile("good.plist", xml("<string>text</string>"));
    tree.link("link.plist", "good.plist");
    tree.link("loop.plist", "loop.plist");
    tree.link("device.plist", "/dev/zero");
    tree.folder("folder.plist");
    tree.file("sparse.plist", std::int64_t{1} << 40U);
    ASSERT_EQ(::mkfifo((tree / "pipe.plist").c_str(), 0600), 0);

    for (const auto* name : {"good.plist", "link.plist"}) {
        const auto list = readPropertyList(tree / name);
        ASSERT_TRUE(list) << name;
        EXPECT_EQ(*list, value("text"s)) << name;
    }
    for (const auto* name :
        {"missing.plist", "loop.plist", "device.plist", "folder.plist", "pipe.plist"}) {
        const auto list = readPropertyList(tree / name);
        ASSERT_FALSE(list) << name;
        EXPECT_EQ(list.error(), Problem::unreadable) << name;
    }
    const auto sparse = readPropertyList(tree / "sparse.plist");
    ASSERT_FALSE(sparse);
    EXPECT_EQ(sparse.error(), Problem::tooLarge);
}

} // namespace
} // namespace kestavon
