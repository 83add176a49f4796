#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace kestavon {

/// The download folder that the text of a user-dirs.dirs file names, see user-dirs.dirs(5); the
/// last one counts. Nothing when it names none, a relative one, or one that is the home or holds
/// it: everything there would be a download.
std::optional<std::string> downloadFolderNamedIn(std::string_view text, const std::string& home);

/// Every folder that the text of a user-dirs.dirs file names.
std::vector<std::string> userFoldersNamedIn(std::string_view text, const std::string& home);

} // namespace kestavon
