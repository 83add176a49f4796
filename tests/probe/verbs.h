#pragma once

#include <functional>
#include <map>
#include <string>
#include <vector>

namespace kestavon::probe {

/// What stands behind a verb on the command line.
struct Arguments {
    std::string hook; ///< a shell command run between looking and acting; empty: none
    std::vector<std::string> paths; ///< what follows "--"
};

/// Runs one engine operation and prints its result on the standard output, each field ended by a
/// NUL. Throws `std::runtime_error` with a sentence for a person when the operation fails.
using Verb = std::function<void(const Arguments&)>;

/// Every verb by name.
const std::map<std::string, Verb>& verbs();

} // namespace kestavon::probe
