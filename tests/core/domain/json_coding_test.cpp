#include "core/domain/json_coding.h"
#include "support/moments.h"

#include <functional>
#include <limits>

#include <gmock/gmock.h>
#include <nlohmann/json.hpp>

namespace kestavon {
namespace {

using test::utc;
using ::testing::ElementsAre;
using ::testing::HasSubstr;

const Uuid someId = *Uuid::fromText("0F1E2D3C-4B5A-4978-8796-A5B4C3D2E1F0");

FileRecord someRecord()
{
    return {.id = someId,
        .path = "/home/alice/caf\xE9",
        .size = 12,
        .modifiedAt = utc(2026, 11, 16, 13, 5, 0, 250'000'000),
        .isDirectory = false,
        .isHidden = true};
}

template <class Record> Record throughText(const Record& record)
{
    return OrderedJson::parse(OrderedJson(record).dump()).template get<Record>();
}

/// What reading `json` as a record complains of.
template <class Record> std::string complaint(const OrderedJson& json)
{
    try {
        static_cast<void>(json.get<Record>());
    } catch (const DecodingError& error) {
        return error.what();
    }
    return "nothing";
}

template <class Record>
std::string complaintAfter(const Record& record, const std::function<void(OrderedJson&)>& change)
{
    OrderedJson json = record;
    change(json);
    return complaint<Record>(json);
}

TEST(JsonCoding, WritesTheFieldsInTheirOrder)
{
    EXPECT_EQ(OrderedJson(someRecord()).dump(),
        R"({"id":"0F1E2D3C-4B5A-4978-8796-A5B4C3D2E1F0","path":"/home/alice/caf)"
        "\uEFE9"
        R"(","size":12,"modifiedAt":"2026-11-16T13:05:00.25Z","isDirectory":false,"isHidden":true})");

    const auto keysOf = [](const OrderedJson& json) {
        std::vector<std::string> keys;
        for (const auto& member : json.items())
            keys.push_back(member.key());
        return keys;
    };
    EXPECT_THAT(
        keysOf(CleanupCandidate{}), ElementsAre("id", "record", "reason", "estimatedBytes"));
    EXPECT_THAT(keysOf(SecurityFinding{}), ElementsAre("id", "path", "level", "reason"));
    EXPECT_THAT(keysOf(QuarantineItem{}),
        ElementsAre("id", "originalPath", "quarantinedPath", "reason", "date"));
    EXPECT_THAT(keysOf(ActivityEvent{}), ElementsAre("id", "date", "title", "detail"));
}

TEST(JsonCoding, ReadsBackWhatItWrote)
{
    auto record = someRecord();
    EXPECT_EQ(throughText(record), record);
    record.size = std::numeric_limits<std::int64_t>::min();
    record.isDirectory = true;
    record.path = std::string("/\0\xEF\xBE\x80\xEE\xBE\x80\n\"\\", 11);
    EXPECT_EQ(throughText(record), record);

    const CleanupCandidate candidate{
        someId, record, "Application cache", std::numeric_limits<std::int64_t>::max()};
    EXPECT_EQ(throughText(candidate), candidate);
    const QuarantineItem item{someId, "/\xFF", "/b", "Cleaner", utc(1969, 12, 31, 23, 59, 59, 1)};
    EXPECT_EQ(throughText(item), item);
    const ActivityEvent event{
        someId, utc(2026, 11, 16), "caf\xE9 uninstalled", "3 files \u00B7 1 KB"};
    EXPECT_EQ(throughText(event), event);
    for (const auto& level : allCases<ThreatLevel>()) {
        const SecurityFinding finding{someId, "/a", level.value, "why"};
        EXPECT_EQ(OrderedJson(finding)["level"], std::string(level.raw));
        EXPECT_EQ(throughText(finding), finding);
    }
}

TEST(JsonCoding, LeavesOutAnUnknownModificationDate)
{
    auto record = someRecord();
    record.modifiedAt.reset();
    OrderedJson json = record;
    EXPECT_FALSE(json.contains("modifiedAt"));
    EXPECT_EQ(json.get<FileRecord>(), record);
    json["modifiedAt"] = nullptr;
    EXPECT_EQ(json.get<FileRecord>(), record);
    json["future"] = "a key of a later version";
    EXPECT_EQ(json.get<FileRecord>(), record);
}

TEST(JsonCoding, SaysWhatIsWrong)
{
    const auto record = someRecord();
    EXPECT_EQ(complaint<FileRecord>(OrderedJson::array()), "expected an object, found []");
    EXPECT_EQ(
        complaintAfter(record, [](auto& json) { json.erase("isHidden"); }), "isHidden: missing");
    EXPECT_EQ(complaintAfter(record, [](auto& json) { json["id"] = "0F1E"; }),
        "id: expected an identifier, found \"0F1E\"");
    EXPECT_EQ(complaintAfter(record, [](auto& json) { json["path"] = 7; }),
        "path: expected a text, found 7");
    for (const OrderedJson& size : {OrderedJson("12"), OrderedJson(1.0), OrderedJson(nullptr),
             OrderedJson(true), OrderedJson(std::uint64_t{1} << 63)})
        EXPECT_EQ(complaintAfter(record, [&size](auto& json) { json["size"] = size; }),
            "size: expected a whole number of 64 bits, found " + size.dump());
    EXPECT_EQ(complaintAfter(record, [](auto& json) { json["isDirectory"] = 1; }),
        "isDirectory: expected true or false, found 1");
    EXPECT_THAT(complaintAfter(record, [](auto& json) { json["modifiedAt"] = "yesterday"; }),
        HasSubstr("modifiedAt: expected a date"));
    EXPECT_EQ(complaintAfter(SecurityFinding{}, [](auto& json) { json["level"] = "high risk"; }),
        "level: expected a threat level, found \"high risk\"");
    EXPECT_EQ(complaintAfter(CleanupCandidate{}, [](auto& json) { json["record"]["size"] = "1"; }),
        "record.size: expected a whole number of 64 bits, found \"1\"");
    EXPECT_EQ(complaintAfter(CleanupCandidate{}, [](auto& json) { json["record"] = 1; }),
        "record: expected an object, found 1");
    EXPECT_LT(complaint<FileRecord>(OrderedJson(std::string(10'000, 'x'))).size(), 200U);
}

TEST(JsonCoding, AFailedReadLeavesTheRecordAlone)
{
    auto record = someRecord();
    OrderedJson json = record;
    json["path"] = "/elsewhere";
    json["isHidden"] = "no";
    EXPECT_THROW(json.get_to(record), DecodingError);
    EXPECT_EQ(record, someRecord());
}

TEST(DateText, HasAsManyDecimalsAsTheMomentNeeds)
{
    const struct {
        Timestamp date;
        const char* text = nullptr;
    } rows[] = {
        {utc(2026, 11, 16, 13, 5, 9), "2026-11-16T13:05:09Z"},
        {utc(2026, 11, 16, 13, 5, 10), "2026-11-16T13:05:10Z"},
        {utc(2026, 1, 2, 0, 0, 0, 500'000'000), "2026-01-02T00:00:00.5Z"},
        {utc(2026, 1, 2, 0, 0, 0, 100), "2026-01-02T00:00:00.0000001Z"},
        {utc(2026, 1, 2, 0, 0, 0, 1), "2026-01-02T00:00:00.000000001Z"},
        {utc(2026, 1, 2, 0, 0, 0, 123'456'789), "2026-01-02T00:00:00.123456789Z"},
        {utc(1970, 1, 1), "1970-01-01T00:00:00Z"},
        {utc(1969, 12, 31, 23, 59, 59, 999'999'999), "1969-12-31T23:59:59.999999999Z"},
        {utc(2024, 2, 29, 23, 59, 59), "2024-02-29T23:59:59Z"},
        {Timestamp::min(), "1677-09-21T00:12:43.145224192Z"},
        {Timestamp::max(), "2262-04-11T23:47:16.854775807Z"},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(dateToText(row.date), row.text);
        EXPECT_EQ(dateFromText(row.text), row.date) << row.text;
    }
    EXPECT_EQ(dateFromText("2026-01-02T00:00:00.500Z"), utc(2026, 1, 2, 0, 0, 0, 500'000'000));
}

TEST(DateText, RefusesAnythingElse)
{
    for (const auto* text : {
             "",
             "2026-11-16",
             "2026-11-16T13:05:00",
             "2026-11-16T13:05:00z",
             "2026-11-16T13:05:00+01:00",
             "2026-11-16 13:05:00Z",
             " 2026-11-16T13:05:00Z",
             "2026-11-16T13:05:00Z ",
             "2026-11-16T13:05:00.Z",
             "2026-11-16T13:05:00.1234567890Z",
             "2026-11-16T13:05:00.-1Z",
             "2026-11-16T13:05:00,5Z",
             "2026-02-29T00:00:00Z",
             "2026-13-01T00:00:00Z",
             "2026-00-01T00:00:00Z",
             "2026-11-00T00:00:00Z",
             "2026-11-16T24:00:00Z",
             "2026-11-16T23:60:00Z",
             "2026-11-16T23:59:60Z",
             "+026-11-16T13:05:00Z",
             "1677-09-21T00:12:43.145224191Z",
             "2262-04-11T23:47:16.854775808Z",
             "0000-01-01T00:00:00Z",
             "9999-12-31T23:59:59Z",
         })
        EXPECT_THROW(dateFromText(text), DecodingError) << text;
}

} // namespace
} // namespace kestavon
