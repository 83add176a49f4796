#pragma once

#include "storage/file_scanner.h"

#include <cstdint>
#include <string>
#include <vector>

namespace kestavon::test {

inline constexpr std::uint64_t noLimit = ~std::uint64_t{0};

/// A scanner that excludes nothing and has all the memory there is.
inline FileScanner plainScanner(unsigned threads = 0)
{
    return FileScanner({}, noLimit, {}, threads);
}

inline ScanOutcome scanOf(const std::string& root, FileScanner scanner = plainScanner())
{
    ScanProgressCounter counter;
    return scanner.scan(root, counter, {}, {});
}

/// The records' paths below the scanned folder, in order.
inline std::vector<std::string> namesIn(const RecordList& records)
{
    std::vector<std::string> names;
    const auto rootLength = records.root() == "/" ? 1 : records.root().size() + 1;
    for (std::size_t i = 0; i < records.size(); ++i)
        names.push_back(records.path(i).substr(rootLength));
    return names;
}

inline std::vector<std::string> scannedNames(
    const std::string& root, FileScanner scanner = plainScanner())
{
    return namesIn(*scanOf(root, std::move(scanner)).records);
}

} // namespace kestavon::test
