#pragma once

#include "platform/application_windows.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace kestavon {

/// An application that runs now.
struct RunningApplication {
    std::optional<std::string> identifier = {}; ///< such as "org.example.Editor"
    std::optional<std::string> name = {}; ///< as the user knows it, in the user's language
    std::optional<std::string> program = {}; ///< what its program is called, such as "editor"
    std::optional<std::string> icon = {}; ///< a name in the icon theme, or an absolute path
    std::int32_t process = 0; ///< the id of its oldest process
    std::uint64_t startedAt = 0; ///< when that started, in clock ticks since boot
    std::uint64_t memoryBytes = 0; ///< resident in that process
    bool isOthers = false; ///< another user's
    bool isOfSession = false; ///< the desktop itself, or what it cannot do without

    friend auto operator<=>(const RunningApplication&, const RunningApplication&) = default;
};

/// The applications that run; other processes do not count.
class RunningApplications {
public:
    virtual ~RunningApplications() = default;
    /// The one that has run the longest first, each once. Any thread, but not the main one.
    virtual std::vector<RunningApplication> running() const = 0;
};

/// Where SystemRunningApplications looks.
struct RunningApplicationsPlaces {
    std::string processFolder = "/proc"; ///< see proc(5)
    std::vector<std::string> dataFolders = {}; ///< with desktop entries in "applications"
    std::vector<std::string> languages = {}; ///< of names, the best first
    std::shared_ptr<ApplicationWindows> windows = nullptr; ///< null: none are known
    /// Gives what a file in the open folder of a process holds, on a thread of its own; empty: as
    /// it is read.
    std::function<std::string(int process, const char* name)> readFile = {};
};

/// An application is known by what its processes say, in this order: the unit that the desktop
/// started it in, the sandbox of a Flatpak, the desktop entry that it was launched from, the image
/// that it was mounted from, its program, when exactly one desktop entry starts it, and at last its
/// window. A program that was started in no such way and has neither entry nor window is none. What
/// cannot be read tells nothing, nor does what does not answer: that is asked again only once it
/// has. What is known of a process is kept: looking again costs one short file a process.
class SystemRunningApplications final : public RunningApplications {
public:
    explicit SystemRunningApplications(RunningApplicationsPlaces places = {});
    ~SystemRunningApplications() override;
    std::vector<RunningApplication> running() const override;

private:
    class Observer;
    std::unique_ptr<Observer> m_observer;
};

} // namespace kestavon
