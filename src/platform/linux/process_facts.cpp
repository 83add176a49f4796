#include "platform/linux/process_facts.h"

#include "platform/linux/descriptor_io.h"
#include "platform/linux/file_descriptor.h"

#include <charconv>
#include <chrono>
#include <system_error>
#include <thread>
#include <utility>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace kestavon {

namespace {

constexpr auto patience = std::chrono::milliseconds(250);

/// The text of a file below an open folder; empty when it cannot be read.
std::string textAt(int folder, const char* name)
{
    constexpr std::size_t longest = 256 * 1024;
    const FileDescriptor file(
        ::openat(folder, name, O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY | O_NOFOLLOW));
    struct stat status { };
    // In another process's root lies what that process wants.
    if (!file || ::fstat(file.get(), &status) != 0 || !S_ISREG(status.st_mode))
        return {};
    return readAll(file.get(), longest).value_or("");
}

/// The path of a program that may have been replaced while it runs.
std::string programAt(int process)
{
    constexpr std::string_view replaced = " (deleted)";
    auto path = linkAt(process, "exe");
    if (path.ends_with(replaced))
        path.resize(path.size() - replaced.size());
    return path;
}

/// The identifier in a Flatpak's description of itself, see flatpak-metadata(5).
std::string flatpakNamedIn(std::string_view text)
{
    constexpr std::string_view key = "name=";
    std::string name;
    bool isInGroup = false;
    forEachPart(text, '\n', [&](std::string_view line) {
        if (line.starts_with('['))
            isInGroup = line == "[Application]";
        else if (isInGroup && line.starts_with(key))
            name = line.substr(key.size());
        return !name.empty();
    });
    return name;
}

} // namespace

std::optional<std::int32_t> processIdOf(std::string_view name)
{
    std::int32_t id = 0;
    const auto* const end = name.data() + name.size();
    if (name.empty() || name.front() < '0' || name.front() > '9'
        || std::from_chars(name.data(), end, id).ptr != end)
        return std::nullopt;
    return id;
}

std::string_view baseName(std::string_view path)
{
    return path.substr(path.rfind('/') + 1);
}

std::string linkAt(int folder, const char* name)
{
    std::string target(4096, '\0');
    const auto length = ::readlinkat(folder, name, target.data(), target.size());
    target.resize(static_cast<std::size_t>(std::max<ssize_t>(length, 0)));
    return target;
}

std::string_view ProcessFacts::variable(std::string_view wanted) const
{
    std::string_view value;
    forEachPart(environment, '\0', [&](std::string_view line) {
        if (line.size() <= wanted.size() || !line.starts_with(wanted) || line[wanted.size()] != '=')
            return false;
        value = line.substr(wanted.size() + 1);
        return true;
    });
    return value;
}

std::string_view ProcessFacts::argument(int number) const
{
    std::string_view found;
    forEachPart(arguments, '\0', [&](std::string_view argument) {
        found = argument;
        return number-- == 0;
    });
    return number < 0 ? found : std::string_view();
}

/// What the thread does. What answers at once comes first.
class ProcessReading::Reader {
public:
    Reader(std::shared_ptr<ProcessReading> reading, FileDescriptor process, bool isOwn,
        std::string ownMounts, ReadFile readFile)
        : m_reading(std::move(reading))
        , m_process(std::move(process))
        , m_isOwn(isOwn)
        , m_ownMounts(std::move(ownMounts))
        , m_readFile(readFile ? std::move(readFile) : textAt)
    {
    }

    void operator()()
    {
        const int process = m_process.get();
        keep(&ProcessFacts::controlGroups, m_readFile(process, "cgroup"));
        if (m_isOwn) {
            keep(&ProcessFacts::program, programAt(process));
            const auto mounts = linkAt(process, "ns/mnt");
            if (!mounts.empty() && mounts != m_ownMounts)
                keep(&ProcessFacts::flatpak,
                    flatpakNamedIn(m_readFile(process, "root/.flatpak-info")));
        }
        keep(&ProcessFacts::arguments, m_readFile(process, "cmdline"));
        if (m_isOwn)
            keep(&ProcessFacts::environment, m_readFile(process, "environ"));
        const std::lock_guard lock(m_reading->m_mutex);
        m_reading->m_isOver = true;
        m_reading->m_changed.notify_all();
    }

private:
    void keep(std::string ProcessFacts::*fact, std::string text)
    {
        const std::lock_guard lock(m_reading->m_mutex);
        m_reading->m_facts.*fact = std::move(text);
    }

    std::shared_ptr<ProcessReading> m_reading;
    FileDescriptor m_process;
    bool m_isOwn;
    std::string m_ownMounts;
    ReadFile m_readFile;
};

std::shared_ptr<ProcessReading> ProcessReading::begin(int processes, const std::string& id,
    const ProcessStat& stat, std::string ownMounts, ReadFile readFile)
{
    FileDescriptor process(
        ::openat(processes, id.c_str(), O_RDONLY | O_DIRECTORY | O_PATH | O_CLOEXEC));
    struct stat status { };
    if (!process || ::fstat(process.get(), &status) != 0)
        return nullptr;
    auto reading = std::make_shared<ProcessReading>();
    reading->m_facts.id = processIdOf(id).value_or(0);
    reading->m_facts.user = status.st_uid;
    reading->m_facts.name = stat.name;
    Reader reader(reading, std::move(process), status.st_uid == ::geteuid(), std::move(ownMounts),
        std::move(readFile));
    try {
        std::thread(std::move(reader)).detach();
    } catch (const std::system_error&) { // Without a thread to spare it says nothing.
        return nullptr;
    }
    return reading;
}

bool ProcessReading::waitForEnd()
{
    std::unique_lock lock(m_mutex);
    return m_changed.wait_for(lock, patience, [this] { return m_isOver; });
}

bool ProcessReading::isOver()
{
    const std::lock_guard lock(m_mutex);
    return m_isOver;
}

ProcessFacts ProcessReading::facts()
{
    const std::lock_guard lock(m_mutex);
    return m_facts;
}

} // namespace kestavon
