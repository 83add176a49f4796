#include "core/domain/utf8.h"

#include <cstdint>

namespace kestavon {

namespace {

std::uint8_t byteAt(std::string_view text, std::size_t i)
{
    return static_cast<std::uint8_t>(text[i]);
}

bool isBetween(char32_t code, char32_t first, char32_t last)
{
    return first <= code && code <= last;
}

} // namespace

Utf8Character utf8CharacterAt(std::string_view text, std::size_t i)
{
    const auto lead = byteAt(text, i);
    if (lead < 0x80)
        return {lead, 1};
    const std::size_t length = lead >= 0xF0 ? 4 : lead >= 0xE0 ? 3 : 2;
    constexpr std::uint8_t payloadMasks[] = {0, 0, 0x1F, 0x0F, 0x07};
    constexpr char32_t smallest[] = {0, 0, 0x80, 0x800, 0x10000};
    if (lead < 0xC2 || lead > 0xF4 || i + length > text.size())
        return {};
    char32_t code = lead & payloadMasks[length];
    for (std::size_t k = 1; k < length; ++k) {
        const auto next = byteAt(text, i + k);
        if ((next & 0xC0) != 0x80)
            return {};
        code = (code << 6) | (next & 0x3F);
    }
    const bool isSurrogate = isBetween(code, 0xD800, 0xDFFF);
    if (code < smallest[length] || code > 0x10FFFF || isSurrogate)
        return {};
    return {code, length};
}

void appendUtf8(char32_t code, std::string& text)
{
    const auto put = [&text](char32_t byte) { text += static_cast<char>(byte); };
    const auto putRest = [&](unsigned shift) { put(0x80 | (code >> shift & 0x3F)); };
    if (code < 0x80) {
        put(code);
    } else if (code < 0x800) {
        put(0xC0 | code >> 6);
        putRest(0);
    } else if (code < 0x10000) {
        put(0xE0 | code >> 12);
        putRest(6);
        putRest(0);
    } else {
        put(0xF0 | code >> 18);
        putRest(12);
        putRest(6);
        putRest(0);
    }
}

bool breaksLine(char32_t code)
{
    return code == U'\n' || code == 0x0085 || code == 0x2028 || code == 0x2029;
}

bool misleads(char32_t code)
{
    const bool isControl = code < 0x20 || isBetween(code, 0x7F, 0x9F);
    const bool reorders = code == 0x200E || code == 0x200F || code == 0x061C
        || isBetween(code, 0x202A, 0x202E) || isBetween(code, 0x2066, 0x2069);
    return isControl || reorders || breaksLine(code);
}

} // namespace kestavon
