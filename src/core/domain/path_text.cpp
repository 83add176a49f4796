#include "core/domain/path_text.h"

#include <cstddef>
#include <cstdint>

namespace kestavon {

namespace {

// U+EF80 to U+EFFF are EE BE 80 to EE BF BF in UTF-8; U+EF00 plus a byte from 0x80 on.
constexpr char32_t firstStandIn = 0xEF80;
constexpr char32_t lastStandIn = 0xEFFF;
constexpr std::size_t standInLength = 3;

std::uint8_t byteAt(std::string_view text, std::size_t i)
{
    return static_cast<std::uint8_t>(text[i]);
}

struct Character {
    char32_t code = 0;
    std::size_t length = 0; ///< in bytes; 0 where no valid UTF-8 starts
};

/// The character that starts at `i`. Strict: neither surrogates nor forms that are longer than
/// needed, which other readers would refuse or, worse, shorten.
Character characterAt(std::string_view text, std::size_t i)
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
    const bool isSurrogate = code >= 0xD800 && code <= 0xDFFF;
    if (code < smallest[length] || code > 0x10FFFF || isSurrogate)
        return {};
    return {code, length};
}

bool isStandIn(char32_t code)
{
    return code >= firstStandIn && code <= lastStandIn;
}

void appendStandIn(std::string& text, std::uint8_t byte)
{
    text += '\xEE';
    text += byte < 0xC0 ? '\xBE' : '\xBF';
    text += static_cast<char>(0x80 | (byte & 0x3F));
}

} // namespace

std::string pathToText(std::string_view bytes)
{
    std::string text;
    text.reserve(bytes.size());
    for (std::size_t i = 0; i < bytes.size();) {
        const auto character = characterAt(bytes, i);
        const bool standsForItself = character.length > 0 && !isStandIn(character.code);
        if (standsForItself) {
            text.append(bytes.substr(i, character.length));
            i += character.length;
        } else {
            // One byte at a time: the rest of a stand-in is not valid UTF-8 by itself.
            appendStandIn(text, byteAt(bytes, i));
            ++i;
        }
    }
    return text;
}

std::string pathFromText(std::string_view text)
{
    std::string bytes;
    bytes.reserve(text.size());
    for (std::size_t i = 0; i < text.size();) {
        const auto character = characterAt(text, i);
        if (isStandIn(character.code)) {
            bytes += static_cast<char>(character.code & 0xFF);
            i += standInLength;
        } else {
            bytes += text[i];
            ++i;
        }
    }
    return bytes;
}

} // namespace kestavon
