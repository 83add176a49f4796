#include "concurrency/cancelled.h"
#include "core/model/record_filter.h"
#include "core/model/record_view.h"

#include <array>
#include <optional>
#include <random>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <unicode/unorm2.h>
#include <unicode/ustring.h>
#include <unicode/utf16.h>

namespace kestavon {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

std::shared_ptr<const RecordList> listOf(
    const std::string& root, const std::vector<std::string>& paths)
{
    std::vector<FileRecord> records(paths.size());
    for (std::size_t i = 0; i < paths.size(); ++i)
        records[i].path = paths[i];
    return RecordList::fromRecords(root, records);
}

std::vector<std::string> matchingPaths(
    const std::shared_ptr<const RecordList>& records, std::string_view needle)
{
    const auto matches = RecordFilter(records).matches(needle);
    std::vector<std::string> paths;
    matches.records.forEach([&](std::size_t i) { paths.push_back(records->path(i)); });
    EXPECT_EQ(matches.count, paths.size());
    return paths;
}

TEST(RecordFilter, SearchesNamesAndFolders)
{
    const auto records = listOf("/home/ann",
        {"/home/ann/Music", "/home/ann/Music/Song.mp3", "/home/ann/notes.txt", "/home/ann/été/x"});
    EXPECT_THAT(matchingPaths(records, "SONG"), ElementsAre("/home/ann/Music/Song.mp3"));
    EXPECT_THAT(matchingPaths(records, "music"),
        ElementsAre("/home/ann/Music", "/home/ann/Music/Song.mp3"));
    EXPECT_THAT(matchingPaths(records, "E\u0301T"), ElementsAre("/home/ann/été/x"));
    EXPECT_THAT(matchingPaths(records, "e.t"), IsEmpty());
    EXPECT_EQ(matchingPaths(records, "").size(), 4U);
    EXPECT_EQ(matchingPaths(records, "ANN").size(), 4U) << "the scanned folder's path counts";
    // The bytes between two names are no part of either.
    EXPECT_THAT(matchingPaths(records, std::string("c\0s", 3)), IsEmpty());
}

TEST(RecordFilter, SearchesAcrossComponents)
{
    const auto records = listOf("/home/ann",
        {"/home/ann/a", "/home/ann/a/b", "/home/ann/a/b/c", "/home/ann/xa/bc", "/home/ann/a b"});
    EXPECT_THAT(matchingPaths(records, "A/B"),
        ElementsAre("/home/ann/a/b", "/home/ann/a/b/c", "/home/ann/xa/bc"));
    EXPECT_THAT(matchingPaths(records, "/a/b"), ElementsAre("/home/ann/a/b", "/home/ann/a/b/c"));
    EXPECT_THAT(matchingPaths(records, "nn/a/b/"), ElementsAre("/home/ann/a/b/c"));
    EXPECT_THAT(matchingPaths(records, "ann/a "), ElementsAre("/home/ann/a b"));
    EXPECT_THAT(matchingPaths(records, "a//b"), IsEmpty());
    EXPECT_EQ(matchingPaths(records, "/").size(), 5U);
    EXPECT_EQ(matchingPaths(records, "ANN/").size(), 5U);

    const auto everything = listOf("/", {"/etc", "/etc/hosts"});
    EXPECT_THAT(matchingPaths(everything, "/etc"), ElementsAre("/etc", "/etc/hosts"));
    EXPECT_THAT(matchingPaths(everything, "/etc/"), ElementsAre("/etc/hosts"));
    EXPECT_EQ(matchingPaths(everything, "/").size(), 2U);
    EXPECT_THAT(matchingPaths(everything, "//"), IsEmpty());
}

TEST(RecordFilter, StopsWhenTold)
{
    const auto records = listOf("/r", {"/r/a"});
    std::stop_source stop;
    stop.request_stop();
    EXPECT_THROW(RecordFilter(records, stop.get_token()), Cancelled);
    EXPECT_THROW(RecordFilter(records).matches("x", nullptr, stop.get_token()), Cancelled);
}

/// What a text is compared as, made another way: as code points, through UTF-16, a whole path in
/// one go. Bytes that are not UTF-8 become numbers beyond all code points.
class Comparable {
public:
    static std::u32string of(std::string_view text)
    {
        Comparable comparable;
        while (!text.empty()) {
            const auto length = comparable.takeCharacter(text);
            if (length == 0) {
                comparable.foldRun();
                comparable.m_result
                    += static_cast<char32_t>(0x110000U + static_cast<unsigned char>(text[0]));
            }
            text.remove_prefix(std::max<std::size_t>(length, 1));
        }
        comparable.foldRun();
        EXPECT_TRUE(U_SUCCESS(comparable.m_status));
        return comparable.m_result;
    }

private:
    /// The bytes of the character at the text's start; 0 when there is none.
    std::size_t takeCharacter(std::string_view text)
    {
        for (std::size_t bytes = 1; bytes <= std::min<std::size_t>(4, text.size()); ++bytes) {
            std::array<UChar, 4> units{};
            std::int32_t length = 0;
            UErrorCode status = U_ZERO_ERROR;
            u_strFromUTF8(
                units.data(), 4, &length, text.data(), static_cast<std::int32_t>(bytes), &status);
            if (U_SUCCESS(status)) {
                m_run.append(units.data(), static_cast<std::size_t>(length));
                return bytes;
            }
        }
        return 0;
    }

    template <class Convert>
    static std::u16string converted(const std::u16string& from, Convert convert)
    {
        std::u16string to(from.size() * 6 + 16, u'\0');
        to.resize(static_cast<std::size_t>(convert(to.data(), static_cast<std::int32_t>(to.size()),
            from.data(), static_cast<std::int32_t>(from.size()))));
        return to;
    }

    void foldRun()
    {
        const auto* const nfc = unorm2_getNFCInstance(&m_status);
        const auto compose
            = [&](UChar* to, std::int32_t capacity, const UChar* from, std::int32_t length) {
                  return unorm2_normalize(nfc, from, length, to, capacity, &m_status);
              };
        const auto fold
            = [&](UChar* to, std::int32_t capacity, const UChar* from, std::int32_t length) {
                  return u_strFoldCase(to, capacity, from, length, U_FOLD_CASE_DEFAULT, &m_status);
              };
        const auto done = converted(converted(converted(m_run, compose), fold), compose);
        for (auto unit = done.begin(); unit != done.end(); ++unit) {
            char32_t character = *unit;
            if (U16_IS_LEAD(character))
                character = static_cast<char32_t>(U16_GET_SUPPLEMENTARY(*unit, *++unit));
            m_result += character;
        }
        m_run.clear();
    }

    UErrorCode m_status = U_ZERO_ERROR;
    std::u16string m_run;
    std::u32string m_result;
};

class RandomRecords {
public:
    explicit RandomRecords(unsigned seed)
        : m_random(seed)
    {
    }

    std::size_t below(std::size_t end) { return m_random() % end; }

    /// Made of few parts, so that needles are found; two names of three are ASCII.
    std::string name()
    {
        static const std::vector<std::string> parts{"a", "B", "e", "K", "s", "ss", "i", ".", " ",
            "\n", "re", "É", "é", "e\u0301", "\u0301", "ß", "Σ", "σ", "ς", "ﬁ", "\u212A", "İ", "日",
            "\xC3", "\xFF", "\xA9", "ǰ", "J\u030C", "\u0345", "\U00010400", "\U00010428"};
        const auto choice = below(3) == 0 ? parts.size() : 11;
        std::string name;
        do {
            name += parts[below(choice)];
        } while (below(5) != 0);
        return name;
    }

    std::shared_ptr<const RecordList> list()
    {
        static const std::vector<std::string> roots{"/", "/Re/É", "/home", "/x/\xFF"};
        const auto root = roots[below(roots.size())];
        std::vector<std::string> folders{root};
        std::vector<FileRecord> records(below(60));
        for (auto& record : records) {
            const auto& folder = folders[below(folders.size())];
            record.path = (folder == "/" ? "" : folder) + "/" + name();
            if (below(3) == 0)
                folders.push_back(record.path);
        }
        auto list = RecordList::fromRecords(root, records);
        if (below(2) == 0) {
            std::vector<std::uint32_t> removed;
            for (std::uint32_t i = 0; i < list->size(); ++i) {
                if (below(3) == 0)
                    removed.push_back(i);
            }
            list = list->without(removed);
        }
        return list;
    }

    /// Part of a path of the list, or something that resembles one.
    std::string needle(const RecordList& list)
    {
        if (list.empty() || below(4) == 0)
            return (below(4) == 0 ? "/" : "") + name();
        const auto path = list.path(below(list.size()));
        return path.substr(below(path.size()), 1 + below(6));
    }

private:
    std::mt19937 m_random;
};

TEST(RecordFilter, AgreesWithComparingEveryPath)
{
    RandomRecords random(11);
    std::size_t found = 0;
    std::size_t missed = 0;
    for (int round = 0; round < 400; ++round) {
        const auto list = random.list();
        std::vector<std::u32string> paths;
        for (std::size_t i = 0; i < list->size(); ++i)
            paths.push_back(Comparable::of(list->path(i)));
        const RecordFilter filter(list);
        for (int attempt = 0; attempt < 12; ++attempt) {
            const auto needle = random.needle(*list);
            const auto sought = Comparable::of(needle);
            const auto matches = filter.matches(needle);
            for (std::size_t i = 0; i < list->size(); ++i) {
                const auto expected = paths[i].find(sought) != std::u32string::npos;
                ASSERT_EQ(matches.records.contains(i), expected) << testing::PrintToString(
                    list->path(i)) << " and " << testing::PrintToString(needle);
                ++(expected ? found : missed);
            }
            ASSERT_EQ(matches.count, matches.records.count());
        }
    }
    EXPECT_GT(found, 10'000U);
    EXPECT_GT(missed, 10'000U);
}

/// Typing, deleting and pasting must give what a fresh filter gives.
TEST(RecordFilter, FindsTheSameAfterAnotherNeedle)
{
    std::vector<std::string> paths;
    for (int i = 0; i < 3'000; ++i)
        paths.push_back("/r/d" + std::to_string(i % 7) + "/" + (i % 5 == 0 ? "é" : "") + "file-"
            + std::to_string(i));
    const RecordFilter filter(listOf("/r", paths));
    std::optional<FilterMatches> previous;
    for (const std::string needle :
        {"29", "299", "2999", "9", "É", "éfile-29", "ÉFILE-299", "ÉFILE-2990", "file-2990", "d3",
            "d3/", "d3/file-10", "e", "e\u0301", "zzz", "zzzz", "0", "-0"}) {
        auto matches = filter.matches(needle, previous ? &*previous : nullptr);
        EXPECT_EQ(matches.records, filter.matches(needle).records) << needle;
        previous = std::move(matches);
    }
}

TEST(RecordViews, ShowTheSortedRecordsThatMatch)
{
    std::vector<FileRecord> records(4);
    const std::array<std::int64_t, 4> sizes{1, 9, 9, 5};
    const std::array<std::string, 4> names{"a1", "b1", "a2", "a3"};
    for (std::size_t i = 0; i < records.size(); ++i) {
        records[i].path = "/r/" + names[i];
        records[i].size = sizes[i];
    }
    records[3].isDirectory = true;
    const auto list = RecordList::fromRecords("/r", records);

    RecordViews everything(list, RecordViews::Contents::everything);
    EXPECT_THAT(everything.view("")->rows(), ElementsAre(1, 2, 3, 0));
    const auto filtered = everything.view("A");
    EXPECT_THAT(filtered->rows(), ElementsAre(2, 3, 0));
    EXPECT_EQ(filtered->largestSize(), 9);
    EXPECT_EQ(filtered->rowOf(0), 2U);
    EXPECT_EQ(filtered->rowOf(2), 0U);
    EXPECT_EQ(filtered->rowOf(1), std::nullopt) << "hidden by the filter";
    EXPECT_EQ(everything.view("")->rowOf(2), 1U);
    EXPECT_THAT(everything.view("q")->rows(), IsEmpty());

    RecordViews files(list, RecordViews::Contents::largestFiles);
    EXPECT_THAT(files.view("")->rows(), ElementsAre(1, 2, 0));
    EXPECT_THAT(files.view("a")->rows(), ElementsAre(2, 0));

    // A cancelled request leaves nothing behind that the next one could trip over.
    std::stop_source stop;
    stop.request_stop();
    RecordViews interrupted(list, RecordViews::Contents::everything);
    EXPECT_THROW(interrupted.view("a", stop.get_token()), Cancelled);
    EXPECT_THAT(interrupted.view("a")->rows(), ElementsAre(2, 3, 0));
    EXPECT_THROW(interrupted.view("a2", stop.get_token()), Cancelled);
    EXPECT_THAT(interrupted.view("a2")->rows(), ElementsAre(2));
}

} // namespace
} // namespace kestavon
