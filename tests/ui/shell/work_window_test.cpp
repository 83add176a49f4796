#include "support/event_loop.h"
#include "support/qt_printing.h"
#include "support/records.h"
#include "support/temporary_folder.h"
#include "ui/support/window_test.h"

#include <QTest>

#include <chrono>
#include <filesystem>
#include <thread>

#include <gmock/gmock.h>

namespace kestavon {
namespace {

using test::processEventsUntil;

/// Deletes nothing until it is asked to stop.
class EndlessRemover final : public FileRemover {
public:
    FileResult<Done> remove(const std::string& path, const RemoveOptions& options) override
    {
        for (std::int64_t entries = 1; !options.stop.stop_requested(); ++entries) {
            options.progress(entries);
            std::this_thread::sleep_for(std::chrono::milliseconds(1));
        }
        return removalError(FileError::Kind::cancelled, path);
    }
    FileResult<Done> removeFileIf(const std::string& path, const FileIdentity&,
        const std::function<bool()>&, const RemoveOptions& options) override
    {
        return remove(path, options);
    }
};

class WorkBarTest : public test::WindowTest {
protected:
    WorkBarTest()
    {
        machine.home = folder.path();
        machine.remover = std::make_shared<EndlessRemover>();
        machine.files->listable.insert(folder / "Library/Mail"); // nothing asks for access
        open();
        model->setSection(AppSection::storage);
        scan({test::file(folder.writeFile("big", "bytes"), 5)});
    }
    /// Selects the row and confirms its deletion; returns when the bar has come up.
    void startDeletion()
    {
        clickAt(need("tableBody").mapToScene({150, 17}));
        clickItem("deleteForever");
        clickItem("confirm");
        waitFor("Deleting “big”…");
    }
    void expectStopped()
    {
        EXPECT_TRUE(processEventsUntil([&] { return item("workBar") == nullptr; }));
        EXPECT_TRUE(processEventsUntil([&] { return !model->history().empty(); }));
        EXPECT_EQ(model->history().front().detail, "0 files · Zero KB");
        EXPECT_EQ(states->storage()->rows()->rowCount(), 1);
        EXPECT_TRUE(std::filesystem::exists(folder / "big"));
        EXPECT_EQ(item("alert"), nullptr);
        model->clearHistory();
    }

    test::TemporaryFolder folder;
};

TEST_F(WorkBarTest, TellsOfLongWorkAndStopsIt)
{
    model->clearHistory();
    EXPECT_EQ(item("workBar"), nullptr);
    startDeletion();
    EXPECT_TRUE(need("workDetail").property("text").toString().endsWith(" deleted"));
    clickItem("stopWork");
    expectStopped();

    startDeletion();
    press(Qt::Key_Period, Qt::ControlModifier);
    expectStopped();

    startDeletion();
    need("stopWork").forceActiveFocus(Qt::TabFocusReason);
    EXPECT_EQ(focusedName(), "Stop Deleting “big”…");
    press(Qt::Key_Escape);
    expectStopped();
}

} // namespace
} // namespace kestavon
