#pragma once

#include "core/domain/record_list.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <memory>
#include <random>
#include <string>
#include <vector>

namespace kestavon::bench {

/// Records that resemble a home folder's: some 13 entries a folder, six levels deep, names of 17
/// bytes of which one in `accentedIn` is not ASCII (none for 0), sizes spread as those of files
/// are, from nothing to hundreds of gigabytes.
inline std::shared_ptr<const RecordList> madeRecords(std::size_t count, unsigned accentedIn)
{
    std::mt19937_64 random(20'261'122);
    const auto below = [&random](std::uint64_t end) { return random() % end; };
    static const std::array<const char*, 12> words{"report", "Draft", "photo", "Invoice", "index",
        "module", "cache", "data", "NOTES", "image", "Editor", "reports"};
    static const std::array<const char*, 4> endings{".json", ".png", ".txt", ".mp4"};
    std::lognormal_distribution<double> fileSize(9, 3);

    std::string bytes;
    std::vector<std::uint32_t> parents{0};
    std::vector<std::uint32_t> folderNames{0};
    std::vector<unsigned> depths{0};
    RecordColumns columns;
    columns.sizes = Column<std::int64_t>(count);
    columns.modifiedAt = Column<std::int64_t>(count);
    columns.folders = Column<std::uint32_t>(count);
    columns.nameOffsets = Column<std::uint32_t>(count);
    columns.flags = Column<std::uint8_t>(count);
    std::uint32_t folder = 0;
    for (std::size_t i = 0; i < count; ++i) {
        const auto isFolder = below(13) == 0;
        const auto isAccented = accentedIn != 0 && below(accentedIn) == 0;
        const auto offset = static_cast<std::uint32_t>(bytes.size());
        bytes += words[below(words.size())];
        bytes += (isAccented ? "-é" : "-") + std::to_string(below(10'000'000));
        bytes += isFolder ? "" : endings[below(endings.size())];
        bytes += '\0';
        columns.nameOffsets[i] = offset;
        columns.folders[i] = folder;
        columns.modifiedAt[i] = static_cast<std::int64_t>(below(1'700'000'000)) * 1'000'000'000;
        columns.flags[i] = static_cast<std::uint8_t>(
            (isFolder ? RecordFlags::directory : 0) | (isAccented ? RecordFlags::nonAsciiName : 0));
        columns.sizes[i] = isFolder || below(12) == 0
            ? 0
            : static_cast<std::int64_t>(std::min(fileSize(random), 4e11));
        if (isFolder) {
            parents.push_back(folder);
            folderNames.push_back(offset);
            depths.push_back(depths[folder] + 1);
            folder = static_cast<std::uint32_t>(parents.size() - 1);
            while (depths[folder] > 6)
                folder = parents[folder];
        } else if (below(14) == 0) {
            folder = parents[folder];
        }
    }
    const auto column = [](const std::vector<std::uint32_t>& values) {
        Column<std::uint32_t> result(values.size());
        std::ranges::copy(values, result.data());
        return result;
    };
    auto names = std::make_shared<RecordNames>();
    names->root = "/mnt/disk";
    names->bytes = Column<char>(bytes.size());
    std::ranges::copy(bytes, names->bytes.data());
    names->folderParents = column(parents);
    names->folderNames = column(folderNames);
    columns.names = std::move(names);
    return std::make_shared<const RecordList>(std::move(columns));
}

} // namespace kestavon::bench
