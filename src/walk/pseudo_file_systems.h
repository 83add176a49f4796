#pragma once

#include <string_view>

namespace kestavon {

/// Whether the open folder (a path-only handle will do) lies on a file system that the kernel or a
/// service makes up as it is read: processes, devices, settings, portals. Such trees hold no data
/// of the user's, change while they are read, and a read may have effects. False when that cannot
/// be told. Any thread.
bool isOnPseudoFileSystem(int folder);

/// Whether it is the kernel that makes the file system up. Narrower than the above: in a portal or
/// under a desktop's network mounts somebody who chooses a folder finds files of their own.
bool isOnKernelFileSystem(int folder);

/// Whether anything may be mounted on this machine by being looked into: then a folder must be
/// looked at before it is opened.
bool mountsOnDemand();

/// The same out of a mount table as in /proc/self/mountinfo, see proc(5).
bool tellsOfMountsOnDemand(std::string_view mountTable);

/// The type of the file system mounted with the given device number, out of a mount table as in
/// /proc/self/mountinfo, see proc(5); empty when it is not there.
std::string_view mountedType(std::string_view mountTable, std::string_view device);

} // namespace kestavon
