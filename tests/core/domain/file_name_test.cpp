#include "core/domain/file_name.h"

#include <gtest/gtest.h>

namespace kestavon {
namespace {

TEST(FileExtension, FollowsTheLastDotUnlessThatIsFirstOrLast)
{
    struct Case {
        const char* name;
        const char* stem;
        const char* extension;
    };
    for (const auto& [name, stem, extension] :
        {Case{"a.plist", "a", "plist"}, {"com.gone.app.plist", "com.gone.app", "plist"},
            {".hidden.plist", ".hidden", "plist"}, {".plist", ".plist", ""}, {"a.", "a.", ""},
            {"a.b.", "a.b.", ""}, {"a", "a", ""}, {"..app", ".", "app"}, {"", "", ""}}) {
        EXPECT_EQ(fileExtension(name), extension) << name;
        EXPECT_EQ(withoutExtension(name), stem) << name;
    }
}

} // namespace
} // namespace kestavon
