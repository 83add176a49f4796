#pragma once

namespace kestavon {

class JournalEntry;

/// Renames an entry, never replacing anything, not even what appears at the last moment. Folders
/// that their owner may not write to are made writable meanwhile. 0, or the error number: EXDEV
/// when the two folders do not lie on one device. Where it takes several steps, the journal, if
/// there is one, is told before.
int renameWithoutReplacing(int sourceFolder, const char* source, int targetFolder,
    const char* target, JournalEntry* journal = nullptr);

} // namespace kestavon
