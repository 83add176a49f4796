#pragma once

#include "core/domain/timestamp.h"

#include <optional>
#include <string>
#include <string_view>

namespace kestavon {

/// Bytes as a URL's path writes them: letters, digits and "-._~/" stand for themselves, every other
/// byte becomes %XX.
std::string percentEncoded(std::string_view bytes);

/// The bytes that `text` stands for; nothing when a percent sign is not followed by two digits.
std::optional<std::string> percentDecoded(std::string_view text);

/// The text of a .trashinfo file: where the item lay (absolute, or relative to its volume's top
/// folder) and when it was moved, in local time. It carries a line of ours, which other programs
/// skip, so that a later run can tell our records from theirs.
std::string trashInfoText(std::string_view originalPath, Timestamp moved);

/// Whether a .trashinfo file with this text is one of ours.
bool isOurTrashInfo(std::string_view text);

/// The path that a .trashinfo file by any program names; nothing when it names none.
std::optional<std::string> originalPathIn(std::string_view text);

} // namespace kestavon
