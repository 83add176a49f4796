#pragma once

#include "platform/host_layout.h"
#include "platform/linux/mount_table.h"
#include "platform/trash.h"

#include <string>
#include <string_view>
#include <vector>

#include <sys/types.h>

namespace kestavon {

/// The Trash of a Mac's home: one folder, which holds the items themselves.
std::string macTrashFolder(const HostLayout& layout);

/// The Trash of a native home.
std::string homeTrashFolder(const HostLayout& layout);

/// Every Trash that the user has on a native layout: in the home, for programs in sandboxes, and on
/// `mounts`. Lists a few folders of the home; touches none of the mounts.
std::vector<TrashPlace> nativeTrashPlaces(
    const HostLayout& layout, const std::vector<Mount>& mounts, uid_t user);

/// Whether `path`, below the top folder of its volume, belongs to the Trash of anybody there.
bool isInVolumeTrash(std::string_view path, std::string_view topFolder);

/// Whether `path` belongs to the Trash that a sandboxed program has in `home`.
bool isInSandboxTrash(std::string_view path, std::string_view home);

} // namespace kestavon
