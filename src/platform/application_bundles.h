#pragma once

#include <optional>
#include <string>

namespace kestavon {

/// What an application's bundle, a folder, says of itself.
struct BundleInfo {
    std::optional<std::string> identifier = {}; ///< such as "com.example.Editor"; never empty
    std::optional<std::string> name = {}; ///< as it is shown; never empty
    /// Absolute path where its icon should lie, a file of pictures (.icns); nobody has looked.
    std::optional<std::string> icon = {};

    friend bool operator==(const BundleInfo&, const BundleInfo&) = default;
};

/// Reads the property list Contents/Info.plist of the bundle at `path`, or the Info.plist at its
/// top when it has no other. What the list does not say, or says in another type, is absent, and so
/// is everything when it cannot be read. Not on the main thread.
BundleInfo bundleInfo(const std::string& path);

} // namespace kestavon
