// Sums up the files in a folder, entry by entry as Smart Clean does, and tells what it cost:
// folder_sizes_bench FOLDER [ROUNDS] [THREADS]
#include "core/domain/record_list.h"
#include "walk/folder_names.h"
#include "walk/folder_sizes.h"

#include <chrono>
#include <cstdio>
#include <cstdlib>

namespace {

// NOLINTNEXTLINE(google-build-using-namespace): the program's own file, included by nobody
using namespace kestavon;

std::int64_t sizeOf(const char* folder, unsigned threads)
{
    const auto entries = namedEntriesOf(folder);
    if (!entries)
        return 0;
    std::int64_t bytes = 0;
    std::vector<FolderToMeasure> folders;
    for (const auto& name : entries->names) {
        const auto facts = lookAt(entries->folder->get(), name.c_str());
        if (facts && facts->isDirectory)
            folders.push_back({.parent = entries->folder, .name = name, .device = facts->device});
        else if (facts)
            bytes = saturatingSum(bytes, facts->size);
    }
    for (const auto size : folderSizes(std::move(folders), {}, {.threads = threads}))
        bytes = saturatingSum(bytes, size);
    return bytes;
}

} // namespace

int main(int argumentCount, char** arguments)
{
    if (argumentCount < 2) {
        std::fprintf(stderr, "usage: folder_sizes_bench FOLDER [ROUNDS] [THREADS]\n");
        return 2;
    }
    const int rounds = argumentCount > 2 ? std::atoi(arguments[2]) : 1;
    const auto threads = argumentCount > 3 ? static_cast<unsigned>(std::atoi(arguments[3])) : 0;
    for (int round = 0; round < rounds; ++round) {
        const auto start = std::chrono::steady_clock::now();
        const auto bytes = sizeOf(arguments[1], threads);
        const std::chrono::duration<double, std::milli> wall
            = std::chrono::steady_clock::now() - start;
        std::printf("%lld bytes, %.1f ms\n", static_cast<long long>(bytes), wall.count());
    }
}
