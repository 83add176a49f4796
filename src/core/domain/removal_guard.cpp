#include "core/domain/removal_guard.h"

#include <algorithm>

namespace kestavon {

namespace {

std::string_view withoutTrailingSlashes(std::string_view path)
{
    while (path.size() > 1 && path.ends_with('/'))
        path.remove_suffix(1);
    return path;
}

} // namespace

bool isAtOrBelow(std::string_view path, std::string_view prefix)
{
    return path.starts_with(prefix)
        && (path.size() == prefix.size() || path[prefix.size()] == '/' || prefix == "/");
}

std::string_view lastComponent(std::string_view path)
{
    path = withoutTrailingSlashes(path);
    const auto slash = path.rfind('/');
    return slash == std::string_view::npos || path.size() == 1 ? path : path.substr(slash + 1);
}

bool isSafeToRemove(std::string_view path)
{
    const auto liesBelow = [path](std::string_view prefix) { return isAtOrBelow(path, prefix); };
    if (std::ranges::any_of(protectedPathPrefixes, liesBelow))
        return false;
    const auto name = lastComponent(path);
    const auto endsName = [name](std::string_view suffix) { return name.ends_with(suffix); };
    return std::ranges::none_of(protectedNameSuffixes, endsName);
}

} // namespace kestavon
