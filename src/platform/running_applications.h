#pragma once

#include <optional>
#include <string>
#include <vector>

namespace kestavon {

/// An application that runs now.
struct RunningApplication {
    std::optional<std::string> identifier = {}; ///< such as "org.example.Editor"
    std::optional<std::string> name = {}; ///< as the user knows it

    friend auto operator<=>(const RunningApplication&, const RunningApplication&) = default;
};

/// The applications that the user has running; other processes do not count.
class RunningApplications {
public:
    virtual ~RunningApplications() = default;
    /// In no particular order, each once. Not on the main thread.
    virtual std::vector<RunningApplication> running() const = 0;
};

/// The applications of this user's sessions, as far as the desktop starts each in a unit of its own
/// that is called by its identifier, which GNOME, KDE, Flatpak and Snap do. A desktop that does not
/// has none here. The name is that of the application's first process.
class SystemRunningApplications final : public RunningApplications {
public:
    explicit SystemRunningApplications(std::string processFolder = "/proc");
    std::vector<RunningApplication> running() const override;

private:
    std::string m_processFolder;
};

} // namespace kestavon
