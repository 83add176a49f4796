// Times moving and removing beside the tools that everybody has, in interleaved rounds:
//     removal_bench JOB FOLDER [OTHER_FOLDER] [ROUNDS]
#include "platform/clock.h"
#include "platform/file_mover.h"
#include "platform/file_remover.h"
#include "platform/host_layout.h"
#include "platform/trash.h"

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <functional>
#include <stdexcept>
#include <string>
#include <vector>

#include <unistd.h>

namespace {

namespace fs = std::filesystem;
using namespace kestavon;

constexpr int defaultRounds = 7;

struct Shape {
    const char* name;
    int folders;
    int filesInEach;
    std::size_t bytes; ///< of each file
};

constexpr Shape manySmall{"many small files", 200, 100, 3000};
constexpr Shape fewBig{"few big files", 1, 6, 100'000'000};
constexpr Shape smallForDeletion{"100,000 small files", 1000, 100, 10};

void makeTree(const fs::path& top, const Shape& shape)
{
    std::string bytes(shape.bytes, '\0');
    for (std::size_t i = 0; i < bytes.size(); ++i)
        bytes[i] = static_cast<char>((i * 2'654'435'761U) >> 13); // Nothing for a disk to shrink.
    for (int folder = 0; folder < shape.folders; ++folder) {
        const auto path = top / ("folder " + std::to_string(folder));
        fs::create_directories(path);
        for (int file = 0; file < shape.filesInEach; ++file)
            std::ofstream(path / ("file " + std::to_string(file))) << bytes;
    }
    ::sync();
}

void shell(const std::string& command)
{
    if (std::system(command.c_str()) != 0)
        throw std::runtime_error("failed: " + command);
}

std::string quoted(const fs::path& path)
{
    return "'" + path.native() + "'";
}

double millisecondsOf(const std::function<void()>& work)
{
    const auto start = std::chrono::steady_clock::now();
    work();
    return std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - start)
        .count();
}

double median(std::vector<double> values)
{
    std::ranges::sort(values);
    return values[values.size() / 2];
}

/// One way to do the job.
struct Candidate {
    std::string name;
    std::function<void()> prepare;
    std::function<void()> work;
    std::vector<double> times = {};
};

/// The first candidate is the program's own; each peer is compared with it round by round.
void race(const std::string& title, std::vector<Candidate> candidates, int rounds)
{
    for (int round = -1; round < rounds; ++round) { // The one before the first warms up.
        for (auto& candidate : candidates) {
            candidate.prepare();
            const auto time = millisecondsOf(candidate.work);
            if (round >= 0)
                candidate.times.push_back(time);
        }
    }
    std::printf("%s\n", title.c_str());
    const auto& own = candidates.front();
    for (const auto& candidate : candidates) {
        std::vector<double> ratios;
        for (std::size_t i = 0; i < candidate.times.size(); ++i)
            ratios.push_back(candidate.times[i] / own.times[i]);
        std::printf("    %-40s median %9.1f ms, %5.2f times ours\n", candidate.name.c_str(),
            median(candidate.times), median(ratios));
    }
    std::fflush(stdout);
}

template <class T> void check(const FileResult<T>& result)
{
    if (!result)
        throw std::runtime_error(result.error().message);
}

void copyAcrossDevices(const fs::path& from, const fs::path& to, int rounds)
{
    for (const auto& shape : {manySmall, fewBig}) {
        const auto original = from / "original";
        const auto source = from / "source";
        const auto target = to / "target";
        makeTree(original, shape);
        const auto prepare = [&] {
            fs::remove_all(source);
            fs::remove_all(target);
            shell("cp -a " + quoted(original) + " " + quoted(source));
            ::sync();
        };
        const auto copy = "cp -a " + quoted(source) + " " + quoted(target);
        const auto writeOut = " && sync -f " + quoted(target);
        race(std::string("to another device, ") + shape.name,
            {{"move", prepare, [&] { check(SystemFileMover().move(source, target)); }},
                {"cp -a && sync && rm -r", prepare,
                    [&] { shell(copy + writeOut + " && rm -r " + quoted(source)); }},
                {"cp -a && sync", prepare, [&] { shell(copy + writeOut); }},
                {"mv (which waits for no disk)", prepare,
                    [&] { shell("mv " + quoted(source) + " " + quoted(target)); }}},
            rounds);
        fs::remove_all(original);
        fs::remove_all(source);
        fs::remove_all(target);
    }
}

void moveWithinADevice(const fs::path& folder, int rounds)
{
    const auto source = folder / "source";
    const auto target = folder / "target";
    const auto prepare = [&] {
        fs::remove_all(target);
        if (!fs::exists(source))
            makeTree(source, manySmall);
    };
    race("within a device",
        {{"move", prepare, [&] { check(SystemFileMover().move(source, target)); }},
            {"mv", prepare, [&] { shell("mv " + quoted(source) + " " + quoted(target)); }}},
        rounds);
    fs::remove_all(target);
}

void deleteTrees(const fs::path& folder, int rounds)
{
    const auto tree = folder / "tree";
    const auto prepare = [&] { makeTree(tree, smallForDeletion); };
    race(std::string("deleting ") + smallForDeletion.name,
        {{"remove", prepare, [&] { check(SystemFileRemover().remove(tree)); }},
            {"rm -rf", prepare, [&] { shell("rm -rf " + quoted(tree)); }}},
        rounds);
}

void trashFiles(const fs::path& folder, int rounds)
{
    constexpr int files = 500;
    const auto home = folder / "home";
    ::setenv("HOME", home.c_str(), 1);
    ::setenv("XDG_DATA_HOME", (home / ".local/share").c_str(), 1);
    for (const int bytes : {1000}) {
        const auto prepare = [&] {
            fs::remove_all(home);
            makeTree(home / "items", {"", 1, files, static_cast<std::size_t>(bytes)});
        };
        const auto items = home / "items/folder 0";
        race("trashing " + std::to_string(files) + " files",
            {{"trash", prepare,
                 [&] {
                     const auto layout = makeHostLayout(currentHostEnvironment());
                     const auto trash
                         = makeSystemTrash(layout, ProtectedPlaces(ProtectedPlaces::Lists{}),
                             std::make_shared<SystemClock>());
                     std::vector<std::string> paths;
                     for (const auto& entry : fs::directory_iterator(items))
                         paths.push_back(entry.path());
                     for (const auto& result : trash->trashItems(paths))
                         check(result);
                 }},
                {"gio trash", prepare, [&] { shell("gio trash " + quoted(items) + "/*"); }}},
            rounds);
    }
    fs::remove_all(home);
}

int misuse()
{
    std::fputs("removal_bench copy FOLDER FOLDER_ON_ANOTHER_DEVICE [ROUNDS]\n"
               "removal_bench move|delete|trash FOLDER [ROUNDS]\n"
               "Everything happens in a new folder inside.\n",
        stderr);
    return 2;
}

/// A new folder in `parent`, gone in the end.
class WorkFolder {
public:
    explicit WorkFolder(const fs::path& parent)
        : m_path(fs::absolute(parent) / ("removal_bench-" + std::to_string(::getpid())))
    {
        fs::create_directory(m_path);
    }
    ~WorkFolder()
    {
        std::error_code ignored;
        fs::remove_all(m_path, ignored);
    }
    WorkFolder(const WorkFolder&) = delete;
    WorkFolder& operator=(const WorkFolder&) = delete;
    const fs::path& path() const { return m_path; }

private:
    fs::path m_path;
};

} // namespace

int main(int argc, char** argv)
{
    const std::vector<std::string> arguments(argv + 1, argv + argc);
    if (arguments.size() < 2)
        return misuse();
    const auto& job = arguments[0];
    const std::size_t folders = job == "copy" ? 2 : 1;
    if (arguments.size() < 1 + folders)
        return misuse();
    const int rounds = arguments.size() > 1 + folders ? std::atoi(arguments[1 + folders].c_str())
                                                      : defaultRounds;
    try {
        const WorkFolder folder(arguments[1]);
        if (job == "copy")
            copyAcrossDevices(folder.path(), WorkFolder(arguments[2]).path(), rounds);
        else if (job == "move")
            moveWithinADevice(folder.path(), rounds);
        else if (job == "delete")
            deleteTrees(folder.path(), rounds);
        else if (job == "trash")
            trashFiles(folder.path(), rounds);
        else
            return misuse();
    } catch (const std::exception& error) {
        std::fprintf(stderr, "%s\n", error.what());
        return 1;
    }
    return 0;
}
