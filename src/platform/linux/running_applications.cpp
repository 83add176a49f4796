#include "platform/running_applications.h"

#include "platform/linux/application_units.h"
#include "platform/linux/small_file.h"

#include <algorithm>
#include <charconv>
#include <filesystem>
#include <map>

#include <sys/stat.h>
#include <unistd.h>

namespace kestavon {

namespace {

std::optional<int> processIdOf(const std::string& name)
{
    int id = 0;
    const auto* const end = name.data() + name.size();
    if (std::from_chars(name.data(), end, id).ptr != end)
        return std::nullopt;
    return id;
}

bool isOurs(const std::string& process)
{
    struct stat status { };
    return ::stat(process.c_str(), &status) == 0 && status.st_uid == ::geteuid();
}

/// Each line names a hierarchy, and after the second colon the group in it; see cgroups(7).
std::optional<std::string> applicationOf(const std::string& process)
{
    const auto file = readSmallFile(process + "/cgroup");
    for (std::string_view left = file.bytes; !left.empty();) {
        const auto line = left.substr(0, left.find('\n'));
        left.remove_prefix(std::min(line.size() + 1, left.size()));
        const auto colon = line.find(':', std::min(line.find(':'), line.size() - 1) + 1);
        if (colon == line.npos)
            continue;
        if (auto application = applicationOfControlGroup(line.substr(colon + 1)))
            return application;
    }
    return std::nullopt;
}

std::optional<std::string> nameOf(const std::string& process)
{
    constexpr std::size_t longest = 15; // the system cuts longer ones there
    auto name = readSmallFile(process + "/comm").bytes;
    if (name.ends_with('\n'))
        name.pop_back();
    return name.empty() || name.size() >= longest ? std::nullopt : std::optional(std::move(name));
}

} // namespace

SystemRunningApplications::SystemRunningApplications(std::string processFolder)
    : m_processFolder(std::move(processFolder))
{
}

std::vector<RunningApplication> SystemRunningApplications::running() const
{
    std::map<std::string, int> firstProcesses;
    std::error_code error;
    std::filesystem::directory_iterator entries(m_processFolder, error);
    for (; !error && entries != std::filesystem::directory_iterator(); entries.increment(error)) {
        const auto id = processIdOf(entries->path().filename().native());
        const auto& process = entries->path().native();
        if (!id || !isOurs(process))
            continue;
        if (auto application = applicationOf(process)) {
            const auto known = firstProcesses.emplace(std::move(*application), *id).first;
            known->second = std::min(known->second, *id);
        }
    }
    std::vector<RunningApplication> applications;
    for (const auto& [identifier, process] : firstProcesses)
        applications.push_back({.identifier = identifier,
            .name = nameOf(m_processFolder + '/' + std::to_string(process))});
    return applications;
}

} // namespace kestavon
