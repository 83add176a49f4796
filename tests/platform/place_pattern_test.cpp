#include "platform/place_pattern.h"

#include <gtest/gtest.h>

namespace kestavon {
namespace {

TEST(NamePattern, StarsAreAnyTextAndHashesDigits)
{
    const struct {
        const char* pattern;
        const char* name;
        bool matches;
    } rows[] = {
        {"*", "", true},
        {"*", "\xFF x", true},
        {"a*", "a", true},
        {"a*", "ba", false},
        {"*.gz", "x.gz", true},
        {"*.gz", ".gz", true},
        {"*.gz", "x.gz1", false},
        {"*.log.#", "x.log.1", true},
        {"*.log.#", "x.log.10", false},
        {"*.log.#", "x.log.x", false},
        {"a*b*c", "a-b-b-c", true},
        {"a*b*c", "a-c-b", false},
        {"x", "X", false},
        {"", "x", false},
    };
    for (const auto& [pattern, name, matches] : rows)
        EXPECT_EQ(namePatternMatches(pattern, name), matches) << pattern << ' ' << name;
}

TEST(PlacePattern, TellsWhatLiesInsideAndWhatAbove)
{
    const PlacePattern place{.folder = "/home/*", .below = ".var/app/*/cache"};
    const struct {
        const char* path;
        bool inside;
        bool touches;
    } rows[] = {
        {"/home/*/.var/app/x/cache", true, true},
        {"/home/*/.var/app/x/cache/y", true, true},
        {"/home/*/.var/app/x/cached", false, false},
        {"/home/*/.var/app/x/data", false, false},
        {"/home/*/.var/app/x", false, true},
        {"/home/*/.var", false, true},
        {"/home", false, true},
        {"/", false, true},
        {"/home/alice/.var/app/x/cache", false, false}, // the folder is no pattern
        {"/home/*/.var/app2", false, false},
    };
    for (const auto& [path, inside, touches] : rows) {
        EXPECT_EQ(isInPlace(path, place), inside) << path;
        EXPECT_EQ(touchesPlace(path, place), touches) << path;
    }
    EXPECT_TRUE(isInPlace("/x/y", {.folder = "/", .below = "x"}));
    EXPECT_FALSE(isInPlace("/xy", {.folder = "/", .below = "x"}));
}

} // namespace
} // namespace kestavon
