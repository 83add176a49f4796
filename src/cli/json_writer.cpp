#include "cli/json_writer.h"

#include "core/domain/path_text.h"

#include <algorithm>
#include <utility>

namespace kestavon {

namespace {

constexpr std::size_t pieceSize = 128 * 1024;

bool standsForItself(char c)
{
    return c >= 0x20 && c < 0x7F && c != '"' && c != '\\';
}

void appendEscape(std::string& json, char c)
{
    static constexpr std::string_view hexDigits = "0123456789abcdef";
    const auto byte = static_cast<unsigned char>(c);
    switch (c) {
    case '"': json += "\\\""; break;
    case '\\': json += "\\\\"; break;
    case '\n': json += "\\n"; break;
    case '\t': json += "\\t"; break;
    default: json.append("\\u00").append({hexDigits[byte >> 4], hexDigits[byte & 0x0F]});
    }
}

} // namespace

void appendJsonText(std::string& json, std::string_view text)
{
    if (std::ranges::all_of(text, standsForItself)) {
        json += text;
        return;
    }
    for (const char c : pathToText(text)) {
        const auto byte = static_cast<unsigned char>(c);
        if (standsForItself(c) || byte >= 0x80)
            json += c;
        else
            appendEscape(json, c);
    }
}

std::string base64(std::string_view bytes)
{
    static constexpr std::string_view digits
        = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
    std::string text;
    for (std::size_t i = 0; i < bytes.size(); i += 3) {
        const auto group = bytes.substr(i, 3);
        std::uint32_t bits = 0;
        for (std::size_t j = 0; j < 3; ++j)
            bits = bits << 8 | (j < group.size() ? static_cast<unsigned char>(group[j]) : 0U);
        for (std::size_t j = 0; j < 4; ++j)
            text += j <= group.size() ? digits[bits >> (18 - 6 * j) & 0x3F] : '=';
    }
    return text;
}

JsonWriter::JsonWriter(std::ostream& out)
    : m_out(out)
{
    m_text.reserve(pieceSize + pieceSize / 8);
}

void JsonWriter::key(std::string_view name)
{
    beginValue();
    m_text.append("\"").append(name).append("\":");
    m_hasKey = true;
}

void JsonWriter::value(bool flag)
{
    raw(flag ? "true" : "false");
}

void JsonWriter::value(std::string_view text)
{
    beginValue();
    m_text += '"';
    appendJsonText(m_text, text);
    m_text += '"';
}

void JsonWriter::raw(std::string_view json)
{
    beginValue();
    m_text += json;
    flushWhenLong();
}

void JsonWriter::path(std::string_view name, std::string_view bytes)
{
    member(name, bytes);
    const bool isAscii
        = std::ranges::all_of(bytes, [](char c) { return static_cast<unsigned char>(c) < 0x80; });
    if (!isAscii && pathToText(bytes) != bytes)
        member(std::string(name) + "Base64", base64(bytes));
}

void JsonWriter::finish()
{
    m_text += '\n';
    m_out.write(m_text.data(), static_cast<std::streamsize>(m_text.size()));
    m_out.flush();
    m_text.clear();
}

void JsonWriter::open(char bracket)
{
    beginValue();
    m_text += bracket;
    m_levels.push_back(false);
}

void JsonWriter::close(char bracket)
{
    const bool hasContent = m_levels.back();
    m_levels.pop_back();
    if (hasContent && m_levels.size() < 2)
        m_text += '\n';
    m_text += bracket;
    flushWhenLong();
}

void JsonWriter::beginValue()
{
    if (std::exchange(m_hasKey, false) || m_levels.empty())
        return;
    if (m_levels.back())
        m_text += ',';
    if (m_levels.size() <= 2)
        m_text += '\n';
    m_levels.back() = true;
}

void JsonWriter::flushWhenLong()
{
    if (m_text.size() < pieceSize)
        return;
    m_out.write(m_text.data(), static_cast<std::streamsize>(m_text.size()));
    m_text.clear();
}

} // namespace kestavon
