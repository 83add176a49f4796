// Lists the applications of a made home with what they have left, beside a plain listing and sizing
// of the same folders: app_listing_bench [ROUNDS] [APPLICATIONS] [ENTRIES] [PERCENT_OWNED]
#include "core/domain/record_list.h"
#include "system/app_uninstaller.h"
#include "walk/folder_names.h"
#include "walk/folder_reader.h"
#include "walk/folder_sizes.h"

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>

namespace {

// NOLINTNEXTLINE(google-build-using-namespace): the program's own file, included by nobody
using namespace kestavon;

std::string identifierOf(int app)
{
    return "com.example.made" + std::to_string(app % 40) + ".Application" + std::to_string(app);
}

void write(const std::filesystem::path& file, const std::string& text)
{
    std::filesystem::create_directories(file.parent_path());
    std::ofstream(file) << text;
}

/// A home with its applications; so many of the entries of the Library belong to one of them.
void make(const std::filesystem::path& home, int apps, int entries, int percentOwned)
{
    for (int app = 0; app < apps; ++app) {
        write(home / "Applications" / ("Application " + std::to_string(app) + ".app")
                / "Contents/Info.plist",
            "<plist version=\"1.0\"><dict><key>CFBundleIdentifier</key><string>" + identifierOf(app)
                + "</string></dict></plist>");
    }
    const std::array<std::string, 7> folders{"Application Support", "Caches", "Logs", "Containers",
        "Application Scripts", "HTTPStorages", "Preferences"};
    for (int entry = 0; entry < entries; ++entry) {
        const auto& folder = folders[static_cast<std::size_t>(entry) % folders.size()];
        const bool isOwned = entry * 37 % 100 < percentOwned;
        const auto name = (isOwned ? identifierOf(entry % apps) : "org.other.program") + '.'
            + std::to_string(entry);
        const auto path = home / "Library" / folder / name;
        if (folder == "Preferences") {
            write(path.string() + ".plist", std::string(300, 'x'));
            continue;
        }
        for (int file = 0; file < 5; ++file)
            write(path / ("part" + std::to_string(file % 2)) / std::to_string(file),
                std::string(100, 'x'));
    }
}

/// Every entry of every folder, with the sum of all that is in it.
std::int64_t plainly(const HostLayout& layout)
{
    std::int64_t bytes = 0;
    std::vector<FolderToMeasure> folders;
    for (const auto& location : layout.leftoverLocations) {
        const auto entries = namedEntriesOf(location.folder);
        if (!entries)
            continue;
        for (const auto& name : entries->names) {
            const auto facts = lookAt(entries->folder->get(), name.c_str());
            if (facts && facts->isDirectory)
                folders.push_back(
                    {.parent = entries->folder, .name = name, .device = facts->device});
            else if (facts)
                bytes = saturatingSum(bytes, facts->size);
        }
    }
    for (const auto size : folderSizes(std::move(folders), {}))
        bytes = saturatingSum(bytes, size);
    return bytes;
}

template <class Job> double millisecondsFor(Job job)
{
    const auto start = std::chrono::steady_clock::now();
    job();
    return std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - start)
        .count();
}

double median(std::vector<double> values)
{
    std::ranges::sort(values);
    return values[values.size() / 2];
}

} // namespace

int main(int argumentCount, char** arguments)
{
    const auto argument = [&](int number, int otherwise) {
        return argumentCount > number ? std::atoi(arguments[number]) : otherwise;
    };
    const int rounds = argument(1, 15);
    auto name = (std::filesystem::temp_directory_path() / "kestavon-bench-XXXXXX").native();
    if (!::mkdtemp(name.data()) || rounds < 1)
        return 2;
    make(name, argument(2, 400), argument(3, 6000), argument(4, 100));
    const auto layout = makeHostLayout({.home = name, .systemRoot = name + "/none"});
    const AppUninstaller uninstaller(layout);

    std::size_t apps = 0;
    std::size_t leftovers = 0;
    std::vector<double> listing;
    std::vector<double> plain;
    std::vector<double> ratios;
    for (int round = 0; round < rounds; ++round) {
        plain.push_back(millisecondsFor([&] { plainly(layout); }));
        listing.push_back(millisecondsFor([&] {
            const auto found = uninstaller.scanInstalledApps();
            apps = found.size();
            leftovers = 0;
            for (const auto& app : found)
                leftovers += app.leftovers.size();
        }));
        ratios.push_back(listing.back() / plain.back());
    }
    std::printf("%zu applications, %zu leftovers: %.1f ms; plainly %.1f ms; median ratio %.2f\n",
        apps, leftovers, median(listing), median(plain), median(ratios));
    std::filesystem::remove_all(name);
}
