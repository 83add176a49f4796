#include "cli/printable.h"

#include "core/domain/utf8.h"

#include <algorithm>

namespace kestavon {

namespace {

void appendEscaped(std::string& text, std::string_view bytes)
{
    static constexpr std::string_view hexDigits = "0123456789ABCDEF";
    for (const char c : bytes) {
        const auto byte = static_cast<unsigned char>(c);
        if (c == '\n')
            text += "\\n";
        else if (c == '\t')
            text += "\\t";
        else
            text.append("\\x").append({hexDigits[byte >> 4], hexDigits[byte & 0x0F]});
    }
}

} // namespace

std::string printablePath(std::string_view bytes)
{
    std::string text;
    text.reserve(bytes.size());
    for (std::size_t i = 0; i < bytes.size();) {
        const auto character = utf8CharacterAt(bytes, i);
        const auto length = std::max<std::size_t>(1, character.length);
        if (character.length > 0 && !misleads(character.code))
            text.append(bytes.substr(i, length));
        else
            appendEscaped(text, bytes.substr(i, length));
        i += length;
    }
    return text;
}

} // namespace kestavon
