#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <utility>
#include <vector>

namespace kestavon::test {

/// `value` as `bytes` bytes, the highest first; above the eighth they are zero.
inline std::string bigEndian(std::uint64_t value, int bytes)
{
    std::string text(static_cast<std::size_t>(bytes), '\0');
    for (auto byte = text.rbegin(); byte != text.rend() && value != 0; ++byte, value >>= 8U)
        *byte = static_cast<char>(value);
    return text;
}

/// Builds binary property lists, broken ones too: each object as its bytes, with references of one
/// byte. What is not set is as it must be.
struct BinaryList {
    std::vector<std::string> objects;
    std::uint64_t top = 0;
    int offsetBytes = 4;
    int referenceBytes = 1;
    std::uint64_t objectCount = 0; ///< 0: as many as there are
    std::uint64_t tableStart = 0; ///< 0: where it is
    std::uint64_t firstOffset = 0; ///< 0: where the first object is

    std::string bytes() const
    {
        std::string list = "bplist00";
        std::vector<std::uint64_t> offsets;
        for (const auto& object : objects) {
            offsets.push_back(list.size());
            list += object;
        }
        if (firstOffset != 0)
            offsets.front() = firstOffset;
        const auto table = tableStart != 0 ? tableStart : list.size();
        for (const auto offset : offsets)
            list += bigEndian(offset, offsetBytes);
        list += std::string(6, '\0');
        list += static_cast<char>(offsetBytes);
        list += static_cast<char>(referenceBytes);
        list += bigEndian(objectCount != 0 ? objectCount : objects.size(), 8);
        list += bigEndian(top, 8) + bigEndian(table, 8);
        return list;
    }
};

/// Objects of at most fourteen elements.
inline std::string object(unsigned kind, const std::string& body, std::size_t count)
{
    return static_cast<char>(kind << 4U | count) + body;
}
inline std::string asciiObject(const std::string& text)
{
    return object(0x5, text, text.size());
}
inline std::string arrayObject(const std::string& references)
{
    return object(0xA, references, references.size());
}
inline std::string dictionaryObject(const std::string& keys, const std::string& values)
{
    return object(0xD, keys + values, keys.size());
}

} // namespace kestavon::test
