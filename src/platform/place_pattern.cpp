#include "platform/place_pattern.h"

#include "core/domain/removal_guard.h"

#include <algorithm>

namespace kestavon {

namespace {

std::string_view nextComponent(std::string_view& path)
{
    path.remove_prefix(std::min(path.find_first_not_of('/'), path.size()));
    const auto component = path.substr(0, path.find('/'));
    path.remove_prefix(component.size());
    return component;
}

/// How a path goes beside a pattern.
enum class Relation { apart, above, inside };

Relation relationOf(std::string_view path, const PlacePattern& place)
{
    if (!isAtOrBelow(path, place.folder))
        return isAtOrBelow(place.folder, path) ? Relation::above : Relation::apart;
    auto left = path.substr(place.folder == "/" ? 0 : place.folder.size());
    for (std::string_view pattern = place.below;;) {
        const auto wanted = nextComponent(pattern);
        if (wanted.empty())
            return Relation::inside;
        const auto component = nextComponent(left);
        if (component.empty())
            return Relation::above;
        if (!namePatternMatches(wanted, component))
            return Relation::apart;
    }
}

bool matchesOne(char pattern, char c)
{
    return pattern == '#' ? c >= '0' && c <= '9' : pattern == c;
}

} // namespace

bool namePatternMatches(std::string_view pattern, std::string_view name)
{
    // Where the last star stood, and what it stands for so far: no other one need be tried again.
    auto star = pattern.npos;
    std::size_t starEnd = 0;
    std::size_t p = 0;
    for (std::size_t n = 0; n < name.size();) {
        if (p < pattern.size() && pattern[p] == '*') {
            star = p++;
            starEnd = n;
        } else if (p < pattern.size() && matchesOne(pattern[p], name[n])) {
            ++p;
            ++n;
        } else if (star != pattern.npos) {
            p = star + 1;
            n = ++starEnd;
        } else {
            return false;
        }
    }
    return pattern.find_first_not_of('*', p) == pattern.npos;
}

bool isInPlace(std::string_view path, const PlacePattern& place)
{
    return relationOf(path, place) == Relation::inside;
}

bool touchesPlace(std::string_view path, const PlacePattern& place)
{
    return relationOf(path, place) != Relation::apart;
}

std::string_view lastComponent(const PlacePattern& place)
{
    return lastComponent(
        place.below.empty() ? std::string_view(place.folder) : std::string_view(place.below));
}

} // namespace kestavon
