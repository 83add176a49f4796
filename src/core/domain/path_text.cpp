#include "core/domain/path_text.h"

#include "core/domain/utf8.h"

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
        const auto character = utf8CharacterAt(bytes, i);
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
        const auto character = utf8CharacterAt(text, i);
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
