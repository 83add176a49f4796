#pragma once

#include <string>
#include <string_view>

namespace kestavon {

/// `text` in the form in which texts are compared: two texts that differ only in case (full Unicode
/// case folding: "É" and "é", "ß" and "ss", "ς" and "Σ") or in how accents are composed have the
/// same form, and one contains the other when its form does. Accents themselves count: "e" is not
/// in "é". No language's own rules apply.
///
/// The form is UTF-8 except where `text` is not: a byte that is no part of a character stands for
/// itself, in a form that only the same byte has. Any thread.
std::string foldedText(std::string_view text);

/// Whether `text` contains `needle`, compared by `foldedText`; every text contains the empty
/// needle.
bool containsFolded(std::string_view text, std::string_view needle);

} // namespace kestavon
