#include "ui/widgets/file_name_text.h"

namespace kestavon {

namespace {

constexpr char16_t replacement = 0xFFFD;
constexpr char16_t newlineSymbol = 0x2424;
constexpr char16_t controlPictures = 0x2400; // of U+0000; those up to U+001F follow in order
constexpr char16_t deletePicture = 0x2421;

bool isBetween(char16_t c, char16_t first, char16_t last)
{
    return first <= c && c <= last;
}

char16_t shown(char16_t c)
{
    if (c == u'\n' || c == 0x0085 || c == 0x2028 || c == 0x2029)
        return newlineSymbol;
    if (c < 0x20)
        return static_cast<char16_t>(controlPictures + c);
    if (c == 0x7F)
        return deletePicture;
    const auto isControl = isBetween(c, 0x80, 0x9F);
    const auto reorders = c == 0x200E || c == 0x200F || c == 0x061C || isBetween(c, 0x202A, 0x202E)
        || isBetween(c, 0x2066, 0x2069);
    return isControl || reorders ? replacement : c;
}

} // namespace

QString fileNameText(std::string_view bytes)
{
    auto text = QString::fromUtf8(bytes.data(), static_cast<qsizetype>(bytes.size()));
    for (auto& c : text)
        c = QChar(shown(c.unicode()));
    return text;
}

} // namespace kestavon
