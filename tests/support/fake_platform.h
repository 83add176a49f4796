#pragma once

#include "platform/linux/application_places.h"
#include "platform/platform.h"

#include <atomic>
#include <functional>
#include <map>
#include <mutex>
#include <set>
#include <string>
#include <vector>

namespace kestavon::test {

/// A clock that stands still until it is told.
class FakeClock final : public Clock {
public:
    Timestamp now() const override { return time; }
    Timestamp time{std::chrono::seconds(1'795'000'000)}; // 18 Nov 2026 10:06:40 UTC
};

class FakeVolumes final : public Volumes {
public:
    std::optional<VolumeCapacity> capacityOf(const std::string& path) const override
    {
        std::unique_lock lock(hung, std::defer_lock);
        if (hanging.empty() || hanging == path)
            lock.lock();
        const auto found = capacities.find(path);
        const auto capacity = found == capacities.end() ? fallback : found->second;
        ++asked;
        return capacity;
    }
    mutable std::atomic<int> asked{0}; ///< how often, the answers given
    std::map<std::string, std::optional<VolumeCapacity>> capacities;
    std::optional<VolumeCapacity> fallback = VolumeCapacity{512'110'190'592, 158'617'000'000};
    mutable std::mutex hung; ///< nobody gets an answer while a test holds it
    std::string hanging; ///< when set, only who asks for this waits for the above
};

/// Set `value` while nobody asks.
class FakeMemoryCounters final : public MemoryCounters {
public:
    std::optional<MemorySnapshot> snapshot() const override
    {
        ++asked;
        const std::lock_guard lock(hung);
        return value;
    }
    std::optional<MemorySnapshot> value;
    mutable std::atomic<int> asked{0}; ///< how often
    mutable std::mutex hung; ///< nobody gets an answer while a test holds it
};

class FakeFileManager final : public FileManager {
public:
    bool canListFolder(const std::string& path) const override
    {
        asked.push_back(path);
        return listable.contains(path);
    }
    std::set<std::string> listable;
    mutable std::vector<std::string> asked;
};

class FakeSettings final : public Settings {
public:
    bool flag(const std::string& key) const override
    {
        const auto found = flags.find(key);
        return found != flags.end() && found->second;
    }
    void setFlag(const std::string& key, bool value) override { flags[key] = value; }
    std::map<std::string, bool> flags;
};

/// A desktop that writes down what it is asked to open. Any thread.
class FakeWorkspace final : public Workspace {
public:
    Opened openUrl(const std::string& url) override { return open(url); }
    Opened openItem(const std::string& path) override { return open(path); }

    /// URLs and paths, in order.
    std::vector<std::string> opened() const
    {
        const std::lock_guard lock(m_mutex);
        return m_opened;
    }
    /// Nothing opens any more, and this is why; empty: everything opens.
    void refuse(const std::string& reason)
    {
        const std::lock_guard lock(m_mutex);
        m_refusal = reason;
    }

private:
    Opened open(const std::string& what)
    {
        const std::lock_guard lock(m_mutex);
        if (!m_refusal.empty())
            return m_refusal;
        m_opened.push_back(what);
        return Done{};
    }

    mutable std::mutex m_mutex;
    std::vector<std::string> m_opened; // guarded by m_mutex
    std::string m_refusal; // guarded by m_mutex
};

/// A Trash that writes down what is put into it. Worker threads may use it one at a time.
class FakeTrash final : public Trash {
public:
    FileResult<std::string> trashItem(const std::string& path, const TrashOptions&) override
    {
        const auto refused = refusals.find(path);
        if (refused != refusals.end())
            return moveError(refused->second, path, "Trash");
        trashed.push_back(path);
        if (whenTrashed)
            whenTrashed(path);
        return places.front().items + '/' + std::to_string(trashed.size());
    }
    void forgetItem(const std::string& path) override { forgotten.push_back(path); }
    std::vector<TrashPlace> trashPlaces() const override { return places; }

    std::map<std::string, FileError::Kind> refusals; ///< paths that cannot be moved, and why
    std::vector<std::string> trashed; ///< in order
    std::function<void(const std::string& path)> whenTrashed;
    std::vector<std::string> forgotten;
    std::vector<TrashPlace> places{{"/home/alice/.Trash", "/home/alice/.Trash"}};
};

/// Set `applications` while nobody asks.
class FakeRunningApplications final : public RunningApplications {
public:
    std::vector<RunningApplication> running() const override
    {
        ++asked;
        const std::lock_guard lock(hung);
        return applications;
    }
    std::vector<RunningApplication> applications;
    mutable std::atomic<int> asked{0}; ///< how often
    mutable std::mutex hung; ///< nobody gets an answer while a test holds it
};

/// Processes that write down who is told to end. One thread.
class FakeProcessSignals final : public ProcessSignals {
public:
    std::optional<std::uint64_t> startOf(std::int32_t process) const override
    {
        const auto found = starts.find(process);
        return found == starts.end() ? std::nullopt : std::optional(found->second);
    }
    bool terminate(std::int32_t process, std::uint64_t startedAt) override
    {
        if (startOf(process) != startedAt || refusing.contains(process))
            return false;
        terminated.push_back(process);
        return true;
    }
    std::map<std::int32_t, std::uint64_t> starts; ///< of those that run
    std::set<std::int32_t> refusing;
    std::vector<std::int32_t> terminated;
};

/// Relief that takes as long as a test holds `hung`. Any thread.
class FakeMemoryRelief final : public MemoryRelief {
public:
    void relieve() override
    {
        const std::lock_guard lock(hung);
        ++times;
        if (whenRelieved)
            whenRelieved();
    }
    std::mutex hung;
    std::atomic<int> times{0};
    std::function<void()> whenRelieved; ///< off the main thread
};

/// A machine that exists only in memory, but for files that are moved or removed: those are real,
/// and a test that does so sets `home` to a temporary folder.
struct FakeMachine {
    std::shared_ptr<FakeClock> clock = std::make_shared<FakeClock>();
    std::shared_ptr<FakeVolumes> volumes = std::make_shared<FakeVolumes>();
    std::shared_ptr<FakeMemoryCounters> memory = std::make_shared<FakeMemoryCounters>();
    std::shared_ptr<FakeFileManager> files = std::make_shared<FakeFileManager>();
    std::shared_ptr<FakeSettings> settings = std::make_shared<FakeSettings>();
    std::shared_ptr<FakeWorkspace> workspace = std::make_shared<FakeWorkspace>();
    std::shared_ptr<FakeTrash> trash = std::make_shared<FakeTrash>();
    std::shared_ptr<FakeRunningApplications> runningApplications
        = std::make_shared<FakeRunningApplications>();
    std::shared_ptr<FakeProcessSignals> processSignals = std::make_shared<FakeProcessSignals>();
    std::shared_ptr<FakeMemoryRelief> memoryRelief = std::make_shared<FakeMemoryRelief>();
    std::shared_ptr<FileMover> mover = std::make_shared<SystemFileMover>();
    std::shared_ptr<FileRemover> remover = std::make_shared<SystemFileRemover>();
    std::shared_ptr<FilePlaces> places = std::make_shared<SystemFilePlaces>();
    std::string home = "/home/alice";
    std::string systemRoot = "/";
    HomeKind homeKind = HomeKind::mac;
    /// Items that are trashed do move, into the Trash of `home`; then `trash` hears of nothing.
    bool hasRealTrash = false;

    Platform platform() const
    {
        Platform platform;
        platform.layout.home = home;
        platform.layout.systemRoot = systemRoot;
        platform.layout.kind = homeKind;
        platform.layout.dataHome = home + "/.local/share";
        platform.layout.applicationSupport = home + "/Library/Application Support";
        platform.layout.fullDiskAccessProbes = {home + "/Library/Mail", home + "/Library/Messages"};
        platform.layout.cacheMarkers = {"/Library/Caches/"};
        platform.layout.downloadFolders = {home + "/Downloads"};
        addApplicationPlaces(platform.layout);
        addStartupPlaces(platform.layout);
        platform.files = files;
        platform.volumes = volumes;
        platform.memory = memory;
        platform.clock = clock;
        platform.calendar = std::make_shared<SystemCalendar>();
        platform.settings = settings;
        platform.mover = mover;
        platform.remover = remover;
        platform.places = places;
        platform.protectedPlaces
            = std::make_shared<const ProtectedPlaces>(ProtectedPlaces::Lists());
        platform.trash = trash;
        if (hasRealTrash)
            platform.trash = makeSystemTrash(
                platform.layout, ProtectedPlaces(ProtectedPlaces::Lists()), clock);
        platform.workspace = workspace;
        platform.runningApplications = runningApplications;
        platform.processSignals = processSignals;
        platform.memoryRelief = memoryRelief;
        return platform;
    }
};

} // namespace kestavon::test
