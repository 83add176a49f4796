#include "ui/shell/window_folder_picker.h"

#include <gmock/gmock.h>

namespace kestavon {

namespace {

TEST(WindowFolderPicker, PathsSurviveTheUrlByteForByte)
{
    for (const std::string path : {"/", "/home/alice", "/a%20b", "/a b#c?d", "/new\nline",
             "/caf\xC3\xA9", "/not\xFFutf8", "/back\\slash"}) {
        EXPECT_EQ(pathFromUrl(urlFromPath(path)), path);
    }
}

TEST(WindowFolderPicker, AnswersEachWishOnce)
{
    WindowFolderPicker picker;
    std::vector<std::optional<std::string>> answers;
    const auto keep = [&](std::optional<std::string> path) { answers.push_back(std::move(path)); };
    picker.pickFolder("/home/alice", keep);
    picker.pickFolder("/home/alice", keep); // the dialog is already there
    ASSERT_EQ(answers.size(), 1U);
    EXPECT_EQ(answers[0], std::nullopt);

    picker.accept(QUrl(QStringLiteral("file:///srv/data")));
    picker.cancel();
    ASSERT_EQ(answers.size(), 2U);
    EXPECT_EQ(answers[1], "/srv/data");
}

} // namespace

} // namespace kestavon
