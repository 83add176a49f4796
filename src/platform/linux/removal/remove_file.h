#pragma once

#include "core/domain/file_identity.h"

#include <functional>
#include <string>

namespace kestavon {

/// Deletes the regular file called `name` in the opened folder, but only the very one that
/// `expected` describes, and only if `mayGo` says so while it already lies under another name.
///
/// That other name is in the same folder and nobody else's, so what is deleted is what was looked
/// at, whoever puts something else under `name` meanwhile; and `mayGo` sees the machine as it will
/// be without the file. A refusal gives the file its name back, or a numbered one beside it where
/// that has been taken. A crash in between leaves it whole under a hidden name.
///
/// 0, or the error number: ESTALE when the file is another one, has changed, or may not go.
int removeFileIf(int folder, const std::string& name, const FileIdentity& expected,
    const std::function<bool()>& mayGo);

} // namespace kestavon
