#include "core/domain/utf8.h"
#include "platform/propertylist/property_budget.h"
#include "platform/propertylist/property_list_forms.h"

#include <bit>
#include <cmath>
#include <limits>

namespace kestavon {

namespace {

using Problem = PropertyListProblem;
using MaybeValue = std::optional<PropertyValue>;

constexpr std::size_t trailerBytes = 32;
constexpr double secondsTo2001 = 978'307'200; // where dates count from, since 1970

/// The kinds of objects: the upper half of an object's first byte.
enum Kind : unsigned {
    simple = 0x0,
    integer = 0x1,
    real = 0x2,
    date = 0x3,
    data = 0x4,
    asciiText = 0x5,
    utf16Text = 0x6,
    reference = 0x8,
    array = 0xA,
    set = 0xC,
    dictionary = 0xD,
};

std::uint64_t bigEndian(std::string_view bytes)
{
    std::uint64_t value = 0;
    for (const char c : bytes)
        value = value << 8 | static_cast<unsigned char>(c);
    return value;
}

/// Integers of up to eight bytes are unsigned below that and signed at it; those of sixteen are
/// what does not fit.
std::int64_t signedInteger(std::string_view bytes)
{
    using Limits = std::numeric_limits<std::int64_t>;
    if (bytes.size() <= 8)
        return static_cast<std::int64_t>(bigEndian(bytes));
    const auto upper = static_cast<std::int64_t>(bigEndian(bytes.substr(0, 8)));
    const auto lower = static_cast<std::int64_t>(bigEndian(bytes.substr(8)));
    if (upper == (lower < 0 ? -1 : 0))
        return lower;
    return upper < 0 ? Limits::min() : Limits::max();
}

Timestamp momentOf(double secondsSince2001)
{
    // Some 290 years are what a moment can be from 1970.
    const auto seconds = secondsSince2001 + secondsTo2001;
    constexpr double furthest = 9.2e9;
    if (!(std::abs(seconds) < furthest))
        return seconds > 0 ? Timestamp::max() : Timestamp::min();
    // One by one: a double cannot hold so many nanoseconds.
    const auto whole = std::floor(seconds);
    const auto nanoseconds = static_cast<std::int64_t>((seconds - whole) * 1e9);
    return Timestamp(std::chrono::seconds(static_cast<std::int64_t>(whole))
        + std::chrono::nanoseconds(nanoseconds));
}

std::string utf8(std::string_view utf16)
{
    constexpr char32_t replacement = 0xFFFD; // for half a pair
    const auto unitAt = [utf16](std::size_t i) {
        return i + 2 <= utf16.size() ? static_cast<char32_t>(bigEndian(utf16.substr(i, 2))) : 0;
    };
    std::string text;
    for (std::size_t i = 0; i < utf16.size(); i += 2) {
        const auto unit = unitAt(i);
        if (unit < 0xD800 || unit > 0xDFFF) {
            appendUtf8(unit, text);
            continue;
        }
        const auto next = unitAt(i + 2);
        if (unit < 0xDC00 && next >= 0xDC00 && next <= 0xDFFF) {
            appendUtf8(0x10000 + ((unit - 0xD800) << 10) + (next - 0xDC00), text);
            i += 2;
        } else {
            appendUtf8(replacement, text);
        }
    }
    return text;
}

/// A binary list is a heap of objects that name one another by number, a table of where each of
/// them starts, and a trailer that says where the table is and which object is the list.
class BinaryReader {
public:
    BinaryReader(std::string_view bytes, const PropertyListLimits& limits)
        : m_bytes(bytes)
        , m_budget(limits)
    {
    }

    PropertyListResult read();

private:
    /// An object's kind, the number in the lower half of its first byte, and what follows that.
    struct Object {
        unsigned kind;
        unsigned nibble;
        std::size_t body;
    };

    bool readTrailer();
    std::optional<Object> objectAt(std::uint64_t number);
    MaybeValue valueOf(std::uint64_t number, std::size_t depth);
    MaybeValue contentOf(const Object& object, std::size_t depth);
    MaybeValue simpleOf(unsigned nibble);
    MaybeValue numberOf(const Object& object);
    MaybeValue textOf(const Object& object);
    MaybeValue dataOf(const Object& object);
    MaybeValue arrayOf(const Object& object, std::size_t depth);
    MaybeValue dictionaryOf(const Object& object, std::size_t depth);
    bool readEntry(std::string_view key, std::string_view value, std::size_t depth,
        PropertyValue::Dictionary& entries);
    std::optional<std::string_view> elementsOf(Object object, std::size_t elementBytes);
    std::optional<std::string_view> slice(std::size_t at, std::uint64_t count);
    MaybeValue malformed()
    {
        m_budget.fail(Problem::malformed);
        return std::nullopt;
    }

    const std::string_view m_bytes;
    PropertyBudget m_budget;
    std::size_t m_tableStart = 0; // the objects lie before it
    std::size_t m_offsetBytes = 0;
    std::size_t m_referenceBytes = 0;
    std::uint64_t m_objectCount = 0;
    std::uint64_t m_topObject = 0;
    std::vector<bool> m_isOpen; // the array or dictionary is being read: nothing in it may name it
};

PropertyListResult BinaryReader::read()
{
    if (!readTrailer())
        return m_budget.problem();
    m_isOpen.resize(m_objectCount);
    auto value = valueOf(m_topObject, 0);
    if (!value)
        return m_budget.problem();
    return std::move(*value);
}

bool BinaryReader::readTrailer()
{
    const auto objectsStart = binaryPropertyListMark.size();
    if (m_bytes.size() < objectsStart + trailerBytes)
        return false;
    const auto trailerStart = m_bytes.size() - trailerBytes;
    const auto trailer = m_bytes.substr(trailerStart);
    m_offsetBytes = static_cast<unsigned char>(trailer[6]);
    m_referenceBytes = static_cast<unsigned char>(trailer[7]);
    m_objectCount = bigEndian(trailer.substr(8, 8));
    m_topObject = bigEndian(trailer.substr(16, 8));
    const auto tableStart = bigEndian(trailer.substr(24, 8));
    if (m_offsetBytes < 1 || m_offsetBytes > 8 || m_referenceBytes < 1 || m_referenceBytes > 8
        || tableStart < objectsStart || tableStart > trailerStart || m_topObject >= m_objectCount
        || m_objectCount > (trailerStart - tableStart) / m_offsetBytes)
        return false;
    m_tableStart = static_cast<std::size_t>(tableStart);
    return true;
}

std::optional<std::string_view> BinaryReader::slice(std::size_t at, std::uint64_t count)
{
    if (at > m_tableStart || count > m_tableStart - at) {
        m_budget.fail(Problem::malformed);
        return std::nullopt;
    }
    return m_bytes.substr(at, static_cast<std::size_t>(count));
}

std::optional<BinaryReader::Object> BinaryReader::objectAt(std::uint64_t number)
{
    if (number >= m_objectCount) {
        m_budget.fail(Problem::malformed);
        return std::nullopt;
    }
    const auto entry = m_tableStart + static_cast<std::size_t>(number) * m_offsetBytes;
    const auto start = bigEndian(m_bytes.substr(entry, m_offsetBytes));
    if (start < binaryPropertyListMark.size() || start >= m_tableStart) {
        m_budget.fail(Problem::malformed);
        return std::nullopt;
    }
    const auto at = static_cast<std::size_t>(start);
    const unsigned first = static_cast<unsigned char>(m_bytes[at]);
    return Object{.kind = first >> 4U, .nibble = first & 0xFU, .body = at + 1};
}

MaybeValue BinaryReader::valueOf(std::uint64_t number, std::size_t depth)
{
    const auto object = objectAt(number);
    if (!object || !m_budget.takeValue(depth))
        return std::nullopt;
    const auto position = static_cast<std::size_t>(number);
    if (m_isOpen[position])
        return malformed();
    m_isOpen[position] = true;
    auto value = contentOf(*object, depth);
    m_isOpen[position] = false;
    return value;
}

MaybeValue BinaryReader::contentOf(const Object& object, std::size_t depth)
{
    switch (object.kind) {
    case simple: return simpleOf(object.nibble);
    case integer:
    case real:
    case date:
    case reference: return numberOf(object);
    case data: return dataOf(object);
    case asciiText:
    case utf16Text: return textOf(object);
    case array:
    case set: return arrayOf(object, depth);
    case dictionary: return dictionaryOf(object, depth);
    default: return malformed();
    }
}

MaybeValue BinaryReader::simpleOf(unsigned nibble)
{
    constexpr unsigned no = 8;
    constexpr unsigned yes = 9;
    if (nibble != no && nibble != yes)
        return malformed();
    return PropertyValue{nibble == yes};
}

MaybeValue BinaryReader::numberOf(const Object& object)
{
    constexpr unsigned longestPower = 4; // of two: sixteen bytes
    if (object.kind != reference && object.nibble > longestPower)
        return malformed();
    const auto length = object.kind == reference ? object.nibble + 1U : 1U << object.nibble;
    const auto bytes = slice(object.body, length);
    if (!bytes)
        return std::nullopt;
    if (object.kind == integer || object.kind == reference)
        return PropertyValue{signedInteger(*bytes)};
    if (object.kind == real && length == sizeof(float))
        return PropertyValue{static_cast<double>(
            std::bit_cast<float>(static_cast<std::uint32_t>(bigEndian(*bytes))))};
    if (length != sizeof(double))
        return malformed();
    const auto number = std::bit_cast<double>(bigEndian(*bytes));
    if (object.kind == date)
        return PropertyValue{momentOf(number)};
    return PropertyValue{number};
}

MaybeValue BinaryReader::textOf(const Object& object)
{
    const auto bytes = elementsOf(object, object.kind == utf16Text ? 2 : 1);
    if (!bytes)
        return std::nullopt;
    auto text = object.kind == utf16Text ? utf8(*bytes) : std::string(*bytes);
    if (!m_budget.takeText(text))
        return std::nullopt;
    return PropertyValue{std::move(text)};
}

MaybeValue BinaryReader::dataOf(const Object& object)
{
    const auto bytes = elementsOf(object, 1);
    if (!bytes || !m_budget.takeBytes(bytes->size()))
        return std::nullopt;
    return PropertyValue{PropertyValue::Data{std::string(*bytes)}};
}

MaybeValue BinaryReader::arrayOf(const Object& object, std::size_t depth)
{
    const auto references = elementsOf(object, m_referenceBytes);
    if (!references)
        return std::nullopt;
    PropertyValue::Array values;
    for (auto left = *references; !left.empty(); left.remove_prefix(m_referenceBytes)) {
        auto value = valueOf(bigEndian(left.substr(0, m_referenceBytes)), depth + 1);
        if (!value)
            return std::nullopt;
        values.push_back(std::move(*value));
    }
    return PropertyValue{std::move(values)};
}

MaybeValue BinaryReader::dictionaryOf(const Object& object, std::size_t depth)
{
    const auto references = elementsOf(object, 2 * m_referenceBytes);
    if (!references)
        return std::nullopt;
    auto keys = references->substr(0, references->size() / 2);
    auto values = references->substr(references->size() / 2);
    PropertyValue::Dictionary entries;
    for (; !keys.empty();
         keys.remove_prefix(m_referenceBytes), values.remove_prefix(m_referenceBytes)) {
        if (!readEntry(keys, values, depth + 1, entries))
            return std::nullopt;
    }
    return PropertyValue{std::move(entries)};
}

bool BinaryReader::readEntry(std::string_view key, std::string_view value, std::size_t depth,
    PropertyValue::Dictionary& entries)
{
    const auto keyObject = objectAt(bigEndian(key.substr(0, m_referenceBytes)));
    if (!keyObject || !m_budget.takeValue(depth))
        return false;
    if (keyObject->kind != asciiText && keyObject->kind != utf16Text)
        return true; // nobody could ask for it
    auto name = textOf(*keyObject);
    if (!name)
        return false;
    auto content = valueOf(bigEndian(value.substr(0, m_referenceBytes)), depth);
    if (!content)
        return false;
    entries.push_back(
        {.key = std::move(std::get<std::string>(name->content)), .value = std::move(*content)});
    return true;
}

/// The bytes of an object that is a number of elements, which the lower half of its first byte
/// gives, or, where that is too small, an integer in front of them.
std::optional<std::string_view> BinaryReader::elementsOf(Object object, std::size_t elementBytes)
{
    constexpr unsigned countFollows = 0xF;
    constexpr unsigned longestCountPower = 3;
    std::uint64_t count = object.nibble;
    if (object.nibble == countFollows) {
        const auto first = slice(object.body, 1);
        const auto sizeByte = first ? static_cast<unsigned char>(first->front()) : 0U;
        if (sizeByte >> 4U != integer || (sizeByte & 0xFU) > longestCountPower) {
            m_budget.fail(Problem::malformed);
            return std::nullopt;
        }
        const auto length = std::size_t{1} << (sizeByte & 0xFU);
        const auto bytes = slice(object.body + 1, length);
        if (!bytes)
            return std::nullopt;
        count = bigEndian(*bytes);
        object.body += 1 + length;
    }
    if (count > m_tableStart) { // before the product can wrap
        m_budget.fail(Problem::malformed);
        return std::nullopt;
    }
    return slice(object.body, count * elementBytes);
}

} // namespace

PropertyListResult parseBinaryPropertyList(std::string_view bytes, const PropertyListLimits& limits)
{
    return BinaryReader(bytes, limits).read();
}

} // namespace kestavon
