#include "platform/linux/trash/trash_names.h"

namespace kestavon {
namespace {

/// The bytes of the UTF-8 character that `lead` begins; 0 when it begins none.
std::size_t characterLength(unsigned char lead)
{
    if (lead < 0x80)
        return 1;
    if (lead >= 0xC2 && lead <= 0xDF)
        return 2;
    if (lead >= 0xE0 && lead <= 0xEF)
        return 3;
    if (lead >= 0xF0 && lead <= 0xF4)
        return 4;
    return 0;
}

bool isContinuation(char byte)
{
    return (static_cast<unsigned char>(byte) & 0xC0) == 0x80;
}

/// With its dot; empty when the name has none.
std::string_view extensionOf(std::string_view name)
{
    const auto dot = name.rfind('.');
    if (dot == std::string_view::npos || name.find_first_not_of('.') > dot)
        return {};
    const auto extension = name.substr(dot);
    if (extension.size() == 1 || extension.find(' ') != std::string_view::npos)
        return {};
    return extension;
}

} // namespace

std::string cutToBytes(std::string_view name, std::size_t bytes)
{
    if (name.size() <= bytes)
        return std::string(name);
    // A character that lies across the cut began at most three bytes before it.
    for (std::size_t back = 1; back <= 3 && back <= bytes; ++back) {
        const auto start = bytes - back;
        if (isContinuation(name[start]))
            continue;
        const auto length = characterLength(static_cast<unsigned char>(name[start]));
        if (length > back && isContinuation(name[bytes]))
            return std::string(name.substr(0, start));
        break;
    }
    return std::string(name.substr(0, bytes));
}

std::string nameWithNumberLast(std::string_view name, std::size_t number, std::size_t longestName)
{
    const auto ending
        = number == 1 ? std::string() : std::string(".").append(std::to_string(number));
    return cutToBytes(name, longestName - ending.size()) + ending;
}

std::string nameWithNumberBeforeExtension(
    std::string_view name, std::size_t number, std::size_t longestName)
{
    if (number == 1)
        return cutToBytes(name, longestName);
    const auto digits = std::string(" ").append(std::to_string(number));
    auto extension = extensionOf(name);
    if (extension.size() + digits.size() + 4 > longestName)
        extension = {};
    const auto stem = name.substr(0, name.size() - extension.size());
    return cutToBytes(stem, longestName - digits.size() - extension.size()) + digits
        + std::string(extension);
}

} // namespace kestavon
