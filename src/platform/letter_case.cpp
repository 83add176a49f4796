#include "platform/letter_case.h"

#include "core/domain/ascii.h"
#include "core/domain/utf8.h"

#include <algorithm>

#include <unicode/uchar.h>

namespace kestavon {

std::string lowerCased(std::string_view text)
{
    std::string lower;
    lower.reserve(text.size());
    if (isAscii(text)) {
        lower.resize(text.size());
        std::ranges::transform(text, lower.begin(), asciiLower);
        return lower;
    }
    for (std::size_t i = 0; i < text.size();) {
        const auto character = utf8CharacterAt(text, i);
        if (character.length == 0) {
            lower += text[i++];
            continue;
        }
        const auto code = static_cast<UChar32>(character.code);
        appendUtf8(static_cast<char32_t>(u_tolower(code)), lower);
        i += character.length;
    }
    return lower;
}

} // namespace kestavon
