#pragma once

namespace kestavon {

/// Renames an entry, never replacing anything, not even what appears at the last moment. Folders
/// that their owner may not write to are made writable meanwhile. 0, or the error number: EXDEV
/// when the two folders do not lie on one device.
int renameWithoutReplacing(
    int sourceFolder, const char* source, int targetFolder, const char* target);

} // namespace kestavon
