#pragma once

#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace kestavon {

/// The excluded paths as one folder of a walk sees them: what is left of each below that folder.
/// Nearly every folder of a tree sees none, so that looking costs nothing.
class Exclusions {
public:
    Exclusions() = default;

    /// As the folder at the absolute path `root` sees `prefixes`. The strings behind them must
    /// outlive every `Exclusions` made from this one.
    Exclusions(std::string_view root, std::span<const std::string> prefixes);

    /// As the subfolder `name` sees them.
    Exclusions below(std::string_view name) const;

    /// Whether the entry `name` of this folder is excluded, and with it all that lies below.
    bool excludes(std::string_view name) const;

private:
    std::vector<std::string_view> m_tails; ///< excluded paths, relative to this folder
    bool m_excludeAll = false; ///< the folder lies in an excluded one
};

} // namespace kestavon
