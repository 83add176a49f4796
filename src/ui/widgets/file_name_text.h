#pragma once

#include <QString>

#include <string_view>

namespace kestavon {

/// A file name or path as one line for a person to read; never to be turned back into a path. What
/// is not UTF-8 shows as U+FFFD, a line break as U+2424, another control character as its control
/// picture, and one that would reorder the text around it (and so disguise a name) as U+FFFD.
QString fileNameText(std::string_view bytes);

} // namespace kestavon
