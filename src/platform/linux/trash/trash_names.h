#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace kestavon {

/// At most `bytes` bytes from the start of `name`, ending between two UTF-8 characters where the
/// name is UTF-8; bytes that belong to no character may be parted anywhere.
std::string cutToBytes(std::string_view name, std::size_t bytes);

/// The `number`-th name to try for `name` in a Trash whose names carry their number at the end:
/// "report.txt", "report.txt.2", "report.txt.3". The name gives way so that no more than
/// `longestName` bytes remain. Numbers count from 1.
std::string nameWithNumberLast(std::string_view name, std::size_t number, std::size_t longestName);

/// The same with the number before the extension: "report.txt", "report 2.txt", "report 3.txt".
/// An extension follows the last dot, is neither empty nor has spaces in it, and is never the whole
/// name (".profile" has none); one that leaves hardly a byte for the rest is cut like the rest.
std::string nameWithNumberBeforeExtension(
    std::string_view name, std::size_t number, std::size_t longestName);

} // namespace kestavon
