#pragma once

#include "platform/file_mover.h"
#include "platform/linux/file_descriptor.h"
#include "platform/linux/removal/entry_status.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace kestavon {

/// Gives the opened copy of a file or folder what the original has: owner where allowed, extended
/// attributes and access lists, permissions, times. `source` is the opened original; marks whose
/// names begin with `leaveOut` are not taken over, empty: all are. 0, or the error number: then
/// something that must not be lost could not be kept.
int copyMetadata(int source, int target, const EntryStatus& original, const std::string& leaveOut);

/// The same for links, pipes, sockets and devices: by name, in a folder that nobody else uses.
int copyMetadataOfSpecial(int sourceFolder, const char* sourceName, int targetFolder,
    const char* targetName, const EntryStatus& original);

/// Puts the marks on the entry `name`, a file or folder, as far as that is possible; false when one
/// could not be set. A folder or file that its owner may not write to is made writable meanwhile.
bool setMarks(int folder, const char* name, const std::vector<FileMark>& marks);

/// Takes the marks off whose names begin with `prefix`; false when one could not be taken off.
bool removeMarks(int folder, const char* name, const std::string& prefix);

/// The value of one mark; nothing when there is none.
std::optional<std::string> readMark(int folder, const char* name, std::string_view mark);

/// The marks whose names begin with `prefix`; none for what cannot have any.
std::vector<FileMark> readMarks(int folder, const char* name, const std::string& prefix);

/// Changes the permissions of an entry without following a link, even of a folder that may not be
/// read; false with `errno` when that fails.
bool changePermissions(int folder, const char* name, mode_t permissions);

/// The permissions of one entry, changed for a while: they come back with the end of this, whatever
/// the entry is called by then.
class BorrowedPermissions {
public:
    BorrowedPermissions(int folder, const char* name, mode_t borrowed);
    ~BorrowedPermissions();
    BorrowedPermissions(const BorrowedPermissions&) = delete;
    BorrowedPermissions& operator=(const BorrowedPermissions&) = delete;

    /// Whether they were changed.
    explicit operator bool() const { return m_isChanged; }

private:
    FileDescriptor m_entry;
    mode_t m_former = 0;
    bool m_isChanged = false;
};

} // namespace kestavon
