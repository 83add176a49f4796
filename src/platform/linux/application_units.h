#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace kestavon {

/// The identifier of the application whose processes are in the control group `cgroup` (a path as
/// in /proc/PID/cgroup): the name of a unit that the desktop made for it tells it, such as
/// "app-gnome-org.gnome.Terminal-2716.scope" or "snap.firefox.firefox-<UUID>.scope". Nothing for
/// services and for what a login started itself.
std::optional<std::string> applicationOfControlGroup(std::string_view cgroup);

} // namespace kestavon
