#pragma once

#include <string>

namespace kestavon {

/// Looks for new versions. This build has no update source, and says so instead of pretending.
class UpdaterController {
public:
    /// The version of this program, "1.0.0".
    static std::string version();
    /// The build number of this program, "1".
    static std::string buildNumber();

    /// The answer to "is there a newer version?", in one or two sentences for a person.
    std::string checkForUpdates() const;
};

} // namespace kestavon
