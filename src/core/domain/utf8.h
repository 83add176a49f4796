#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace kestavon {

/// One character of UTF-8 text.
struct Utf8Character {
    char32_t code = 0;
    std::size_t length = 0; ///< in bytes; 0 where no valid UTF-8 starts
};

/// The character that starts at byte `i` of `text`, which must be below its size. Strict: neither
/// surrogates nor forms that are longer than needed, which other readers would refuse or, worse,
/// shorten.
Utf8Character utf8CharacterAt(std::string_view text, std::size_t i);

/// Appends a character's UTF-8 to `text`.
void appendUtf8(char32_t code, std::string& text);

/// Whether the character ends a line where text is shown.
bool breaksLine(char32_t code);

/// Whether the character must not be shown as it is in a file's name: it breaks the line, drives a
/// terminal, or reorders the text around it and so disguises the name.
bool misleads(char32_t code);

} // namespace kestavon
