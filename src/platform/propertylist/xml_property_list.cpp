#include "platform/propertylist/property_budget.h"
#include "platform/propertylist/property_list_forms.h"
#include "platform/propertylist/xml_scalars.h"

#include <algorithm>
#include <memory>
#include <new>

#include <expat.h>

namespace kestavon {

namespace {

using Problem = PropertyListProblem;

struct FreeParser {
    void operator()(XML_Parser parser) const { XML_ParserFree(parser); }
};
using Parser = std::unique_ptr<std::remove_pointer_t<XML_Parser>, FreeParser>;

/// Editors and templates leave empty lines before a list, which XML forbids before its declaration.
std::string_view withoutBlankStart(std::string_view bytes)
{
    bytes.remove_prefix(std::min(bytes.find_first_not_of(" \t\r\n"), bytes.size()));
    return bytes;
}

/// Builds the value while the elements go by. The parser is stopped at the first thing that is
/// wrong, and by any entity that the list declares: those are what small files grow large with.
class XmlReader {
public:
    XmlReader(std::string_view bytes, const PropertyListLimits& limits)
        : m_bytes(withoutBlankStart(bytes))
        , m_budget(limits)
        , m_parser(XML_ParserCreate(nullptr))
    {
    }

    PropertyListResult read();

private:
    /// An open element that holds values: `plist`, an array or a dictionary.
    struct Holder {
        PropertyValue value;
        std::string key = {}; ///< of a dictionary: that of the value to come
        bool hasKey = false;
    };

    void setHandlers();
    void begin(std::string_view element);
    void beginValue(std::string_view element);
    void end(std::string_view element);
    void addText(std::string_view text);
    void add(PropertyValue value);
    bool mayHoldValue() const;
    void fail(Problem problem);

    /// Exceptions must not pass through the parser, which is C.
    template <class Step> void take(Step step)
    {
        if (m_budget.hasFailed())
            return;
        try {
            step();
        } catch (const std::bad_alloc&) {
            fail(Problem::tooLarge);
        }
    }
    static XmlReader& of(void* reader) { return *static_cast<XmlReader*>(reader); }

    const std::string_view m_bytes;
    PropertyBudget m_budget;
    Parser m_parser;
    std::vector<Holder> m_holders; // the first is `plist`
    std::string m_textElement; // a scalar or `key` that is open; empty: none
    std::string m_text;
    std::optional<PropertyValue> m_result;
};

PropertyListResult XmlReader::read()
{
    if (!m_parser)
        return Problem::tooLarge;
    setHandlers();
    const auto status
        = XML_Parse(m_parser.get(), m_bytes.data(), static_cast<int>(m_bytes.size()), XML_TRUE);
    if (status != XML_STATUS_OK || m_budget.hasFailed() || !m_result)
        return m_budget.problem();
    return std::move(*m_result);
}

void XmlReader::setHandlers()
{
    auto* const parser = m_parser.get();
    XML_SetUserData(parser, this);
    XML_SetElementHandler(
        parser,
        [](void* reader, const XML_Char* element, const XML_Char**) {
            of(reader).take([&] { of(reader).begin(element); });
        },
        [](void* reader, const XML_Char* element) {
            of(reader).take([&] { of(reader).end(element); });
        });
    XML_SetCharacterDataHandler(parser, [](void* reader, const XML_Char* text, int length) {
        of(reader).take([&] { of(reader).addText({text, static_cast<std::size_t>(length)}); });
    });
    XML_SetEntityDeclHandler(parser,
        [](void* reader, const XML_Char*, int, const XML_Char*, int, const XML_Char*,
            const XML_Char*, const XML_Char*,
            const XML_Char*) { of(reader).fail(Problem::malformed); });
    // One that is declared elsewhere, if at all.
    XML_SetSkippedEntityHandler(
        parser, [](void* reader, const XML_Char*, int) { of(reader).fail(Problem::malformed); });
}

void XmlReader::fail(Problem problem)
{
    m_budget.fail(problem);
    XML_StopParser(m_parser.get(), XML_FALSE);
}

bool XmlReader::mayHoldValue() const
{
    if (m_holders.empty())
        return false;
    const auto& holder = m_holders.back();
    return m_holders.size() == 1 ? !m_result
                                 : !holder.value.as<PropertyValue::Dictionary>() || holder.hasKey;
}

void XmlReader::begin(std::string_view element)
{
    const bool isFirst = m_holders.empty() && !m_result;
    if (!m_textElement.empty()) {
        fail(Problem::malformed);
    } else if (isFirst && element == "plist") {
        m_holders.emplace_back();
    } else if (element == "key" && !m_holders.empty()
        && m_holders.back().value.as<PropertyValue::Dictionary>() && !m_holders.back().hasKey) {
        m_textElement = element;
    } else if (!mayHoldValue()) {
        fail(Problem::malformed);
    } else if (!m_budget.takeValue(m_holders.size() - 1)) {
        fail(m_budget.problem());
    } else {
        beginValue(element);
    }
}

void XmlReader::beginValue(std::string_view element)
{
    if (element == "dict")
        m_holders.push_back({.value = {PropertyValue::Dictionary()}});
    else if (element == "array")
        m_holders.push_back({.value = {PropertyValue::Array()}});
    else if (isXmlScalar(element))
        m_textElement = element;
    else
        fail(Problem::malformed);
}

void XmlReader::addText(std::string_view text)
{
    constexpr std::string_view spaces = " \t\r\n";
    if (m_textElement.empty()) {
        if (text.find_first_not_of(spaces) != text.npos)
            fail(Problem::malformed);
    } else if (!m_budget.takeText(text)) {
        fail(m_budget.problem());
    } else {
        m_text += text;
    }
}

void XmlReader::end(std::string_view element)
{
    const auto text = std::exchange(m_text, {});
    if (!m_textElement.empty()) {
        m_textElement.clear();
        if (element == "key") {
            m_holders.back().key = text;
            m_holders.back().hasKey = true;
        } else if (auto value = xmlScalar(element, text)) {
            add(std::move(*value));
        } else {
            fail(Problem::malformed);
        }
        return;
    }
    auto holder = std::move(m_holders.back());
    m_holders.pop_back();
    if (m_holders.empty()) // the list itself
        return;
    if (holder.hasKey)
        fail(Problem::malformed);
    else
        add(std::move(holder.value));
}

void XmlReader::add(PropertyValue value)
{
    auto& holder = m_holders.back();
    if (m_holders.size() == 1) {
        m_result = std::move(value);
    } else if (auto* const values = std::get_if<PropertyValue::Array>(&holder.value.content)) {
        values->push_back(std::move(value));
    } else {
        std::get<PropertyValue::Dictionary>(holder.value.content)
            .push_back({.key = std::move(holder.key), .value = std::move(value)});
        holder.hasKey = false;
    }
}

} // namespace

PropertyListResult parseXmlPropertyList(std::string_view bytes, const PropertyListLimits& limits)
{
    return XmlReader(bytes, limits).read();
}

} // namespace kestavon
