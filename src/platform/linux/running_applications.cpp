#include "platform/running_applications.h"

#include "platform/linux/application_index.h"
#include "platform/linux/application_units.h"
#include "platform/linux/file_descriptor.h"
#include "platform/linux/process_facts.h"
#include "platform/linux/process_stat.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <map>
#include <mutex>
#include <tuple>
#include <unordered_map>
#include <utility>

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <time.h>
#include <unistd.h>

namespace kestavon {

namespace {

/// Whether a program of this name only starts an application or serves its sandbox. To ask it to
/// quit ends nothing: bwrap's outer process waits for the inner one, which hears no such signal.
bool standsAroundAnApplication(std::string_view name)
{
    constexpr std::array<std::string_view, 7> programs{
        "bwrap", "xdg-dbus-proxy", "flatpak", "oosplash", "sh", "bash", "dash"};
    return std::ranges::find(programs, name) != programs.end();
}

/// What the program is called; nothing when the system cut it short and nobody knows the rest.
std::optional<std::string> programNameOf(const ProcessFacts& facts)
{
    constexpr std::size_t longest = 15;
    if (!facts.name.empty() && facts.name.size() < longest)
        return facts.name;
    for (const auto path : {std::string_view(facts.program), facts.argument(1)}) {
        const auto name = baseName(path);
        if (!name.empty() && name.starts_with(facts.name))
            return std::string(name);
    }
    return std::nullopt;
}

/// The application that processes belong to.
struct Membership {
    std::string group; ///< tells it from others
    RunningApplication application; ///< without its process
};

/// Recognises applications by what their processes say.
class Recogniser {
public:
    Recogniser(const ApplicationIndex& index, const WindowsOfProcesses& windows)
        : m_index(index)
        , m_windows(windows)
    {
    }

    std::optional<Membership> applicationOf(const ProcessFacts& facts) const
    {
        auto application = byUnit(facts);
        for (const auto rule : {&Recogniser::byFlatpak, &Recogniser::byLaunch, &Recogniser::byImage,
                 &Recogniser::byProgram, &Recogniser::byWindow}) {
            if (!application)
                application = (this->*rule)(facts);
        }
        if (!application)
            return std::nullopt;
        application->program = programNameOf(facts);
        if (!application->name)
            application->name = application->program;
        application->isOthers = facts.user != ::geteuid();
        application->isOfSession = isOfDesktopSession(facts.name)
            || facts.controlGroups.find("/session.slice/") != facts.controlGroups.npos;
        const auto& key = application->identifier ? *application->identifier : *application->name;
        return Membership{.group = std::to_string(facts.user) + ' ' + key,
            .application = std::move(*application)};
    }

private:
    using Found = std::optional<RunningApplication>;

    static RunningApplication described(const DesktopEntry& entry)
    {
        return {.identifier = entry.flatpak ? entry.flatpak : entry.identifier,
            .name = entry.name,
            .icon = entry.icon};
    }

    Found identified(std::string identifier) const
    {
        if (identifier.empty())
            return std::nullopt;
        const auto* const entry = m_index.withIdentifier(identifier);
        auto application = entry ? described(*entry) : RunningApplication();
        application.identifier = std::move(identifier);
        return application;
    }

    /// Each line names a hierarchy, and after the second colon the group in it; see cgroups(7).
    Found byUnit(const ProcessFacts& facts) const
    {
        Found application;
        forEachPart(facts.controlGroups, '\n', [&](std::string_view line) {
            const auto colon = line.find(':', std::min(line.find(':'), line.size() - 1) + 1);
            if (colon == line.npos)
                return false;
            if (auto identifier = applicationOfControlGroup(line.substr(colon + 1)))
                application = identified(std::move(*identifier));
            return application.has_value();
        });
        return application;
    }

    Found byFlatpak(const ProcessFacts& facts) const { return identified(facts.flatpak); }

    /// A child inherits the variables, but is not who they were set for.
    Found byLaunch(const ProcessFacts& facts) const
    {
        const auto file = facts.variable("GIO_LAUNCHED_DESKTOP_FILE");
        if (file.empty()
            || processIdOf(facts.variable("GIO_LAUNCHED_DESKTOP_FILE_PID")) != facts.id)
            return std::nullopt;
        if (const auto* const entry = m_index.inFile(file))
            return described(*entry);
        constexpr std::string_view suffix = ".desktop";
        auto name = baseName(file);
        if (name.ends_with(suffix))
            name.remove_suffix(suffix.size());
        return identified(std::string(name));
    }

    /// What an image starts inherits its variables, but lies elsewhere.
    Found byImage(const ProcessFacts& facts) const
    {
        const auto image = facts.variable("APPIMAGE");
        const auto mounted = facts.variable("APPDIR");
        if (image.empty() || mounted.size() < 2 || !facts.program.starts_with(mounted)
            || !facts.program.substr(mounted.size()).starts_with('/'))
            return std::nullopt;
        if (const auto* const entry = m_index.startingProgram(baseName(image)))
            return described(*entry);
        constexpr std::string_view suffix = ".AppImage";
        auto name = baseName(image);
        if (name.ends_with(suffix))
            name.remove_suffix(suffix.size());
        return RunningApplication{.name = std::string(name)};
    }

    Found byProgram(const ProcessFacts& facts) const
    {
        const auto program = baseName(facts.program);
        const auto started = baseName(facts.argument(0));
        for (const auto name : {program, started}) {
            if (const auto* const entry = m_index.startingProgram(name))
                return described(*entry);
        }
        // A script lies where programs do.
        const auto script = facts.argument(1);
        if (script.starts_with('/') && isInterpreter(program.empty() ? started : program)) {
            if (const auto* const entry = m_index.startingProgram(baseName(script)))
                return described(*entry);
        }
        return std::nullopt;
    }

    /// What has a window is for somebody to look at, whoever started it.
    Found byWindow(const ProcessFacts& facts) const
    {
        const auto window = m_windows.find(facts.id);
        if (window == m_windows.end() || facts.user != ::geteuid())
            return std::nullopt;
        if (const auto* const entry = m_index.withWindowClass(window->second))
            return described(*entry);
        if (window->second.empty())
            return RunningApplication{.name = programNameOf(facts)};
        return RunningApplication{.name = window->second};
    }

    const ApplicationIndex& m_index;
    const WindowsOfProcesses& m_windows;
};

/// Clock ticks since boot, as processes are dated.
std::uint64_t ticksSinceBoot(std::uint64_t ticksPerSecond)
{
    ::timespec now{};
    ::clock_gettime(CLOCK_BOOTTIME, &now);
    return static_cast<std::uint64_t>(now.tv_sec) * ticksPerSecond;
}

} // namespace

/// Keeps what it found out of each process for as long as that runs.
class SystemRunningApplications::Observer {
public:
    explicit Observer(RunningApplicationsPlaces places)
        : m_places(std::move(places))
    {
    }

    std::vector<RunningApplication> running()
    {
        const std::lock_guard lock(m_mutex);
        readEntriesThatChanged();
        const FileDescriptor processes(
            ::open(m_places.processFolder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
        if (!processes)
            return {};
        m_ownMounts = linkAt(processes.get(), "self/ns/mnt");
        m_windows = m_places.windows ? m_places.windows->list() : WindowsOfProcesses();
        ++m_round;
        Groups groups;
        for (const auto& id : processesIn(processes.get()))
            look(processes.get(), id, groups);
        std::erase_if(
            m_processes, [this](const auto& known) { return known.second.round != m_round; });

        std::vector<RunningApplication> applications;
        for (auto& [group, foremost] : groups)
            applications.push_back(std::move(foremost.application));
        std::ranges::stable_sort(applications, {}, age);
        return applications;
    }

private:
    /// One process, until its id is somebody else's.
    struct Known {
        std::uint64_t startedAt = 0;
        std::string name;
        std::optional<Membership> membership;
        bool isSettled = false; ///< it will not be put into another unit any more
        bool hasWindow = false; ///< when it was read
        std::shared_ptr<ProcessReading> stuck; ///< what did not come to an end, if so
        std::uint64_t round = 0; ///< in which it was last seen
    };
    /// When a folder of desktop entries was last changed, in nanoseconds since 1970.
    using FolderDates = std::vector<std::pair<std::int64_t, ::ino_t>>;

    /// The process that stands for its group.
    struct Foremost {
        bool standsAround = false;
        RunningApplication application;
    };
    using Groups = std::map<std::string, Foremost>;

    /// The oldest process goes first, but for those around the application itself.
    static bool goesBefore(const Foremost& one, const Foremost& other)
    {
        return std::pair(one.standsAround, age(one.application))
            < std::pair(other.standsAround, age(other.application));
    }

    static std::pair<std::uint64_t, std::int32_t> age(const RunningApplication& application)
    {
        return {application.startedAt, application.process};
    }

    static std::vector<std::string> processesIn(int folder)
    {
        std::vector<std::string> ids;
        ::DIR* const listing = ::fdopendir(::fcntl(folder, F_DUPFD_CLOEXEC, 0));
        if (!listing)
            return ids;
        while (const auto* entry = ::readdir(listing)) {
            if (processIdOf(entry->d_name))
                ids.emplace_back(entry->d_name);
        }
        ::closedir(listing);
        return ids;
    }

    void look(int processes, const std::string& id, Groups& groups)
    {
        const auto stat = readProcessStat(processes, (id + "/stat").c_str());
        if (!stat || stat->state == 'Z' || stat->state == 'X')
            return;
        const auto number = processIdOf(id).value_or(0);
        auto& known = m_processes[number];
        known.round = m_round;
        if (needsReading(known, number, *stat))
            read(processes, id, *stat, known);
        if (!known.membership)
            return;
        Foremost found{.standsAround = standsAroundAnApplication(stat->name),
            .application = known.membership->application};
        found.application.process = number;
        found.application.startedAt = stat->startedAt;
        found.application.memoryBytes = stat->residentPages * m_pageSize;
        const auto [place, isNew] = groups.try_emplace(known.membership->group, found);
        if (!isNew && goesBefore(found, place->second))
            place->second = std::move(found);
    }

    bool needsReading(const Known& known, std::int32_t number, const ProcessStat& stat) const
    {
        if (known.startedAt != stat.startedAt || known.name != stat.name)
            return true;
        if (known.stuck)
            return known.stuck->isOver(); // else that one never comes back either
        // A process that has just begun is not yet what it will be.
        return !known.isSettled || (!known.membership && !known.hasWindow && hasWindow(number));
    }

    bool hasWindow(std::int32_t process) const
    {
        return m_windows.find(process) != m_windows.end();
    }

    void read(int processes, const std::string& id, const ProcessStat& stat, Known& known)
    {
        const auto reading
            = ProcessReading::begin(processes, id, stat, m_ownMounts, m_places.readFile);
        known.startedAt = stat.startedAt;
        known.name = stat.name;
        known.hasWindow = hasWindow(processIdOf(id).value_or(0));
        known.stuck = reading && !reading->waitForEnd() ? reading : nullptr;
        known.membership = reading ? Recogniser(m_index, m_windows).applicationOf(reading->facts())
                                   : std::optional<Membership>();
        known.isSettled = ticksSinceBoot(m_ticksPerSecond) > stat.startedAt + 10 * m_ticksPerSecond;
    }

    /// What was found out by the old entries does not count any more.
    void readEntriesThatChanged()
    {
        FolderDates dates;
        std::vector<std::string> folders;
        for (const auto& folder : m_places.dataFolders) {
            folders.push_back(folder + "/applications");
            struct stat status { };
            const bool exists = ::stat(folders.back().c_str(), &status) == 0;
            dates.emplace_back(exists
                    ? std::int64_t{status.st_mtim.tv_sec} * 1'000'000'000 + status.st_mtim.tv_nsec
                    : 0,
                exists ? status.st_ino : 0);
        }
        if (m_hasEntries && dates == m_folderDates)
            return;
        m_index = ApplicationIndex(readDesktopEntries(folders, m_places.languages));
        m_folderDates = std::move(dates);
        m_hasEntries = true;
        m_processes.clear();
    }

    const RunningApplicationsPlaces m_places;
    const std::uint64_t m_ticksPerSecond = static_cast<std::uint64_t>(::sysconf(_SC_CLK_TCK));
    const std::uint64_t m_pageSize = static_cast<std::uint64_t>(::sysconf(_SC_PAGESIZE));

    std::mutex m_mutex; // guards all below
    bool m_hasEntries = false;
    FolderDates m_folderDates;
    ApplicationIndex m_index;
    std::string m_ownMounts;
    WindowsOfProcesses m_windows;
    std::unordered_map<std::int32_t, Known> m_processes;
    std::uint64_t m_round = 0;
};

SystemRunningApplications::SystemRunningApplications(RunningApplicationsPlaces places)
    : m_observer(std::make_unique<Observer>(std::move(places)))
{
}

SystemRunningApplications::~SystemRunningApplications() = default;

std::vector<RunningApplication> SystemRunningApplications::running() const
{
    return m_observer->running();
}

} // namespace kestavon
