#pragma once

#include "core/domain/junk_category.h"
#include "core/domain/text_hash.h"
#include "platform/running_applications.h"

#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace kestavon {

/// Tells which of the running applications junk belongs to, by the names of the folders on the way
/// to it and its own. Any thread.
class RunningOwners {
public:
    RunningOwners(const std::vector<RunningApplication>& applications, const std::string& home);

    /// What the application is called, to be shown; empty when the item at the absolute path
    /// belongs to none, or lies outside the home.
    std::string_view ownerOf(std::string_view path) const;

private:
    using Names = std::unordered_map<std::string, std::string, TextHash, std::equal_to<>>;

    std::string_view ownerOfName(std::string_view name) const;

    const std::string m_beginning; ///< of all paths in the home
    Names m_byName; ///< in lower case, to what is shown
    Names m_byIdentifier; ///< the same
};

/// Whether applications keep what they work with there. What was thrown away, downloaded or backed
/// up is nobody's, whatever it is called.
constexpr bool belongsToApplications(JunkCategory category)
{
    return category != JunkCategory::trash && category != JunkCategory::oldDownloads
        && category != JunkCategory::iosBackups;
}

} // namespace kestavon
