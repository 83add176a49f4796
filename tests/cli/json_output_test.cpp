#include "cli/json_records.h"
#include "cli/json_writer.h"
#include "core/domain/json_coding.h"

#include <functional>
#include <sstream>

#include <gmock/gmock.h>
#include <nlohmann/json.hpp>

namespace kestavon {
namespace {

/// What `write` writes, read by somebody else's reader.
OrderedJson document(const std::function<void(JsonWriter&)>& write)
{
    std::ostringstream out;
    JsonWriter json(out);
    write(json);
    json.finish();
    return OrderedJson::parse(out.str());
}

template <class Value> OrderedJson written(const Value& value)
{
    return document([&](JsonWriter& json) { writeJson(json, value); });
}

std::vector<std::string> keysOf(const OrderedJson& object)
{
    std::vector<std::string> keys;
    for (const auto& [key, value] : object.items())
        keys.push_back(key);
    return keys;
}

const std::vector<std::string> oddNames{"plain", "two\nlines", "tab\there", "quote\"back\\slash",
    "\x01\x1F\x7F", "été \U0001F600", "caf\xE9", "\xFF\xFE", "\xED\xA0\x80", "\uEF80 stands in",
    "caf\xC3"};

TEST(JsonOutput, WritesRecordsAsTheirCodingDoes)
{
    std::vector<FileRecord> records;
    for (const auto& name : oddNames) {
        for (const std::string folder : {"/r", "/r/sub \"x\"", "/r/b\xAD."})
            records.push_back({.path = folder + '/' + name, .size = 1'234'567'890'123});
    }
    records[0].modifiedAt = Timestamp(std::chrono::nanoseconds(1'500'000'000'250'000'000));
    records[1].modifiedAt = Timestamp(std::chrono::seconds(-1));
    records[1].isDirectory = true;
    records[2].isHidden = true;
    const auto list = RecordList::fromRecords("/r", records);

    const auto json = written(*list);
    ASSERT_EQ(json.size(), records.size());
    for (std::size_t i = 0; i < records.size(); ++i) {
        auto object = json[i];
        EXPECT_EQ(object.get<FileRecord>(), (*list)[i]);
        object.erase("pathBase64");
        EXPECT_EQ(object, OrderedJson((*list)[i])) << "the same keys in the same order";
    }
}

TEST(JsonOutput, GivesPathsBackThatAreNoText)
{
    for (const auto& name : oddNames) {
        const auto object = document([&](JsonWriter& json) {
            json.beginObject();
            json.path("path", name);
            json.endObject();
        });
        const bool isText = name != "caf\xE9" && name != "\xFF\xFE" && name != "\xED\xA0\x80"
            && name != "caf\xC3" && name != "\uEF80 stands in";
        EXPECT_EQ(object.contains("pathBase64"), !isText) << name;
        if (isText) {
            EXPECT_EQ(object["path"], name);
        }
    }
    const auto object = document([](JsonWriter& json) {
        json.beginObject();
        json.path("path", "/tmp/caf\xE9");
        json.endObject();
    });
    EXPECT_EQ(object["path"], "/tmp/caf\uEFE9");
    EXPECT_EQ(object["pathBase64"], "L3RtcC9jYWbp") << "as the manual says";
}

TEST(JsonOutput, EncodesBase64AsItsStandardDoes)
{
    // RFC 4648, section 10.
    EXPECT_EQ(base64(""), "");
    EXPECT_EQ(base64("f"), "Zg==");
    EXPECT_EQ(base64("fo"), "Zm8=");
    EXPECT_EQ(base64("foo"), "Zm9v");
    EXPECT_EQ(base64("foobar"), "Zm9vYmFy");
    EXPECT_EQ(base64("\xFF\xFE\xFD"), "//79");
}

TEST(JsonOutput, NamesFieldsAsTheRecordsDo)
{
    const auto id = Uuid::random();
    const std::vector<InstalledApp> apps{{.id = id,
        .name = "Paint",
        .bundleID = {},
        .appURL = "/opt/paint",
        .leftovers
        = {{.id = id, .url = "/h/p", .size = 3, .kind = LeftoverFile::LeftoverKind::savedState}}}};
    const auto app = written(apps)[0];
    EXPECT_EQ(keysOf(app), (std::vector<std::string>{"id", "name", "appURL", "leftovers"}));
    EXPECT_EQ(app["leftovers"][0]["kind"], "Saved State");

    const std::vector<StartupItem> items{{.id = id,
        .label = "a",
        .programPath = "/bin/a",
        .plistURL = "/h/a.desktop",
        .isSystem = true}};
    EXPECT_EQ(keysOf(written(items)[0]),
        (std::vector<std::string>{"id", "label", "programPath", "plistURL", "isSystem"}));

    const std::vector<SecurityFinding> findings{
        {.id = id, .path = "/p", .level = ThreatLevel::highRisk, .reason = "why"}};
    EXPECT_EQ(written(findings)[0], OrderedJson(findings[0]));

    const std::vector<QuarantineItem> held{{.id = id,
        .originalPath = "/a",
        .quarantinedPath = "/q/a",
        .reason = "r",
        .date = Timestamp(std::chrono::seconds(1))}};
    EXPECT_EQ(written(held)[0], OrderedJson(held[0]));

    const std::vector<ActivityEvent> events{
        {.id = id, .date = Timestamp(std::chrono::seconds(1)), .title = "t", .detail = "d"}};
    EXPECT_EQ(written(events)[0], OrderedJson(events[0]));

    const std::vector<AppProcessInfo> processes{{.processIdentifier = 7,
        .processName = "n",
        .bundleIdentifier = "org.n",
        .memoryBytes = ~std::uint64_t{0},
        .isSystemProcess = true,
        .icon = {}}};
    EXPECT_EQ(keysOf(written(processes)[0]),
        (std::vector<std::string>{"processIdentifier", "processName", "bundleIdentifier",
            "memoryBytes", "isSystemProcess"}));
    EXPECT_EQ(written(processes)[0]["memoryBytes"], ~std::uint64_t{0});

    EXPECT_EQ(written(std::optional<MemorySnapshot>()), OrderedJson());
    EXPECT_EQ(keysOf(written(std::optional(MemorySnapshot{}))),
        (std::vector<std::string>{"freeBytes", "activeBytes", "inactiveBytes", "wiredBytes"}));
    EXPECT_EQ(keysOf(written(StorageSummary{})),
        (std::vector<std::string>{"count", "bytes", "hiddenBytes"}));

    const auto groups = freshJunkGroups();
    EXPECT_EQ(keysOf(written(groups)[0]),
        (std::vector<std::string>{"id", "category", "items", "isScanning", "isScanned"}));
    EXPECT_EQ(written(groups).back()["category"], "Mail & Messages");
}

/// Counts what it is given and keeps nothing.
class Counter : public std::streambuf {
public:
    std::streamsize bytes = 0;
    std::streamsize longest = 0;

private:
    std::streamsize xsputn(const char*, std::streamsize count) override
    {
        bytes += count;
        longest = std::max(longest, count);
        return count;
    }
};

TEST(JsonOutput, HandsOnALongDocumentAsItGoes)
{
    std::vector<FileRecord> records(20'000);
    for (std::size_t i = 0; i < records.size(); ++i)
        records[i].path = "/r/file " + std::to_string(i);
    const auto list = RecordList::fromRecords("/r", records);
    Counter counter;
    std::ostream out(&counter);
    JsonWriter json(out);
    writeJson(json, *list);
    json.finish();
    EXPECT_GT(counter.bytes, 2'000'000);
    EXPECT_LT(counter.longest, 200'000);
}

} // namespace
} // namespace kestavon
