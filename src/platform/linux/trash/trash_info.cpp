#include "platform/linux/trash/trash_info.h"

#include <array>
#include <cstdio>

#include <time.h>

namespace kestavon {
namespace {

constexpr std::string_view heading = "[Trash Info]\n";
constexpr std::string_view pathKey = "Path=";
/// Stands before all that differs from item to item, so that what a crash left of it is still ours.
constexpr std::string_view ourLine = "X-Kestavon-Version=1\n";

bool standsForItself(char byte)
{
    return (byte >= 'a' && byte <= 'z') || (byte >= 'A' && byte <= 'Z')
        || (byte >= '0' && byte <= '9')
        || std::string_view("-._~/").find(byte) != std::string_view::npos;
}

int digitValue(char digit)
{
    if (digit >= '0' && digit <= '9')
        return digit - '0';
    if (digit >= 'A' && digit <= 'F')
        return digit - 'A' + 10;
    if (digit >= 'a' && digit <= 'f')
        return digit - 'a' + 10;
    return -1;
}

std::string localTimeText(Timestamp moment)
{
    const auto seconds = std::chrono::floor<std::chrono::seconds>(moment).time_since_epoch();
    const time_t time = seconds.count();
    tm local{};
    if (!::localtime_r(&time, &local))
        return "1970-01-01T00:00:00";
    std::array<char, 64> text{};
    const auto length = std::strftime(text.data(), text.size(), "%Y-%m-%dT%H:%M:%S", &local);
    return {text.data(), length};
}

} // namespace

std::string percentEncoded(std::string_view bytes)
{
    constexpr std::string_view digits = "0123456789ABCDEF";
    std::string text;
    text.reserve(bytes.size());
    for (const char byte : bytes) {
        if (standsForItself(byte)) {
            text += byte;
            continue;
        }
        const auto value = static_cast<unsigned char>(byte);
        text += '%';
        text += digits[value >> 4];
        text += digits[value & 0xF];
    }
    return text;
}

std::optional<std::string> percentDecoded(std::string_view text)
{
    std::string bytes;
    bytes.reserve(text.size());
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] != '%') {
            bytes += text[i];
            continue;
        }
        const int high = i + 2 < text.size() ? digitValue(text[i + 1]) : -1;
        const int low = i + 2 < text.size() ? digitValue(text[i + 2]) : -1;
        if (high < 0 || low < 0)
            return std::nullopt;
        bytes += static_cast<char>(high * 16 + low);
        i += 2;
    }
    return bytes;
}

std::string trashInfoText(std::string_view originalPath, Timestamp moved)
{
    std::string text(heading);
    text.append(ourLine).append(pathKey).append(percentEncoded(originalPath));
    text.append("\nDeletionDate=").append(localTimeText(moved)).append("\n");
    return text;
}

bool isOurTrashInfo(std::string_view text)
{
    return text.starts_with(heading) && text.substr(heading.size()).starts_with(ourLine);
}

std::optional<std::string> originalPathIn(std::string_view text)
{
    if (!text.starts_with(heading))
        return std::nullopt;
    // The first line with the key counts.
    const auto line = text.find(std::string("\n").append(pathKey));
    if (line == std::string_view::npos)
        return std::nullopt;
    const auto value = text.substr(line + 1 + pathKey.size());
    return percentDecoded(value.substr(0, value.find('\n')));
}

} // namespace kestavon
