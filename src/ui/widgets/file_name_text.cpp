#include "ui/widgets/file_name_text.h"

#include "core/domain/utf8.h"

namespace kestavon {

namespace {

constexpr char16_t replacement = 0xFFFD;
constexpr char16_t newlineSymbol = 0x2424;
constexpr char16_t controlPictures = 0x2400; // of U+0000; those up to U+001F follow in order
constexpr char16_t deletePicture = 0x2421;

char16_t shown(char16_t c)
{
    if (!misleads(c))
        return c;
    if (breaksLine(c))
        return newlineSymbol;
    if (c < 0x20)
        return static_cast<char16_t>(controlPictures + c);
    return c == 0x7F ? deletePicture : replacement;
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
