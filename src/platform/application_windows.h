#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <string>

namespace kestavon {

/// What the windows of a process are called by their class, valid UTF-8 and perhaps empty, by the
/// process's id.
using WindowsOfProcesses = std::map<std::int32_t, std::string>;

/// The windows that are open on the desktop.
class ApplicationWindows {
public:
    virtual ~ApplicationWindows() = default;
    /// Those that processes of this machine say they own; panels and the desktop's background do
    /// not count. Not on the main thread. What does not answer has none.
    virtual WindowsOfProcesses list() = 0;
};

/// The windows on the X server that `display` names, or the variable DISPLAY when it is empty.
/// Programs that speak Wayland only have none. Each call connects anew, so that nothing is held
/// when the server goes; it takes half a second at most.
std::shared_ptr<ApplicationWindows> windowsOfDisplay(std::string display = {});

} // namespace kestavon
