#include "core/domain/removal_guard.h"

#include <gtest/gtest.h>

namespace kestavon {
namespace {

TEST(RemovalGuard, ProtectsSystemFoldersAndBundlesOfTheSystem)
{
    const struct {
        const char* path;
        bool safe;
    } rows[] = {
        {"/System", false},
        {"/System/Library/x", false},
        {"/Systems", true},
        {"/usr", false},
        {"/usr/", false},
        {"/usr/bin/x", false},
        {"/usrlocal/x", true},
        {"/home/usr/bin", true},
        {"/bin", false},
        {"/binary", true},
        {"/sbin/mount", false},
        {"/private/var/db", false},
        {"/private/var/db/receipts", false},
        {"/private/var/log", true},
        {"/Applications/Editor.app", false},
        {"/applications/Editor.app", true},
        {"/home/alice/Applications/Editor.app", true},
        {"/Library/Apple", false},
        {"/Library/Apple/x", false},
        {"/Library/Caches/x", true},
        {"/Library/AppleX", true},
        {"/home/alice/a.thumbnail", false},
        {"/home/alice/a.appex", false},
        {"/home/alice/a.appex/", false},
        {"/home/alice/a.xpc", false},
        {"/home/alice/.appex", false},
        {"/home/alice/a.APPEX", true},
        {"/home/alice/a.appex.zip", true},
        {"/home/alice/a.appex/inner", true},
        {"/home/alice/axpc", true},
        {"/", true},
        {"", true},
    };
    for (const auto& row : rows)
        EXPECT_EQ(isSafeToRemove(row.path), row.safe) << row.path;
}

TEST(LastComponent, IgnoresTrailingSlashes)
{
    EXPECT_EQ(lastComponent("/a/b"), "b");
    EXPECT_EQ(lastComponent("/a/b//"), "b");
    EXPECT_EQ(lastComponent("/a"), "a");
    EXPECT_EQ(lastComponent("a"), "a");
    EXPECT_EQ(lastComponent("/"), "/");
    EXPECT_EQ(lastComponent("//"), "/");
    EXPECT_EQ(lastComponent(""), "");
}

} // namespace
} // namespace kestavon
