#pragma once

#include "core/domain/file_identity.h"
#include "platform/linux/removal/deed_journal.h"

#include <functional>
#include <string>

namespace kestavon {

/// Deletes the regular file called `name` in the opened folder, but only the very one that
/// `expected` describes, and only if `mayGo` says so while it already lies under another name.
///
/// That other name is in the same folder and nobody else's, so what is deleted is what was looked
/// at, whoever puts something else under `name` meanwhile; and `mayGo` sees the machine as it will
/// be without the file. A refusal gives the file its name back, or a numbered one beside it where
/// that has been taken; so does the next start after a crash in between, told by the journal.
///
/// 0, or the error number: ESTALE when the file is another one, has changed, or may not go.
int removeFileIf(int folder, const std::string& name, const FileIdentity& expected,
    const std::function<bool()>& mayGo, JournalEntry& journal);

/// Gives what is called `aside` in the opened folder the name that it had, or a numbered one where
/// that has been taken. False when it cannot be done now.
bool giveNameBack(int folder, const std::string& aside, const std::string& name);

} // namespace kestavon
