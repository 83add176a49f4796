#include "shots/shot_data.h"

#include "support/moments.h"
#include "support/records.h"

#include <array>
#include <cmath>
#include <optional>
#include <vector>

namespace kestavon::shots {

namespace {

using test::file;
using test::utc;

struct LargeFile {
    const char* path; ///< below the home
    double gigabytes;
    std::optional<Timestamp> modifiedAt;
};

const std::array largeFiles{
    LargeFile{"VirtualMachines/dev-machine.qcow2", 48.32, utc(2026, 11, 21, 18, 22)},
    LargeFile{"Pictures/Archive/photos-2016-2024.tar", 31.08, utc(2025, 1, 3, 9, 41)},
    LargeFile{"Videos/Projects/Coastline/Documentary/Masters/coastline-master-4k.mov", 22.47,
        utc(2026, 10, 12, 23, 10)},
    LargeFile{"VirtualMachines/snapshots/dev-machine-before-upgrade-2026-06.qcow2", 18.9,
        utc(2026, 6, 14, 7, 55)},
    LargeFile{"Projects/warehouse/dumps/nightly/warehouse-2026-09-30.sql.gz", 11.74,
        utc(2026, 9, 30, 2, 15)},
    LargeFile{"Videos/Projects/Coastline/Proxies/Day 04/A004_C012_1107XK.mov", 9.66,
        utc(2026, 11, 7, 14, 5)},
    LargeFile{
        "Library/Caches/org.example.editor/index-v9/symbols.db", 8.21, utc(2026, 11, 22, 10, 31)},
    LargeFile{"Downloads/openmaps-europe-2026-01.osm.pbf", 7.93, utc(2026, 1, 19, 20, 48)},
    LargeFile{"Music/Sessions/Late Night Takes/late-night-takes-multitrack-96k.wav", 6.5,
        utc(2026, 8, 2, 21, 17)},
    LargeFile{"Library/Application Support/MobileSync/Backup/00008110-001A2D/Manifest.bundle", 6.12,
        utc(2026, 3, 11, 8, 2)},
    LargeFile{"Projects/vision/datasets/street-scenes/train-shard-00017-of-00032.tar", 5.37,
        utc(2026, 5, 28, 16, 39)},
    LargeFile{"Projects/vision/datasets/street-scenes/train-shard-00018-of-00032.tar", 5.37,
        utc(2026, 5, 28, 16, 42)},
    LargeFile{"Downloads/workshop-recording-1920x1080.mp4", 4.88, utc(2026, 7, 5, 12, 0)},
    LargeFile{"Library/Containers/com.docker.docker/Data/vms/0/data/disk.raw", 4.61,
        utc(2026, 11, 22, 9, 58)},
    LargeFile{"Documents/Scans/Family Archive/family-archive-complete-1948-1999.pdf", 3.94,
        utc(2024, 2, 17, 19, 26)},
    LargeFile{
        ".local/share/games/Skyline Racer/content/tracks_all.pak", 3.72, utc(2026, 10, 29, 22, 40)},
    LargeFile{"Downloads/dataset-climate-1950-2020.nc", 3.41, std::nullopt},
    LargeFile{"Projects/firmware/build/output/images/rootfs-release-with-debug-symbols.img", 2.98,
        utc(2026, 9, 8, 17, 30)},
    LargeFile{"Library/Mail/V10/9C2B71F0/All Mail.mbox/attachments-2019.store", 2.55,
        utc(2026, 4, 1, 6, 12)},
};

constexpr std::size_t itemCount = 418'236;
constexpr std::size_t hiddenCount = 100'000;
constexpr std::int64_t totalBytes = 287'940'000'000;
constexpr std::int64_t hiddenBytes = 41'370'000'000;

/// Adds `count` files of `bytes` together, each a little different from the last.
void addFiles(std::vector<FileRecord>& records, const std::string& stem, std::size_t count,
    std::int64_t bytes)
{
    const auto date = utc(2026, 2, 3, 4, 5);
    const bool hidden = stem.find("/.") != std::string::npos;
    const auto share = bytes / static_cast<std::int64_t>(count);
    for (std::size_t i = 0; i < count; ++i) {
        const auto size = i + 1 < count ? share : bytes - share * static_cast<std::int64_t>(i);
        auto path = stem;
        path += std::to_string(i / 1000);
        path += hidden ? "/.item-" : "/item-";
        path += std::to_string(i);
        records.push_back(file(std::move(path), size, date - std::chrono::minutes(i % 500'000)));
    }
}

std::vector<FileRecord> makeRecords()
{
    const std::string home = "/home/alice/";
    std::vector<FileRecord> records;
    records.reserve(itemCount);
    std::int64_t shownBytes = 0;
    for (const auto& large : largeFiles) {
        const auto size = static_cast<std::int64_t>(std::llround(large.gigabytes * 1e9));
        records.push_back(file(home + large.path, size, large.modifiedAt));
        shownBytes += size;
    }
    for (int i = 0; i < 90; ++i) {
        const auto size = static_cast<std::int64_t>(1.4e9 * std::pow(0.95, i));
        records.push_back(file(home + "Pictures/2026/roll-" + std::to_string(100 + i) + ".dng.zip",
            size, utc(2026, 3, 1 + static_cast<unsigned>(i) % 28, 15, i % 60)));
        shownBytes += size;
    }
    addFiles(records, home + ".cache/blobs/", hiddenCount, hiddenBytes);
    addFiles(records, home + "Documents/notes/", itemCount - records.size(),
        totalBytes - hiddenBytes - shownBytes);
    return records;
}

} // namespace

std::shared_ptr<const RecordList> homeToClean()
{
    struct Old {
        const char* path; ///< below the home
        std::int64_t bytes;
        Timestamp modifiedAt;
    };
    const std::array named{
        Old{"Library/Caches/org.example.editor/index-v9/symbols.db", 8'210'000'000,
            utc(2026, 11, 22, 10, 31)},
        Old{"Downloads/openmaps-europe-2026-01.osm.pbf", 7'930'000'000, utc(2026, 1, 19, 20, 48)},
        Old{"Downloads/workshop-recording-1920x1080.mp4", 4'880'000'000, utc(2026, 7, 5, 12, 0)},
        Old{"Library/Caches/org.example.maps/tile-atlas-0007.bin", 512'400'000,
            utc(2026, 11, 18, 8, 12)},
        Old{"Downloads/skyline-racer-setup.run", 498'700'000, utc(2026, 4, 30, 21, 5)},
        Old{"Library/Caches/org.example.browser/data_3", 274'900'000, utc(2026, 11, 22, 11, 2)},
        Old{"Library/Caches/org.example.photos/thumbs-large.sqlite", 231'600'000,
            utc(2026, 11, 21, 19, 40)},
        Old{"Downloads/conference-slides-all.zip", 188'300'000, utc(2026, 3, 11, 9, 27)},
        Old{"Library/Caches/org.example.editor/journal-00000000000318.cache", 64'100'000,
            utc(2026, 11, 20, 23, 58)},
        Old{"Library/Caches/org.example.editor/startup-snapshot.blob", 31'800'000,
            utc(2026, 11, 22, 7, 44)},
        Old{"Library/Caches/org.example.mail/index.db-wal", 18'200'000, utc(2026, 11, 22, 9, 3)},
    };
    static const auto list = [&] {
        std::vector<FileRecord> records;
        for (const auto& old : named)
            records.push_back(
                file(std::string("/home/alice/") + old.path, old.bytes, old.modifiedAt));
        addFiles(records, "/home/alice/Library/Caches/org.example.web/", 115, 51'000'000);
        return RecordList::fromRecords("/home/alice", records);
    }();
    return list;
}

const HomeWithCopies& homeWithCopies()
{
    struct Copies {
        std::int64_t bytes;
        std::vector<std::pair<const char*, std::optional<Timestamp>>> files; ///< below the home
    };
    const std::vector<Copies> named{
        {2'140'000'000,
            {{"Videos/Projects/Coastline Documentary/Exports/coastline-rough-cut-v3.mov",
                 utc(2026, 10, 12, 23, 10)},
                {"Downloads/coastline-rough-cut-v3.mov", utc(2026, 10, 14, 8, 31)}}},
        {935'000'000,
            {{"Documents/Scans/Family Archive/family-archive-1948-1962.zip",
                 utc(2024, 2, 17, 19, 26)},
                {"Documents/Backups/2024-12/Documents/Scans/Family Archive/"
                 "family-archive-1948-1962.zip",
                    utc(2024, 2, 17, 19, 26)},
                {"Downloads/family-archive-1948-1962 (1).zip", utc(2024, 2, 16, 7, 5)}}},
        {914'200'000,
            {{".local/share/games/Skyline Racer/installer-assets.pak", utc(2026, 4, 30, 21, 44)},
                {"Downloads/Skyline Racer/installer-assets.pak", utc(2026, 4, 30, 21, 5)}}},
        {601'700'000,
            {{"Projects/vision/datasets/street-scenes/street-scenes-preview.tar",
                 utc(2026, 5, 28, 16, 39)},
                {"Projects/vision/experiments/2026-05-run-12/inputs/cache/"
                 "street-scenes-preview.tar",
                    std::nullopt}}},
    };
    static const auto home = [&] {
        std::vector<FileRecord> records;
        std::vector<std::vector<std::uint32_t>> groups;
        const auto add = [&](const std::string& path, std::int64_t bytes,
                             std::optional<Timestamp> modifiedAt) {
            groups.back().push_back(static_cast<std::uint32_t>(records.size()));
            records.push_back(file("/home/alice/" + path, bytes, modifiedAt));
        };
        for (const auto& copies : named) {
            groups.emplace_back();
            for (const auto& [path, modifiedAt] : copies.files)
                add(path, copies.bytes, modifiedAt);
        }
        for (int i = 0; i < 34; ++i) {
            groups.emplace_back();
            const auto name = "roll-" + std::to_string(100 + i) + ".dng";
            for (const char* folder : {"Pictures/2026/Lake/", "Pictures/Import/"})
                add(folder + name, 75'000'000 - 2'150'000 * i, utc(2026, 3, 1, 15, 0));
        }
        return HomeWithCopies{RecordList::fromRecords("/home/alice", records), groups};
    }();
    return home;
}

namespace {

/// Where the junk of a category lies, what it is called, and how much there is of it.
struct JunkPlace {
    JunkCategory category;
    const char* folder; ///< below the home
    const char* reason;
    std::size_t items;
    std::int64_t bytes;
};

constexpr std::array junkPlaces{
    JunkPlace{JunkCategory::appCaches, "Library/Caches", "Application cache", 118, 2'409'300'000},
    JunkPlace{JunkCategory::systemLogs, "Library/Logs", "System log", 37, 412'600'000},
    JunkPlace{JunkCategory::trash, ".Trash", "Trash item", 64, 3'270'000'000},
    JunkPlace{JunkCategory::devTools, ".npm/_cacache", "npm cache", 300, 6'060'000'000},
    JunkPlace{
        JunkCategory::devTools, ".cargo/registry/cache", "Cargo registry cache", 11, 3'000'000'000},
    JunkPlace{JunkCategory::orphanedApps, "Library/Application Support",
        "Orphaned app support data", 22, 734'200'000},
    JunkPlace{
        JunkCategory::oldDownloads, "Downloads", "Old download (90+ days)", 41, 5'180'000'000},
    JunkPlace{JunkCategory::iosBackups, "Library/Application Support/MobileSync/Backup",
        "iOS/iPadOS backup", 1, 1'520'000'000},
    JunkPlace{JunkCategory::browserCaches, "Library/Caches/com.apple.Safari", "Safari cache", 96,
        1'710'000'000},
    JunkPlace{JunkCategory::mailAttachments,
        "Library/Containers/com.apple.mail/Data/Library/Caches", "Mail cache", 9, 53'200'000},
    JunkPlace{JunkCategory::mailAttachments, "Library/Mail", "Mail message data", 9, 200'000'000},
};

struct NamedCache {
    const char* name;
    std::int64_t bytes;
    Timestamp modifiedAt;
};

const std::array namedCaches{
    NamedCache{"org.example.editor", 3'410'000'000, utc(2026, 11, 22, 10, 31)},
    NamedCache{"com.example.photodesk", 1'960'000'000, utc(2026, 11, 21, 19, 40)},
    NamedCache{"com.example.videostudio.render-cache", 1'220'000'000, utc(2026, 11, 20, 23, 58)},
    NamedCache{"org.example.maps.tiles", 1'080'000'000, utc(2026, 11, 19, 8, 12)},
    NamedCache{"com.example.chatter", 829'400'000, utc(2026, 11, 22, 11, 2)},
    NamedCache{"org.example.podcasts", 512'400'000, utc(2026, 11, 18, 20, 17)},
    NamedCache{"com.example.musicbox.artwork", 474'900'000, utc(2026, 11, 22, 7, 44)},
    NamedCache{"fontconfig", 231'600'000, utc(2026, 11, 14, 18, 22)},
    NamedCache{"org.example.spreadsheet.thumbnails-of-recently-opened-documents", 188'300'000,
        utc(2026, 11, 9, 12, 30)},
    NamedCache{"com.example.notesvault", 164'100'000, utc(2026, 11, 8, 17, 5)},
};

CleanupCandidate junk(const std::string& path, const char* reason, std::int64_t bytes,
    std::optional<Timestamp> modifiedAt)
{
    return {.id = Uuid::random(),
        .record = file("/home/alice/" + path, bytes, modifiedAt),
        .reason = reason,
        .estimatedBytes = bytes};
}

} // namespace

std::vector<CleanupCandidate> junkOf(JunkCategory category)
{
    std::vector<CleanupCandidate> items;
    if (category == JunkCategory::appCaches) {
        for (const auto& cache : namedCaches)
            items.push_back(junk(std::string("Library/Caches/") + cache.name, "Application cache",
                cache.bytes, cache.modifiedAt));
    }
    for (const auto& place : junkPlaces) {
        if (place.category != category)
            continue;
        const bool dated = category != JunkCategory::orphanedApps;
        const auto share = place.bytes / static_cast<std::int64_t>(place.items);
        for (std::size_t i = 0; i < place.items; ++i) {
            const auto bytes
                = i > 0 ? share : place.bytes - share * static_cast<std::int64_t>(place.items - 1);
            items.push_back(junk(std::string(place.folder) + "/item-" + std::to_string(100 + i),
                place.reason, bytes,
                dated ? std::optional(utc(2026, 7, 1 + static_cast<unsigned>(i) % 28, 9, 30))
                      : std::nullopt));
        }
    }
    return items;
}

std::vector<Held> itemsToHold()
{
    struct Row {
        const char* path;
        const char* reason;
        Timestamp movedAt;
    };
    const std::array rows{
        Row{"Library/Application Support/MobileSync/Backup/00008110-001A2D", "iOS/iPadOS backup",
            utc(2026, 11, 22, 12, 17)},
        Row{"Library/Application Support/com.gone.timelapse", "Orphaned app support data",
            utc(2026, 11, 22, 13, 31)},
        Row{"Library/Preferences/com.gone.timelapse.plist", "Orphaned preference file",
            utc(2026, 11, 22, 13, 31)},
        Row{"Downloads/travel-photos-export.zip", "Old download", utc(2026, 11, 22, 13, 48)},
        Row{"Library/Logs/nightly-tools.log", "System log", utc(2026, 11, 22, 14, 2)},
        Row{"Library/Caches/org.example.weather", "Application cache", utc(2026, 11, 22, 14, 5)},
        Row{"Library/Caches/com.example.games.launcher", "Application cache",
            utc(2026, 11, 22, 14, 5)},
    };
    std::vector<Held> held;
    for (const auto& row : rows) {
        Held item{.candidate = {}, .movedAt = row.movedAt};
        item.candidate.id = Uuid::random();
        item.candidate.record = file(std::string("/home/alice/") + row.path, 1000);
        item.candidate.reason = row.reason;
        item.candidate.estimatedBytes = 1000;
        held.push_back(std::move(item));
    }
    return held;
}

std::vector<std::pair<std::string, std::vector<FileMark>>> earlierItems()
{
    const auto marks = [](const char* path, const char* reason, Timestamp movedAt) {
        return std::vector<FileMark>{
            {"user.kestavon.original-path", std::string("/home/alice/") + path},
            {"user.kestavon.reason", reason},
            {"user.kestavon.date", std::to_string(movedAt.time_since_epoch().count())}};
    };
    return {
        {"0A6E7C31-5B1D-4C39-9C40-3D0F5B7A1E01-blobs.db",
            marks("Library/Caches/org.example.editor/blobs.db", "Application cache",
                utc(2026, 10, 3, 18, 40))},
        {"0A6E7C31-5B1D-4C39-9C40-3D0F5B7A1E02-holiday-slides.zip",
            marks("Downloads/holiday-slides.zip", "Old download", utc(2026, 11, 2, 9, 12))},
        {"0A6E7C31-5B1D-4C39-9C40-3D0F5B7A1E03-socket", {}},
    };
}

std::shared_ptr<const RecordList> livedInHome()
{
    static const auto list = RecordList::fromRecords("/home/alice", makeRecords());
    return list;
}

} // namespace kestavon::shots
