#include "core/model/text_folding.h"

#include "core/domain/ascii.h"

#include <algorithm>
#include <cstdint>
#include <functional>
#include <new>

#include <unicode/bytestream.h>
#include <unicode/casemap.h>
#include <unicode/normalizer2.h>
#include <unicode/stringoptions.h>
#include <unicode/utf8.h>

namespace kestavon {

namespace {

/// Appends a byte that is not UTF-8 in the manner of a two-byte character, led by a byte that no
/// UTF-8 text holds: then no part of a form can pass for another.
void appendEscaped(char byte, std::string& folded)
{
    const auto value = static_cast<unsigned char>(byte);
    folded += value < 0xC0 ? '\xFE' : '\xFF';
    folded += static_cast<char>(0x80 | (value & 0x3F));
}

void require(UErrorCode status)
{
    // Valid UTF-8 has a form of every kind; memory is all that can be missing.
    if (U_FAILURE(status) != 0)
        throw std::bad_alloc();
}

const icu::Normalizer2& composer()
{
    static const icu::Normalizer2& instance = [] {
        UErrorCode status = U_ZERO_ERROR;
        const auto* const nfc = icu::Normalizer2::getNFCInstance(status);
        require(status);
        return std::ref(*nfc);
    }();
    return instance;
}

icu::StringPiece piece(std::string_view text)
{
    return {text.data(), static_cast<std::int32_t>(text.size())};
}

bool isComposed(std::string_view text)
{
    UErrorCode status = U_ZERO_ERROR;
    const auto composed = composer().isNormalizedUTF8(piece(text), status);
    require(status);
    return composed != 0;
}

std::string composed(std::string_view text)
{
    std::string result;
    icu::StringByteSink sink(&result);
    UErrorCode status = U_ZERO_ERROR;
    composer().normalizeUTF8(0, piece(text), sink, nullptr, status);
    require(status);
    return result;
}

/// Composed first, so that equivalent texts fold alike, and afterwards, since folding can leave a
/// letter and an accent that compose.
void appendFolded(std::string_view characters, std::string& folded)
{
    std::string buffer;
    if (!isComposed(characters)) {
        buffer = composed(characters);
        characters = buffer;
    }
    const auto start = folded.size();
    icu::StringByteSink sink(&folded);
    UErrorCode status = U_ZERO_ERROR;
    icu::CaseMap::utf8Fold(U_FOLD_CASE_DEFAULT, piece(characters), sink, nullptr, status);
    require(status);
    const auto result = std::string_view(folded).substr(start);
    if (!isComposed(result)) {
        const auto recomposed = composed(result);
        folded.replace(start, std::string::npos, recomposed);
    }
}

/// How many bytes at the start of `text` are UTF-8.
std::size_t validLength(std::string_view text)
{
    const auto length = static_cast<std::int32_t>(text.size());
    std::int32_t end = 0;
    while (end < length) {
        auto next = end;
        UChar32 character = 0;
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wconversion" // in the macro
        U8_NEXT(text.data(), next, length, character);
#pragma GCC diagnostic pop
        if (character < 0)
            break;
        end = next;
    }
    return static_cast<std::size_t>(end);
}

} // namespace

std::string foldedText(std::string_view text)
{
    std::string folded;
    if (isAscii(text)) {
        folded.resize(text.size());
        std::ranges::transform(text, folded.begin(), asciiLower);
        return folded;
    }
    folded.reserve(text.size() + text.size() / 2);
    while (!text.empty()) {
        const auto valid = validLength(text);
        if (valid > 0)
            appendFolded(text.substr(0, valid), folded);
        text.remove_prefix(valid);
        if (!text.empty()) {
            appendEscaped(text.front(), folded);
            text.remove_prefix(1);
        }
    }
    return folded;
}

bool containsFolded(std::string_view text, std::string_view needle)
{
    return foldedText(text).find(foldedText(needle)) != std::string::npos;
}

} // namespace kestavon
