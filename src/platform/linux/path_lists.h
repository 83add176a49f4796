#pragma once

#include <string>
#include <vector>

namespace kestavon {

/// The folders of a list with colons, as environment variables hold them, in its order. What is
/// empty or relative means a different folder to every program, and does not count.
std::vector<std::string> foldersInList(const std::string& list);

/// Whether there is a program that this process could run by `name`: a path, or a name in the
/// search path.
bool isProgramThere(const std::string& name);

} // namespace kestavon
