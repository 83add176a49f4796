#include "support/qt_printing.h"
#include "ui/shell/work_state.h"

#include <gtest/gtest.h>

namespace kestavon {
namespace {

using Deed = FileWork::Deed;

TEST(WorkTexts, SayWhatIsBeingDone)
{
    const auto textFor = [](Deed deed) {
        FileWork work{.deed = deed, .path = "/home/a b"};
        work.item = 1;
        return workText(work);
    };
    EXPECT_EQ(textFor(Deed::hold), "Moving “a b” to the Safe Area…");
    EXPECT_EQ(textFor(Deed::restore), "Putting “a b” back…");
    EXPECT_EQ(textFor(Deed::trash), "Moving “a b” to the Trash…");
    EXPECT_EQ(textFor(Deed::remove), "Deleting “a b”…");
    EXPECT_EQ(workText({.deed = Deed::trash, .items = 3}), "Preparing…") << "no item's turn yet";
}

TEST(WorkTexts, SayHowFarItIs)
{
    FileWork work{.path = "/x", .item = 1, .items = 1};
    EXPECT_EQ(workDetail(work), "");
    EXPECT_LT(workShare(work), 0) << "nothing is known yet";
    work.copiedBytes = 500'000'000;
    work.bytesToCopy = 2'000'000'000;
    EXPECT_EQ(workDetail(work), "500 MB of 2 GB");
    EXPECT_EQ(workShare(work), 0.25);
    work.item = 3;
    work.items = 4;
    EXPECT_EQ(workDetail(work), "500 MB of 2 GB · item 3 of 4");
    EXPECT_EQ(workShare(work), 0.5625);
    work.copiedBytes = work.bytesToCopy;
    EXPECT_EQ(workDetail(work), "2 GB copied, finishing · item 3 of 4");

    const FileWork removal{
        .deed = Deed::remove, .path = "/x", .item = 1, .items = 1, .removedEntries = 1234};
    EXPECT_EQ(workDetail(removal), "1234 deleted");
    EXPECT_LT(workShare(removal), 0);
}

TEST(WorkTexts, SayWhatAStoppedDeletionLeft)
{
    EXPECT_EQ(partlyDeletedText({.path = "/home/a b", .entries = 1}),
        "Stopped while “a b” was being deleted: 1 file or folder of it is gone.");
    EXPECT_EQ(partlyDeletedText({.path = "/home/a b", .entries = 12}),
        "Stopped while “a b” was being deleted: 12 files and folders of it are gone.");
}

} // namespace
} // namespace kestavon
