#include "core/domain/json_coding.h"

#include "core/domain/path_text.h"

#include <array>
#include <charconv>
#include <cstdio>
#include <type_traits>
#include <utility>

#include <nlohmann/json.hpp>

namespace kestavon {

namespace {

constexpr std::int64_t nanosecondsASecond = 1'000'000'000;
constexpr std::size_t mostDecimals = 9;
constexpr std::string_view dateShape = "0000-00-00T00:00:00"; ///< 0 stands for any digit

[[noreturn]] void fail(const std::string& expected, const OrderedJson& found)
{
    constexpr std::size_t longestQuote = 80;
    auto text = found.dump(-1, ' ', true, OrderedJson::error_handler_t::replace);
    if (text.size() > longestQuote)
        text = text.substr(0, longestQuote) + "…";
    throw DecodingError("expected " + expected + ", found " + text);
}

void decode(const OrderedJson& json, std::string& text)
{
    if (!json.is_string())
        fail("a text", json);
    text = pathFromText(json.get_ref<const std::string&>());
}

void decode(const OrderedJson& json, bool& value)
{
    if (!json.is_boolean())
        fail("true or false", json);
    value = json.get<bool>();
}

void decode(const OrderedJson& json, std::int64_t& number)
{
    const bool fits = json.is_number_integer()
        && (!json.is_number_unsigned() || std::in_range<std::int64_t>(json.get<std::uint64_t>()));
    if (!fits)
        fail("a whole number of 64 bits", json);
    number = json.get<std::int64_t>();
}

void decode(const OrderedJson& json, Timestamp& date)
{
    if (!json.is_string())
        fail("a date", json);
    date = dateFromText(json.get_ref<const std::string&>());
}

template <class Value> void decode(const OrderedJson& json, Value& value)
{
    from_json(json, value);
}

/// Decodes a member of an object, and names the key when that fails.
template <class Value> void decodeMember(const OrderedJson& object, const char* key, Value& value)
{
    const auto member = object.find(key);
    if (member == object.end())
        throw DecodingError(std::string(key) + ": missing");
    try {
        decode(*member, value);
    } catch (const DecodingError& error) {
        const std::string reason = error.what();
        // "record" and "size: …" are "record.size: …".
        const bool liesWithin = std::is_same_v<Value, FileRecord> && member->is_object();
        throw DecodingError(key + ((liesWithin ? "." : ": ") + reason));
    }
}

void requireObject(const OrderedJson& json)
{
    if (!json.is_object())
        fail("an object", json);
}

template <class Value> Value member(const OrderedJson& object, const char* key)
{
    Value value{};
    decodeMember(object, key, value);
    return value;
}

/// Digits only; the caller has looked.
int number(std::string_view digits)
{
    int value = 0;
    std::from_chars(digits.data(), digits.data() + digits.size(), value);
    return value;
}

bool isDigit(char c)
{
    return c >= '0' && c <= '9';
}

bool hasDateShape(std::string_view text)
{
    if (text.size() < dateShape.size())
        return false;
    for (std::size_t i = 0; i < dateShape.size(); ++i) {
        if (dateShape[i] == '0' ? !isDigit(text[i]) : text[i] != dateShape[i])
            return false;
    }
    return true;
}

/// Nanoseconds of ".25Z" or "Z"; -1 for any other text.
std::int64_t decimalsOf(std::string_view text)
{
    if (!text.ends_with('Z'))
        return -1;
    text.remove_suffix(1);
    if (text.empty())
        return 0;
    if (text.front() != '.' || text.size() == 1 || text.size() > mostDecimals + 1)
        return -1;
    std::int64_t nanoseconds = 0;
    for (std::size_t i = 1; i <= mostDecimals; ++i) {
        const char digit = i < text.size() ? text[i] : '0';
        if (!isDigit(digit))
            return -1;
        nanoseconds = nanoseconds * 10 + (digit - '0');
    }
    return nanoseconds;
}

} // namespace

std::string dateToText(Timestamp date)
{
    // The second is found by hand: the first moments' own second starts out of reach.
    const auto count = date.time_since_epoch().count();
    auto second = count / nanosecondsASecond;
    auto rest = count % nanosecondsASecond;
    if (rest < 0) {
        rest += nanosecondsASecond;
        --second;
    }
    const std::chrono::sys_seconds time{std::chrono::seconds(second)};
    const auto day = std::chrono::floor<std::chrono::days>(time);
    const std::chrono::year_month_day calendarDay(day);
    const std::chrono::hh_mm_ss clock(time - day);

    std::array<char, 64> text{};
    std::snprintf(text.data(), text.size(), "%04d-%02u-%02uT%02d:%02d:%02d.%09d",
        static_cast<int>(calendarDay.year()), static_cast<unsigned>(calendarDay.month()),
        static_cast<unsigned>(calendarDay.day()), static_cast<int>(clock.hours().count()),
        static_cast<int>(clock.minutes().count()), static_cast<int>(clock.seconds().count()),
        static_cast<int>(rest));
    std::string shortened = text.data();
    shortened.erase(shortened.find_last_not_of('0') + 1);
    if (rest == 0)
        shortened.resize(dateShape.size());
    return shortened + 'Z';
}

Timestamp dateFromText(std::string_view text)
{
    const auto refuse = [text] {
        fail("a date such as 2026-11-16T13:05:00.25Z", OrderedJson(std::string(text)));
    };
    if (!hasDateShape(text))
        refuse();
    const auto decimals = decimalsOf(text.substr(dateShape.size()));
    const std::chrono::year_month_day day(std::chrono::year(number(text.substr(0, 4))),
        std::chrono::month(static_cast<unsigned>(number(text.substr(5, 2)))),
        std::chrono::day(static_cast<unsigned>(number(text.substr(8, 2)))));
    const auto hour = number(text.substr(11, 2));
    const auto minute = number(text.substr(14, 2));
    const auto second = number(text.substr(17, 2));
    if (decimals < 0 || !day.ok() || hour > 23 || minute > 59 || second > 59)
        refuse();
    const auto time = std::chrono::sys_days(day) + std::chrono::hours(hour)
        + std::chrono::minutes(minute) + std::chrono::seconds(second);

    // From the nearer second, as the first moments' own one starts out of reach.
    auto wholeSeconds = std::int64_t{time.time_since_epoch().count()};
    auto rest = decimals;
    if (wholeSeconds < 0 && rest > 0) {
        ++wholeSeconds;
        rest -= nanosecondsASecond;
    }
    std::int64_t count = 0;
    if (__builtin_mul_overflow(wholeSeconds, nanosecondsASecond, &count)
        || __builtin_add_overflow(count, rest, &count))
        refuse();
    return Timestamp(std::chrono::nanoseconds(count));
}

void to_json(OrderedJson& json, const Uuid& id)
{
    json = id.text();
}

void from_json(const OrderedJson& json, Uuid& id)
{
    const auto read
        = json.is_string() ? Uuid::fromText(json.get_ref<const std::string&>()) : std::nullopt;
    if (!read)
        fail("an identifier", json);
    id = *read;
}

void to_json(OrderedJson& json, const ThreatLevel& level)
{
    json = std::string(rawValue(level));
}

void from_json(const OrderedJson& json, ThreatLevel& level)
{
    const auto read = json.is_string()
        ? fromRawValue<ThreatLevel>(json.get_ref<const std::string&>())
        : std::nullopt;
    if (!read)
        fail("a threat level", json);
    level = *read;
}

void to_json(OrderedJson& json, const FileRecord& record)
{
    json = OrderedJson::object();
    json["id"] = record.id;
    json["path"] = pathToText(record.path);
    json["size"] = record.size;
    if (record.modifiedAt)
        json["modifiedAt"] = dateToText(*record.modifiedAt);
    json["isDirectory"] = record.isDirectory;
    json["isHidden"] = record.isHidden;
}

void from_json(const OrderedJson& json, FileRecord& record)
{
    requireObject(json);
    FileRecord read{.id = member<Uuid>(json, "id"),
        .path = member<std::string>(json, "path"),
        .size = member<std::int64_t>(json, "size")};
    const auto date = json.find("modifiedAt");
    if (date != json.end() && !date->is_null())
        read.modifiedAt = member<Timestamp>(json, "modifiedAt");
    decodeMember(json, "isDirectory", read.isDirectory);
    decodeMember(json, "isHidden", read.isHidden);
    record = std::move(read);
}

void to_json(OrderedJson& json, const CleanupCandidate& candidate)
{
    json = OrderedJson::object();
    json["id"] = candidate.id;
    json["record"] = candidate.record;
    json["reason"] = pathToText(candidate.reason);
    json["estimatedBytes"] = candidate.estimatedBytes;
}

void from_json(const OrderedJson& json, CleanupCandidate& candidate)
{
    requireObject(json);
    candidate = {.id = member<Uuid>(json, "id"),
        .record = member<FileRecord>(json, "record"),
        .reason = member<std::string>(json, "reason"),
        .estimatedBytes = member<std::int64_t>(json, "estimatedBytes")};
}

void to_json(OrderedJson& json, const SecurityFinding& finding)
{
    json = OrderedJson::object();
    json["id"] = finding.id;
    json["path"] = pathToText(finding.path);
    json["level"] = finding.level;
    json["reason"] = pathToText(finding.reason);
}

void from_json(const OrderedJson& json, SecurityFinding& finding)
{
    requireObject(json);
    finding = {.id = member<Uuid>(json, "id"),
        .path = member<std::string>(json, "path"),
        .level = member<ThreatLevel>(json, "level"),
        .reason = member<std::string>(json, "reason")};
}

void to_json(OrderedJson& json, const QuarantineItem& item)
{
    json = OrderedJson::object();
    json["id"] = item.id;
    json["originalPath"] = pathToText(item.originalPath);
    json["quarantinedPath"] = pathToText(item.quarantinedPath);
    json["reason"] = pathToText(item.reason);
    json["date"] = dateToText(item.date);
}

void from_json(const OrderedJson& json, QuarantineItem& item)
{
    requireObject(json);
    item = {.id = member<Uuid>(json, "id"),
        .originalPath = member<std::string>(json, "originalPath"),
        .quarantinedPath = member<std::string>(json, "quarantinedPath"),
        .reason = member<std::string>(json, "reason"),
        .date = member<Timestamp>(json, "date")};
}

void to_json(OrderedJson& json, const ActivityEvent& event)
{
    json = OrderedJson::object();
    json["id"] = event.id;
    json["date"] = dateToText(event.date);
    json["title"] = pathToText(event.title);
    json["detail"] = pathToText(event.detail);
}

void from_json(const OrderedJson& json, ActivityEvent& event)
{
    requireObject(json);
    event = {.id = member<Uuid>(json, "id"),
        .date = member<Timestamp>(json, "date"),
        .title = member<std::string>(json, "title"),
        .detail = member<std::string>(json, "detail")};
}

} // namespace kestavon
