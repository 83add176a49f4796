#include "safearea/held_name.h"

#include <algorithm>
#include <memory>

#include <unicode/ubrk.h>
#include <unicode/utext.h>
#include <unicode/utf8.h>

namespace kestavon {

namespace {

constexpr std::size_t heldCharacters = 80;
constexpr std::size_t identifierLength = 36;

struct CloseIterator {
    void operator()(UBreakIterator* iterator) const { ubrk_close(iterator); }
};
struct CloseText {
    void operator()(UText* text) const { utext_close(text); }
};

/// How many of the first bytes are valid UTF-8.
std::size_t validLength(std::string_view text)
{
    const auto* bytes = reinterpret_cast<const std::uint8_t*>(text.data());
    const auto length = static_cast<std::int32_t>(text.size());
    std::int32_t at = 0;
    while (at < length) {
        const auto start = at;
        UChar32 character = 0;
        U8_NEXT(bytes, at, length, character);
        if (character < 0)
            return static_cast<std::size_t>(start);
    }
    return text.size();
}

/// Bytes up to and including each character's end, one call after the other.
class CharacterEnds {
public:
    explicit CharacterEnds(std::string_view text)
    {
        UErrorCode status = U_ZERO_ERROR;
        m_text.reset(
            utext_openUTF8(nullptr, text.data(), static_cast<std::int64_t>(text.size()), &status));
        m_iterator.reset(ubrk_open(UBRK_CHARACTER, "", nullptr, 0, &status));
        if (m_iterator)
            ubrk_setUText(m_iterator.get(), m_text.get(), &status);
        if (U_FAILURE(status))
            m_iterator.reset();
    }

    /// Nothing after the last one.
    std::optional<std::size_t> next()
    {
        const auto end = m_iterator ? ubrk_next(m_iterator.get()) : UBRK_DONE;
        if (end == UBRK_DONE)
            return std::nullopt;
        return static_cast<std::size_t>(end);
    }

private:
    std::unique_ptr<UText, CloseText> m_text;
    std::unique_ptr<UBreakIterator, CloseIterator> m_iterator;
};

} // namespace

std::string_view leadingCharacters(std::string_view name, std::size_t count, std::size_t bytes)
{
    std::size_t taken = 0; // bytes
    const auto take = [&](std::size_t end) {
        if (count == 0 || end > bytes)
            return false;
        --count;
        taken = end;
        return true;
    };
    while (taken < name.size()) {
        const auto start = taken;
        const auto valid = validLength(name.substr(start));
        if (valid == 0) {
            if (!take(start + 1))
                break;
            continue;
        }
        CharacterEnds ends(name.substr(start, valid));
        auto end = ends.next();
        while (end && take(start + *end))
            end = ends.next();
        if (taken < start + valid)
            break;
    }
    return name.substr(0, taken);
}

std::string heldName(const Uuid& id, std::string_view name, std::size_t longest)
{
    auto held = id.text() + '-';
    const auto left = longest - std::min(held.size(), longest);
    return held.append(leadingCharacters(name, heldCharacters, left));
}

std::optional<Uuid> idOfHeldName(std::string_view heldName)
{
    if (heldName.size() <= identifierLength || heldName[identifierLength] != '-')
        return std::nullopt;
    return Uuid::fromText(heldName.substr(0, identifierLength));
}

} // namespace kestavon
